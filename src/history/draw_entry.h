#pragma once

// Manual entry of the newest draw in the seven masked boxes MaskEdBox1(1..7) of the main
// window: five front numbers, then two back numbers, two digits each with "_" for a position
// not typed.

#include "history/history_result.h"

#include <QString>

#include <array>

class Prompter;
class Session;

class DrawEntry {
public:
    static constexpr int kBoxes = 7;
    static constexpr QChar kMaskChar = QLatin1Char('_');
    using Boxes = std::array<QString, kBoxes>;

    DrawEntry(Session& session, Prompter& prompter) : m_session(session), m_prompter(prompter) {}

    // A change in box 1..6 that fills both positions moves the focus to the next box.
    static bool movesFocus(int box, const QString& text);

    // Box 7 changed (and the window is not resetting the boxes itself): checks the seven
    // texts, shows the message of the first fault and stores nothing, or sorts each zone and
    // appends the draw to fig, fighou and figquan, to the reduced fig of filnum.db and to the
    // history text. Done with GridAction::AppendRow: the window adds the row, updates Label12
    // and clears the boxes.
    HistoryActionResult submit(const Boxes& boxes);

private:
    Session& m_session;
    Prompter& m_prompter;
};

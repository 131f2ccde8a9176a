#pragma once

#include "picking/frequency_picks.h"

#include <functional>

class PickingCommands;
class Prompter;
class QWidget;
class SavedSelections;

// The modal windows of the picking commands. The Qt implementation shows the real dialogs;
// tests may put scripted answers in their place.
class PickingDialogs {
public:
    virtual ~PickingDialogs() = default;
    // frmXhfw: the scope of a frequency pick.
    virtual frequency_picks::Scope askScope(const DrawHistory& history) = 0;
    // frmnmFind: the chosen row of the saved selections from 1, 0 for none.
    virtual int chooseSavedSelection(SavedSelections& saved, Prompter& prompter) = 0;
    // frmSltnum: the selection template window.
    virtual void openTemplates(PickingCommands& commands) = 0;
};

class QtPickingDialogs : public PickingDialogs {
public:
    explicit QtPickingDialogs(QWidget* parent) : m_parent(parent) {}
    frequency_picks::Scope askScope(const DrawHistory& history) override;
    int chooseSavedSelection(SavedSelections& saved, Prompter& prompter) override;
    void openTemplates(PickingCommands& commands) override;

private:
    QWidget* m_parent;
};

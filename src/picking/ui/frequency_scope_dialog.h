#pragma once

#include "picking/frequency_picks.h"

#include <QDialog>

#include <array>

class QLineEdit;
class QRadioButton;

// frmXhfw: the scope of a frequency pick: the whole history, an interval of issues (shown
// first with the first and last issue of the history), or the last N draws (100 at first).
// The three boxes' numeric values are kept as they change; 确定 closes the dialog.
class FrequencyScopeDialog : public QDialog {
    Q_OBJECT
public:
    static inline const QString kCaption = QStringLiteral("高/低频选号范围设定");

    explicit FrequencyScopeDialog(const DrawHistory& history, QWidget* parent = nullptr);

    // The chosen option with the values the boxes held.
    frequency_picks::Scope scope() const;

private:
    void keepValues();

    std::array<QRadioButton*, 3> m_options{};
    std::array<QLineEdit*, 3> m_boxes{};
    qint64 m_first = 0, m_last = 0;
    int m_count = 100;
};

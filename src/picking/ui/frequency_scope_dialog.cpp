#include "picking/ui/frequency_scope_dialog.h"

#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

namespace {

// The leading number of a box, 0 when there is none (as the classic Val reads text).
double leadingValue(const QString& text) {
    QString digits;
    const QString t = text.trimmed();
    for (int i = 0; i < t.size(); ++i) {
        const QChar c = t[i];
        if (c.isDigit() || (i == 0 && (c == QLatin1Char('-') || c == QLatin1Char('+'))) || c == QLatin1Char('.'))
            digits += c;
        else
            break;
    }
    return digits.toDouble();
}

}  // namespace

FrequencyScopeDialog::FrequencyScopeDialog(const DrawHistory& history, QWidget* parent) : QDialog(parent) {
    setObjectName(QStringLiteral("frmXhfw"));
    setWindowTitle(kCaption);
    auto* frame = new QGroupBox(kCaption, this);
    frame->setObjectName(QStringLiteral("Frame1"));
    auto* grid = new QGridLayout(frame);
    const char* captions[3] = {"所有期数检索", "指定区间检索", "指定期数检索"};
    for (int i = 0; i < 3; ++i) {
        auto* option = new QRadioButton(QString::fromUtf8(captions[i]), frame);
        option->setObjectName(QStringLiteral("Option1(%1)").arg(i));
        grid->addWidget(option, i, 0);
        auto* box = new QLineEdit(frame);
        box->setObjectName(QStringLiteral("Text1(%1)").arg(i));
        box->setFixedWidth(80);
        m_options[static_cast<size_t>(i)] = option;
        m_boxes[static_cast<size_t>(i)] = box;
    }
    m_options[0]->setChecked(true);
    if (history.drawCount() > 0) {
        m_boxes[0]->setText(QString::number(history.numbers[1][0]));
        m_boxes[1]->setText(QString::number(history.lastIssue()));
    }
    m_boxes[2]->setText(QStringLiteral("100"));
    auto* interval = new QHBoxLayout;
    interval->addWidget(m_boxes[0]);
    interval->addWidget(new QLabel(QStringLiteral("-"), frame));
    interval->addWidget(m_boxes[1]);
    interval->addStretch();
    grid->addLayout(interval, 1, 1);
    auto* lastDraws = new QHBoxLayout;
    auto* before = new QLabel(QStringLiteral("前"), frame);
    before->setObjectName(QStringLiteral("Label1"));
    auto* draws = new QLabel(QStringLiteral("期"), frame);
    draws->setObjectName(QStringLiteral("Label2"));
    lastDraws->addWidget(before);
    lastDraws->addWidget(m_boxes[2]);
    lastDraws->addWidget(draws);
    lastDraws->addStretch();
    grid->addLayout(lastDraws, 2, 1);

    auto* ok = new QPushButton(QStringLiteral("确定(&K)"), this);
    ok->setObjectName(QStringLiteral("Command1"));
    ok->setDefault(true);
    connect(ok, &QPushButton::clicked, this, &QDialog::accept);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(frame);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(ok);
    layout->addLayout(buttons);
    for (QLineEdit* box : m_boxes) connect(box, &QLineEdit::textChanged, this, &FrequencyScopeDialog::keepValues);
    keepValues();
    setFixedSize(sizeHint());
}

void FrequencyScopeDialog::keepValues() {
    m_first = static_cast<qint64>(leadingValue(m_boxes[0]->text()));
    m_last = static_cast<qint64>(leadingValue(m_boxes[1]->text()));
    m_count = static_cast<int>(leadingValue(m_boxes[2]->text()));
}

frequency_picks::Scope FrequencyScopeDialog::scope() const {
    if (m_options[1]->isChecked()) return frequency_picks::Scope::interval(m_first, m_last);
    if (m_options[2]->isChecked()) return frequency_picks::Scope::last(m_count);
    return frequency_picks::Scope::allHistory();
}

#include "prize/ui/prize_rules_dialog.h"

#include "workspace/prompter.h"
#include "workspace/settings.h"

#include <QAbstractButton>
#include <QButtonGroup>
#include <QComboBox>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QTabBar>
#include <QVBoxLayout>

namespace {
constexpr int kPanelWidth = 560;
constexpr int kPanelHeight = 170;
const QString kAmountMask = QStringLiteral("9999999;_");
}  // namespace

AmountField::AmountField(const QString& amount, QWidget* parent) : QLineEdit(amount, parent) {}

void AmountField::enter() {
    if (m_entered) return;
    m_entered = true;
    clear();
    setInputMask(kAmountMask);
}

void AmountField::focusInEvent(QFocusEvent* event) {
    enter();
    QLineEdit::focusInEvent(event);
}

PrizeRulesDialog::PrizeRulesDialog(PrizeSettings settings, Prompter& prompter, QWidget* parent)
    : QDialog(parent), m_form(std::move(settings)), m_prompter(prompter) {
    setObjectName(QStringLiteral("frmPrize"));
    setWindowTitle(PrizeRulesForm::kCaption);
    auto* layout = new QVBoxLayout(this);
    m_tabs = new QTabBar(this);
    m_tabs->setObjectName(QStringLiteral("tbsOptions"));
    for (int tab = 0; tab < prize_rules::kSlots; ++tab) {
        const PrizeSlotDefault& d = prize_rules::kDefaults[static_cast<size_t>(tab)];
        m_tabs->addTab(QString::fromUtf8(d.tabCaption));
        m_tabs->setTabToolTip(tab, QString::fromUtf8(d.tabTip));
        m_tabs->setTabData(tab, QString::fromUtf8(d.tabKey));
    }
    layout->addWidget(m_tabs);
    // The panels lie on top of each other; the tab strip moves one into view.
    auto* stage = new QWidget(this);
    stage->setMinimumSize(kInViewX + kPanelWidth, kPanelHeight);
    for (int tab = 0; tab < prize_rules::kSlots; ++tab) m_panels << makePanel(tab, stage);
    layout->addWidget(stage);
    auto* okButton = new QPushButton(QStringLiteral("确定(&O)"), this);
    okButton->setObjectName(QStringLiteral("cmdOK"));
    connect(okButton, &QPushButton::clicked, this, &PrizeRulesDialog::storeAndClose);
    layout->addWidget(okButton, 0, Qt::AlignRight);
    auto* note = new QLabel(PrizeRulesForm::kNote, this);
    note->setObjectName(QStringLiteral("Label3"));
    note->setWordWrap(true);
    layout->addWidget(note);
    connect(m_tabs, &QTabBar::currentChanged, this, &PrizeRulesDialog::selectTab);
    selectTab(0);
}

bool PrizeRulesDialog::showUnsaved(const std::optional<QString>& error) {
    if (error) m_prompter.inform(Settings::kSaveFailedTitle, *error, Prompter::Icon::Warning);
    return error.has_value();
}

QWidget* PrizeRulesDialog::makePanel(int tab, QWidget* parent) {
    auto* panel = new QWidget(parent);
    panel->setObjectName(QStringLiteral("Picture1(%1)").arg(tab));
    panel->resize(kPanelWidth, kPanelHeight);
    auto* h = new QHBoxLayout(panel);

    // `click` stores a choice; `stored` reads what is stored, ticked again when a click was not saved.
    const auto zoneFrame = [&](const QString& title, const QList<int>& hits, const QList<QString>& names,
                               auto click, auto stored) {
        auto* frame = new QGroupBox(title, panel);
        auto* v = new QVBoxLayout(frame);
        auto* group = new QButtonGroup(frame);
        for (int i = 0; i < hits.size(); ++i) {
            auto* option = new QRadioButton(QStringLiteral("%1数选中").arg(hits[i]), frame);
            option->setObjectName(QStringLiteral("%1(%2)").arg(names[i]).arg(tab));
            option->setChecked(hits[i] == stored(tab));
            group->addButton(option, hits[i]);
            v->addWidget(option);
            const int k = hits[i];
            connect(option, &QRadioButton::clicked, this, [this, click, stored, group, tab, k] {
                if (!showUnsaved(click(tab, k))) return;
                if (QAbstractButton* b = group->button(stored(tab))) b->setChecked(true);
            });
        }
        h->addWidget(frame);
    };
    zoneFrame(
        QStringLiteral("前区号"), {1, 2, 3, 4, 5},
        {QStringLiteral("Option1"), QStringLiteral("Option2"), QStringLiteral("Option3"),
         QStringLiteral("Option4"), QStringLiteral("Option5")},
        [this](int t, int k) { return m_form.clickFront(t, k); },
        [this](int t) { return m_form.frontOption(t); });
    zoneFrame(
        QStringLiteral("后区号"), {1, 2}, {QStringLiteral("Option21"), QStringLiteral("Option22")},
        [this](int t, int k) { return m_form.clickBack(t, k); },
        [this](int t) { return m_form.backOption(t); });

    auto* right = new QVBoxLayout;
    right->addWidget(new QLabel(QStringLiteral("奖项等级设定:"), panel));
    auto* combo = new QComboBox(panel);
    combo->setObjectName(QStringLiteral("Combo1(%1)").arg(tab));
    combo->addItems(PrizeRulesForm::levelItems());
    // The list opens with nothing chosen, whatever level is stored.
    combo->setCurrentIndex(-1);
    connect(combo, &QComboBox::activated, this, [this, combo, tab](int item) {
        if (showUnsaved(m_form.chooseLevel(tab, item))) combo->setCurrentIndex(-1);
    });
    right->addWidget(combo);
    right->addWidget(new QLabel(QStringLiteral("单注中奖金额:"), panel));
    auto* amount = new AmountField(m_form.amountText(tab), panel);
    amount->setObjectName(QStringLiteral("MaskEdBox1(%1)").arg(tab));
    m_amounts << amount;
    right->addWidget(amount);
    right->addStretch();
    h->addLayout(right);
    return panel;
}

void PrizeRulesDialog::selectTab(int tab) {
    if (m_tabs->currentIndex() != tab) m_tabs->setCurrentIndex(tab);  // comes back here
    for (int i = 0; i < m_panels.size(); ++i) {
        const bool inView = i == tab;
        m_panels[i]->move(inView ? kInViewX : kOutOfViewX, 0);
        m_panels[i]->setEnabled(inView);
    }
}

void PrizeRulesDialog::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Tab && (event->modifiers() & Qt::ControlModifier)) {
        selectTab((m_tabs->currentIndex() + 1) % m_tabs->count());
        return;
    }
    QDialog::keyPressEvent(event);
}

void PrizeRulesDialog::storeAndClose() {
    QStringList texts;
    for (const AmountField* f : m_amounts) texts << f->amountText();
    if (const std::optional<QString> error = m_form.storeAmounts(texts))
        m_prompter.inform(PrizeRulesForm::kErrorTitle, *error, Prompter::Icon::Critical);
    close();
}

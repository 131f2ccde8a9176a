#pragma once

#include "prize/prize_rules_form.h"

#include <QDialog>
#include <QLineEdit>

class Prompter;
class QComboBox;
class QRadioButton;
class QTabBar;

// MaskEdBox1(i): shows the amount as it stands until it is entered; entering it empties it and
// gives it the mask of exactly seven digits, so that its text holds placeholders until all
// seven are typed.
class AmountField : public QLineEdit {
    Q_OBJECT
public:
    explicit AmountField(const QString& amount, QWidget* parent = nullptr);
    bool entered() const { return m_entered; }
    // What cmdOK converts: the amount, or the masked text with its placeholders.
    QString amountText() const { return m_entered ? displayText() : text(); }
    void enter();

protected:
    void focusInEvent(QFocusEvent* event) override;

private:
    bool m_entered = false;
};

// frmPrize, "中奖规则管理": twelve tabs over twelve panels, each slot's options, level list and
// amount. Options and levels are written when clicked; amounts only by cmdOK.
class PrizeRulesDialog : public QDialog {
    Q_OBJECT
public:
    // Panels in view stand at 700 twips from the left, the others at -20000.
    static constexpr int kInViewX = 700 / 15;
    static constexpr int kOutOfViewX = -20000 / 15;

    PrizeRulesDialog(PrizeSettings settings, Prompter& prompter, QWidget* parent = nullptr);

    const PrizeRulesForm& form() const { return m_form; }
    void selectTab(int tab);  // a click on tbsOptions

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    QWidget* makePanel(int tab, QWidget* parent);
    void storeAndClose();  // cmdOK
    // Shows why a choice was not saved; true when there was such a message.
    bool showUnsaved(const std::optional<QString>& error);

    PrizeRulesForm m_form;
    Prompter& m_prompter;
    QTabBar* m_tabs = nullptr;
    QList<QWidget*> m_panels;
    QList<AmountField*> m_amounts;
};

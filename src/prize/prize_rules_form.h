#pragma once

#include "prize/prize_rules.h"

#include <QString>
#include <QStringList>

#include <optional>

// The logic of frmPrize: which options stand ticked, and the three ways the dialog writes, each
// to memory and to the settings at once. Tabs are 0-based (tab i is slot i + 1).
class PrizeRulesForm {
public:
    static inline const QString kCaption = QStringLiteral("中奖规则管理");
    static inline const QString kErrorTitle = QStringLiteral("Error");
    static inline const QString kAmountHint = QStringLiteral("输入奖金额应为7位,不足应用'0'补齐7位!");
    static inline const QString kNote = QStringLiteral(
        "说明:(1)如果本地奖项少于9种,请将剩余的几种奖金设置为0.        "
        "(2)中奖金额修改时必须输入是7位,不足须用0补齐.            "
        "(3)\"特别号选中\"选项打勾表示\"是\",不打勾表示\"非\".");
    // The error source the message names: the program.
    static inline const QString kErrorSource = QStringLiteral("shuangqu");
    // The mask a field takes once entered: exactly seven digits.
    static constexpr int kAmountDigits = 7;

    // The items of every Combo1, in order; the last is four blanks.
    static QStringList levelItems();

    explicit PrizeRulesForm(PrizeSettings settings);

    const PrizeRules& rules() const { return m_rules; }
    // Values of the store that were no number (read with the defaults instead).
    const QStringList& readProblems() const { return m_problems; }

    // The front option ticked on a tab (1..5), 0 for none; the back option (1, 2), 0 for none.
    int frontOption(int tab) const;
    int backOption(int tab) const;
    // The amount as the field shows it before it is entered.
    QString amountText(int tab) const { return QString::number(m_rules.slot(tab + 1).money); }

    // Each click or choice is stored at once. When the store cannot be saved the slot keeps its
    // old value and the message (Settings::kSaveFailedTitle) is returned.
    std::optional<QString> clickFront(int tab, int hits);        // Option1..Option5
    std::optional<QString> clickBack(int tab, int hits);         // Option21, Option22
    std::optional<QString> chooseLevel(int tab, int itemIndex);  // Combo1(tab)

    // cmdOK: converts the twelve field texts in slot order and stores each amount. Stops at the
    // first text that is no 32-bit number, or at the first amount that cannot be saved, and
    // returns the message of that failure; the slots before it keep their new amounts.
    std::optional<QString> storeAmounts(const QStringList& fieldTexts);

private:
    PrizeSettings m_settings;
    PrizeRules m_rules;
    QStringList m_problems;
};

#include "app/cli/super_forms.h"

#include "app/cli/cli_context.h"
#include "app/cli/window_boxes.h"

namespace super_forms {

namespace {

// In the order of their thresholds in every tab.
constexpr std::array kHistoryButtons{SuperButton::HistoryLow, SuperButton::HistoryMiddle,
                                     SuperButton::HistoryHigh};

QString noCheck(const Args&) { return {}; }

QStringList numberTexts(const QList<int>& numbers) {
    QStringList out;
    for (int n : numbers) out << QString::number(n);
    return out;
}

std::optional<SuperCall> relationCall(CliContext&, const Args& args) {
    constexpr std::array kButtons{SuperButton::RelationConflicting, SuperButton::RelationSupporting,
                                  SuperButton::RelationKeeping};
    SuperCall c;
    c.button = kButtons[static_cast<size_t>(args.positionalChoice(0))];
    const QStringList nums = args.positionals().mid(1);
    c.answers << QString::number(nums.size()) << nums;
    return c;
}

// The numbers of common offered in a tab, as its buttons' captions say.
QList<int> offered(ZoneScope scope) {
    QList<int> out;
    for (SuperButton b : kHistoryButtons)
        if (const int t = super_filter::threshold(b, scope); t > 0) out << t;
    return out;
}

QString checkHistory(const Args& args) {
    const bool same = args.has(QStringLiteral("same")), button = args.has(QStringLiteral("button"));
    if (same && button) return QStringLiteral("give --same or --button, not both");
    if (!same && !button) return QStringLiteral("missing --same N");
    if (args.has(QStringLiteral("last")) && args.has(QStringLiteral("draws")))
        return QStringLiteral("give --last or --draws, not both");
    const ZoneScope scope = window_boxes::scope(args);
    if (same && !historyButton(args.integer(QStringLiteral("same")), scope)) {
        const QString zone = args.text(QStringLiteral("scope"), QStringLiteral("front")).toLower();
        return QStringLiteral("--same %1 is not offered in the %2 tab; one of %3")
            .arg(args.text(QStringLiteral("same")), zone,
                 numberTexts(offered(scope)).join(QStringLiteral(", ")));
    }
    return {};
}

std::optional<SuperCall> historyCall(CliContext&, const Args& args) {
    SuperCall c;
    c.button = args.has(QStringLiteral("same"))
                   ? *historyButton(args.integer(QStringLiteral("same")), window_boxes::scope(args))
                   : kHistoryButtons[static_cast<size_t>(args.choice(QStringLiteral("button")))];
    // Without a count of draws the prompt's proposal, every draw, stands.
    for (const QString& option : {QStringLiteral("last"), QStringLiteral("draws")})
        if (args.has(option)) c.answers << args.text(option);
    return c;
}

QString checkInclusion(const Args& args) {
    return args.numbers(QStringLiteral("numbers")).isEmpty()
               ? QStringLiteral("--numbers: give at least one number")
               : QString();
}

// An inclusion without bankers goes to the worker with the input its prompts would have
// taken, checked as they check it.
std::optional<SuperInputs> directInclusion(CliContext& ctx, const QList<int>& nums, int group) {
    if (nums.size() > 9) {
        ctx.fail(QStringLiteral("请输入1~9之间的数字"));
        return std::nullopt;
    }
    if (group < 1 || group > nums.size()) {
        ctx.fail(QStringLiteral("请输入1~%1之间的数字").arg(nums.size()));
        return std::nullopt;
    }
    SuperInputs in;
    in.superCount = QString::number(nums.size());
    in.groupSize = static_cast<int16_t>(group);
    for (qsizetype i = 0; i < nums.size(); ++i)
        in.superNumbers[static_cast<size_t>(i + 1)] = static_cast<int16_t>(nums[i]);
    return in;
}

std::optional<SuperCall> inclusionCall(CliContext& ctx, const Args& args) {
    SuperCall c;
    c.button = args.positionalChoice(0) == 0 ? SuperButton::InclusionKill : SuperButton::InclusionKeep;
    const QList<int> nums = args.numbers(QStringLiteral("numbers"));
    const QList<int> bankers = args.numbers(QStringLiteral("bankers"));
    c.answers << QString::number(nums.size()) << args.text(QStringLiteral("group")) << numberTexts(nums);
    if (!bankers.isEmpty()) {
        c.answers << QString::number(bankers.size()) << numberTexts(bankers);
        return c;
    }
    c.direct = directInclusion(ctx, nums, args.integer(QStringLiteral("group")));
    if (!c.direct) return std::nullopt;
    return c;
}

std::optional<SuperCall> sameAsTemplateCall(CliContext&, const Args&) {
    return SuperCall{SuperButton::SameAsTemplate, {}, {}};
}

}  // namespace

std::optional<SuperButton> historyButton(int same, ZoneScope scope) {
    for (SuperButton b : kHistoryButtons)
        if (same > 0 && super_filter::threshold(b, scope) == same) return b;
    return std::nullopt;
}

const SuperForm& relation() {
    static const SuperForm form{
        QStringLiteral("relation"),
        QStringLiteral("kill|pair|keep N1 N2 ..."),
        QStringLiteral(
            "相克 (kill) kills the tickets holding all the numbers, 相生 (pair) those holding some but not "
            "all, 保留 (keep) those not holding all."),
        {{QStringLiteral("KIND"),
          ValueKind::oneOf({QStringLiteral("kill"), QStringLiteral("pair"), QStringLiteral("keep")}),
          QStringLiteral("kill, pair or keep.")},
         {QStringLiteral("N..."), ValueKind::integer(), QStringLiteral("The numbers, in ascending order."),
          false, true}},
        {},
        noCheck,
        relationCall};
    return form;
}

const SuperForm& history() {
    static const SuperForm form{
        QStringLiteral("history"),
        QStringLiteral("--same N [--last D]"),
        QStringLiteral("Kills the tickets that share N numbers with a draw of the last D (历史同N号滤)."),
        {},
        {OptionDeclaration::valued(
             QStringLiteral("same"), QStringLiteral("N"),
             QStringLiteral("Numbers in common: 3, 4 or 5 in the front tab, 1 or 2 in the back tab, 4, 5 "
                            "or 6 in the both-zones tab."),
             ValueKind::integer()),
         OptionDeclaration::valued(QStringLiteral("last"), QStringLiteral("D"),
                            QStringLiteral("The newest D draws are searched; every draw when absent."),
                            ValueKind::integer()),
         OptionDeclaration::valued(QStringLiteral("button"), QStringLiteral("B"), {},
                            ValueKind::oneOf({QStringLiteral("Option26"), QStringLiteral("Option28"),
                                              QStringLiteral("Option27")}))
             .replacedBy(QStringLiteral("--same N")),
         OptionDeclaration::valued(QStringLiteral("draws"), QStringLiteral("D"), {}, ValueKind::integer())
             .replacedBy(QStringLiteral("--last D"))},
        checkHistory,
        historyCall};
    return form;
}

const SuperForm& inclusion() {
    static const SuperForm form{
        QStringLiteral("inclusion"),
        QStringLiteral("kill|keep --numbers LIST --group K [--bankers LIST]"),
        QStringLiteral(
            "相克号包含 (kill) kills the tickets holding K or more of the numbers, 保留号包含 (keep) those "
            "holding fewer."),
        {{QStringLiteral("KIND"), ValueKind::oneOf({QStringLiteral("kill"), QStringLiteral("keep")}),
          QStringLiteral("kill or keep.")}},
        {OptionDeclaration::valued(QStringLiteral("numbers"), QStringLiteral("LIST"),
                            QStringLiteral("The numbers, 1 to 9 of them."), ValueKind::numbers())
             .asRequired(),
         OptionDeclaration::valued(QStringLiteral("group"), QStringLiteral("K"),
                            QStringLiteral("How many of them make a group."), ValueKind::integer())
             .asRequired(),
         OptionDeclaration::valued(QStringLiteral("bankers"), QStringLiteral("LIST"),
                            QStringLiteral("Numbers a ticket must hold to stay as it was (胆)."),
                            ValueKind::numbers())},
        checkInclusion,
        inclusionCall};
    return form;
}

const SuperForm& sameAsTemplate() {
    static const SuperForm form{
        QStringLiteral("same-as-template"),
        {},
        QStringLiteral("Kills the tickets that stand in the combination template (组合模版同号滤)."),
        {},
        {},
        noCheck,
        sameAsTemplateCall};
    return form;
}

}  // namespace super_forms

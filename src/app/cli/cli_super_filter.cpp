// filter relation|history|inclusion|same-as-template, moban list|add|replay|delete-last|clear,
// setting save|load|list|delete, range: the super filters, the filter templates, the saved
// settings and the range query, each call as the window reopened on the stored table runs it.
// Arguments answer the window's prompts in order; a prompt that would show an error ends the
// call with that message on standard error.
#include "app/cli/cli.h"
#include "app/cli/cli_tables.h"

#include "filter/candidate_store.h"
#include "filter/filter_workspace.h"
#include "filter/moban_recorder.h"
#include "filter/range_query.h"
#include "filter/saved_setting_store.h"
#include "filter/super_filter.h"

#include <QDateTime>

#include <optional>

namespace {

// Answers the input boxes from the arguments; every message box is answered with Cancel, so a
// wrong argument ends the action instead of asking again. The messages go to standard error.
class ArgsPrompter : public Prompter {
public:
    explicit ArgsPrompter(QStringList answers) : m_answers(std::move(answers)) {}
    void inform(const QString&, const QString& text, Icon) override { m_messages << text; }
    bool okCancel(const QString&, const QString& text, Icon) override {
        m_messages << text;
        return false;
    }
    bool yesNo(const QString&, const QString& text, Icon) override {
        m_messages << text;
        return false;
    }
    std::optional<QString> askTextOrCancel(const QString&, const QString&, const QString& proposal) override {
        if (m_answers.isEmpty()) return proposal;
        return m_answers.takeFirst();
    }
    bool login(const QString&) override { return false; }
    QString openFile(const QString&, const QString&, const QString&) override { return {}; }
    QString saveFile(const QString&, const QString&, const QString&) override { return {}; }

    int fail(CliContext& ctx, const QString& fallback) const {
        for (const QString& m : m_messages) ctx.err << m << '\n';
        return ctx.fail(m_messages.isEmpty() ? fallback : QStringLiteral("the action ended"));
    }

private:
    QStringList m_answers;
    QStringList m_messages;
};

std::optional<ZoneScope> scopeOption(CliContext& ctx, const QStringList& args) {
    bool found = false;
    const QString s = cliargs::option(args, QStringLiteral("--scope"), &found);
    if (!found || s == QLatin1String("front")) return ZoneScope::Front;
    if (s == QLatin1String("back")) return ZoneScope::Back;
    if (s == QLatin1String("both")) return ZoneScope::Both;
    ctx.fail(QStringLiteral("--scope: front, back or both"));
    return std::nullopt;
}

// The filter window: the workspace (opened on the stored table when `withTable`), its super
// filters and its templates. The zone tab and intQianHou follow --scope.
struct Window : cli_tables::OpenTable {
    std::unique_ptr<SuperFilter> super;
    std::unique_ptr<MobanRecorder> recorder;
    ZoneScope tab = ZoneScope::Front;
    SuperInputs in;
    ParamWindowState state = ParamWindowState::defaults();

    bool open(CliContext& ctx, const QStringList& args, bool withTable) {
        const auto scope = scopeOption(ctx, args);
        if (!scope || !OpenTable::open(ctx, args, withTable)) return false;
        tab = *scope;
        workspace->intQianHou = static_cast<int16_t>(tab);
        state.scope = tab;
        super = std::make_unique<SuperFilter>(*workspace, session->history(), session->bitnum(), session->fildb());
        recorder = std::make_unique<MobanRecorder>(*workspace, *super, session->fildb(), ParamContext::fromSession(*session));
        return true;
    }
};

// The button of `filter relation` and `moban add relation`.
std::optional<SuperButton> relationButton(const QString& kind) {
    if (kind == QLatin1String("kill")) return SuperButton::Option25_0;
    if (kind == QLatin1String("pair")) return SuperButton::Option25_1;
    if (kind == QLatin1String("keep")) return SuperButton::Option25_2;
    return std::nullopt;
}

std::optional<SuperButton> historyButton(const QString& name) {
    for (SuperButton b : {SuperButton::Option26, SuperButton::Option28, SuperButton::Option27})
        if (name.compare(super_filter::objectName(b), Qt::CaseInsensitive) == 0) return b;
    return std::nullopt;
}

// The positional numbers after the kind, up to the first option.
QStringList positional(const QStringList& args, qsizetype from) {
    QStringList out;
    for (qsizetype i = from; i < args.size() && !args[i].startsWith(QLatin1String("--")); ++i) out << args[i];
    return out;
}

// The answers of a super filter's prompts, and the button, from the arguments of a form
// `relation KIND N...`, `history --button B --draws N`, `inclusion KIND --numbers L --group K
// [--bankers L]`, `same-as-template`. `direct` is set for an inclusion without bankers: its
// prompt refuses a banker count of 0, so the input goes to the worker as a replay gives it.
struct SuperCall {
    SuperButton button = SuperButton::Option25_0;
    QStringList answers;
    std::optional<SuperInputs> direct;
};

std::optional<SuperCall> superCall(CliContext& ctx, const QString& form, const QStringList& args) {
    SuperCall c;
    if (form == QLatin1String("relation")) {
        const auto b = relationButton(args.value(0));
        const QStringList nums = positional(args, 1);
        if (!b || nums.isEmpty()) {
            ctx.fail(QStringLiteral("usage: relation kill|pair|keep N1 N2 ..."));
            return std::nullopt;
        }
        c.button = *b;
        c.answers << QString::number(nums.size()) << nums;
        return c;
    }
    if (form == QLatin1String("history")) {
        const auto b = historyButton(cliargs::option(args, QStringLiteral("--button")));
        bool found = false;
        const QString draws = cliargs::option(args, QStringLiteral("--draws"), &found);
        if (!b || !found) {
            ctx.fail(QStringLiteral("usage: history --button Option26|Option28|Option27 --draws N"));
            return std::nullopt;
        }
        c.button = *b;
        c.answers << draws;
        return c;
    }
    if (form == QLatin1String("inclusion")) {
        const QString kind = args.value(0);
        bool ok1 = false, ok2 = true, hasGroup = false;
        const QList<int> nums = cliargs::numbers(cliargs::option(args, QStringLiteral("--numbers")), &ok1);
        const QString group = cliargs::option(args, QStringLiteral("--group"), &hasGroup);
        bool hasBankers = false;
        const QString bankerText = cliargs::option(args, QStringLiteral("--bankers"), &hasBankers);
        QList<int> bankers;
        if (hasBankers) bankers = cliargs::numbers(bankerText, &ok2);
        if ((kind != QLatin1String("kill") && kind != QLatin1String("keep")) || !ok1 || nums.isEmpty() || !hasGroup || !ok2) {
            ctx.fail(QStringLiteral("usage: inclusion kill|keep --numbers LIST --group K [--bankers LIST]"));
            return std::nullopt;
        }
        c.button = kind == QLatin1String("kill") ? SuperButton::Option31 : SuperButton::Option30;
        c.answers << QString::number(nums.size()) << group;
        for (int n : nums) c.answers << QString::number(n);
        if (!bankers.isEmpty()) {
            c.answers << QString::number(bankers.size());
            for (int d : bankers) c.answers << QString::number(d);
            return c;
        }
        if (nums.size() > 9) {
            ctx.fail(QStringLiteral("请输入1~9之间的数字"));
            return std::nullopt;
        }
        SuperInputs in;
        in.sknum = QString::number(nums.size());
        bool okGroup = false;
        const int k = group.toInt(&okGroup);
        if (!okGroup || k < 1 || k > nums.size()) {
            ctx.fail(QStringLiteral("请输入1~%1之间的数字").arg(nums.size()));
            return std::nullopt;
        }
        in.skzu = static_cast<int16_t>(k);
        for (qsizetype i = 0; i < nums.size(); ++i) in.sk[static_cast<size_t>(i + 1)] = static_cast<int16_t>(nums[i]);
        c.direct = in;
        return c;
    }
    if (form == QLatin1String("same-as-template")) {
        c.button = SuperButton::Option43;
        return c;
    }
    ctx.fail(QStringLiteral("unknown filter %1").arg(form));
    return std::nullopt;
}

// Numbers of a direct inclusion call are checked as the prompts check them.
bool checkDirect(CliContext& ctx, const SuperInputs& in, int maxQian) {
    for (int i = 1; i <= super_filter::passes(in.sknum); ++i) {
        const int n = in.sk[static_cast<size_t>(i)];
        if (n < 1 || n > maxQian) return ctx.fail(QStringLiteral("请输入1~%1之间的数字").arg(maxQian)), false;
    }
    return true;
}

int runSuper(CliContext& ctx, const QString& form, const QStringList& args) {
    const auto call = superCall(ctx, form, args);
    if (!call) return 1;
    Window w;
    if (!w.open(ctx, args, true)) return 1;
    if (call->direct) {
        if (!checkDirect(ctx, *call->direct, w.session->bitnum())) return 1;
        w.in = *call->direct;
        w.super->runWorker(call->button, w.in, w.tab);
        return w.finish(ctx);
    }
    ArgsPrompter prompter(call->answers);
    if (!super_filter::enabled(call->button, w.tab, w.workspace->traits()))
        return ctx.fail(QStringLiteral("%1 is disabled in this tab").arg(super_filter::objectName(call->button)));
    const SuperFilter::Outcome o = w.super->click(call->button, FilterWorkspace::Mouse::Left, w.in, w.tab, prompter);
    if (!o.ran) return prompter.fail(ctx, QStringLiteral("the action ended"));
    return w.finish(ctx);
}

const CliSubcommandRegistrar relationSub(
    {QStringLiteral("filter"), QStringLiteral("relation"),
     QStringLiteral("  filter relation kill|pair|keep N1 N2 ... [--scope S] [--table T]   (Option25(0..2))\n"),
     [](CliContext& ctx, const QStringList& args) { return runSuper(ctx, QStringLiteral("relation"), args); }});
const CliSubcommandRegistrar historySub(
    {QStringLiteral("filter"), QStringLiteral("history"),
     QStringLiteral("  filter history --button Option26|Option28|Option27 --draws N [--scope front|back|both] [--table T]\n"),
     [](CliContext& ctx, const QStringList& args) { return runSuper(ctx, QStringLiteral("history"), args); }});
const CliSubcommandRegistrar inclusionSub(
    {QStringLiteral("filter"), QStringLiteral("inclusion"),
     QStringLiteral("  filter inclusion kill|keep --numbers LIST --group K [--bankers LIST] [--scope S] [--table T]\n"),
     [](CliContext& ctx, const QStringList& args) { return runSuper(ctx, QStringLiteral("inclusion"), args); }});
const CliSubcommandRegistrar templateSub(
    {QStringLiteral("filter"), QStringLiteral("same-as-template"),
     QStringLiteral("  filter same-as-template [--table T]   (Option43)\n"),
     [](CliContext& ctx, const QStringList& args) { return runSuper(ctx, QStringLiteral("same-as-template"), args); }});

// ---- the window's boxes from arguments ---------------------------------------------------------

using cli_tables::paramByName;

// --params NAME,... ticks Check1; --range NAME LO HI and --list NAME "V V" fill boxes (a list
// sets Option36); --or, --exclude, --tolerance N as the integrated filter reads them.
bool readSnapshot(CliContext& ctx, const QStringList& args, ParamWindowState& s) {
    bool found = false;
    const QString names = cliargs::option(args, QStringLiteral("--params"), &found);
    for (const QString& name : names.split(QLatin1Char(','), Qt::SkipEmptyParts)) {
        const auto id = paramByName(name);
        if (!id) return ctx.fail(QStringLiteral("unknown parameter %1").arg(name)), false;
        s.check1[static_cast<size_t>(param_catalogue::info(*id).check1)] = true;
    }
    for (qsizetype i = 0; i < args.size(); ++i) {
        const bool range = args[i] == QLatin1String("--range"), list = args[i] == QLatin1String("--list");
        if (!range && !list) continue;
        const auto id = paramByName(args.value(i + 1));
        const qsizetype last = i + (range ? 3 : 2);
        if (!id || last >= args.size()) return ctx.fail(QStringLiteral("--range NAME LO HI or --list NAME \"V V V\"")), false;
        if (range) {
            s.box(*id)[0] = args.value(i + 2);
            s.box(*id)[1] = args.value(i + 3);
        } else {
            if (*id == ParamId::Option66) s.txtZdqj = args.value(i + 2);
            else s.box(*id)[3] = args.value(i + 2);
            s.listMode = true;
        }
    }
    s.logicAnd = !cliargs::flag(args, QStringLiteral("--or"));
    s.keep = !cliargs::flag(args, QStringLiteral("--exclude"));
    const QString tolerance = cliargs::option(args, QStringLiteral("--tolerance"), &found);
    if (found) {
        s.check3 = true;
        s.txtRc0 = tolerance;
    }
    return true;
}

// ---- moban ----------------------------------------------------------------------------------

int mobanList(CliContext& ctx, const QStringList& args) {
    Window w;
    if (!w.open(ctx, args, false)) return 1;
    ctx.out << "Idx\tintCmdnb\tintQianHou\tsknum\tskzu";
    for (int i = 0; i < 10; ++i) ctx.out << "\tsk" << i;
    ctx.out << "\tLabel3\n";
    for (const QVariantMap& row : MobanStore(w.session->fildb()).rows()) {
        const auto col = [&](const QString& n) { return moban_snapshot::column(row, n).toString(); };
        SuperInputs shown;
        const int code = col(QStringLiteral("intCmdnb")).toInt();
        if (code != 0 && code != 1 && code != 2) moban_snapshot::applySuper(row, code, shown);
        bool known = false;
        const QString label = w.recorder->stepText(row, shown, w.tab, known);
        ctx.out << col(QStringLiteral("Idx")) << '\t' << col(QStringLiteral("intCmdnb")) << '\t' << col(QStringLiteral("intQianHou"))
                << '\t' << col(QStringLiteral("sknum")) << '\t' << col(QStringLiteral("skzu"));
        for (int i = 0; i < 10; ++i) ctx.out << '\t' << col(QStringLiteral("sk%1").arg(i));
        ctx.out << '\t' << (known ? label : QString()) << '\n';
    }
    return 0;
}

int mobanAdd(CliContext& ctx, const QStringList& args) {
    const QString form = args.value(0);
    const QStringList rest = args.mid(1);
    Window w;
    if (!w.open(ctx, rest, false)) return 1;
    const bool dismiss = cliargs::flag(rest, QStringLiteral("--dismiss"));
    RecordSource source = RecordSource::option29();
    if (form == QLatin1String("invert-all") || form == QLatin1String("invert-last")) {
        w.workspace->setIntCmdnb(form == QLatin1String("invert-all") ? 2 : 1);
        source = RecordSource::invert();
    } else if (form == QLatin1String("integrated")) {
        // Option29 records the code the window holds: 0 in a fresh window, or --code.
        bool found = false;
        const QString code = cliargs::option(rest, QStringLiteral("--code"), &found);
        if (found) w.workspace->setIntCmdnb(static_cast<int16_t>(code.toInt()));
        if (!readSnapshot(ctx, rest, w.state)) return 1;
    } else {
        const auto call = superCall(ctx, form, rest);
        if (!call) return 1;
        ArgsPrompter prompter(call->answers);
        if (call->direct) {
            w.in = *call->direct;
            w.workspace->setIntCmdnb(static_cast<int16_t>(super_filter::stepCode(call->button)));
        } else if (!w.super->click(call->button, FilterWorkspace::Mouse::Right, w.in, w.tab, prompter).popupMnuAdm) {
            return prompter.fail(ctx, QStringLiteral("the action ended"));
        }
        source = RecordSource::super(call->button);
    }
    const MobanRecorder::RecordOutcome r = w.recorder->popupClosed(!dismiss, source, w.state, w.in);
    ctx.out << MobanStore(w.session->fildb()).count() << '\n';
    return r.added || dismiss ? 0 : ctx.fail(QStringLiteral("the step could not be recorded"));
}

int mobanCommand(CliContext& ctx, const QStringList& args) {
    const QString sub = args.value(0);
    if (sub == QLatin1String("list")) return mobanList(ctx, args.mid(1));
    if (sub == QLatin1String("add")) return mobanAdd(ctx, args.mid(1));
    if (sub == QLatin1String("replay")) {
        Window w;
        if (!w.open(ctx, args, true)) return 1;
        w.recorder->replay(w.state, w.in, w.tab);
        return w.finish(ctx);
    }
    if (sub == QLatin1String("delete-last") || sub == QLatin1String("clear")) {
        Window w;
        if (!w.open(ctx, args, false)) return 1;
        if (sub == QLatin1String("clear")) w.recorder->clear();
        else w.recorder->deleteLast();
        ctx.out << MobanStore(w.session->fildb()).count() << '\n';
        return 0;
    }
    return ctx.fail(QStringLiteral("usage: moban list|add FORM ...|replay|delete-last|clear"));
}

const CliGroupRegistrar mobanGroup(
    {QStringLiteral("moban"),
     QStringLiteral("  moban list\n"
                    "  moban add relation kill|pair|keep N1 N2 ... | add history --button B --draws N | add inclusion "
                    "kill|keep --numbers LIST --group K [--bankers LIST] | add same-as-template | add invert-all | add "
                    "invert-last | add integrated [--params NAME,...] [--range NAME LO HI]... [--list NAME \"V V\"]... [--or] "
                    "[--exclude] [--tolerance N] [--code C]   [--scope S] [--dismiss]\n"
                    "  moban replay [--scope S] [--table T]\n"
                    "  moban delete-last|clear\n"),
     mobanCommand});

// ---- setting --------------------------------------------------------------------------------

void printSnapshot(CliContext& ctx, const ParamWindowState& s) {
    ctx.out << "param\tlow\thigh\tcount\tlist\tchecked\n";
    for (const ParamInfo& p : param_catalogue::all()) {
        const auto& b = s.box(p.id);
        const QString list = p.id == ParamId::Option66 ? s.txtZdqj : b[3];
        ctx.out << p.button << '\t' << b[0] << '\t' << b[1] << '\t' << b[2] << '\t' << list << '\t'
                << (s.check1[static_cast<size_t>(p.check1)] ? 1 : 0) << '\n';
    }
    ctx.out << "opt36\t" << (s.listMode ? 1 : 0) << "\nljh\t" << (s.logicAnd ? 1 : 0) << "\nbaoliu\t" << (s.keep ? 1 : 0)
            << "\nRCcount\t" << s.txtRc0 << "\nRCperct\t" << s.txtRc1 << '\n';
}

int settingCommand(CliContext& ctx, const QStringList& args) {
    const QString sub = args.value(0);
    Session* s = ctx.session();
    if (!s) return 1;
    SqliteDb& db = s->fildb();
    if (sub == QLatin1String("save")) {
        if (args.size() < 2 || args[1].startsWith(QLatin1String("--"))) return ctx.fail(QStringLiteral("usage: setting save NAME [options]"));
        ParamWindowState state = ParamWindowState::defaults();
        if (!readSnapshot(ctx, args.mid(2), state)) return 1;
        ArgsPrompter prompter({args[1]});
        if (!saved_setting::save(db, state, prompter, QDateTime::currentDateTime()))
            return ctx.fail(QStringLiteral("the setting could not be saved"));
        return 0;
    }
    saved_setting::Finder finder(db);
    if (!finder.ready()) return ctx.fail(QStringLiteral("no table Canshu in filnum.db"));
    if (sub == QLatin1String("list")) {
        ctx.out << "Name\n";
        for (const QString& n : finder.names()) ctx.out << n << '\n';
        return 0;
    }
    const QString name = args.value(1);
    if (!finder.names().contains(name)) return ctx.fail(QStringLiteral("no setting named %1").arg(name));
    if (sub == QLatin1String("delete")) return finder.remove(name) ? 0 : ctx.fail(db.lastError());
    if (sub == QLatin1String("rename")) {
        ArgsPrompter prompter({args.value(2)});
        return finder.rename(name, prompter, QDateTime::currentDateTime()) ? 0 : ctx.fail(db.lastError());
    }
    if (sub == QLatin1String("load")) {
        ParamWindowState state = ParamWindowState::defaults();
        if (!saved_setting::load(db, name, state)) return ctx.fail(QStringLiteral("no setting named %1").arg(name));
        printSnapshot(ctx, state);
        return 0;
    }
    return ctx.fail(QStringLiteral("usage: setting save NAME|load NAME|list|delete NAME|rename NAME NEW"));
}

const CliGroupRegistrar settingGroup({QStringLiteral("setting"),
                                      QStringLiteral("  setting save NAME [--params ...] [--range NAME LO HI]... [--list NAME \"V V\"]...\n"
                                                     "  setting load NAME | list | delete NAME | rename NAME NEW\n"),
                                      settingCommand});

// ---- range ----------------------------------------------------------------------------------

int rangeCommand(CliContext& ctx, const QStringList& args) {
    bool found = false;
    const QString column = cliargs::option(args, QStringLiteral("--column"), &found);
    std::optional<range_query::ComboRow> row;
    for (const range_query::ComboRow& r : range_query::rows())
        if (column.compare(QLatin1String(r.column), Qt::CaseInsensitive) == 0) row = r;
    if (!row) return ctx.fail(QStringLiteral("--column: one of the range query's columns (Znum, Onum, fig1, ...)"));
    bool hasSpan = false, ok = true;
    const int span = cliargs::option(args, QStringLiteral("--span"), &hasSpan).toInt(&ok);
    if (hasSpan && (!ok || span < 0)) return ctx.fail(QStringLiteral("--span: a number of draws, 0 for all"));
    ZoneScope scope = ZoneScope::Front;
    const QString table = cliargs::option(args, QStringLiteral("--table"), &found);
    if (found) {
        if (table == QLatin1String("fighou")) scope = ZoneScope::Back;
        else if (table == QLatin1String("figquan")) scope = ZoneScope::Both;
        else if (table != QLatin1String("fig")) return ctx.fail(QStringLiteral("--table: fig, fighou or figquan"));
    }
    bool minmax = cliargs::flag(args, QStringLiteral("--minmax")), average = false, top = false;
    const QString share = cliargs::option(args, QStringLiteral("--average"), &average);
    const QString count = cliargs::option(args, QStringLiteral("--top"), &top);
    if (int{minmax} + int{average} + int{top} != 1) return ctx.fail(QStringLiteral("give one of --minmax, --average SHARE, --top COUNT"));
    Session* s = ctx.session();
    if (!s) return 1;
    ParamWindowState state = ParamWindowState::defaults();
    state.box(row->param)[2] = count;
    const range_query::Mode mode = top ? range_query::Mode::Top : average ? range_query::Mode::Average : range_query::Mode::Plain;
    if (range_query::onCombo1(state, row->combo, hasSpan ? span : 0, mode, share, s->history(), scope).empty())
        return ctx.fail(QStringLiteral("no value: the table %1 has no column %2 or no draw").arg(range_query::tableFor(scope), column));
    const auto& box = state.box(row->param);
    if (top) ctx.out << box[3].trimmed() << '\n';
    else ctx.out << box[0] << '\t' << box[1] << '\n';
    return 0;
}

const CliGroupRegistrar rangeGroup({QStringLiteral("range"),
                                    QStringLiteral("  range --column COL [--span N] (--minmax | --average SHARE | --top COUNT) "
                                                   "[--table fig|fighou|figquan]\n"),
                                    rangeCommand});

}  // namespace

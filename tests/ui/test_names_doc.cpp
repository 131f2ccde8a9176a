// docs/names.md lists every given name of the program (menus, filter parameters, filter sources
// and the controls of every window) beside its English name and the file that holds it. This
// test builds the document from the mapping tables and from the windows themselves and fails
// when the committed file differs, or when a window has a named control the file lacks.
//
//     test_names_doc --write     rewrites docs/names.md
#include "analysis/ui/analysis_views.h"
#include "picking/saved_selections.h"
#include "picking/ui/frequency_scope_dialog.h"
#include "picking/ui/saved_selections_dialog.h"
#include "picking/ui/selection_template_window.h"
#include "analysis/ui/trend_menus.h"
#include "analysis/ui/trend_window.h"
#include "app/ui/main_menu.h"
#include "app/ui/main_window.h"
#include "app/ui/start_window.h"
#include "filter/filter_source.h"
#include "filter/param/param_catalogue.h"
#include "filter/ui/filter_window.h"
#include "app/ui/backtest_window.h"
#include "filter/ui/saved_settings_dialog.h"
#include "history/ui/download_source_dialog.h"
#include "prize/prize_session.h"
#include "prize/report_book.h"
#include "prize/ui/prize_rules_dialog.h"
#include "prize/ui/profit_loss_report_window.h"
#include "tools/ui/fortune_window.h"
#include "tools/ui/text_print_window.h"
#include "support/main_window_fixture.h"
#include "workspace/ui/login_dialog.h"

#include <QAbstractButton>
#include <QAction>
#include <QDirIterator>
#include <QFile>
#include <QGroupBox>
#include <QLabel>
#include <QMenuBar>
#include <QPushButton>
#include <QRegularExpression>
#include <QTest>

#include <algorithm>
#include <map>

namespace {

const QString kSourceDir = QStringLiteral(SHUANGQU_SOURCE_DIR);
const QString kDocPath = kSourceDir + QStringLiteral("/docs/names.md");
bool g_write = false;

struct Row {
    QString given;
    QString english;
    QString kind;
    QString caption;
    QString file;
};

QString cell(QString s) {
    s.replace(QLatin1Char('|'), QStringLiteral("\\|")).replace(QLatin1Char('\n'), QLatin1Char(' '));
    return s.isEmpty() ? QStringLiteral(" ") : s;
}

QString table(const QStringList& heads, const QList<QStringList>& rows) {
    QString out = QStringLiteral("| ") + heads.join(QStringLiteral(" | ")) + QStringLiteral(" |\n|");
    for (qsizetype i = 0; i < heads.size(); ++i) out += QStringLiteral("---|");
    out += QLatin1Char('\n');
    for (const QStringList& r : rows) {
        QStringList cells;
        for (const QString& c : r) cells << cell(c);
        out += QStringLiteral("| ") + cells.join(QStringLiteral(" | ")) + QStringLiteral(" |\n");
    }
    return out;
}

// A family of controls ("Command1(5)", "Check1(12)") under one name: "Command1(i)".
QString familyOf(const QString& name) {
    static const QRegularExpression index(QStringLiteral("\\(\\d+\\)$"));
    QString f = name;
    return f.replace(index, QStringLiteral("(i)"));
}

// What the sources say about given names, read once: the variable a literal name is set on,
// and the declarations whose trailing comment carries a given name.
class SourceIndex {
public:
    SourceIndex() {
        QDirIterator it(kSourceDir + QStringLiteral("/src"), {QStringLiteral("*.cpp"), QStringLiteral("*.h")},
                        QDir::Files, QDirIterator::Subdirectories);
        while (it.hasNext()) read(it.next());
    }
    // The English name and file of a given name (or of its family), if the sources pair them:
    // for a window with folders of its own, only what those folders say (another window's
    // control of the same given name is not this one).
    std::optional<std::pair<QString, QString>> find(const QString& given, const QStringList& folders) const {
        std::optional<std::pair<QString, QString>> any;
        for (const auto* index : {&m_setters, &m_declared}) {
            for (const QString& key : {given, familyOf(given)}) {
                const auto [from, to] = index->equal_range(key);
                for (auto i = from; i != to; ++i) {
                    for (const QString& folder : folders)
                        if (i->second.second.startsWith(folder)) return i->second;
                    if (!any && folders.isEmpty()) any = i->second;
                }
            }
        }
        return any;
    }

private:
    void read(const QString& path) {
        QFile f(path);
        if (!f.open(QIODevice::ReadOnly)) return;
        const QString text = QString::fromUtf8(f.readAll());
        const QString file = path.mid(kSourceDir.size() + 1);
        // x->setObjectName(QStringLiteral("Name")) and x->setObjectName(QStringLiteral("Name(%1)").arg(i))
        static const QRegularExpression setter(QStringLiteral(
            R"(([\w.\[\]>-]*?)(?:->|\.)?setObjectName\(QStringLiteral\("([A-Za-z][\w.]*)(\(%\d\))?"\))"));
        for (auto m = setter.globalMatch(text); m.hasNext();) {
            const auto match = m.next();
            const QString given =
                match.captured(2) + (match.captured(3).isEmpty() ? QString() : QStringLiteral("(i)"));
            m_setters.emplace(given, std::make_pair(englishOf(match.captured(1)), file));
        }
        // auto* printButton = button(QStringLiteral("CmdPrint"), ...)
        static const QRegularExpression made(
            QStringLiteral(R"re((\w+)\s*=\s*\w+\(QStringLiteral\("([A-Za-z][\w.]*)"\))re"));
        for (auto m = made.globalMatch(text); m.hasNext();) {
            const auto match = m.next();
            m_setters.emplace(match.captured(2), std::make_pair(match.captured(1), file));
        }
        // Table rows: {"Command44", "...", &MenuActions::deleteLastDraw} and {"Command3", x::kInvertLast,
        // ...}
        static const QRegularExpression row(
            QStringLiteral(R"re(\{\s*"([A-Za-z][\w.]*)"\s*,(?:[^{}]*?&\w+::(\w+)\s*\}|\s*\w+::k(\w+)))re"));
        for (auto m = row.globalMatch(text); m.hasNext();) {
            const auto match = m.next();
            QString english = match.captured(2);
            if (english.isEmpty()) english = match.captured(3).left(1).toLower() + match.captured(3).mid(1);
            m_declared.emplace(match.captured(1), std::make_pair(english, file));
        }
        // int16_t pickCount = 0;  // PickCount   /   const char* reset;  // Command45 / Command8
        static const QRegularExpression declared(QStringLiteral(
            R"((\w+)(?:\s*=[^;/]*|\{[^}]*\}|\[[^\]]*\])?;\s*//\s*([A-Za-z][\w.]*(?:\(\w+\))?)(?:\s*/\s*([A-Za-z][\w.]*(?:\(\w+\))?))?)"));
        for (auto m = declared.globalMatch(text); m.hasNext();) {
            const auto match = m.next();
            for (int g : {2, 3})
                if (!match.captured(g).isEmpty())
                    m_declared.emplace(familyOf(match.captured(g)), std::make_pair(match.captured(1), file));
        }
    }
    // "m_pauseButton" -> "pauseButton", "row.integratedBox" -> "integratedBox", "" -> the window.
    static QString englishOf(QString lhs) {
        lhs = lhs.section(QLatin1Char('.'), -1).section(QStringLiteral("->"), -1);
        if (lhs.startsWith(QLatin1String("m_"))) lhs = lhs.mid(2);
        return lhs.isEmpty() ? QStringLiteral("(itself)") : lhs;
    }

    std::multimap<QString, std::pair<QString, QString>> m_setters;
    std::multimap<QString, std::pair<QString, QString>> m_declared;
};

const SourceIndex& sources() {
    static const SourceIndex index;
    return index;
}

// The enum's member names in declaration order, read from its header.
QStringList enumMembers(const QString& header, const QString& enumName) {
    QFile f(kSourceDir + QLatin1Char('/') + header);
    if (!f.open(QIODevice::ReadOnly)) return {};
    const QString text = QString::fromUtf8(f.readAll());
    const qsizetype start = text.indexOf(QStringLiteral("enum class ") + enumName);
    const qsizetype open = text.indexOf(QLatin1Char('{'), start),
                    close = text.indexOf(QLatin1Char('}'), open);
    QStringList names;
    static const QRegularExpression member(QStringLiteral(R"(^\s*(\w+)\s*(?:=[^,]*)?,?)"),
                                           QRegularExpression::MultilineOption);
    for (auto m = member.globalMatch(text.mid(open + 1, close - open - 1)); m.hasNext();)
        names << m.next().captured(1);
    return names;
}

QString menuSection() {
    QMenuBar bar;
    const MainMenu menu(&bar);
    QList<QStringList> rows;
    for (const MainMenu::Name& n : menu.names())
        rows << QStringList{n.given, n.english, n.caption, QStringLiteral("src/app/ui/main_menu.cpp")};
    return QStringLiteral(
               "## Menus of the main window\n\nMembers of `MenuActions`; a family `name(i)` is a "
               "`MenuActions::Family` by index.\n\n") +
           table({QStringLiteral("Given"), QStringLiteral("English"), QStringLiteral("Caption"),
                  QStringLiteral("File")},
                 rows);
}

// The analysis windows' menus: one row per menu, item or family, with the windows that carry it.
QString trendMenuSection() {
    std::vector<std::pair<QString, QStringList>> rows;  // given -> caption, windows
    const std::pair<TrendMember, const char*> members[] = {{TrendMember::BothZones, "frmpic"},
                                                           {TrendMember::FrontZone, "frmpicQian"},
                                                           {TrendMember::BackZone, "frmpicHou"}};
    for (const auto& [member, window] : members) {
        QMenuBar bar;
        for (const trend_menus::Name& n : trend_menus::build(&bar, member)) {
            const QString given = familyOf(n.given);
            auto row = std::find_if(rows.begin(), rows.end(), [&](const auto& r) { return r.first == given; });
            if (row == rows.end()) row = rows.insert(rows.end(), {given, {n.caption, QString()}});
            if (!row->second[1].split(QStringLiteral(", "), Qt::SkipEmptyParts).contains(QLatin1String(window)))
                row->second[1] += (row->second[1].isEmpty() ? QString() : QStringLiteral(", ")) + QLatin1String(window);
        }
    }
    QList<QStringList> out;
    for (const auto& [given, r] : rows)
        out << QStringList{given, r[0], r[1], QStringLiteral("src/analysis/ui/trend_menus.cpp")};
    return QStringLiteral(
               "## Menus of the history analysis windows\n\nRows of the menu table of the trend windows; "
               "a family `name(i)` is indexed from 0, and its caption is that of index 0. Their windows "
               "are not built yet, so every item is disabled.\n\n") +
           table({QStringLiteral("Given"), QStringLiteral("Caption"), QStringLiteral("Windows"),
                  QStringLiteral("File")},
                 out);
}

QString paramSection() {
    const QStringList english =
        enumMembers(QStringLiteral("src/filter/param/param_catalogue.h"), QStringLiteral("ParamId"));
    QList<QStringList> rows;
    for (const ParamInfo& p : param_catalogue::all())
        rows << QStringList{QString::fromLatin1(p.button),
                            QStringLiteral("ParamId::") + english.value(static_cast<int>(p.id)),
                            p.caption,
                            QString::fromLatin1(p.boxes) + QStringLiteral("(i)"),
                            QStringLiteral("Check1(%1)").arg(p.integratedBox),
                            QString::fromLatin1(p.drawColumn),
                            QString::fromLatin1(p.snapshot)};
    return QStringLiteral(
               "## Filter parameters\n\nRows of the parameter catalogue "
               "(src/filter/param/param_catalogue.cpp): the button, its boxes, its entry of "
               "the integrated list, the draw column of the history and the settings' column "
               "prefix.\n\n") +
           table({QStringLiteral("Given"), QStringLiteral("English"), QStringLiteral("Caption"),
                  QStringLiteral("Boxes"), QStringLiteral("Integrated"), QStringLiteral("Draw column"),
                  QStringLiteral("Settings")},
                 rows);
}

QString sourceSection() {
    const QStringList english =
        enumMembers(QStringLiteral("src/filter/filter_source.h"), QStringLiteral("FilterSource"));
    QList<QStringList> rows;
    for (int i = 0; i < english.size(); ++i) {
        const FilterSourceTraits& t = filterSourceTraits(static_cast<FilterSource>(i));
        rows << QStringList{QString::fromLatin1(t.className), QStringLiteral("FilterSource::") + english[i],
                            schema::candidateTableName(t.table), t.exportFile};
    }
    return QStringLiteral(
               "## Filter windows by source\n\nThe traits table of src/filter/filter_source.cpp; "
               "one `FilterWindow` class serves them all.\n\n") +
           table({QStringLiteral("Given"), QStringLiteral("English"), QStringLiteral("Table"),
                  QStringLiteral("Export file")},
                 rows);
}

QString captionOf(const QObject* o) {
    if (const auto* b = qobject_cast<const QAbstractButton*>(o)) return b->text();
    if (const auto* l = qobject_cast<const QLabel*>(o)) return l->text().left(40);
    if (const auto* g = qobject_cast<const QGroupBox*>(o)) return g->title();
    if (const auto* w = qobject_cast<const QWidget*>(o))
        return w->isWindow() ? w->windowTitle() : w->toolTip();
    return {};
}

// The window an object belongs to: a filter window parented to the main window is its own.
const QWidget* ownerWindow(const QObject* o) {
    for (; o; o = o->parent())
        if (const auto* w = qobject_cast<const QWidget*>(o)) return w->window();
    return nullptr;
}

// The window and the objects that belong to it.
QList<const QObject*> objectsOf(const QWidget* window) {
    QList<const QObject*> objects{window};
    for (const QObject* o : window->findChildren<const QObject*>())
        if (ownerWindow(o) == window) objects << o;
    return objects;
}

// The parameter catalogue's controls: button and boxes of each parameter.
const std::map<QString, QString>& parameterControls() {
    static const std::map<QString, QString> controls = [] {
        const QStringList english =
            enumMembers(QStringLiteral("src/filter/param/param_catalogue.h"), QStringLiteral("ParamId"));
        std::map<QString, QString> m;
        for (const ParamInfo& p : param_catalogue::all()) {
            const QString id = QStringLiteral("ParamId::") + english.value(static_cast<int>(p.id));
            m.emplace(QString::fromLatin1(p.button), id + QStringLiteral(" button"));
            m.emplace(QString::fromLatin1(p.boxes) + QStringLiteral("(i)"), id + QStringLiteral(" boxes"));
        }
        return m;
    }();
    return controls;
}

// The named controls of a window: one row per name or family, English from the sources.
std::map<QString, Row> controlsOf(const QWidget* window, const QStringList& folders) {
    std::map<QString, Row> rows;
    for (const QObject* o : objectsOf(window)) {
        const QString name = o->objectName();
        if (name.isEmpty() || name.startsWith(QLatin1String("qt_")) || name.startsWith(QLatin1Char('_')))
            continue;
        if (qobject_cast<const QAction*>(o) || qobject_cast<const QMenu*>(o)) {
            // The menu sections list the menus of these two.
            if (qobject_cast<const MainWindow*>(window) || qobject_cast<const TrendWindow*>(window)) continue;
        }
        const QString key = familyOf(name);
        if (rows.count(key)) continue;
        Row r{key, {}, QString::fromLatin1(o->metaObject()->className()), captionOf(o), {}};
        const auto param = parameterControls().find(key);
        if (qobject_cast<const FilterWindow*>(window) && param != parameterControls().end())
            std::tie(r.english, r.file) =
                std::make_pair(param->second, QStringLiteral("src/filter/param/param_catalogue.cpp"));
        else if (const auto found = sources().find(name, folders))
            std::tie(r.english, r.file) = *found;
        if (o == window && r.english.isEmpty()) r.english = QStringLiteral("(itself)");
        rows.emplace(key, r);
    }
    return rows;
}

struct Windows {
    MainWindowFixture fixture;
    std::unique_ptr<SavedSelections> saved;  // what the saved selections' list shows
    std::vector<std::pair<QString, std::unique_ptr<QWidget>>> windows;  // heading, window
    // The views the trend windows' menus open, one of each given name; their trend window owns them.
    QList<std::pair<QString, const QWidget*>> views;

    Windows() {
        fixture.open();
        MainWindow* main = fixture.window.get();
        for (int n : {1, 2, 3, 4, 5, 6})
            main->findChild<QPushButton*>(QStringLiteral("Command1(%1)").arg(n))->click();
        for (int n : {1, 2}) main->findChild<QPushButton*>(QStringLiteral("Command2(%1)").arg(n))->click();
        emit main->menuActions().playModesMenu->aboutToShow();
        main->menuActions().multiExpansion->trigger();
        Session& s = *fixture.session;
        windows.emplace_back(QStringLiteral("StartWindow"),
                             std::make_unique<StartWindow>(fixture.list, fixture.prompter));
        windows.emplace_back(QStringLiteral("LoginDialog"),
                             std::make_unique<LoginDialog>(QStringLiteral("x"), fixture.prompter));
        windows.emplace_back(QStringLiteral("DownloadSourceDialog"),
                             std::make_unique<DownloadSourceDialog>());
        windows.emplace_back(QStringLiteral("SavedSettingsDialog"),
                             std::make_unique<SavedSettingsDialog>(s.filterDb(), fixture.prompter));
        windows.emplace_back(
            QStringLiteral("PrizeRulesDialog"),
            std::make_unique<PrizeRulesDialog>(prize_session::settingsOf(s), fixture.prompter));
        windows.emplace_back(
            QStringLiteral("ProfitLossReportWindow"),
            std::make_unique<ProfitLossReportWindow>(
                ReportBook(prize_session::workspaceFolder(s), s.settings(), s.workspaceName()),
                fixture.prompter));
        windows.emplace_back(QStringLiteral("BacktestWindow"),
                             std::make_unique<BacktestWindow>(s, fixture.prompter));
        windows.emplace_back(QStringLiteral("FortuneWindow"),
                             std::make_unique<FortuneWindow>(s.settings(), fixture.prompter, QDate(2026, 1, 1)));
        windows.emplace_back(QStringLiteral("TextPrintWindow"), std::make_unique<TextPrintWindow>(QString()));
        saved = std::make_unique<SavedSelections>(s.savedPicksDb());
        windows.emplace_back(QStringLiteral("FrequencyScopeDialog"), std::make_unique<FrequencyScopeDialog>(s.history()));
        windows.emplace_back(QStringLiteral("SavedSelectionsDialog"),
                             std::make_unique<SavedSelectionsDialog>(*saved, fixture.prompter));
        windows.emplace_back(QStringLiteral("SelectionTemplateWindow"),
                             SelectionTemplateWindow::open(main->picking(), nullptr, [] {}));
        main->openTrend(TrendMember::BothZones);
        openViews(main);
    }

    void openViews(MainWindow* main) {
        QList<AnalysisView> all = analysis_views::chartViews();
        all += analysis_views::fitAnd3dViews();
        all += analysis_views::statisticsViews();
        QStringList seen;
        for (TrendMember member : {TrendMember::FrontZone, TrendMember::BackZone, TrendMember::BothZones}) {
            TrendWindow* from = main->openTrend(member);
            for (const AnalysisView& view : all) {
                if (!from->findChild<QAction*>(view.given)) continue;
                QWidget* w = view.open(AnalysisContext{*fixture.session, fixture.prompter, member, from});
                if (seen.contains(w->objectName())) {
                    delete w;
                    continue;
                }
                seen << w->objectName();
                views.append({QString::fromLatin1(w->metaObject()->className()), w});
            }
        }
    }
    // Every window to document: those above, the main window and the filter window it opened.
    QList<std::pair<QString, const QWidget*>> all() const {
        QList<std::pair<QString, const QWidget*>> out{{QStringLiteral("MainWindow"), fixture.window.get()}};
        if (!fixture.window->filterWindows().isEmpty())
            out.append({QStringLiteral("FilterWindow"), fixture.window->filterWindows().last().data()});
        for (const auto& [heading, w] : windows) out.append({heading, w.get()});
        // The analysis window of both zones, which the main window owns.
        if (!fixture.window->trendWindows().isEmpty())
            out.append({QStringLiteral("TrendWindow"), fixture.window->trendWindows().first()});
        out += views;
        return out;
    }
};

// The folders (or file stems) of a window's own code, where its names are looked up.
QStringList foldersOf(const QString& heading) {
    static const std::map<QString, QStringList> folders{
        {QStringLiteral("MainWindow"),
         {QStringLiteral("src/app/ui"), QStringLiteral("src/picking/ui"), QStringLiteral("src/history/ui")}},
        {QStringLiteral("FilterWindow"), {QStringLiteral("src/filter/ui/filter_window")}},
        {QStringLiteral("StartWindow"), {QStringLiteral("src/app/ui")}},
        {QStringLiteral("LoginDialog"), {QStringLiteral("src/workspace/ui")}},
        {QStringLiteral("DownloadSourceDialog"), {QStringLiteral("src/history/ui")}},
        {QStringLiteral("SavedSettingsDialog"), {QStringLiteral("src/filter/ui/saved_settings_dialog")}},
        {QStringLiteral("PrizeRulesDialog"), {QStringLiteral("src/prize/ui")}},
        {QStringLiteral("ProfitLossReportWindow"), {QStringLiteral("src/prize/ui")}},
        {QStringLiteral("BacktestWindow"), {QStringLiteral("src/app/ui/backtest_window")}},
        {QStringLiteral("FortuneWindow"),
         {QStringLiteral("src/tools/ui/fortune_window"), QStringLiteral("src/tools/ui/fortune_strip")}},
        {QStringLiteral("TextPrintWindow"), {QStringLiteral("src/tools/ui/text_print_window")}},
        {QStringLiteral("FrequencyScopeDialog"), {QStringLiteral("src/picking/ui/frequency_scope_dialog")}},
        {QStringLiteral("SavedSelectionsDialog"), {QStringLiteral("src/picking/ui/saved_selections_dialog")}},
        {QStringLiteral("SelectionTemplateWindow"), {QStringLiteral("src/picking/ui/selection_template_window")}},
        {QStringLiteral("TrendWindow"), {QStringLiteral("src/analysis/ui/trend_")}}};
    const auto i = folders.find(heading);
    if (i != folders.end()) return i->second;
    // The views of the trend windows' menus are headed by their class: its file in the analysis
    // windows' folder ("ChartPanelWindow" in src/analysis/ui/chart_panel_window).
    QString stem;
    for (const QChar c : heading) {
        if (c.isUpper() && !stem.isEmpty()) stem += QLatin1Char('_');
        stem += c.toLower();
    }
    return {QStringLiteral("src/analysis/ui/") + stem};
}

QString windowSection(const QString& heading, const QWidget* window) {
    QList<QStringList> rows;
    for (const auto& [key, r] : controlsOf(window, foldersOf(heading)))
        rows << QStringList{r.given, r.english.isEmpty() ? QStringLiteral("—") : r.english, r.kind, r.caption,
                            r.file};
    return QStringLiteral("### %1 (%2)\n\n").arg(heading, window->objectName()) +
           table({QStringLiteral("Given"), QStringLiteral("English"), QStringLiteral("Kind"),
                  QStringLiteral("Caption"), QStringLiteral("File")},
                 rows);
}

QString document(const Windows& w) {
    QString doc = QStringLiteral(
        "# Given names\n\n"
        "The program's given names and the English names the code uses for them. Given names "
        "appear in the code only as objectName strings, as table and column names in SQL text, and "
        "in the mapping tables listed here. Generated by `test_names_doc --write` (tests/ui); the "
        "test fails when this file and the code disagree.\n\n");
    doc += menuSection() + QLatin1Char('\n') + trendMenuSection() + QLatin1Char('\n') + paramSection() + QLatin1Char('\n') + sourceSection() +
           QStringLiteral(
               "\n## Windows and their controls\n\nA family `name(i)` is one row. English is the "
               "variable or field that holds the control, where the code names one.\n\n");
    for (const auto& [heading, window] : w.all()) doc += windowSection(heading, window) + QLatin1Char('\n');
    return doc;
}

}  // namespace

class NamesDocTest : public QObject {
    Q_OBJECT
private slots:
    void documentMatchesTheCode();
    void everyNamedControlIsListed();
};

void NamesDocTest::documentMatchesTheCode() {
    Windows w;
    const QString doc = document(w);
    QFile f(kDocPath);
    if (g_write) {
        QVERIFY(f.open(QIODevice::WriteOnly | QIODevice::Truncate));
        f.write(doc.toUtf8());
        return;
    }
    QVERIFY2(f.open(QIODevice::ReadOnly), "docs/names.md is missing: run test_names_doc --write");
    const QStringList have = QString::fromUtf8(f.readAll()).split(QLatin1Char('\n'));
    const QStringList want = doc.split(QLatin1Char('\n'));
    for (qsizetype i = 0; i < std::max(have.size(), want.size()); ++i)
        QVERIFY2(have.value(i) == want.value(i),
                 qPrintable(QStringLiteral("docs/names.md line %1 is\n  %2\nbut the code says\n  %3\n"
                                           "(run test_names_doc --write)")
                                .arg(i + 1)
                                .arg(have.value(i), want.value(i))));
}

// Independent of the generator: every objectName a window carries is somewhere in the file.
void NamesDocTest::everyNamedControlIsListed() {
    QFile f(kDocPath);
    QVERIFY(f.open(QIODevice::ReadOnly));
    const QString doc = QString::fromUtf8(f.readAll());
    Windows w;
    QStringList missing;
    for (const auto& [heading, window] : w.all()) {
        for (const QObject* o : objectsOf(window)) {
            const QString name = o->objectName();
            if (name.isEmpty() || name.startsWith(QLatin1String("qt_")) || name.startsWith(QLatin1Char('_')))
                continue;
            static const QRegularExpression trailingIndex(QStringLiteral("\\d+$"));
            const QStringList forms{name, familyOf(name),
                                    QString(name).replace(trailingIndex, QStringLiteral("<i>"))};
            if (std::none_of(forms.begin(), forms.end(), [&](const QString& f) {
                    return doc.contains(QStringLiteral("| %1 |").arg(cell(f)));
                }))
                missing << heading + QLatin1Char(' ') + name;
        }
    }
    QVERIFY2(missing.isEmpty(), qPrintable(missing.join(QLatin1Char('\n'))));
}

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    QStringList args = app.arguments();
    g_write = args.removeAll(QStringLiteral("--write")) > 0;
    NamesDocTest test;
    QTEST_SET_MAIN_SOURCE_PATH
    return QTest::qExec(&test, args);
}

#include "test_names_doc.moc"

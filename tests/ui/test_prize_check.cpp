// GAganDj and GAganfDj driven through their named controls, after a real filter run against
// the newest draw of a small fixture history.
#include "filter/param/param_filter.h"
#include "generation/expansion.h"
#include "prize/prize_session.h"
#include "prize/ui/prize_check_window.h"
#include "prize/ui/prize_windows.h"
#include "prize_window_fixture.h"
#include "support/ticket_reference.h"
#include "support/window_shot.h"

#include <QAbstractItemModelTester>
#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QTableView>
#include <QTest>
#include <QTimer>

#include <algorithm>
#include <array>

using Kind = schema::CandidateKind;

namespace {
using ticket_reference::Ticket;

// tests/fixtures/dlt_history_small.txt: five draws, the newest 2025105 07 21 28 31 34 + 02 08.
const QString kHistory = QStringLiteral("dlt_history_small.txt");
constexpr int kNewestIssue = 2025105;
const std::vector<int> kDrawFront{7, 21, 28, 31, 34};
const std::vector<int> kDrawBack{2, 8};

// Picks around the newest draw and a few more, expanded: 56 front combinations, and six back
// pairs of which 10 11 hits nothing.
std::unique_ptr<CandidateTable> expandAround(const DrawNumbers& d,
                                             ExpansionKind kind = ExpansionKind::Picks) {
    ExpansionInput in;
    in.kind = kind;
    for (int i = 1; i <= 5; ++i) in.front.push_back(static_cast<int16_t>(d[static_cast<size_t>(i)]));
    for (int n : {3, 9, 17}) in.front.push_back(static_cast<int16_t>(n));
    if (kind == ExpansionKind::Picks)
        for (int n : {d[6], d[7], 10, 11}) in.back.push_back(static_cast<int16_t>(n));
    std::sort(in.front.begin(), in.front.end());
    std::sort(in.back.begin(), in.back.end());
    return expand(in, nullptr, uint64_t{1} << 30).table;
}

std::unique_ptr<PrizeCheckWindow> openWindow(PrizeWorkspace& w, Kind kind) {
    prize_session::Opened o = prize_session::open(*w.session, kind);
    return std::make_unique<PrizeCheckWindow>(std::move(o.view), prize_session::workspaceFolder(*w.session),
                                              w.prompter);
}

template <typename T>
T* child(QWidget* w, const char* name) {
    return w->findChild<T*>(QString::fromLatin1(name));
}

QColor textColour(QLabel* l) { return l->palette().color(QPalette::WindowText); }

// The level of a ticket against the newest draw under the published prize table; 0 for none.
int levelOf(const Ticket& t) {
    int front = 0, back = 0;
    for (size_t k = 0; k < 5; ++k) front += std::count(kDrawFront.begin(), kDrawFront.end(), t[k]) > 0;
    for (size_t k = 5; k < 7; ++k) back += std::count(kDrawBack.begin(), kDrawBack.end(), t[k]) > 0;
    struct Row { int front, back, level; };
    static const Row kTable[] = {{5, 2, 1}, {5, 1, 2}, {5, 0, 3}, {4, 2, 4}, {4, 1, 5}, {3, 2, 6}, {4, 0, 6},
                                 {3, 1, 7}, {2, 2, 7}, {3, 0, 8}, {1, 2, 8}, {2, 1, 8}};
    for (const Row& r : kTable)
        if (r.front == front && r.back == back) return r.level;
    return 0;
}
constexpr int kMoney[9] = {0, 5000000, 50000, 5000, 3000, 500, 200, 10, 5};
}  // namespace

class PrizeCheckTest : public QObject {
    Q_OBJECT
private slots:
    void realFilterRunAgainstTheNewestRealDraw();
    void sortingAndPagingThroughTheControls();
    void addToReportWritesAndClosesBackToTheMainWindow();
    void anEmptyKeptSetShowsARedZero();
    void zuhefChecksTheFrontZoneOnly();
};

void PrizeCheckTest::realFilterRunAgainstTheNewestRealDraw() {
    PrizeWorkspace w;
    QCOMPARE(w.importHistory(kHistory), 5);
    const DrawNumbers newest = w.session->history().numbers.back();
    QCOMPARE(newest[0], kNewestIssue);
    auto table = expandAround(newest);
    QVERIFY(table);
    QCOMPARE(table->rowCount(), uint64_t{56 * 6});
    // 各位数和, keep 60 to 120: the winning ticket sums to 121 and is thrown out.
    ParamWindowState state = ParamWindowState::defaults();
    state.box(ParamId::NumberSum)[0] = QStringLiteral("60");
    state.box(ParamId::NumberSum)[1] = QStringLiteral("120");
    const param_filter::SingleResult run =
        param_filter::runSingle(*table, ParamId::NumberSum, state, ParamContext::fromSession(*w.session));
    QVERIFY(run.ran);

    // What the check must find, computed here: each ticket's level, kept or thrown by its sum.
    const std::vector<Ticket> tickets = ticket_reference::expand({3, 7, 9, 17, 21, 28, 31, 34}, {2, 8, 10, 11});
    std::array<int, 9> keptByLevel{}, thrownByLevel{};
    int64_t income = 0;
    int keptCount = 0;
    for (const Ticket& t : tickets) {
        const bool kept = ticket_reference::frontSum(t) >= 60 && ticket_reference::frontSum(t) <= 120;
        const int level = levelOf(t);
        ++(kept ? keptByLevel : thrownByLevel)[static_cast<size_t>(level)];
        if (kept) {
            ++keptCount;
            income += kMoney[level];
        }
    }
    QCOMPARE(run.killed, static_cast<uint64_t>(336 - keptCount));
    // Hand-checked: of the five front numbers drawn 5, 4, 3 or 2 are picked in 1, 15, 30 and 10
    // front combinations; of the back pairs one holds both drawn numbers, four one of them.
    const std::array<int, 9> allLevels{10, 1, 4, 1, 15, 60, 30 + 15, 120 + 10, 30 + 40};
    for (size_t l = 0; l < 9; ++l) QCOMPARE(keptByLevel[l] + thrownByLevel[l], allLevels[l]);
    QCOMPARE(thrownByLevel[1], 1);
    QVERIFY(w.store(*table));
    QVERIFY(prizeCheckEnabled(*w.session, Kind::Combinations));
    QVERIFY(!prizeCheckEnabled(*w.session, Kind::Wheel));

    auto win = openWindow(w, Kind::Combinations);
    win->resize(1280, 760);
    win->show();
    QVERIFY(QTest::qWaitForWindowExposed(win.get()));
    QCOMPARE(win->objectName(), QStringLiteral("GAganDj"));
    QVERIFY(win->windowTitle().startsWith(QStringLiteral("排列组合中奖查询（最后一次复选/胆拖组合结果")));
    auto* kept = child<QTableView>(win.get(), "MSFlexGrid1");
    auto* thrown = child<QTableView>(win.get(), "MSFlexGrid3");
    auto* summary = child<QTableView>(win.get(), "MSFlexGrid2");
    QAbstractItemModelTester t1(kept->model(), QAbstractItemModelTester::FailureReportingMode::QtTest);
    QAbstractItemModelTester t3(thrown->model(), QAbstractItemModelTester::FailureReportingMode::QtTest);
    QAbstractItemModelTester t2(summary->model(), QAbstractItemModelTester::FailureReportingMode::QtTest);

    QCOMPARE(headerTexts(kept->model()), (QStringList{"号码索引", "前1", "前2", "前3", "前4", "前5", "后1",
                                                      "后2", "中前", "中后", "奖级", "奖金"}));
    QCOMPARE(headerTexts(thrown->model()).last(), QStringLiteral("过滤缘故"));
    const uint64_t thrownCount = table->deadCount();
    QCOMPARE(kept->model()->rowCount() + thrown->model()->rowCount(), 336);
    QCOMPARE(static_cast<uint64_t>(kept->model()->rowCount()), table->liveCount());
    QCOMPARE(child<QLabel>(win.get(), "Label2")->text(),
             QStringLiteral("投注组合情况排列总表(合计：%1注)").arg(thrownCount));
    QCOMPARE(columnTexts(summary->model(), 0, 9),
             (QStringList{"奖级", "1等奖", "2等奖", "3等奖", "4等奖", "5等奖", "6等奖", "7等奖", "8等奖"}));
    QCOMPARE(summary->model()->index(14, 0).data().toString(), QStringLiteral("被滤"));
    // Rows 1..8 count the kept tickets of each level, rows 15..22 the thrown ones.
    for (int l = 1; l <= 8; ++l) {
        QCOMPARE(summary->model()->index(l, 1).data().toString(), QString::number(keptByLevel[static_cast<size_t>(l)]));
        QCOMPARE(summary->model()->index(14 + l, 1).data().toString(),
                 QString::number(thrownByLevel[static_cast<size_t>(l)]));
    }
    // The 5+2 ticket is among the thrown and listed with its reason.
    const QStringList levels = columnTexts(thrown->model(), 10);
    const int first = static_cast<int>(levels.indexOf(QStringLiteral("1等奖")));
    QVERIFY(first >= 0);
    QCOMPARE(thrown->model()->index(first, 11).data().toInt(), 5000000);
    QVERIFY(thrown->model()->index(first, 12).data().toString().startsWith(QStringLiteral("各位数和")));
    // A kept ticket with no hits shows empty level and money cells.
    const QStringList keptLevels = columnTexts(kept->model(), 10);
    const int none = static_cast<int>(keptLevels.indexOf(QString()));
    QVERIFY(none >= 0);
    QVERIFY(!kept->model()->index(none, 11).data().isValid());

    QCOMPARE(kept->model()->rowCount(), keptCount);
    QCOMPARE(child<QLabel>(win.get(), "LabelRequired")->text(), QStringLiteral("%1元").arg(keptCount * 2));
    QCOMPARE(child<QLabel>(win.get(), "LabelIncome")->text(), QStringLiteral("%1元").arg(income));
    QCOMPARE(child<QLabel>(win.get(), "LabelResult")->text(), QStringLiteral("%1元").arg(income - keptCount * 2));
    QCOMPARE(textColour(child<QLabel>(win.get(), "LabelResult")),
             income > keptCount * 2 ? QColor(0, 255, 0) : QColor(255, 0, 0));
    // The check left the flags and reasons of the stored table alone.
    auto reread = candidate_store::load(w.session->filterDb(), Kind::Combinations).table;
    QCOMPARE(reread->deadCount(), thrownCount);
    saveShot(win.get(), QStringLiteral("prize_check"));
}

void PrizeCheckTest::sortingAndPagingThroughTheControls() {
    PrizeWorkspace w;
    QCOMPARE(w.importHistory(kHistory), 5);
    auto table = expandAround(w.session->history().numbers.back());
    for (uint64_t r = 0; r < table->rowCount(); r += 4) table->filteredOut().set(r);
    QVERIFY(w.store(*table));
    auto win = openWindow(w, Kind::Combinations);
    win->show();
    auto* kept = child<QTableView>(win.get(), "MSFlexGrid1");
    auto* thrown = child<QTableView>(win.get(), "MSFlexGrid3");
    QAbstractItemModelTester t1(kept->model(), QAbstractItemModelTester::FailureReportingMode::QtTest);
    QAbstractItemModelTester t3(thrown->model(), QAbstractItemModelTester::FailureReportingMode::QtTest);
    QCOMPARE(child<QPushButton>(win.get(), "Command1")->text(), QStringLiteral("中奖排序(&A)"));
    QTest::mouseClick(child<QPushButton>(win.get(), "Command1"), Qt::LeftButton);
    const QStringList front = columnTexts(kept->model(), 8);
    const QStringList back = columnTexts(kept->model(), 9);
    for (int r = 1; r < front.size(); ++r)
        QVERIFY(front[r - 1].toInt() > front[r].toInt() ||
                (front[r - 1] == front[r] && back[r - 1].toInt() >= back[r].toInt()));
    QCOMPARE(headerTexts(thrown->model()).mid(6, 4), (QStringList{"红6", "蓝球", "中红", "中蓝"}));
    QCOMPARE(headerTexts(kept->model()).mid(6, 2), (QStringList{"后1", "后2"}));

    // Page 2 of the kept list spans idx 10001..30000: nothing in a table of 336.
    child<QLineEdit>(win.get(), "Text1")->setText(QStringLiteral("2"));
    QTest::mouseClick(child<QPushButton>(win.get(), "Command111"), Qt::LeftButton);
    QCOMPARE(kept->model()->rowCount(), 0);
    child<QLineEdit>(win.get(), "Text1")->setText(QStringLiteral("1"));
    QTest::mouseClick(child<QPushButton>(win.get(), "Command111"), Qt::LeftButton);
    QCOMPARE(kept->model()->rowCount(), 336 - 84);
    QCOMPARE(kept->model()->index(0, 0).data().toInt(), 2);
    child<QLineEdit>(win.get(), "Text2")->setText(QStringLiteral("1"));
    QTest::mouseClick(child<QPushButton>(win.get(), "Command2"), Qt::LeftButton);
    QCOMPARE(thrown->model()->rowCount(), 84);
    QCOMPARE(&win->view().lastOpened(), &win->view().thrown());
}

void PrizeCheckTest::addToReportWritesAndClosesBackToTheMainWindow() {
    PrizeWorkspace w;
    QCOMPARE(w.importHistory(kHistory), 5);
    QVERIFY(w.store(*expandAround(w.session->history().numbers.back())));
    bool backToMain = false;
    QString written;
    // The check is modal: the button is pressed once it shows.
    QTimer poll;
    poll.setInterval(20);
    QObject::connect(&poll, &QTimer::timeout, [&] {
        auto* win = qobject_cast<PrizeCheckWindow*>(QApplication::activeModalWidget());
        if (!win) return;
        poll.stop();
        win->setClock([] { return QDateTime(QDate(2026, 11, 25), QTime(21, 5, 3)); });
        auto* quit = child<QPushButton>(win, "cmdQut");
        QCOMPARE(quit->text(), QStringLiteral("添加到盈亏报告并返回(&E)"));
        QTest::mouseClick(quit, Qt::LeftButton);
        written = win->writtenReport();
    });
    poll.start();
    openPrizeCheck(*w.session, w.prompter, Kind::Combinations, nullptr, [&] { backToMain = true; });
    QVERIFY(backToMain);
    QCOMPARE(
        written,
        QDir(w.session->paths().folder()).filePath(QStringLiteral("duijiang/26-11-25日21.5.3秒兑奖.txt")));
    QFile f(written);
    QVERIFY(f.open(QIODevice::ReadOnly));
    const QStringList lines = QString::fromUtf8(f.readAll()).split(QLatin1Char('\n'));
    QCOMPARE(lines[3], QStringLiteral("开奖期数:2025105"));
    QCOMPARE(lines[4], QStringLiteral("开奖结果7 21 28 31 34 2  +  8"));
    QVERIFY(lines.contains(QStringLiteral("购买336注")));
    QVERIFY(lines.contains(QStringLiteral("中出1等奖1注")));
    // 336 tickets, two a line.
    QCOMPARE(lines.size() - 1 - (lines.indexOf(QStringLiteral("个人购买情况如下:")) + 1), 168);
}

void PrizeCheckTest::anEmptyKeptSetShowsARedZero() {
    PrizeWorkspace w;
    QCOMPARE(w.importHistory(kHistory), 5);
    auto table = expandAround(w.session->history().numbers.back());
    table->filteredOut().fill(true);
    QVERIFY(w.store(*table));
    auto win = openWindow(w, Kind::Combinations);
    win->show();
    for (const char* name : {"LabelRequired", "LabelIncome", "LabelResult"})
        QCOMPARE(child<QLabel>(win.get(), name)->text(), QStringLiteral("0元"));
    QCOMPARE(textColour(child<QLabel>(win.get(), "LabelResult")), QColor(255, 0, 0));
    QCOMPARE(child<QTableView>(win.get(), "MSFlexGrid1")->model()->rowCount(), 0);

    // A table that was never made opens empty as well.
    auto none = openWindow(w, Kind::Template);
    QCOMPARE(child<QLabel>(none.get(), "LabelResult")->text(), QStringLiteral("0元"));
    QCOMPARE(child<QLabel>(none.get(), "Label2")->text(), QStringLiteral("投注组合情况排列总表(合计：0注)"));
}

void PrizeCheckTest::zuhefChecksTheFrontZoneOnly() {
    PrizeWorkspace w;
    QCOMPARE(w.importHistory(kHistory), 5);
    // Seventeen front picks, the draw's five among them: 12,376 six-number rows.
    ExpansionInput in;
    in.kind = ExpansionKind::SixPicks;
    for (int n : {1, 2, 3, 5, 7, 9, 12, 14, 17, 20, 21, 25, 27, 28, 31, 34, 35})
        in.front.push_back(static_cast<int16_t>(n));
    auto table = expand(in, nullptr, uint64_t{1} << 30).table;
    QVERIFY(table);
    QCOMPARE(table->kind(), Kind::SixNumbers);
    QCOMPARE(table->rowCount(), uint64_t{12376});
    QVERIFY(w.store(*table));
    QVERIFY(prizeCheckEnabled(*w.session, Kind::SixNumbers));
    auto win = openWindow(w, Kind::SixNumbers);
    QCOMPARE(win->objectName(), QStringLiteral("GAganfDj"));
    QVERIFY(win->windowTitle().contains(QStringLiteral("胆拖复6结果")));
    QVERIFY(!child<QTableView>(win.get(), "MSFlexGrid3"));
    QVERIFY(!child<QTableView>(win.get(), "MSFlexGrid2"));
    auto* kept = child<QTableView>(win.get(), "MSFlexGrid1");
    QCOMPARE(headerTexts(kept->model()),
             (QStringList{"号码索引", "1位", "2位", "3位", "4位", "5位", "第六位", "中基号"}));
    // The grid has visited its first batch, and that is what the required sum prices.
    QCOMPARE(kept->model()->rowCount(), 10000);
    QCOMPARE(child<QLabel>(win.get(), "LabelRequired")->text(), QStringLiteral("120000元"));
    QVERIFY(kept->model()->canFetchMore({}));
    QAbstractItemModelTester t(kept->model(), QAbstractItemModelTester::FailureReportingMode::QtTest);
    // Scrolling down fetches the rest.
    win->show();
    QVERIFY(QTest::qWaitForWindowExposed(win.get()));
    kept->scrollToBottom();
    QTRY_COMPARE(kept->model()->rowCount(), 12376);
    QVERIFY(!kept->model()->canFetchMore({}));
    QTest::mouseClick(child<QPushButton>(win.get(), "Command1"), Qt::LeftButton);
    QCOMPARE(kept->model()->index(0, 7).data().toInt(), 5);
    // True pages of ten thousand.
    child<QLineEdit>(win.get(), "Text1")->setText(QStringLiteral("2"));
    QTest::mouseClick(child<QPushButton>(win.get(), "Command111"), Qt::LeftButton);
    QCOMPARE(kept->model()->rowCount(), 2376);
    QCOMPARE(kept->model()->index(0, 0).data().toInt(), 10001);
    auto* quit = child<QPushButton>(win.get(), "cmdQut");
    QCOMPARE(quit->text(), QStringLiteral("返回(&E)"));
    QSignalSpy back(win.get(), &PrizeCheckWindow::closedToMain);
    QTest::mouseClick(quit, Qt::LeftButton);
    QCOMPARE(back.count(), 1);
    QVERIFY(win->writtenReport().isEmpty());
    QVERIFY(!QDir(QDir(w.session->paths().folder()).filePath(QStringLiteral("duijiang"))).exists());
}

QTEST_MAIN(PrizeCheckTest)
#include "test_prize_check.moc"

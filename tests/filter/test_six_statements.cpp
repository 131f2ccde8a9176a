// The six-number window's statements run in SQLite over a copy of random zuhef tables, the
// reference that the engine's six-number parameters and history filters are checked against.
// Jet's true is -1: a comparison is written J(x) = (-(x)) and the statements keep their
// negations; mod is %, IIf is iif, InStr is instr, & is ||.
#include "filter/six/six_history.h"
#include "filter/six/six_integrated.h"
#include "filter/six/six_params.h"
#include "workspace/sqlite_db.h"

#include <gtest/gtest.h>

#include <QStringList>

#include <algorithm>
#include <numeric>
#include <random>
#include <set>

namespace {

QString J(const QString& cond) { return QStringLiteral("(-(%1))").arg(cond); }
QString F(int k) { return QStringLiteral("[fig%1]").arg(k); }

// The sum over the six figures of a term.
QString overSix(const std::function<QString(const QString&)>& term) {
    QStringList terms;
    for (int k = 1; k <= 6; ++k) terms << term(F(k));
    return terms.join(QStringLiteral(" + "));
}

// canshu's expression of the statement, or empty where the filter reads a figure.
QString statement(SixParam id, int frontSize, const QString& lastDraw) {
    switch (id) {
        case SixParam::Sum: return "(" + overSix([](const QString& f) { return f; }) + ")";
        case SixParam::SumLastDigit: return "(" + overSix([](const QString& f) { return f; }) + ") % 10";
        case SixParam::ConsecutiveCount: {
            QStringList t;
            for (int k = 1; k < 6; ++k) t << J(F(k + 1) + " - " + F(k) + " = 1");
            return "-(" + t.join(" + ") + ")";
        }
        case SixParam::EvenCount: return "-(" + overSix([](const QString& f) { return J(f + " % 2 = 0"); }) + ")";
        case SixParam::BigCount: {
            const QString half = QString::number(frontSize / 2.0);
            return "-(" + overSix([&](const QString& f) { return J(f + " > " + half); }) + ")";
        }
        case SixParam::BigLastDigitCount:
            return "-(" + overSix([](const QString& f) { return J(f + " % 10 > 4"); }) + ")";
        case SixParam::Range1To10: return "-(" + overSix([](const QString& f) { return J(f + " <= 10"); }) + ")";
        case SixParam::Range11To20:
            return "-(" + overSix([](const QString& f) { return J(f + " > 10 AND " + f + " <= 20"); }) + ")";
        case SixParam::Range21Up: return "-(" + overSix([](const QString& f) { return J(f + " > 20"); }) + ")";
        case SixParam::LastMinusFirst: return "([fig6]-[fig1])";
        case SixParam::RepeatsOfPrevious:
            return "-(" + overSix([&](const QString& f) {
                       return J("instr('" + lastDraw + "', ' ' || " + f + " || ' ') > 0");
                   }) + ")";
        default: return {};
    }
}

// The four statements of 最大差值, each on the canshu of the one before.
void largestGap(SqliteDb& db) {
    db.exec("UPDATE zuhef SET canshu = iif(fig6-fig5 > fig5-fig4, fig6-fig5, fig5-fig4)");
    db.exec("UPDATE zuhef SET canshu = iif(canshu > fig4-fig3, canshu, fig4-fig3)");
    db.exec("UPDATE zuhef SET canshu = iif(canshu > fig3-fig2, canshu, fig3-fig2)");
    db.exec("UPDATE zuhef SET canshu = iif(canshu > fig2-fig1, canshu, fig2-fig1)");
}

// The recordset loop of 数字复杂度: the distinct differences of the row's pairs, less five.
void complexity(SqliteDb& db) {
    for (const QVariantList& row : db.rows("SELECT idx, fig1, fig2, fig3, fig4, fig5, fig6 FROM zuhef")) {
        std::set<int> differences;
        for (int i = 1; i <= 6; ++i)
            for (int j = i + 1; j <= 6; ++j) differences.insert(row[j].toInt() - row[i].toInt());
        db.exec("UPDATE zuhef SET canshu = ?1 WHERE idx = ?2",
                {static_cast<int>(differences.size()) - 5, row[0].toInt()});
    }
}

class SixStatements : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(db.open(QStringLiteral(":memory:"), true));
        db.exec("CREATE TABLE zuhef(idx integer, fig1 integer, fig2 integer, fig3 integer, fig4 integer, "
                "fig5 integer, fig6 integer, canshu integer, unslt integer, preunslt integer)");
    }

    // Sorted six-number rows of 1..35 with some dead rows and stale canshu, in both copies.
    CandidateTable randomTable(uint64_t rows) {
        CandidateTable t(schema::CandidateKind::SixNumbers, rows);
        std::uniform_int_distribution<int> pct(0, 99);
        for (uint64_t r = 0; r < rows; ++r) {
            std::vector<int> pool(35);
            std::iota(pool.begin(), pool.end(), 1);
            std::shuffle(pool.begin(), pool.end(), rng);
            std::sort(pool.begin(), pool.begin() + 6);
            for (int k = 0; k < 6; ++k) t.numberColumn(k + 1)[r] = static_cast<uint8_t>(pool[static_cast<size_t>(k)]);
            t.filteredOut().set(r, pct(rng) < 25);
            t.paramValues()[r] = static_cast<int16_t>(pct(rng));
            db.exec("INSERT INTO zuhef (idx, fig1, fig2, fig3, fig4, fig5, fig6, canshu, unslt, preunslt) VALUES (?1, ?2, ?3, ?4, ?5, ?6, ?7, ?8, ?9, 0)",
                    {static_cast<int>(r + 1), pool[0], pool[1], pool[2], pool[3], pool[4], pool[5],
                     t.paramValueAt(r), t.filteredOut().test(r) ? -1 : 0});
        }
        return t;
    }

    void expectSame(const CandidateTable& t, const QString& what) {
        const QList<QVariantList> rows = db.rows("SELECT canshu, unslt, preunslt FROM zuhef ORDER BY idx");
        ASSERT_EQ(static_cast<uint64_t>(rows.size()), t.rowCount());
        for (uint64_t r = 0; r < t.rowCount(); ++r) {
            const QVariantList& row = rows[static_cast<qsizetype>(r)];
            ASSERT_EQ(row[0].toInt(), t.paramValueAt(r)) << what.toStdString() << " row " << r;
            ASSERT_EQ(row[1].toInt() != 0, t.filteredOut().test(r)) << what.toStdString() << " row " << r;
            ASSERT_EQ(row[2].toInt() != 0, t.previousFilteredOut().test(r)) << what.toStdString() << " row " << r;
        }
    }

    // Writes canshu by the parameter's statement (nothing for a position).
    void computeBy(SixParam id, int frontSize, const QString& lastDraw) {
        const QString expr = statement(id, frontSize, lastDraw);
        if (id == SixParam::LargestGap)
            largestGap(db);
        else if (id == SixParam::Complexity)
            complexity(db);
        else if (!expr.isEmpty())
            db.exec("UPDATE zuhef SET canshu = " + expr);
    }

    SqliteDb db;
    std::mt19937 rng{20261124};
};

}  // namespace

// Each parameter, both modes, whole, real and textual bounds, two zone sizes: canshu, unslt and
// preunslt of every row as the statements leave them.
TEST_F(SixStatements, EveryParameterAgreesWithItsStatement) {
    const QString bounds[][2] = {{"0", "999"}, {"2", "4"}, {"1.5", "3.5"}, {"-1", "0"}, {"abc", "12"}, {"20", "3"}};
    for (int frontSize : {35, 36}) {
        six_params::Context ctx;
        ctx.frontSize = frontSize;
        for (int n : {3, 12, 20, 21, 35}) ctx.lastDrawFront[static_cast<size_t>(n)] = true;
        const QString lastDraw = QStringLiteral(" 3 12 20 21 35 ");
        for (const SixParamInfo& p : six_params::all())
            for (const auto& b : bounds)
                for (bool keep : {true, false}) {
                    db.exec("DELETE FROM zuhef");
                    CandidateTable t = randomTable(120);
                    const QString what = QStringLiteral("%1 %2..%3 %4 %5")
                                             .arg(QLatin1String(p.english), b[0], b[1])
                                             .arg(keep ? "keep" : "exclude")
                                             .arg(frontSize);
                    six_params::run(t, p.id, b[0], b[1], keep, ctx);
                    computeBy(p.id, frontSize, lastDraw);
                    db.exec("UPDATE zuhef SET preunslt = unslt");
                    // The box text as Val reads it: the leading number, or 0.
                    const auto val = [](const QString& s) {
                        bool ok = false;
                        const double v = s.toDouble(&ok);
                        return QString::number(ok ? v : 0);
                    };
                    const QString column = p.position ? F(p.position) : QStringLiteral("[canshu]");
                    db.exec(keep ? "UPDATE zuhef SET unslt = -1 WHERE unslt = 0 AND (" + column + " < " + val(b[0]) +
                                       " OR " + column + " > " + val(b[1]) + ")"
                                 : "UPDATE zuhef SET unslt = -1 WHERE unslt = 0 AND " + column + " >= " + val(b[0]) +
                                       " AND " + column + " <= " + val(b[1]));
                    expectSame(t, what);
                }
    }
}

// The history filters: Lishi's like-patterns of each draw's 3, 4 or 5 numbers against the
// rows' Numstring, over the latest N draws or all of them.
TEST_F(SixStatements, HistoryFiltersAgreeWithTheLikePatterns) {
    DrawHistory history;
    std::uniform_int_distribution<int> pick(1, 35);
    for (int d = 1; d <= 60; ++d) {
        std::set<int> front;
        while (front.size() < 5) front.insert(pick(rng));
        DrawNumbers n{2026000 + d};
        std::copy(front.begin(), front.end(), n.begin() + 1);
        history.numbers.push_back(n);
    }
    db.exec("CREATE TABLE Lishi(NumString text, idx integer)");
    for (int matches : {3, 4, 5})
        for (std::optional<int> draws : {std::optional<int>(), std::optional<int>(7), std::optional<int>(500)}) {
            db.exec("DELETE FROM zuhef");
            db.exec("DELETE FROM Lishi");
            CandidateTable t = randomTable(400);
            six_history::run(t, matches, draws, history);
            const int last = history.drawCount();
            const int first = draws ? std::max(1, last - *draws + 1) : 1;
            for (int d = first; d <= last; ++d) {
                const auto& n = history.numbers[static_cast<size_t>(d)];
                // Each subset of `matches` of the draw's five numbers as "*a*b*c*".
                for (int mask = 0; mask < 32; ++mask) {
                    if (__builtin_popcount(static_cast<unsigned>(mask)) != matches) continue;
                    QString pattern = QStringLiteral("%");
                    for (int k = 0; k < 5; ++k)
                        if (mask & (1 << k)) pattern += QStringLiteral("%1%").arg(n[static_cast<size_t>(k + 1)], 2, 10, QChar('0'));
                    db.exec("INSERT INTO Lishi VALUES (?1, ?2)", {pattern, d});
                }
            }
            db.exec("UPDATE zuhef SET preunslt = unslt");
            db.exec("UPDATE zuhef SET unslt = -1 WHERE unslt = 0 AND EXISTS (SELECT 1 FROM Lishi WHERE "
                    "printf('%02d %02d %02d %02d %02d %02d', fig1, fig2, fig3, fig4, fig5, fig6) LIKE Lishi.NumString)");
            expectSame(t, QStringLiteral("history %1 of %2").arg(matches).arg(draws.value_or(0)));
        }
}

TEST(SixHistory, TheInputBoxTakesAPositiveNumberOrNothing) {
    EXPECT_FALSE(six_history::parseDrawCount(QString()).draws.has_value());
    EXPECT_TRUE(six_history::parseDrawCount(QString()).error.isEmpty());
    EXPECT_EQ(six_history::parseDrawCount(QStringLiteral(" 30 ")).draws, 30);
    EXPECT_EQ(six_history::parseDrawCount(QStringLiteral("abc")).error, QStringLiteral("请输入数字"));
    EXPECT_EQ(six_history::parseDrawCount(QStringLiteral("0")).error, QStringLiteral("请输入一个正数"));
    EXPECT_EQ(six_history::parseDrawCount(QStringLiteral("-4")).error, QStringLiteral("请输入一个正数"));
}

// The integrated filter in its four senses, over random sets of ticked parameters: the tally
// statements of the filter window on an Errnum column, the Gpslt marks, and the flip of the
// mixed senses that turns only the rows live before. Rows dead before stay dead.
TEST_F(SixStatements, IntegratedFilterAgreesWithTheTallyStatements) {
    db.exec("ALTER TABLE zuhef ADD COLUMN errnum integer");
    db.exec("ALTER TABLE zuhef ADD COLUMN gpslt integer");
    six_params::Context ctx;
    for (int n : {4, 9, 17, 26, 33}) ctx.lastDrawFront[static_cast<size_t>(n)] = true;
    const QString lastDraw = QStringLiteral(" 4 9 17 26 33 ");
    std::uniform_int_distribution<int> coin(0, 3), small(0, 4), wide(0, 60);
    for (int round = 0; round < 24; ++round) {
        const bool keep = round % 2 == 0, logicAnd = round / 2 % 2 == 0;
        std::vector<six_integrated::Range> ticked;
        for (const SixParamInfo& p : six_params::all()) {
            if (coin(rng) != 0 && round >= 4) continue;  // the first rounds tick every parameter
            const int lo = p.hi > 9 ? wide(rng) + 60 * (p.hi == 999) : small(rng);
            ticked.push_back({p.id, QString::number(lo), QString::number(lo + (p.hi > 9 ? 20 : small(rng)))});
        }
        if (round == 23) ticked.clear();
        db.exec("DELETE FROM zuhef");
        CandidateTable t = randomTable(150);
        const uint64_t liveBefore = t.liveCount();
        const uint64_t died = six_integrated::run(t, ticked, {keep, logicAnd}, ctx);

        db.exec("UPDATE zuhef SET gpslt = -1");
        db.exec("UPDATE zuhef SET gpslt = 0 WHERE unslt = 0");
        const bool tallyMisses = keep == logicAnd ? keep : !keep;
        db.exec("UPDATE zuhef SET errnum = 0");
        db.exec("UPDATE zuhef SET preunslt = unslt");
        for (const six_integrated::Range& r : ticked) {
            const SixParamInfo& p = six_params::info(r.id);
            computeBy(r.id, ctx.frontSize, lastDraw);
            const QString column = p.position ? F(p.position) : QStringLiteral("canshu");
            const QString inside = column + " >= " + r.lo + " AND " + column + " <= " + r.hi;
            db.exec("UPDATE zuhef SET errnum = errnum + 1 WHERE " + (tallyMisses ? "NOT (" + inside + ")" : inside));
        }
        db.exec("UPDATE zuhef SET unslt = -1 WHERE errnum > 0");
        if (keep != logicAnd) db.exec("UPDATE zuhef SET unslt = NOT unslt WHERE gpslt = 0");
        const QString what = QStringLiteral("round %1, %2 ticked").arg(round).arg(ticked.size());
        // canshu is that of the last parameter computed; the positions leave it alone.
        const QList<QVariantList> rows = db.rows("SELECT unslt, preunslt, gpslt, canshu FROM zuhef ORDER BY idx");
        ASSERT_EQ(static_cast<uint64_t>(rows.size()), t.rowCount());
        for (uint64_t r = 0; r < t.rowCount(); ++r) {
            const QVariantList& row = rows[static_cast<qsizetype>(r)];
            ASSERT_EQ(row[0].toInt() != 0, t.filteredOut().test(r)) << what.toStdString() << " row " << r;
            ASSERT_EQ(row[1].toInt() != 0, t.previousFilteredOut().test(r)) << what.toStdString() << " row " << r;
            ASSERT_EQ(row[2].toInt() != 0, t.groupMark().test(r)) << what.toStdString() << " row " << r;
            ASSERT_EQ(row[3].toInt(), t.paramValueAt(r)) << what.toStdString() << " row " << r;
        }
        EXPECT_EQ(db.scalar("SELECT count(*) FROM zuhef WHERE unslt = 0 AND gpslt = 0").toULongLong(),
                  liveBefore - died) << what.toStdString();
        if (ticked.empty()) {
            EXPECT_EQ(died, keep == logicAnd ? 0u : liveBefore) << what.toStdString();
        }
    }
}

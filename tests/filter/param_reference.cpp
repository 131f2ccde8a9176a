#include "param_reference.h"

#include <algorithm>
#include <cmath>

namespace param_reference {

namespace {

QString J(const QString& cond) { return QStringLiteral("(-(%1))").arg(cond); }
QString F(int k) { return QStringLiteral("[fig%1]").arg(k); }
QString W(bool tick) { return tick ? QStringLiteral("1") : QStringLiteral("0"); }
QString real(double v) { return QString::number(v, 'f', 1); }

// Positions of a scope: (figure k, the ChkBt box that weighs it, 1-based).
std::vector<std::pair<int, int>> positions(int scope) {
    if (scope == 1) return {{1, 1}, {2, 2}, {3, 3}, {4, 4}, {5, 5}};
    if (scope == 2) return {{6, 1}, {7, 2}};
    return {{1, 1}, {2, 2}, {3, 3}, {4, 4}, {5, 5}, {6, 6}, {7, 7}};
}

bool tick(const ParamWindowState& s, int box) { return s.numberTicks[static_cast<size_t>(box - 1)]; }

// "term1 + term2 + ...", term(k, w) for each position of the scope.
template <typename Term>
QString sumOf(const ParamWindowState& s, int scope, Term term) {
    QStringList terms;
    for (auto [k, box] : positions(scope)) terms << term(k, W(tick(s, box)));
    return terms.join(QStringLiteral(" + "));
}

void exec(SqliteDb& db, const QString& sql, const QVariantList& params = {}) {
    // The handlers run with errors ignored: a failing statement is passed over.
    db.exec(sql, params);
}

void setCanshu(SqliteDb& db, const QString& expr) { exec(db, QStringLiteral("UPDATE [zuhe] SET [canshu]=") + expr); }

QString half(const ParamContext& ctx, int k) { return real((k <= 5 ? ctx.maxQian : ctx.maxHou) / 2.0); }

// The four row loops: read every row, write canshu.
template <typename Fn>
void rowLoop(SqliteDb& db, Fn fn) {
    std::vector<std::pair<int, std::array<int, 8>>> all;
    {
        SqliteStatement q(db, QStringLiteral("SELECT rowid, fig1, fig2, fig3, fig4, fig5, fig6, fig7 FROM [zuhe]"));
        while (q.next()) {
            std::array<int, 8> f{};
            for (int k = 1; k <= 7; ++k) f[static_cast<size_t>(k)] = q.integer(k);
            all.emplace_back(q.integer(0), f);
        }
    }
    SqliteStatement up(db, QStringLiteral("UPDATE [zuhe] SET [canshu]=?1 WHERE rowid=?2"));
    for (const auto& [rowid, f] : all) {
        up.bind(1, static_cast<qint64>(fn(f)));
        up.bind(2, static_cast<qint64>(rowid));
        up.run();
    }
}

int omissionOf(const ParamContext& ctx, int k, int number) {
    return k <= 5 ? ctx.omissionFront[static_cast<size_t>(number)] : ctx.omissionBack[static_cast<size_t>(number)];
}

// Part of each handler: the statements that compute canshu.
void compute(SqliteDb& db, ParamId id, const ParamWindowState& s, const ParamContext& ctx, bool frontOnly = false) {
    const int scope = frontOnly ? 1 : static_cast<int>(s.scope);
    switch (id) {
        case ParamId::NumberSum:
            setCanshu(db, sumOf(s, scope, [](int k, QString w) { return F(k) + " * " + w; }));
            return;
        case ParamId::SumLastDigit:
            setCanshu(db, "(" + sumOf(s, scope, [](int k, QString w) { return F(k) + " * " + w; }) + ") % 10");
            return;
        case ParamId::ConsecutiveCount: {
            QStringList terms;
            const auto pos = positions(scope);
            for (size_t i = 0; i + 1 < pos.size(); ++i) {
                const bool both = tick(s, pos[i].second) && tick(s, pos[i + 1].second);
                terms << J(F(pos[i + 1].first) + " - " + F(pos[i].first) + " = 1") + " * " + W(both);
            }
            setCanshu(db, "-(" + terms.join(" + ") + ")");
            return;
        }
        case ParamId::EvenCount:
            setCanshu(db, sumOf(s, scope, [](int k, QString w) { return "-" + J(F(k) + " % 2 = 0") + " * " + w; }));
            return;
        case ParamId::BigCount:
            setCanshu(db, "-(" + sumOf(s, scope, [&](int k, QString w) { return J(F(k) + " >" + half(ctx, k)) + " * " + w; }) + ")");
            return;
        case ParamId::BigLastDigitCount:
            setCanshu(db, "-(" + sumOf(s, scope, [](int k, QString w) { return J(F(k) + " % 10 >4") + " * " + w; }) + ")");
            return;
        case ParamId::Range1To10:
            if (scope == 2) return;
            setCanshu(db, "-(" + sumOf(s, scope, [](int k, QString w) { return J(F(k) + " <=10") + " * " + w; }) + ")");
            return;
        case ParamId::Range11To20:
            if (scope == 2) return;
            setCanshu(db, "-(" + sumOf(s, scope, [](int k, QString w) { return J(F(k) + ">10 and " + F(k) + "<=20") + " * " + w; }) + ")");
            return;
        case ParamId::Range21Up:
            if (scope == 2) return;
            setCanshu(db, "-(" + sumOf(s, scope, [](int k, QString w) { return J(F(k) + " > 20") + " * " + w; }) + ")");
            return;
        case ParamId::OddSum:
            if (scope == 2) return;
            setCanshu(db, "-(" + sumOf(s, scope, [](int k, QString w) { return "(" + F(k) + "*" + J(F(k) + " % 2 = 1") + " * " + w + ")"; }) + ")");
            return;
        case ParamId::EvenSum:
            if (scope == 2) return;
            setCanshu(db, "-(" + sumOf(s, scope, [](int k, QString w) { return "(" + F(k) + "*" + J(F(k) + " % 2 = 0") + " * " + w + ")"; }) + ")");
            return;
        case ParamId::LastDigitSum:
            setCanshu(db, sumOf(s, scope, [](int k, QString w) { return "(" + F(k) + " % 10) * " + w; }));
            return;
        case ParamId::SmallSum:
            setCanshu(db, "-(" + sumOf(s, scope, [&](int k, QString w) { return "(" + F(k) + "*" + J(F(k) + " <= " + half(ctx, k)) + " * " + w + ")"; }) + ")");
            return;
        case ParamId::BigSum:
            setCanshu(db, "-(" + sumOf(s, scope, [&](int k, QString w) { return "(" + F(k) + "*" + J(F(k) + " > " + half(ctx, k)) + " * " + w + ")"; }) + ")");
            return;
        case ParamId::RepeatsOfPrevious: {
            QString list = QStringLiteral(" ");
            for (int n = 1; n < kNumberSlots; ++n)
                if (ctx.lastDrawFront[static_cast<size_t>(n)]) list += QString::number(n) + " ";
            const auto term = [&](int k, const QString& w) {
                return J("instr('" + list + "', char(32) || " + F(k) + " || char(32)) > 0") + " * " + w;
            };
            QStringList terms;
            if (scope == 3) {
                for (int k = 1; k <= 5; ++k) terms << term(k, W(tick(s, k)));
                terms << term(6, W(tick(s, 6))) << term(6, W(tick(s, 6)));
            } else {
                for (auto [k, box] : positions(scope)) terms << term(k, W(tick(s, box)));
            }
            setCanshu(db, "-(" + terms.join(" + ") + ")");
            return;
        }
        case ParamId::LargestGap: {
            std::vector<int> p;
            for (int k = 1; k <= 5; ++k)
                if (tick(s, k)) p.push_back(k);
            const size_t n = p.size();
            if (n >= 3) {
                const QString a = F(p[n - 1]), b = F(p[n - 2]), c = F(p[n - 3]);
                setCanshu(db, "iif(" + a + "-" + b + ">" + b + "-" + c + "," + a + "-" + b + "," + b + "-" + c + ")");
                for (size_t i = 1; i + 3 <= n; ++i) {
                    const QString x = F(p[i - 1]), y = F(p[i]);
                    setCanshu(db, "iif([canshu]>" + y + "-" + x + ",[canshu]," + y + "-" + x + ")");
                }
            } else if (n == 2) {
                setCanshu(db, F(p[1]) + "-" + F(p[0]) + ")");  // the unmatched bracket: refused
            }
            return;
        }
        case ParamId::LastMinusFirst: {
            if (scope == 2) {
                setCanshu(db, "([fig2]-[fig1])");
            } else if (scope == 3) {
                QString e;
                for (int b : {6, 7})
                    for (int f = 1; f <= 5; ++f) e += "-" + J(F(b) + "=" + F(f));
                setCanshu(db, e);
            } else {
                int first = 0, last = 0;
                for (int k = 1; k <= 5; ++k)
                    if (tick(s, k)) {
                        if (!first) first = k;
                        last = k;
                    }
                if (first) setCanshu(db, "(" + F(last) + "-" + F(first) + ")");
            }
            return;
        }
        case ParamId::CustomRange: {
            if (scope == 2) return;
            if (s.listMode) {
                setCanshu(db, "0");
                for (auto [k, box] : positions(scope))
                    if (tick(s, box))
                        exec(db, "UPDATE [zuhe] SET [canshu]=[canshu] + 1 WHERE [unslt]=0 AND ' ' || ?1 || ' ' LIKE '% ' || " + F(k) + " || ' %'",
                             {s.txtZdqj});
                return;
            }
            const int lo = static_cast<int>(std::nearbyint(param_catalogue::leadingNumber(s.box(id)[3])));
            const int hi = static_cast<int>(std::nearbyint(param_catalogue::leadingNumber(s.box(id)[2])));
            setCanshu(db, "-(" + sumOf(s, scope, [&](int k, QString w) {
                              return J(F(k) + ">" + QString::number(lo) + " and " + F(k) + "<=" + QString::number(hi)) + "* " + w;
                          }) + ")");
            return;
        }
        case ParamId::AcComplexity: {
            if (scope == 2) return;
            std::vector<int> p;
            for (int k = 1; k <= (scope == 1 ? 5 : 7); ++k)
                if (tick(s, k)) p.push_back(k);
            rowLoop(db, [&](const std::array<int, 8>& f) {
                const int n = static_cast<int>(p.size());
                int arr[10] = {};
                int stored = 0, pairs = 0;
                for (int i = 0; i < n; ++i)
                    for (int j = i + 1; j < n; ++j) {
                        ++pairs;
                        if (stored < 10) arr[stored++] = f[static_cast<size_t>(p[static_cast<size_t>(j)])] - f[static_cast<size_t>(p[static_cast<size_t>(i)])];
                    }
                int ac = pairs - n + 1;
                for (int i = 0; i < stored; ++i)
                    for (int j = i + 1; j < stored; ++j)
                        if (arr[i] == arr[j]) {
                            --ac;
                            break;
                        }
                return ac;
            });
            return;
        }
        case ParamId::OmissionSum:
            rowLoop(db, [&](const std::array<int, 8>& f) {
                int sum = 0;
                for (auto [k, box] : positions(scope)) sum += tick(s, box) * omissionOf(ctx, k, f[static_cast<size_t>(k)]);
                return sum;
            });
            return;
        case ParamId::OmissionSpread:
            rowLoop(db, [&](const std::array<int, 8>& f) {
                int greatest = 0, least = 99;
                for (auto [k, box] : positions(scope)) {
                    if (!tick(s, box)) continue;
                    const int yl = omissionOf(ctx, k, f[static_cast<size_t>(k)]);
                    if (yl > greatest) greatest = yl;
                    if (yl < least) least = yl;
                }
                return greatest - least;
            });
            return;
        case ParamId::SameLastDigitCount:
            rowLoop(db, [&](const std::array<int, 8>& f) {
                bool flag[10] = {};
                for (auto [k, box] : positions(scope))
                    if (tick(s, box)) flag[f[static_cast<size_t>(k)] % 10] = true;
                const int set = static_cast<int>(std::count(std::begin(flag), std::end(flag), true));
                return (scope == 1 ? 5 : scope == 2 ? 2 : 7) - set;
            });
            return;
        case ParamId::Position1:
        case ParamId::Position2:
        case ParamId::Position3:
        case ParamId::Position4:
        case ParamId::Position5:
            return;
    }
}

struct Head {
    QString set;       // what the statement sets
    QString liveOnly;  // "[unslt]=0 AND " or ""
};

// The statements of the filter step (kill or tally) for one button, after its computation.
void filterStatements(SqliteDb& db, ParamId id, const ParamWindowState& s, bool keep, bool tally) {
    const int scope = static_cast<int>(s.scope);
    const ParamInfo& info = param_catalogue::info(id);
    QString V = QStringLiteral("[canshu]");
    int parityPos = 0;
    if (info.position) {
        if (scope == 1) V = F(info.position);
        else if (scope == 3 && id == ParamId::Position2)
            V = F(7);
        else return;  // only the colour
        parityPos = scope == 3 ? 7 : info.position;
    }
    static const QList<ParamId> liveTally{
        ParamId::ConsecutiveCount, ParamId::OmissionSpread, ParamId::Position1, ParamId::Position2,
        ParamId::Position3,        ParamId::Position4,      ParamId::Position5, ParamId::RepeatsOfPrevious,
        ParamId::NumberSum,        ParamId::AcComplexity};
    const bool live = !tally || liveTally.contains(id);
    const auto head = [&](const QString& reasonExpr) {
        return tally ? "UPDATE [zuhe] SET [Errnum]=[Errnum]+1 , [fliter] = coalesce([fliter],'') || " + reasonExpr
                     : "UPDATE [zuhe] SET [unslt]=-1 , [fliter] = " + reasonExpr;
    };
    const QString where = live ? QStringLiteral(" WHERE [unslt]=0 AND ") : QStringLiteral(" WHERE ");
    const bool list = s.listMode && id != ParamId::CustomRange;
    const auto& b = s.box(id);

    if (info.position && !list) {
        const int odd = s.parityTicks[static_cast<size_t>(2 + 2 * info.position)] ? 1 : 0;
        const int even = s.parityTicks[static_cast<size_t>(3 + 2 * info.position)] ? 1 : 0;
        setCanshu(db, "(" + V + " % 2)");
        exec(db, head("'" + QString::number(parityPos) + "位奇偶性'") + " WHERE [unslt]=0 AND ([canshu] <> " +
                     QString::number(odd) + " AND [canshu]  = " + QString::number(even) + ")");
    }

    QString cap = param_catalogue::caption(id, s.scope, s.listMode);
    if (id == ParamId::CustomRange) cap = s.listMode ? cap + " " + s.txtZdqj : cap + b[3] + "~" + b[2];
    const QString reason = "?1 || '大小:' || " + V + " || ?2";
    const QString word = keep ? QStringLiteral(" 保留") : QStringLiteral(" 排除");
    if (list) {
        const QString like = info.position ? "'%' || " + V + " || '%'" : "'% ' || " + V + " || ' %'";
        const QString cond = keep ? "' ' || ?3 || ' ' NOT LIKE " + like : "' ' || ?3 || ' ' LIKE " + like;
        exec(db, head(reason) + where + cond, {cap, word + b[3], b[3]});
        return;
    }
    const double lo = param_catalogue::leadingNumber(b[0]), hi = param_catalogue::leadingNumber(b[1]);
    const QString cond = keep ? "(" + V + " <?3 OR " + V + " >?4)" : V + " >=?3 AND " + V + " <=?4";
    exec(db, head(reason) + where + cond, {cap, word + QString::number(lo) + "~" + QString::number(hi), lo, hi});
}

}  // namespace

void load(SqliteDb& db, const CandidateTable& t) {
    db.exec(QStringLiteral("DROP TABLE IF EXISTS [zuhe]"));
    db.exec(QStringLiteral("CREATE TABLE [zuhe]([idx] integer,[fig1] integer,[fig2] integer,[fig3] integer,[fig4] integer,"
                           "[fig5] integer,[fig6] integer,[fig7] integer,[canshu] integer,[fliter] string,[unslt] integer,"
                           "[preunslt] integer,[tmpunslt] integer,[Gpslt] integer,[Errnum] integer)"));
    db.begin();
    SqliteStatement ins(db, QStringLiteral("INSERT INTO [zuhe] VALUES(?1,?2,?3,?4,?5,?6,?7,?8,?9,?10,?11,?12,0,?13,?14)"));
    for (uint64_t r = 0; r < t.rowCount(); ++r) {
        ins.bind(1, static_cast<qint64>(t.idxAt(r)));
        for (int k = 1; k <= 7; ++k) ins.bind(1 + k, static_cast<qint64>(t.numberColumn(k)[r]));
        ins.bind(9, static_cast<qint64>(t.paramValueAt(r)));
        if (t.reasons().isNull(t.rowReasons()[r]))
            ins.bindNull(10);
        else ins.bind(10, t.reasonText(r));
        ins.bind(11, static_cast<qint64>(t.filteredOut().test(r) ? -1 : 0));
        ins.bind(12, static_cast<qint64>(t.previousFilteredOut().test(r) ? -1 : 0));
        ins.bind(13, static_cast<qint64>(t.groupMark().test(r) ? -1 : 0));
        ins.bind(14, static_cast<qint64>(t.failCountAt(r)));
        ins.run();
    }
    db.commit();
}

void runSingle(SqliteDb& db, ParamId id, const ParamWindowState& s, const ParamContext& ctx) {
    const ParamInfo& info = param_catalogue::info(id);
    const int scope = static_cast<int>(s.scope);
    if (info.position && !(scope == 1 || (scope == 3 && id == ParamId::Position2))) return;
    compute(db, id, s, ctx);
    exec(db, QStringLiteral("UPDATE [zuhe] SET [preunslt]=[unslt]"));
    filterStatements(db, id, s, s.keep, false);
}

void runIntegrated(SqliteDb& db, const ParamWindowState& s, const ParamContext& ctx) {
    static const std::vector<std::pair<int, ParamId>> order{{0, ParamId::NumberSum},
                                                            {1, ParamId::SumLastDigit},
                                                            {2, ParamId::ConsecutiveCount},
                                                            {3, ParamId::EvenCount},
                                                            {4, ParamId::BigCount},
                                                            {5, ParamId::BigLastDigitCount},
                                                            {6, ParamId::Range1To10},
                                                            {7, ParamId::Range11To20},
                                                            {8, ParamId::Range21Up},
                                                            {9, ParamId::Position1},
                                                            {10, ParamId::Position2},
                                                            {11, ParamId::Position3},
                                                            {12, ParamId::Position4},
                                                            {13, ParamId::Position5},
                                                            {14, ParamId::LargestGap},
                                                            {15, ParamId::LastMinusFirst},
                                                            {16, ParamId::RepeatsOfPrevious},
                                                            {17, ParamId::AcComplexity},
                                                            {18, ParamId::OmissionSpread},
                                                            {21, ParamId::CustomRange},
                                                            {22, ParamId::OddSum},
                                                            {23, ParamId::EvenSum},
                                                            {24, ParamId::LastDigitSum},
                                                            {25, ParamId::OmissionSum},
                                                            {15, ParamId::SmallSum},
                                                            {16, ParamId::BigSum},
                                                            {26, ParamId::SameLastDigitCount}};
    const bool a = s.keep, b = s.logicAnd;
    const bool baoliu = a == b ? a : !a;
    exec(db, QStringLiteral("UPDATE [zuhe] SET [Errnum]=0"));
    exec(db, QStringLiteral("UPDATE [zuhe] SET [preunslt]=[unslt]"));
    for (const auto& [box, id] : order) {
        if (!s.integratedBox[static_cast<size_t>(box)]) continue;
        compute(db, id, s, ctx);
        filterStatements(db, id, s, baoliu, true);
    }
    const int count = static_cast<int>(std::nearbyint(param_catalogue::leadingNumber(s.txtRc0)));
    if (s.useTolerance)
        exec(db, QStringLiteral("UPDATE [zuhe] SET [unslt]=-1 WHERE [Errnum] > ?1"), {count});
    else exec(db, QStringLiteral("UPDATE [zuhe] SET [unslt]=-1 WHERE [Errnum] > 0"));
    if (a != b) exec(db, QStringLiteral("UPDATE [zuhe] SET [unslt]=~[unslt]  WHERE [Gpslt]=0"));
}

std::vector<Row> rows(SqliteDb& db) {
    std::vector<Row> out;
    SqliteStatement q(db, QStringLiteral("SELECT idx, canshu, unslt, preunslt, Errnum, fliter FROM [zuhe] ORDER BY rowid"));
    while (q.next()) {
        Row r;
        r.idx = q.integer(0);
        r.paramValues = q.integer(1);
        r.filteredOut = q.integer(2) != 0;
        r.previousFilteredOut = q.integer(3) != 0;
        r.failCount = q.integer(4);
        const QVariant f = q.value(5);
        r.fliterNull = f.isNull();
        r.rowReasons = f.toString();
        out.push_back(r);
    }
    return out;
}

}  // namespace param_reference

#include "analysis/statistics_grids.h"

#include <algorithm>

namespace statistics_grids {
namespace {

QString twoDigits(int n) { return QStringLiteral("%1").arg(n, 2, 10, QLatin1Char('0')); }

// size + 1 columns: the corner and the numbers 1..size as heads.
QStringList headRow(const QString& corner, int size) {
    QStringList row{corner};
    for (int n = 1; n <= size; ++n) row << twoDigits(n);
    return row;
}

QStringList emptyRow(int size) { return QStringList(size + 1, QString()); }

}  // namespace

TextGrid correlation(const NumberMatrix& m, int size) {
    TextGrid g;
    g.rows.push_back(headRow(kCorrelationCorner, size));
    for (int r = 1; r <= size; ++r) {
        QStringList row = emptyRow(size);
        row[0] = twoDigits(r);
        for (int c = 1; c < r; ++c) row[c] = QString::number(m.at(c, r));
        g.rows.push_back(row);
    }
    return g;
}

TextGrid transitions(const NumberMatrix& m, const number_relations::FollowRows& follow, int size, int gap) {
    TextGrid g;
    g.rows.push_back(headRow(kTransitionCorner, size));
    for (int a = 1; a <= size; ++a) {
        QStringList row{twoDigits(a)};
        for (int b = 1; b <= size; ++b) row << QString::number(m.at(a, b));
        g.rows.push_back(row);
    }
    g.rows.push_back(emptyRow(size));
    QStringList head = emptyRow(size);
    head[0] = QStringLiteral("上%1期跟随").arg(gap);
    g.rows.push_back(head);
    for (size_t i = 0; i < follow.numbers.size(); ++i) {
        QStringList row{twoDigits(follow.numbers[i])};
        for (int b = 1; b <= size; ++b) row << QString::number(follow.rows[i][static_cast<size_t>(b)]);
        g.rows.push_back(row);
    }
    // Five follow rows fill the rows up to the total; seven (both zones) push it down.
    while (g.rowCount() < size + 8) g.rows.push_back(emptyRow(size));
    QStringList total{QStringLiteral("上%1期总跟随").arg(gap)};
    for (int b = 1; b <= size; ++b) total << QString::number(follow.total[static_cast<size_t>(b)]);
    g.rows.push_back(total);
    g.rows.push_back(emptyRow(size));
    return g;
}

TextGrid moments(const position_moments::Table& t) {
    TextGrid g;
    QStringList head{QString()};
    for (int p = 1; p <= position_moments::kPositions; ++p) head << QStringLiteral("第%1位").arg(p);
    g.rows.push_back(head);
    for (int r = 0; r < position_moments::kRows; ++r) {
        QStringList row{position_moments::heads()[static_cast<size_t>(r)]};
        for (const std::optional<double>& v : t[static_cast<size_t>(r)]) row << (v ? QString::number(*v, 'g', 12) : QString());
        g.rows.push_back(row);
    }
    return g;
}

}  // namespace statistics_grids

#include "history/history_store.h"

#include "workspace/draw_params_columns.h"

#include <charconv>
#include <cstdlib>
#include <optional>

double storedSingle(float f) {
    char buf[32];
    const auto r = std::to_chars(buf, buf + sizeof(buf) - 1, f);
    *r.ptr = '\0';
    return std::strtod(buf, nullptr);
}

namespace {

const QStringList& parameterColumns(HistoryView v) {
    switch (v) {
        case HistoryView::Front:
            return draw_params_columns::frontColumns();
        case HistoryView::Back:
            return draw_params_columns::backColumns();
        case HistoryView::Both:
            return draw_params_columns::bothColumns();
    }
    return draw_params_columns::frontColumns();
}

bool isSingleColumn(const QString& c) {
    return c.compare(QLatin1String("R"), Qt::CaseInsensitive) == 0 ||
           c.compare(QLatin1String("a"), Qt::CaseInsensitive) == 0;
}

double columnValue(const DrawParams& p, const QString& column) {
    if (column.compare(QLatin1String("R"), Qt::CaseInsensitive) == 0) return storedSingle(p.R);
    if (column.compare(QLatin1String("a"), Qt::CaseInsensitive) == 0) return storedSingle(p.a);
    return draw_params_columns::value(p, column).value_or(0.0);
}

QString bracketed(const QStringList& names) {
    QStringList out;
    for (const QString& n : names) out << QLatin1Char('[') + n + QLatin1Char(']');
    return out.join(QLatin1Char(','));
}

QString placeholders(int count) {
    QStringList out;
    for (int i = 1; i <= count; ++i) out << QStringLiteral("?%1").arg(i);
    return out.join(QLatin1Char(','));
}

// A parameter column resolved once: integers, the two singles, the doubles of Lcz.
struct BoundColumn {
    enum class Kind { Integer, Single, Double } kind;
    QString name;
};

}  // namespace

struct ViewRowWriter::Statements {
    std::vector<BoundColumn> columns;
    std::unique_ptr<SqliteStatement> draw;
    std::unique_ptr<SqliteStatement> omission;
};

ViewRowWriter::ViewRowWriter(SqliteDb& db, HistoryView view)
    : m_db(db), m_view(view), m_st(std::make_unique<Statements>()) {
    const ViewInfo& info = viewInfo(view);
    QStringList names{QStringLiteral("Idx"), QStringLiteral("fig0")};
    for (int i = 1; i <= info.numberCount; ++i) names << QStringLiteral("fig%1").arg(i);
    for (const QString& c : parameterColumns(view)) {
        names << c;
        BoundColumn::Kind kind = BoundColumn::Kind::Integer;
        if (isSingleColumn(c))
            kind = BoundColumn::Kind::Single;
        else if (c.startsWith(QLatin1String("Lcz"), Qt::CaseInsensitive))
            kind = BoundColumn::Kind::Double;
        m_st->columns.push_back({kind, c});
    }
    m_st->draw = std::make_unique<SqliteStatement>(
        db, QStringLiteral("INSERT INTO [%1](%2) VALUES (%3)")
                .arg(info.drawTable, bracketed(names), placeholders(static_cast<int>(names.size()))));
    QStringList ylqs{QStringLiteral("qihao")};
    for (int n = 1; n <= info.omissionRange; ++n) ylqs << QStringLiteral("ylqs%1").arg(n);
    m_st->omission = std::make_unique<SqliteStatement>(
        db, QStringLiteral("INSERT INTO [%1](%2) VALUES (%3)")
                .arg(info.omissionTable, bracketed(ylqs), placeholders(static_cast<int>(ylqs.size()))));
}

ViewRowWriter::~ViewRowWriter() = default;

bool ViewRowWriter::ok() const { return m_st->draw->ok() && m_st->omission->ok(); }
QString ViewRowWriter::error() const { return m_db.lastError(); }

bool ViewRowWriter::insertDraw(int idx, qint64 issue, const DrawNumbers& draw, const DrawParams& p) {
    SqliteStatement& st = *m_st->draw;
    int k = 1;
    st.bind(k++, static_cast<qint64>(idx));
    st.bind(k++, issue);
    for (int32_t n : numbersOf(draw, m_view)) st.bind(k++, static_cast<qint64>(n));
    for (const BoundColumn& c : m_st->columns) {
        switch (c.kind) {
            case BoundColumn::Kind::Single:
                st.bind(k++, columnValue(p, c.name));
                break;
            case BoundColumn::Kind::Double:
                st.bind(k++, draw_params_columns::value(p, c.name).value_or(0.0));
                break;
            case BoundColumn::Kind::Integer:
                st.bind(k++, static_cast<qint64>(draw_params_columns::value(p, c.name).value_or(0.0)));
                break;
        }
    }
    return st.run();
}

bool ViewRowWriter::insertOmission(qint64 issue, const NumberStats& stats) {
    SqliteStatement& st = *m_st->omission;
    st.bind(1, issue);
    const int range = viewInfo(m_view).omissionRange;
    for (int n = 1; n <= range; ++n) st.bind(n + 1, static_cast<qint64>(stats.omission[n]));
    return st.run();
}

namespace history_store {

bool clearTable(SqliteDb& db, const QString& table) {
    return db.exec(QStringLiteral("DELETE FROM [%1]").arg(table));
}

bool deleteLastRow(SqliteDb& db, const QString& table) {
    return db.exec(QStringLiteral("DELETE FROM [%1] WHERE rowid = (SELECT MAX(rowid) FROM [%1])").arg(table));
}

bool writeFrequency(SqliteDb& db, HistoryView view, const NumberStats& stats, int rows) {
    const QString table = viewInfo(view).frequencyTable;
    SqliteStatement ids(db, QStringLiteral("SELECT rowid FROM [%1] ORDER BY rowid LIMIT ?1").arg(table));
    if (!ids.ok()) return false;
    ids.bind(1, static_cast<qint64>(rows));
    std::vector<qint64> rowids;
    while (ids.next()) rowids.push_back(ids.int64(0));
    SqliteStatement up(
        db, QStringLiteral("UPDATE [%1] SET [Number]=?1,[gailv]=?2,[Glnum]=?3 WHERE rowid=?4").arg(table));
    if (!up.ok()) return false;
    for (size_t k = 0; k < rowids.size() && static_cast<int>(k) + 1 < kNumberSlots; ++k) {
        const int n = static_cast<int>(k) + 1;
        up.bind(1, static_cast<qint64>(n));
        up.bind(2, stats.percent[n]);
        up.bind(3, static_cast<qint64>(stats.frequency[n]));
        up.bind(4, rowids[k]);
        if (!up.run()) return false;
    }
    return true;
}

bool updateParams(SqliteDb& db, HistoryView view, int idx, const DrawParams& p, const QStringList& columns) {
    QStringList sets;
    QVariantList values;
    for (const QString& c : columns) {
        const bool real = isSingleColumn(c) || c.startsWith(QLatin1String("Lcz"), Qt::CaseInsensitive);
        values << (real ? QVariant(columnValue(p, c)) : QVariant(static_cast<qint64>(columnValue(p, c))));
        sets << QStringLiteral("[%1]=?%2").arg(c).arg(values.size());
    }
    values << idx;
    return db.exec(QStringLiteral("UPDATE [%1] SET %2 WHERE [Idx]=?%3")
                       .arg(viewInfo(view).drawTable, sets.join(QLatin1Char(',')))
                       .arg(values.size()),
                   values);
}

std::optional<std::vector<int>> readNumbers(SqliteDb& db, HistoryView view, int idx) {
    const int count = viewInfo(view).numberCount;
    QStringList cols;
    for (int i = 1; i <= count; ++i) cols << QStringLiteral("fig%1").arg(i);
    const QList<QVariantList> rows = db.rows(
        QStringLiteral("SELECT %1 FROM [%2] WHERE [Idx] = ?1").arg(bracketed(cols), viewInfo(view).drawTable),
        {idx});
    if (rows.isEmpty()) return std::nullopt;
    std::vector<int> out;
    for (const QVariant& v : rows.first()) out.push_back(v.toInt());
    return out;
}

}  // namespace history_store

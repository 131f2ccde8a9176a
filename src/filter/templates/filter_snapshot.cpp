#include "filter/templates/filter_snapshot.h"

#include "filter/param/param_catalogue.h"
#include "workspace/sqlite_db.h"

#include <QStringList>

#include <cmath>

namespace filter_snapshot {

namespace {

constexpr int kSuperNumberCount = 10;

QString rangeColumn(const ParamInfo& p, int end) {
    return QString::fromLatin1(p.snapshot) + (end == 1 ? QStringLiteral("_1") : QStringLiteral("_2"));
}
QString listColumn(const ParamInfo& p) { return QString::fromLatin1(p.listColumn); }

// Which box of a parameter a range column holds: index 0 and 1, for 自定区间 Text66(2) and (3).
size_t rangeBox(ParamId id, int end) {
    if (id == ParamId::CustomRange) return end == 1 ? 2 : 3;
    return end == 1 ? 0 : 1;
}

QStringList allColumns() {
    QStringList c{QStringLiteral("Name"),       QStringLiteral("Idx"),     QStringLiteral("intCmdnb"),
                  QStringLiteral("intQianHou"), QStringLiteral("opt36"),   QStringLiteral("ZdqjNum_1"),
                  QStringLiteral("ZdqjNum_2"),  QStringLiteral("RCperct"), QStringLiteral("RCcount"),
                  QStringLiteral("ljh"),        QStringLiteral("baoliu"),  QStringLiteral("sknum"),
                  QStringLiteral("skzu")};
    for (const ParamInfo& p : param_catalogue::all())
        c << rangeColumn(p, 1) << rangeColumn(p, 2) << listColumn(p);
    for (int i = 0; i < kIntegratedBoxCount; ++i) c << QStringLiteral("chk%1").arg(i);
    for (int i = 0; i < kSuperNumberCount; ++i) c << QStringLiteral("sk%1").arg(i);
    return c;
}

bool isText(const QString& column) {
    return column == QLatin1String("Name") || column.startsWith(QLatin1String("sk"));
}

// The text a control shows for a stored value; none for a null.
std::optional<QString> text(const QVariant& v) {
    if (!v.isValid() || v.isNull()) return std::nullopt;
    if (v.typeId() == QMetaType::Double) return param_catalogue::formatNumber(v.toDouble());
    return v.toString();
}

std::optional<bool> flag(const QVariant& v) {
    if (!v.isValid() || v.isNull()) return std::nullopt;
    bool ok = false;
    const double d = v.toString().trimmed().toDouble(&ok);
    if (ok) return d != 0;
    const QString s = v.toString().trimmed().toLower();
    if (s == QLatin1String("true")) return true;
    if (s == QLatin1String("false")) return false;
    return std::nullopt;
}

void setText(const QVariantMap& row, const QString& name, QString& target) {
    if (const auto t = text(column(row, name))) target = *t;
}

void setFlag(const QVariantMap& row, const QString& name, bool& target) {
    if (const auto f = flag(column(row, name))) target = *f;
}

// An sk entry takes a stored text only when it reads as a number, as an Integer assignment.
void setSmall(const QVariantMap& row, const QString& name, int16_t& target) {
    const auto t = text(column(row, name));
    if (!t) return;
    if (const auto v = super_filter::numeric(*t)) target = super_filter::toInt16(*v);
}

}  // namespace

QVariant column(const QVariantMap& row, const QString& name) {
    const auto it = row.constFind(name);
    if (it != row.constEnd()) return it.value();
    for (auto i = row.constBegin(); i != row.constEnd(); ++i)
        if (i.key().compare(name, Qt::CaseInsensitive) == 0) return i.value();
    return {};
}

bool ensureColumns(SqliteDb& db, const QString& table) {
    if (!db.tableExists(table)) return false;
    QStringList have = db.columns(table);
    for (QString& h : have) h = h.toLower();
    QStringList missing;
    for (const QString& c : allColumns())
        if (!have.contains(c.toLower())) missing << c;
    if (missing.isEmpty()) return true;
    SqliteTransaction tx(db);
    if (!tx.active()) return false;
    for (const QString& c : missing) {
        const QString type = isText(c) ? QStringLiteral("TEXT") : QStringLiteral("INTEGER");
        if (!db.exec(QStringLiteral("ALTER TABLE [%1] ADD COLUMN [%2] %3").arg(table, c, type))) return false;
    }
    return tx.commit();
}

QVariantMap snapshotValues(const ParamWindowState& s) {
    QVariantMap v;
    v.insert(QStringLiteral("opt36"), s.listMode ? 1 : 0);
    for (const ParamInfo& p : param_catalogue::all()) {
        const auto& box = s.box(p.id);
        if (s.listMode) {
            v.insert(listColumn(p), p.id == ParamId::CustomRange ? s.txtZdqj : box[3]);
        } else {
            v.insert(rangeColumn(p, 1), box[rangeBox(p.id, 1)]);
            v.insert(rangeColumn(p, 2), box[rangeBox(p.id, 2)]);
        }
    }
    const auto& zdqj = s.box(ParamId::CustomRange);
    v.insert(QStringLiteral("ZdqjNum_1"), zdqj[0]);
    v.insert(QStringLiteral("ZdqjNum_2"), zdqj[1]);
    v.insert(QStringLiteral("RCperct"), s.txtRc1);
    v.insert(QStringLiteral("RCcount"), s.txtRc0);
    for (int i = 0; i < kIntegratedBoxCount; ++i)
        v.insert(QStringLiteral("chk%1").arg(i), s.integratedBox[static_cast<size_t>(i)] ? 1 : 0);
    v.insert(QStringLiteral("ljh"), s.logicAnd ? 1 : 0);
    v.insert(QStringLiteral("baoliu"), s.keep ? 1 : 0);
    return v;
}

QVariantMap superValues(int code, const SuperInputs& in) {
    QVariantMap v;
    v.insert(QStringLiteral("sknum"), in.superCount);
    const auto superNumbers = [&](int i) {
        v.insert(QStringLiteral("sk%1").arg(i), QString::number(in.superNumbers[static_cast<size_t>(i)]));
    };
    if (code >= 10 && code <= 12) {
        for (int i = 0; i <= 4; ++i) superNumbers(i);
    } else if (code == 13 || code == 14) {
        v.insert(QStringLiteral("skzu"), QString::number(in.groupSize));
        for (int i = 0; i < kSuperNumberCount; ++i) superNumbers(i);
    }
    return v;
}

SnapshotEffects applySnapshot(const QVariantMap& row, ParamWindowState& s) {
    setFlag(row, QStringLiteral("opt36"), s.listMode);
    SnapshotEffects e;
    e.listMode = s.listMode;
    e.hideListFrame = !s.listMode;
    for (const ParamInfo& p : param_catalogue::all()) {
        auto& box = s.box(p.id);
        if (s.listMode) {
            setText(row, listColumn(p), p.id == ParamId::CustomRange ? s.txtZdqj : box[3]);
        } else {
            setText(row, rangeColumn(p, 1), box[rangeBox(p.id, 1)]);
            setText(row, rangeColumn(p, 2), box[rangeBox(p.id, 2)]);
        }
    }
    auto& zdqj = s.box(ParamId::CustomRange);
    setText(row, QStringLiteral("ZdqjNum_1"), zdqj[0]);
    setText(row, QStringLiteral("ZdqjNum_2"), zdqj[1]);
    setText(row, QStringLiteral("RCperct"), s.txtRc1);
    setText(row, QStringLiteral("RCcount"), s.txtRc0);
    for (int i = 0; i < kIntegratedBoxCount; ++i) {
        bool tick = s.integratedBox[static_cast<size_t>(i)];
        setFlag(row, QStringLiteral("chk%1").arg(i), tick);
        s.integratedBox[static_cast<size_t>(i)] = tick;
    }
    setFlag(row, QStringLiteral("ljh"), s.logicAnd);
    setFlag(row, QStringLiteral("baoliu"), s.keep);
    return e;
}

void applySuper(const QVariantMap& row, int code, SuperInputs& in) {
    if (code == 15) return;
    setText(row, QStringLiteral("sknum"), in.superCount);
    if (code >= 4 && code <= 6) return;
    const int last = code == 13 || code == 14 ? kSuperNumberCount - 1 : 4;
    if (code == 13 || code == 14) setSmall(row, QStringLiteral("skzu"), in.groupSize);
    for (int i = 0; i <= last; ++i)
        setSmall(row, QStringLiteral("sk%1").arg(i), in.superNumbers[static_cast<size_t>(i)]);
}

}  // namespace filter_snapshot

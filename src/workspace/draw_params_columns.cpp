#include "workspace/draw_params_columns.h"

#include "workspace/schema.h"

#include <QHash>

#include <functional>

namespace draw_columns {
namespace {

using Getter = std::function<double(const DrawParams&)>;
using Setter = std::function<void(DrawParams&, double)>;
struct Access {
    Getter get;
    Setter set;
};

template <typename T>
Access field(T DrawParams::*m) {
    return {[m](const DrawParams& p) { return static_cast<double>(p.*m); },
            [m](DrawParams& p, double v) { p.*m = static_cast<T>(v); }};
}

template <typename A>
Access element(A DrawParams::*m, int i) {
    return {[m, i](const DrawParams& p) { return static_cast<double>((p.*m)[i]); },
            [m, i](DrawParams& p, double v) { (p.*m)[i] = static_cast<typename A::value_type>(v); }};
}

const QHash<QString, Access>& accessors() {
    static const QHash<QString, Access> map = [] {
        QHash<QString, Access> m;
        auto add = [&m](const char* name, Access a) { m.insert(QString::fromLatin1(name).toLower(), std::move(a)); };
        add("Znum", field(&DrawParams::Znum));
        add("XZnum", field(&DrawParams::XZnum));
        add("DZnum", field(&DrawParams::DZnum));
        add("Zjnum", field(&DrawParams::Zjnum));
        add("Zonum", field(&DrawParams::Zonum));
        add("Zgnum", field(&DrawParams::Zgnum));
        add("Zynum", field(&DrawParams::Zynum));
        add("Sumgwnum", field(&DrawParams::Sumgwnum));
        add("Cnum", field(&DrawParams::Cnum));
        add("Onum", field(&DrawParams::Onum));
        add("Jnum", field(&DrawParams::Jnum));
        add("Bignum", field(&DrawParams::Bignum));
        add("Smlnum", field(&DrawParams::Smlnum));
        add("Mornum", field(&DrawParams::Mornum));
        add("Ltlnum", field(&DrawParams::Ltlnum));
        add("Modenum", field(&DrawParams::Modenum));
        add("Lnum", field(&DrawParams::Lnum));
        add("Lxnum", field(&DrawParams::Lxnum));
        add("Mxzounum", field(&DrawParams::Mxzounum));
        add("Apzounum", field(&DrawParams::Apzounum));
        add("Fcodp", field(&DrawParams::Fcodp));
        add("R", field(&DrawParams::R));
        add("a", field(&DrawParams::a));
        add("intYljz", field(&DrawParams::intYljz));
        for (int i = 0; i < 4; ++i)
            m.insert(QStringLiteral("qnum%1").arg(i), element(&DrawParams::Qnum, i));
        for (int i = 0; i < 5; ++i)
            m.insert(QStringLiteral("lcz%1").arg(i + 1), element(&DrawParams::Lcz, i));
        return m;
    }();
    return map;
}

QStringList parameterColumns(const TableDef& t) {
    QStringList out;
    for (const QString& c : t.columnNames()) {
        const QString l = c.toLower();
        if (l == QLatin1String("idx") || l == QLatin1String("fig0") || l.startsWith(QLatin1String("fig"))) continue;
        out << c;
    }
    return out;
}

}  // namespace

const QStringList& frontColumns() {
    static const QStringList c = parameterColumns(schema::fig());
    return c;
}
const QStringList& backColumns() {
    static const QStringList c = parameterColumns(schema::fighou());
    return c;
}
const QStringList& bothColumns() {
    static const QStringList c = parameterColumns(schema::figquan());
    return c;
}

std::optional<double> value(const DrawParams& p, const QString& column) {
    auto it = accessors().constFind(column.toLower());
    if (it == accessors().constEnd()) return std::nullopt;
    return it->get(p);
}

bool setValue(DrawParams& p, const QString& column, double v) {
    auto it = accessors().constFind(column.toLower());
    if (it == accessors().constEnd()) return false;
    it->set(p, v);
    return true;
}

}  // namespace draw_columns

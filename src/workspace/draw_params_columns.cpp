#include "workspace/draw_params_columns.h"

#include "workspace/schema.h"

#include <QHash>

#include <functional>

namespace draw_params_columns {
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
        add("Znum", field(&DrawParams::sum));
        add("XZnum", field(&DrawParams::smallSum));
        add("DZnum", field(&DrawParams::bigSum));
        add("Zjnum", field(&DrawParams::oddSum));
        add("Zonum", field(&DrawParams::evenSum));
        add("Zgnum", field(&DrawParams::lastDigitSum));
        add("Zynum", field(&DrawParams::omissionSum));
        add("Sumgwnum", field(&DrawParams::sumLastDigit));
        add("Cnum", field(&DrawParams::repeatCount));
        add("Onum", field(&DrawParams::evenCount));
        add("Jnum", field(&DrawParams::oddCount));
        add("Bignum", field(&DrawParams::bigLastDigitCount));
        add("Smlnum", field(&DrawParams::smallLastDigitCount));
        add("Mornum", field(&DrawParams::bigCount));
        add("Ltlnum", field(&DrawParams::smallCount));
        add("Modenum", field(&DrawParams::repeatedLastDigits));
        add("Lnum", field(&DrawParams::consecutivePairs));
        add("Lxnum", field(&DrawParams::longestRun));
        add("Mxzounum", field(&DrawParams::largestGap));
        add("Apzounum", field(&DrawParams::numberSpan));
        add("Fcodp", field(&DrawParams::complexity));
        add("R", field(&DrawParams::R));
        add("a", field(&DrawParams::a));
        add("intYljz", field(&DrawParams::omissionSpread));
        for (int i = 0; i < 4; ++i)
            m.insert(QStringLiteral("qnum%1").arg(i), element(&DrawParams::decadeCounts, i));
        for (int i = 0; i < 5; ++i)
            m.insert(QStringLiteral("lcz%1").arg(i + 1), element(&DrawParams::centreOffsets, i));
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
    static const QStringList c = parameterColumns(schema::frontDrawTable());
    return c;
}
const QStringList& backColumns() {
    static const QStringList c = parameterColumns(schema::backDrawTable());
    return c;
}
const QStringList& bothColumns() {
    static const QStringList c = parameterColumns(schema::wholeDrawTable());
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

}  // namespace draw_params_columns

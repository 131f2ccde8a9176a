#include "tools/fortune.h"

#include <QRegularExpression>

#include <algorithm>
#include <cmath>

namespace fortune {

namespace {

// The curves are drawn with this value of pi, not a closer one.
constexpr double kPi = 3.1415926;

double curveValue(int64_t phase, int day, int period) {
    const int64_t t = (phase + day) % period;
    return 50.0 - 50.0 * std::sin(2.0 * static_cast<double>(t) * kPi / period);
}

}  // namespace

Weights weightsOf(Personality p) {
    switch (p) {
        case Personality::Impulsive:
            return {1, 2, 1};
        case Personality::Rational:
            return {1, 1, 2};
        case Personality::Emotional:
            return {2, 1, 1};
        case Personality::Ordinary:
            break;
    }
    return {4.0 / 3, 4.0 / 3, 4.0 / 3};
}

QString captionOf(Personality p) {
    switch (p) {
        case Personality::Impulsive:
            return QStringLiteral("冲动型");
        case Personality::Rational:
            return QStringLiteral("理智型");
        case Personality::Emotional:
            return QStringLiteral("情绪型");
        case Personality::Ordinary:
            break;
    }
    return QStringLiteral("普通型");
}

std::optional<Personality> personalityFromNumber(int n) {
    if (n < 1 || n > 4) return std::nullopt;
    return static_cast<Personality>(n);
}

float weightedTotal(Personality p, int16_t c28, float c23, float c33) {
    const Weights w = weightsOf(p);
    return static_cast<float>(w.w28 * c28 + w.w23 * c23 + w.w33 * c33);
}

Curves curves(int64_t daysSinceBirth, Personality p) {
    const int64_t a23 = daysSinceBirth % 23, a28 = daysSinceBirth % 28, a33 = daysSinceBirth % 33;
    Curves c;
    for (int i = 0; i < kDays; ++i) {
        const auto i_ = static_cast<size_t>(i);
        c.c28[i_] = static_cast<int16_t>(std::lround(curveValue(a28, i, 28)));
        c.c23[i_] = static_cast<float>(curveValue(a23, i, 23));
        c.c33[i_] = static_cast<float>(curveValue(a33, i, 33));
        c.total[i_] = weightedTotal(p, c.c28[i_], c.c23[i_], c.c33[i_]);
    }
    return c;
}

double fortuneValue(const Curves& c) { return 400.0 - static_cast<double>(c.total[0]); }

int popularity(double fortune) {
    return static_cast<int>(std::clamp(std::trunc(fortune * 1000), 0.0, 400000.0));
}

QString verdict(double x) {
    if (x >= 0 && x < 80) return QStringLiteral("很低");
    if (x >= 80 && x < 160) return QStringLiteral("较低");
    if (x >= 160 && x < 240) return QStringLiteral("一般");
    if (x >= 240 && x < 320) return QStringLiteral("较高");
    if (x >= 320 && x < 400) return QStringLiteral("很好");
    return QStringLiteral("千载难逢");
}

std::optional<Reading> read(QDate birth, QDate day, Personality p) {
    const int64_t d = birth.daysTo(day);
    if (d < 0) return std::nullopt;
    Reading r;
    r.curves = curves(d, p);
    r.fortune = fortuneValue(r.curves);
    r.popularity = popularity(r.fortune);
    r.word = verdict(r.fortune);
    return r;
}

QDate parseDate(const QString& text) {
    static const QRegularExpression form(QStringLiteral(R"(^\s*(\d{2}|\d{4})([-/.])(\d{1,2})\2(\d{1,2})\s*$)"));
    const QRegularExpressionMatch m = form.match(text);
    if (!m.hasMatch()) return {};
    int year = m.captured(1).toInt();
    if (m.capturedLength(1) == 2) year += year < 30 ? 2000 : 1900;
    return QDate(year, m.captured(3).toInt(), m.captured(4).toInt());
}

}  // namespace fortune

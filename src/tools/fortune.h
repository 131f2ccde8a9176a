#pragma once

// The daily fortune for buying tickets: three biorhythm curves (23, 28 and 33 days from the
// birthday) weighted by the player's personality, over a year ahead of the chosen day. A
// curve runs from 0 to 100 with its high point at 0; the weighted total runs from 0 to 400,
// and the day's fortune is 400 less the total of its first day.

#include <QDate>
#include <QString>

#include <array>
#include <cstdint>
#include <optional>

namespace fortune {

enum class Personality { Impulsive = 1, Rational = 2, Emotional = 3, Ordinary = 4 };
inline constexpr Personality kDefaultPersonality = Personality::Ordinary;

// The weights of the 28-, 23- and 33-day curves; each set sums to 4.
struct Weights {
    double w28, w23, w33;
};
Weights weightsOf(Personality p);
// "冲动型", "理智型", "情绪型", "普通型".
QString captionOf(Personality p);
// 1..4 as stored in the settings; nullopt for anything else.
std::optional<Personality> personalityFromNumber(int n);

// Days 0 .. 360 from the chosen day.
inline constexpr int kDays = 361;

struct Curves {
    std::array<int16_t, kDays> c28{};  // the 28-day curve is kept whole
    std::array<float, kDays> c23{}, c33{}, total{};
};

// The weighted total of one day's curve values, kept as a 32-bit float like the curves.
float weightedTotal(Personality p, int16_t c28, float c23, float c33);

// The curves of the days 0..360 after the day that lies `daysSinceBirth` (>= 0) after the
// birthday, weighted for `p`.
Curves curves(int64_t daysSinceBirth, Personality p);

// The day's fortune, 400 less the total of day 0.
double fortuneValue(const Curves& c);
// The integer part of fortune × 1000, within 0..400000.
int popularity(double fortune);
// The word for a fortune value: "很低", "较低", "一般", "较高", "很好" by bands of 80, and
// "千载难逢" for any value outside 0..400 (that is, exactly 400).
QString verdict(double fortune);

struct Reading {
    Curves curves;
    double fortune = 0;
    int popularity = 0;
    QString word;
};
// The reading of `day` for a player born on `birth`; nullopt when the day is before the
// birthday.
std::optional<Reading> read(QDate birth, QDate day, Personality p);

// A date as a player types it: year-month-day with '-', '/' or '.' between, a two-digit year
// meaning 1930..2029. An invalid text gives an invalid date.
QDate parseDate(const QString& text);

}  // namespace fortune

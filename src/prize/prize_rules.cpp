#include "prize/prize_rules.h"

#include "workspace/settings.h"

#include <cmath>

namespace prize_rules {
const std::array<PrizeSlotDefault, kSlots> kDefaults{{
    {5, 2, 5000000, "1等奖", "5前2后", "pz1", "一等奖设置选项"},
    {5, 1, 50000, "2等奖", "5前1后", "pz2", "二等奖设置选项"},
    {5, 0, 5000, "3等奖", "5前0后", "pz3", "三等奖设置选项"},
    {4, 2, 3000, "4等奖", "4前2后", "pz4", "四等奖设置选项"},
    {4, 1, 500, "5等奖", "4前1后", "pz5", "五等奖设置选项"},
    {3, 2, 200, "6等奖", "3前2后", "pz6", "六等奖设置选项"},
    {4, 0, 200, "6等奖", "4前0后", "pz7", "七等奖设置选项"},
    {3, 1, 10, "7等奖", "3前1后", "pz8", "八等奖设置选项"},
    {2, 2, 10, "7等奖", "2前2后", "pz9", "九等奖设置选项"},
    {3, 0, 5, "8等奖", "3红0蓝", "pz10", "十等奖设置选项"},
    {1, 2, 5, "8等奖", "1前2后", "pz11", "十一等奖设置选项"},
    {2, 1, 5, "8等奖", "2前1后", "pz12", "十二等奖设置选项"},
}};
}  // namespace prize_rules

PrizeRules PrizeRules::defaults() {
    PrizeRules r;
    for (int n = 1; n <= prize_rules::kSlots; ++n) {
        const PrizeSlotDefault& d = prize_rules::kDefaults[static_cast<size_t>(n - 1)];
        r.slot(n) = {d.front, d.back, d.money, QString::fromUtf8(d.rank)};
    }
    return r;
}

int PrizeRules::slotFor(int front, int back) const {
    int found = 0;
    for (int n = prize_rules::kSlots; n >= 1; --n)
        if (slot(n).front == front && slot(n).back == back) found = n;
    return found;
}

namespace {
const QString kRankSection = QStringLiteral("Prizerank");
const QString kFrontKey = QStringLiteral("0");
const QString kBackKey = QStringLiteral("1");
const QString kMoneyKey = QStringLiteral("Money");

QString slotSection(int n) { return QStringLiteral("%1prize").arg(n); }

// A number as the store holds it: decimal text, blanks around it allowed, a fraction rounded.
bool toNumber(const QString& text, int64_t* out) {
    const QString t = text.trimmed();
    bool ok = false;
    const qlonglong whole = t.toLongLong(&ok);
    if (ok) {
        *out = whole;
        return true;
    }
    const double d = t.toDouble(&ok);
    if (!ok || !std::isfinite(d)) return false;
    *out = static_cast<int64_t>(std::llround(d));
    return true;
}
}  // namespace

PrizeSettings::PrizeSettings(Settings& settings, QString workspace)
    : m_settings(settings), m_workspace(std::move(workspace)) {}

QString PrizeSettings::app() const { return Settings::appName(SettingApp::Workspace, m_workspace); }

PrizeSettings::ReadResult PrizeSettings::read() const {
    ReadResult result;
    result.rules = PrizeRules::defaults();
    for (int n = 1; n <= prize_rules::kSlots; ++n) {
        PrizeSlot& s = result.rules.slot(n);
        const auto number = [&](const QString& section, const QString& key, int64_t fallback, int64_t lo,
                                int64_t hi) -> int64_t {
            const QString text = m_settings.readRaw(app(), section, key, QString::number(fallback));
            int64_t v = 0;
            if (toNumber(text, &v) && v >= lo && v <= hi) return v;
            result.problems << QStringLiteral("[%1] %2=%3").arg(section, key, text);
            return fallback;
        };
        s.front = static_cast<int16_t>(number(slotSection(n), kFrontKey, s.front, INT16_MIN, INT16_MAX));
        s.back = static_cast<int16_t>(number(slotSection(n), kBackKey, s.back, INT16_MIN, INT16_MAX));
        s.money = static_cast<int32_t>(number(slotSection(n), kMoneyKey, s.money, INT32_MIN, INT32_MAX));
        s.rank = m_settings.readRaw(app(), kRankSection, QString::number(n), s.rank);
    }
    return result;
}

bool PrizeSettings::writeFront(int n, int front) {
    return m_settings.writeRaw(app(), slotSection(n), kFrontKey, QString::number(front));
}
bool PrizeSettings::writeBack(int n, int back) {
    return m_settings.writeRaw(app(), slotSection(n), kBackKey, QString::number(back));
}
bool PrizeSettings::writeMoney(int n, int32_t money) {
    return m_settings.writeRaw(app(), slotSection(n), kMoneyKey, QString::number(money));
}
bool PrizeSettings::writeRank(int n, const QString& rank) {
    return m_settings.writeRaw(app(), kRankSection, QString::number(n), rank);
}

bool PrizeSettings::writeSlot(int n, const SlotChange& change) {
    QList<Settings::Value> values;
    if (change.front) values.append({slotSection(n), kFrontKey, QString::number(*change.front)});
    if (change.back) values.append({slotSection(n), kBackKey, QString::number(*change.back)});
    if (change.money) values.append({slotSection(n), kMoneyKey, QString::number(*change.money)});
    if (change.rank) values.append({kRankSection, QString::number(n), *change.rank});
    return m_settings.writeAll(app(), values);
}

QString PrizeSettings::saveFailedText() const { return Settings::saveFailedText(m_settings.fileFor(app())); }

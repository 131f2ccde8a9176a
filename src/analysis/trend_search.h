#pragma once

// The two searches of the trend grid, asked through the Prompter: how many of the latest draws
// the appearance counts cover, and the issue whose omissions the omission row shows. Each asks
// again after a wrong answer until the player gives a good one or ends.

#include <QString>

#include <cstdint>
#include <functional>
#include <optional>

class Prompter;

namespace trend_search {

inline const QString kTitle = QStringLiteral("历史次数检索");
inline const QString kCountPrompt = QStringLiteral(
    "检索指定历史阶段各位上的各个号码出现的次数。请输入过滤检索历史号码的期数，所填数字表示最近前若干期，"
    "缺省将检索所有期。检索后的统计值");
inline const QString kIssuePrompt = QStringLiteral("检索指定历史期号的遗漏期数。请输入过滤检索历史期号。");
inline const QString kErrorTitle = QStringLiteral("输入错误");
inline const QString kNotNumber = QStringLiteral("请输入数字");
inline const QString kNotPositive = QStringLiteral("请输入一个正数");

// Asks for the count m of latest draws, proposing all R of them. Returns the index after which
// draws are counted: R - m for 0 < m < R - 1, else 0 (all draws); nothing when the player ends
// with an empty answer.
std::optional<int> askCountStart(Prompter& prompter, int drawCount);

// Asks for an issue, proposing R. Returns the first issue that `accept` takes (it shows that issue); nothing
// when the player ends with an empty answer or "0". A number below 1 or one that `accept` refuses is answered
// with the second error, anything else that is no number with the first.
std::optional<int32_t> askIssue(Prompter& prompter, int drawCount,
                                const std::function<bool(int32_t)>& accept);

}  // namespace trend_search

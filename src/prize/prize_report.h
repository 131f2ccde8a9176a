#pragma once

#include "prize/prize_rules.h"
#include "workspace/schema.h"

#include <QDateTime>
#include <QString>
#include <QStringList>

class PrizeView;

// The profit and loss report that a check leaves behind: duijiang/<yy-m-d日><h.m.s秒>兑奖.txt
// in the workspace folder. Its first two lines are the date and the time, which the report
// list shows.
namespace prize_report {

inline const QString kFolder = QStringLiteral("duijiang");
inline const QString kSuffix = QStringLiteral("兑奖.txt");
inline const QString kPattern = QStringLiteral("*兑奖.txt");
// The fixed forms of lines 1 and 2.
inline const QString kDateForm = QStringLiteral("yyyy-MM-dd");
inline const QString kTimeForm = QStringLiteral("HH:mm:ss");

// "26-3-5日14.7.9秒兑奖.txt" for 5 March 2026, 14:07:09.
QString fileName(const QDateTime& when);
// "组号方式:复选/胆拖组合缩水" and the others; empty for zuhef, whose view writes no report.
QString sourceLine(schema::CandidateKind kind);

// The lines of the report of a check view, listing the tickets of the row set it opened last.
QStringList lines(const PrizeView& view, const QDateTime& when);

struct WriteResult {
    bool ok = false;
    QString path;
    QString error;
};
// Makes the folder when needed and writes the file whole or not at all.
WriteResult write(const QString& workspaceFolder, const PrizeView& view, const QDateTime& when);

}  // namespace prize_report

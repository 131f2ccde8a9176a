#pragma once

// The titles and messages of the draw history actions, as the player reads them.

#include <QString>

namespace history_texts {

// Imports (mnuRed, mnuRead).
inline const QString kImportTitle = QStringLiteral("读入历史");
inline const QString kImportWholeQuestion = QStringLiteral(
    "确实要读入历史号码吗？读入后将覆盖原来所输入/"
    "读入的历史号，以新的历史号码文件灌装进入作为本用户的历史纪录！"
    "点击'确认'读入,点击'取消'放弃该操作。确要读入请保证安装目录下存在历史号码的文本文件文件。"
    "读取时可能要花费一段时间,请耐心等候！");
inline const QString kImportAppendQuestion = QStringLiteral(
    "确实要读入追加历史号码吗？读入时只需要检索历史号码文本中没有灌装如电脑的部分，已灌装期号之前部分将不读取"
    "，"
    "读取部分将追加到原来所输入/读入的历史号后面！点击'确认'读入,点击'取消'放弃该操作。"
    "确要读入请保证安装目录下存在历史号码的文本文件文件。读取时可能要花费一段时间,请耐心等候！");
inline const QString kOpenDialogTitle = QStringLiteral("打开");
inline const QString kOpenDialogFilter = QStringLiteral("Text(*.txt)");
inline const QString kSevenNumbersTitle = QStringLiteral("历史号码文本错误");
inline const QString kSevenNumbersText =
    QStringLiteral("请检查您的历史号码文本都是由7个号码组成，中间由空格分开");
inline const QString kTrapTitle = QStringLiteral("输入错误");
// The error trap of both imports; the append import still speaks of five numbers.
inline QString trapText(bool append) {
    return QStringLiteral(
               "文件不存在,名字有冲突或格式不正确,请在本软件目录下察看是否存在历史号码的文本文件"
               "(前面顶格[可以有7位的历史期号{如2002001}]按顺序每行一期历史号码共计%1个数"
               "[或者4+1基本号码按顺序，特别号码列最后]，中间用空格符分离).然后稍后再次读入.")
        .arg(append ? 5 : 7);
}
// The question when the workspace's copy of a history file exists already.
inline QString renameQuestion(const QString& user, const QString& dateTime) {
    const QString copy = user + QStringLiteral(" 大乐透号码.TXT");
    return QStringLiteral("读取的历史号码将保存为名为: ") + copy + QStringLiteral(" 的文本文件,") + copy +
           QStringLiteral("的文本已经存在,将要") + copy + QStringLiteral("改名为:") + user +
           QStringLiteral(" 大乐透号码 ") + dateTime +
           QStringLiteral("再选择文本作为历史号码的文本,然后再次读如历史数据.确实要改名吗?") + copy +
           QStringLiteral("的历史号码文本吗?");
}

// Edit text (mnuEdit).
inline const QString kEditTitle = QStringLiteral("编辑历史");
inline QString editText(const QString& path) {
    return QStringLiteral("您将修改该用户原来读取历史号码文件的时候所生成的默认历史号码文本，文件名为：“") +
           path + QStringLiteral("”修改之后如果需要加载到软件里面请使用“读取历史”功能！");
}
inline const QString kEditMissingTitle = QStringLiteral("编辑出错！");
inline const QString kEditMissingText = QStringLiteral(
    "您目前还没有生成历史号码文本，只有“读取历史”找到您当地的历史开奖号码并读入软件之后才能将该历史号码作为您"
    "的默认"
    "历史号码！是否读取当地历史号码？");

// Empty the list (meuCln).
inline const QString kClearTitle = QStringLiteral("清空确认");
inline const QString kClearText = QStringLiteral("确实要清空吗,确认后将清空该种彩票的历史数据");

// Manual entry (MaskEdBox1) and cell editing (Text1).
inline const QString kEntryTitle = QStringLiteral("输入错误!!!");
inline const QString kEntryMaskText = QStringLiteral(
    "若需输入个位数,请在前面加0(例如:欲输入'4',结果成为'_4'或'4_'错误,应为'04').请点'放弃输入'"
    "按钮重新进行输入!");
inline const QString kEntryRangeText = QStringLiteral(
    "输入历史号的大小务必在当地的选号范围之内,请点'放弃输入'按钮重新进行输入!若需输入个位数,请在前面加0"
    "(例如:欲输入'4',结果成为'_4'或'4_'错误,应为'04').");
inline const QString kEntryRepeatText = QStringLiteral(
    "输入历史号务必不能重复,请点'放弃输入'按钮重新进行输入!若需输入个位数,请在前面加0"
    "(例如:欲输入'4',结果成为'_4'或'4_'错误,应为'04').");
inline const QString kCellRangeText =
    QStringLiteral("输入历史号的大小务必在当地的选号范围之内,并且按照由小到大的顺序排列.");
// An issue that the history text would not give back as it stands: more than seven digits,
// or one of up to seven that does not follow the issue before it.
inline const QString kIssueEditText = QStringLiteral(
    "输入的期号务必为7位数字(例如:2007001),不足7位的期号务必紧接上一期期号,否则历史号码文本无法保存该期号.");
inline const QString kIssueAppendText =
    QStringLiteral("下一期的期号已超出7位数字,历史号码文本无法保存该期号,不能追加最新历史号码.");

// Downloads (mnuNew, mnuNewol).
inline const QString kDownloadTitle = QStringLiteral("历史更新");
inline const QString kDownloadTextQuestion = QStringLiteral(
    "您将可以从我们网站直接下载最新的全国各地历史号码数据文件（可以用文本编辑器手工编辑），可能需要花费一段时"
    "间！");
inline const QString kDownloadDbQuestion =
    QStringLiteral("您将可以从我们网站直接下载最新的中国体彩大乐透号码，可能需要花费一段时间！");
inline QString downloadDbConfirm(const QString& date, qint64 first, qint64 last) {
    return QStringLiteral("您下载的是：中国体彩大乐透历史号码 截至 ") + date + QLatin1Char(' ') +
           QString::number(first) + QStringLiteral(" 至 ") + QString::number(last) +
           QStringLiteral("期，是否确认为当前历史号码？");
}
inline const QString kDownloadFailed =
    QStringLiteral("操作失败，可能您的计算机未能连上internet或者服务站点下载繁忙，或者计算机读写出错。");
inline const QString kDownloadSourceCaption = QStringLiteral("历史号码系统文件列表(双击选中)");

// A database write that failed: nothing was changed.
inline const QString kWriteFailedTitle = QStringLiteral("数据库错误");
inline const QString kWriteFailedText = QStringLiteral("历史号码未能写入数据库,历史数据保持原样,请稍后再试.");

// Label12 above the entry row.
inline QString nextIssueText(qint64 nextIssue) {
    return QStringLiteral("在右输入") + QString::number(nextIssue) + QStringLiteral(" 期历史号码:");
}

}  // namespace history_texts

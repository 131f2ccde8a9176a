#pragma once

// The smaller history actions of the main window: the history text the program keeps
// (Writetext), its editing (mnuEdit), emptying the list (meuCln) and deleting the last draw
// (mnuDelast, Command44).

#include "history/history_result.h"

#include <QString>

class Prompter;
class Session;

namespace history_actions {

// <app>/五星历史号码/<user> 大乐透号码.TXT: rewritten after every entry, edit, delete, download.
QString historyTextPath(const Session& s);
// <app>/五星历史号码/<user> 五星号码.TXT: the file mnuEdit opens.
QString editTextPath(const Session& s);

// Writetext: one line per draw of the history.
bool writeText(const Session& s);

// Label12: "在右输入" + next issue + " 期历史号码:".
QString nextIssueText(const Session& s);

// mnuEdit. Done with `path` set when the file exists: the window opens it in the text editor.
// When it is missing the player is asked whether to read the local history; the writer then
// runs over an empty batch, which has nothing to count and changes nothing.
HistoryActionResult editText(Session& s, Prompter& prompter);

// meuCln: after OK, fig and Ylqs lose every row and Drawnum becomes 0. fighou, figquan, their
// omissions, the frequency tables and the statistics arrays stay as they are.
HistoryActionResult clearList(Session& s, Prompter& prompter);

// mnuDelast: no question. Deletes the last row of the six draw and omission tables, reloads
// Ylarr from the last Ylqs row, recounts the front frequencies from all rows and rewrites
// Gailv for 1..Bitnum. The back and both statistics keep counting the deleted draw.
HistoryActionResult deleteLast(Session& s, Prompter& prompter);

}  // namespace history_actions

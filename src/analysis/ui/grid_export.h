#pragma once

class Prompter;
class QAbstractItemModel;
class QString;
class Session;

// Exports a window's grid to the spreadsheet beside the program (every cell's text and
// background colour, whatever is scrolled into view) and tells the player where it is, or
// why it could not be written. A model whose heads are its horizontal header data (not rows of
// its own) says so with `headerRow`.
namespace grid_export {
bool exportModel(const QAbstractItemModel& model, bool headerRow, Session& session, Prompter& prompter,
                 const QString& title);
}  // namespace grid_export

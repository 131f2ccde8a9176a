#include "analysis/ui/grid_export.h"

#include "tools/table_export.h"
#include "workspace/prompter.h"
#include "workspace/session.h"

#include <QAbstractItemModel>
#include <QColor>
#include <QCursor>
#include <QGuiApplication>

namespace grid_export {

bool exportModel(const QAbstractItemModel& model, bool headerRow, Session& session, Prompter& prompter,
                 const QString& title) {
    table_export::Grid grid;
    if (headerRow) {
        QList<table_export::Cell> heads;
        for (int c = 0; c < model.columnCount(); ++c) heads.append({model.headerData(c, Qt::Horizontal).toString(), {}});
        grid.append(heads);
    }
    for (int r = 0; r < model.rowCount(); ++r) {
        QList<table_export::Cell> row;
        for (int c = 0; c < model.columnCount(); ++c) {
            const QModelIndex i = model.index(r, c);
            table_export::Cell cell{i.data().toString(), {}};
            const QVariant background = i.data(Qt::BackgroundRole);
            if (background.canConvert<QColor>() && background.value<QColor>().isValid())
                cell.background = background.value<QColor>().rgb() & 0xFFFFFFu;
            row.append(cell);
        }
        grid.append(row);
    }
    const QString path = table_export::exportPath(session.root().path(QString()));
    QString error;
    QGuiApplication::setOverrideCursor(QCursor(Qt::WaitCursor));
    const bool written = table_export::writeXlsx(grid, path, &error);
    QGuiApplication::restoreOverrideCursor();
    if (!written) {
        prompter.inform(table_export::kErrorTitle, table_export::kErrorText + QLatin1Char('\n') + error,
                        Prompter::Icon::Warning);
        return false;
    }
    prompter.inform(title, path);
    return true;
}

}  // namespace grid_export

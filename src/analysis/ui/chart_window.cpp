#include "analysis/ui/chart_window.h"

#include "workspace/prompter.h"

#include <QAction>
#include <QMenuBar>
#include <QPainter>
#include <QPixmap>
#include <QPrinter>

ChartWindow::ChartWindow(const QString& given, const QString& caption, Prompter& prompter, QWidget* parent)
    : QMainWindow(parent), m_prompter(prompter), m_printerChooser(choosePrinter) {
    setObjectName(given);
    setWindowTitle(caption);
    auto* printAction = menuBar()->addAction(QStringLiteral("打印图形窗体(&P)"));
    printAction->setObjectName(QStringLiteral("mnuPrint"));
    connect(printAction, &QAction::triggered, this, &ChartWindow::print);
}

void ChartWindow::print() {
    QPrinter printer;
    if (!m_printerChooser(printer, false, this)) return;
    const QPixmap picture = centralWidget() ? centralWidget()->grab() : grab();
    QPainter painter;
    if (!painter.begin(&printer)) {
        m_prompter.inform(kPrintFailedTitle, kPrintFailedText, Prompter::Icon::Critical);
        return;
    }
    const QRect page = painter.viewport();
    const QSize size = picture.size().scaled(page.size(), Qt::KeepAspectRatio);
    painter.setViewport(page.x(), page.y(), size.width(), size.height());
    painter.setWindow(picture.rect());
    painter.drawPixmap(0, 0, picture);
    if (!painter.end()) m_prompter.inform(kPrintFailedTitle, kPrintFailedText, Prompter::Icon::Critical);
}

#pragma once

#include "prize/prize_view.h"

#include <QDateTime>
#include <QDialog>

#include <functional>
#include <memory>

class LevelSummaryModel;
class QAbstractItemModel;
class PrizeListModel;
class Prompter;
class QLabel;
class QLineEdit;
class QTableView;

// GAganDj (the seven-number tables) and GAganfDj (zuhef): one window parameterised by the
// view's table. It shows the check that the view ran on opening; cmdQut writes the report
// (GAganDj only), closes, and emits closedToMain so that the main window shows itself again.
class PrizeCheckWindow : public QDialog {
    Q_OBJECT
public:
    using Clock = std::function<QDateTime()>;

    PrizeCheckWindow(std::unique_ptr<PrizeView> view, QString workspaceFolder, Prompter& prompter,
                     QWidget* parent = nullptr);
    ~PrizeCheckWindow() override;

    const PrizeView& view() const { return *m_view; }
    // The time the report is stamped with; the machine's clock unless a test sets one.
    void setClock(Clock clock) { m_clock = std::move(clock); }
    // The report cmdQut wrote last, empty before.
    const QString& writtenReport() const { return m_written; }

signals:
    void closedToMain();

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    QWidget* makeLists();
    QWidget* makeSide();
    QTableView* makeGrid(const QString& name, QAbstractItemModel* model);
    void applyWidths(QTableView* grid, const PrizeListModel& model);
    void showMoney();
    void sortByHits();  // Command1
    void pageKept();    // Command111
    void pageThrown();  // Command2
    void quit();        // cmdQut

    std::unique_ptr<PrizeView> m_view;
    QString m_folder;
    Prompter& m_prompter;
    Clock m_clock = [] { return QDateTime::currentDateTime(); };
    QString m_written;
    bool m_closedToMain = false;
    PrizeListModel* m_keptModel = nullptr;
    PrizeListModel* m_thrownModel = nullptr;
    LevelSummaryModel* m_summaryModel = nullptr;
    QTableView* m_keptGrid = nullptr;
    QTableView* m_thrownGrid = nullptr;
    QLabel* m_thrownHeading = nullptr;
    QLabel* m_required = nullptr;
    QLabel* m_income = nullptr;
    QLabel* m_result = nullptr;
    QLineEdit* m_keptPageBox = nullptr;
    QLineEdit* m_thrownPageBox = nullptr;
};

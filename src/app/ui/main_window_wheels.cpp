// The main window's wheels: the four wheel menus of 组号方式, labelled and enabled by the
// board's picks when they open, GAganRote on the chosen wheel, the six-number list and the
// reopening of the last wheel's table.
#include "app/ui/filter_windows.h"
#include "app/ui/main_menu.h"
#include "app/ui/main_window.h"
#include "generation/ui/six_wheel_list_window.h"
#include "generation/wheels/wheel_menus.h"
#include "generation/wheels/wheel_store.h"
#include "tools/ui/ticket_preview.h"
#include "workspace/session.h"

#include <QAction>
#include <QMenu>

namespace {

// The entries of a family's menu in the order of the logic's entries.
void applyEntries(const MainMenu& menu, const MenuActions::Family& family,
                  const std::vector<wheel_menus::Entry>& entries) {
    size_t i = 0;
    for (const auto& [index, item] : family) {
        if (i >= entries.size()) break;
        const wheel_menus::Entry& e = entries[i++];
        if (!e.caption.isEmpty()) item->setText(e.caption);
        menu.enable(item, e.enabled);
    }
}

}  // namespace

void MainWindow::connectWheelMenus() {
    const MenuActions& menu = menuActions();
    const QString folder = m_session.root().root();
    connect(menu.basicWheelMenu, &QMenu::aboutToShow, this, [this] {
        m_board->prepareList(ListCommand::Wheel);
        renderBoard();
        const int picks = m_board->state().front.pickCount;
        for (const auto& [k, item] : menuActions().basicWheel)
            m_menu->enable(item, wheel_menus::basicEntryEnabled(k, picks));
    });
    connect(menu.superWheelMenu, &QMenu::aboutToShow, this, [this, folder] {
        m_board->prepareList(ListCommand::Wheel);
        renderBoard();
        const BoardState& b = m_board->state();
        applyEntries(*m_menu, menuActions().superWheel,
                     wheel_menus::superEntries(folder, b.front.pickCount, b.back.pickCount));
    });
    connect(menu.bankerWheelMenu, &QMenu::aboutToShow, this, [this, folder] {
        m_board->prepareList(ListCommand::Wheel);
        renderBoard();
        const BoardState& b = m_board->state();
        applyEntries(
            *m_menu, menuActions().bankerWheel,
            wheel_menus::bankerEntries(folder, b.front.bankerCount, b.front.pickCount, b.back.pickCount));
    });
    connect(menu.sixFrontWheelMenu, &QMenu::aboutToShow, this, [this, folder] {
        m_board->prepareList(ListCommand::SixNumberWheel);
        renderBoard();
        applyEntries(*m_menu, menuActions().sixFrontWheel,
                     wheel_menus::sixEntries(folder, m_board->state().front.pickCount));
    });

    for (const auto& [k, item] : menu.basicWheel)
        connect(item, &QAction::triggered, this,
                [this, k = k] { openWheel(wheels::Family::Basic, wheel_menus::basicTable(k)); });
    const auto connectFamily = [this](const MenuActions::Family& family, wheels::Family which,
                                      const std::function<std::vector<wheel_menus::Entry>()>& entries) {
        size_t i = 0;
        for (const auto& [index, item] : family) {
            const size_t at = i++;
            connect(item, &QAction::triggered, this, [this, which, entries, at] {
                const std::vector<wheel_menus::Entry> now = entries();
                if (at < now.size()) openWheel(which, now[at].table);
            });
        }
    };
    NumberBoard* board = m_board.get();
    connectFamily(menu.superWheel, wheels::Family::Super, [folder, board] {
        const BoardState& b = board->state();
        return wheel_menus::superEntries(folder, b.front.pickCount, b.back.pickCount);
    });
    connectFamily(menu.bankerWheel, wheels::Family::Banker, [folder, board] {
        const BoardState& b = board->state();
        return wheel_menus::bankerEntries(folder, b.front.bankerCount, b.front.pickCount, b.back.pickCount);
    });
    connectFamily(menu.sixFrontWheel, wheels::Family::Six, [folder, board] {
        return wheel_menus::sixEntries(folder, board->state().front.pickCount);
    });
    connect(menu.recallWheel, &QAction::triggered, this, [this] { openFilter(FilterSource::StoredWheel); });
}

void MainWindow::openWheel(wheels::Family family, const QString& table) {
    if (family == wheels::Family::Six) {
        openSixNumberWheel(table);
        return;
    }
    const WheelChoice choice{family, table};
    openFilter(FilterSource::Wheel, &choice);
}

// aganFRote: the rows' positions as the picks' numbers, listed with their money; printed
// through the tickets' preview.
void MainWindow::openSixNumberWheel(const QString& table) {
    const std::optional<wheel_store::Rows> rows = wheel_store::readTable(
        wheel_store::databasePath(m_session.root().root(), wheels::Family::Six), table);
    if (!rows) return;
    std::vector<std::vector<int>> tickets;
    const auto& picks = m_board->state().front.pickList;
    for (const std::vector<int>& row : *rows) {
        std::vector<int> numbers;
        for (int p : row) numbers.push_back(p >= 1 && p < kNumberSlots ? picks[static_cast<size_t>(p)] : 0);
        tickets.push_back(std::move(numbers));
    }
    auto* list = new SixWheelListWindow(std::move(tickets), this);
    list->setAttribute(Qt::WA_DeleteOnClose);
    const auto document = [this, list] {
        return ticket_print::build(list->tickets(), m_session.ticketsPerLine(),
                                   static_cast<qint64>(m_session.history().lastIssue()) + 1,
                                   QDateTime::currentDateTime());
    };
    connect(list, &SixWheelListWindow::previewRequested, list, [this, list, document] {
        openTicketPreview(document(), m_session.paths().folder(), m_prompter, list);
    });
    connect(list, &SixWheelListWindow::printRequested, list, [this, list, document] {
        TicketPreview preview(document(), m_session.paths().folder(), m_prompter, list);
        preview.print();
    });
    list->show();
}

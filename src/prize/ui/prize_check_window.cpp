#include "prize/ui/prize_check_window.h"

#include "prize/prize_report.h"
#include "prize/ui/prize_models.h"
#include "workspace/prompter.h"
#include "workspace/ui/column_widths.h"
#include "workspace/ui/named_widgets.h"

#include <QCloseEvent>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QStyle>
#include <QTableView>
#include <QVBoxLayout>

namespace {
constexpr int kRowHeight = 20;
constexpr int kSummaryColumnTwips = 600;
const QColor kGain(0, 255, 0);
const QColor kLoss(255, 0, 0);

QLineEdit* pageBox(const QString& name, QWidget* parent) {
    auto* t = new QLineEdit(QStringLiteral("1"), parent);
    t->setObjectName(name);
    t->setMaximumWidth(60);
    return t;
}
}  // namespace

PrizeCheckWindow::PrizeCheckWindow(std::unique_ptr<PrizeView> view, QString workspaceFolder,
                                   Prompter& prompter, QWidget* parent)
    : QDialog(parent), m_view(std::move(view)), m_folder(std::move(workspaceFolder)), m_prompter(prompter) {
    Q_ASSERT(m_view);
    setObjectName(m_view->sixNumbers() ? QStringLiteral("GAganfDj") : QStringLiteral("GAganDj"));
    setWindowTitle(m_view->caption());
    auto* layout = new QHBoxLayout(this);
    layout->addWidget(makeLists(), 1);
    layout->addWidget(makeSide());
    showMoney();
    resize(1180, 720);
}

PrizeCheckWindow::~PrizeCheckWindow() = default;

QTableView* PrizeCheckWindow::makeGrid(const QString& name, QAbstractItemModel* model) {
    auto* grid = new QTableView(this);
    grid->setObjectName(name);
    grid->setModel(model);
    grid->setSelectionBehavior(QAbstractItemView::SelectRows);
    grid->setEditTriggers(QAbstractItemView::NoEditTriggers);
    grid->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    grid->verticalHeader()->setDefaultSectionSize(kRowHeight);
    grid->verticalHeader()->hide();
    return grid;
}

void PrizeCheckWindow::applyWidths(QTableView* grid, const PrizeListModel& model) {
    for (int c = 0; c < model.columns().size(); ++c)
        grid->setColumnWidth(c, twipsToPixels(model.columns()[c].widthTwips));
    ColumnWidths::fit(grid);
}

QWidget* PrizeCheckWindow::makeLists() {
    auto* box = new QWidget(this);
    auto* v = new QVBoxLayout(box);
    const bool six = m_view->sixNumbers();
    v->addWidget(
        named<QLabel>(QStringLiteral("Label1"), six ? prize_view::kSixHeading : prize_view::kKeptHeading, box));
    m_keptModel = new PrizeListModel(*m_view, PrizeListModel::Side::Kept, this);
    m_keptGrid = makeGrid(QStringLiteral("MSFlexGrid1"), m_keptModel);
    applyWidths(m_keptGrid, *m_keptModel);
    v->addWidget(m_keptGrid, 1);
    auto* pageRow = new QHBoxLayout;
    m_keptPageBox = pageBox(QStringLiteral("Text1"), box);
    auto* keptPageButton = namedButton(QStringLiteral("Command111"), prize_view::kPage, box);
    connect(keptPageButton, &QPushButton::clicked, this, &PrizeCheckWindow::pageKept);
    pageRow->addWidget(m_keptPageBox);
    pageRow->addWidget(keptPageButton);
    pageRow->addStretch();
    v->addLayout(pageRow);
    if (six) return box;

    m_thrownHeading = named<QLabel>(QStringLiteral("Label2"), m_view->thrownHeading(), box);
    v->addWidget(m_thrownHeading);
    m_thrownModel = new PrizeListModel(*m_view, PrizeListModel::Side::Thrown, this);
    m_thrownGrid = makeGrid(QStringLiteral("MSFlexGrid3"), m_thrownModel);
    applyWidths(m_thrownGrid, *m_thrownModel);
    v->addWidget(m_thrownGrid, 1);
    auto* pageRow2 = new QHBoxLayout;
    m_thrownPageBox = pageBox(QStringLiteral("Text2"), box);
    auto* thrownPageButton = namedButton(QStringLiteral("Command2"), prize_view::kPage, box);
    connect(thrownPageButton, &QPushButton::clicked, this, &PrizeCheckWindow::pageThrown);
    pageRow2->addWidget(m_thrownPageBox);
    pageRow2->addWidget(thrownPageButton);
    pageRow2->addStretch();
    v->addLayout(pageRow2);
    return box;
}

QWidget* PrizeCheckWindow::makeSide() {
    auto* box = new QWidget(this);
    auto* v = new QVBoxLayout(box);
    const bool six = m_view->sixNumbers();
    if (!six) {
        m_summaryModel = new LevelSummaryModel(*m_view, this);
        auto* summary = new QTableView(box);
        summary->setObjectName(QStringLiteral("MSFlexGrid2"));
        summary->setModel(m_summaryModel);
        summary->horizontalHeader()->hide();
        summary->verticalHeader()->hide();
        summary->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
        summary->verticalHeader()->setDefaultSectionSize(kRowHeight);
        summary->setEditTriggers(QAbstractItemView::NoEditTriggers);
        for (int c = 0; c < 2; ++c) summary->setColumnWidth(c, twipsToPixels(kSummaryColumnTwips));
        ColumnWidths::fit(summary);
        // Room for both columns and the vertical scroll bar, which the list of levels needs.
        summary->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        summary->setFixedWidth(summary->columnWidth(0) + summary->columnWidth(1) + 2 * summary->frameWidth() +
                               summary->style()->pixelMetric(QStyle::PM_ScrollBarExtent, nullptr, summary));
        v->addWidget(summary, 1);
    }
    auto* money = new QGridLayout;
    const auto row = [&](int r, const QString& caption, const QString& name) {
        money->addWidget(new QLabel(caption, box), r, 0);
        QLabel* value = named<QLabel>(name, QString(), box);
        money->addWidget(value, r, 1);
        return value;
    };
    m_required = row(0, prize_view::kRequired, QStringLiteral("LabelRequired"));
    if (!six) {
        m_income = row(1, prize_view::kIncome, QStringLiteral("LabelIncome"));
        m_result = row(2, prize_view::kResult, QStringLiteral("LabelResult"));
    }
    v->addLayout(money);
    auto* sortButton = namedButton(QStringLiteral("Command1"), prize_view::kSort, box);
    connect(sortButton, &QPushButton::clicked, this, &PrizeCheckWindow::sortByHits);
    v->addWidget(sortButton);
    auto* quitButton =
        namedButton(QStringLiteral("cmdQut"), six ? prize_view::kBack : prize_view::kAddToReport, box);
    connect(quitButton, &QPushButton::clicked, this, &PrizeCheckWindow::quit);
    v->addWidget(quitButton);
    if (six) v->addStretch();
    return box;
}

void PrizeCheckWindow::showMoney() {
    m_required->setText(m_view->requiredText());
    if (!m_income) return;
    m_income->setText(m_view->incomeText());
    m_result->setText(m_view->resultText());
    // Green for a gain; red otherwise, a result of 0 included.
    QPalette p = m_result->palette();
    p.setColor(QPalette::WindowText, m_view->resultIsGain() ? kGain : kLoss);
    m_result->setPalette(p);
}

void PrizeCheckWindow::sortByHits() {
    m_view->sortByHits();
    if (m_thrownModel) {
        m_thrownModel->reset();
        applyWidths(m_thrownGrid, *m_thrownModel);
    }
    m_keptModel->reset();
    applyWidths(m_keptGrid, *m_keptModel);
}

void PrizeCheckWindow::pageKept() {
    if (!m_view->pageKept(m_keptPageBox->text())) return;
    m_keptModel->reset();
}

void PrizeCheckWindow::pageThrown() {
    if (!m_view->pageThrown(m_thrownPageBox->text())) return;
    m_thrownModel->reset();
}

void PrizeCheckWindow::quit() {
    if (!m_view->sixNumbers()) {
        const prize_report::WriteResult r = prize_report::write(m_folder, *m_view, m_clock());
        if (r.ok)
            m_written = r.path;
        else
            m_prompter.inform(QStringLiteral("盈亏报告"), QStringLiteral("盈亏报告写入失败: %1").arg(r.error),
                              Prompter::Icon::Warning);
    }
    close();
}

void PrizeCheckWindow::closeEvent(QCloseEvent* event) {
    if (!m_closedToMain) {
        m_closedToMain = true;
        emit closedToMain();
    }
    QDialog::closeEvent(event);
}

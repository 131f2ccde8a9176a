#include "filter/ui/six_filter_window.h"

#include "filter/candidate_actions.h"
#include "filter/param/param_catalogue.h"
#include "filter/param/param_kernels.h"
#include "filter/param/range_query.h"
#include "filter/six/six_actions.h"
#include "filter/six/six_history.h"
#include "filter/six/six_integrated.h"
#include "filter/ui/saved_settings_dialog.h"
#include "filter/ui/dialog_progress.h"
#include "workspace/prompter.h"
#include "workspace/session.h"

#include <QApplication>
#include <QCheckBox>
#include <QCloseEvent>
#include <QComboBox>
#include <QDateTime>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTableView>
#include <QVBoxLayout>

namespace {

const QString kUsedStyle = QStringLiteral("QPushButton { color: blue; }");
constexpr int kYuanPerRow = 6 * 2;  // a six-number row is six tickets of 2 yuan

// idx and the six numbers, with the parameter's value after a parameter button.
GridView sixView(bool liveOnly, const QString& paramHeading = {}) {
    using C = GridView::Column;
    GridView v;
    v.liveOnly = liveOnly;
    v.columns = {C::Idx, C::Number1, C::Number2, C::Number3, C::Number4, C::Number5, C::Number6};
    v.headings = {QStringLiteral("号码索引"), QStringLiteral("1位"), QStringLiteral("2位"), QStringLiteral("3位"),
                  QStringLiteral("4位"),      QStringLiteral("5位"), QStringLiteral("第六位")};
    if (!paramHeading.isEmpty()) {
        v.columns.push_back(C::ParamValue);
        v.headings << paramHeading;
    }
    return v;
}

QPushButton* button(const char* name, const QString& caption, QWidget* parent) {
    auto* b = new QPushButton(caption, parent);
    b->setObjectName(QString::fromLatin1(name));
    return b;
}

}  // namespace

SixFilterWindow::SixFilterWindow(FilterSource instance, std::unique_ptr<FilterWorkspace> workspace,
                                 Session& session, Prompter& prompter, QWidget* parent)
    : QWidget(parent, Qt::Window),
      m_instance(instance),
      m_workspace(std::move(workspace)),
      m_session(session),
      m_prompter(prompter),
      m_super(*m_workspace, session.history(), session.frontSize(), session.filterDb()) {
    setObjectName(QString::fromLatin1(m_workspace->traits().className));
    const ParamContext ctx = ParamContext::fromSession(session);
    m_context.frontSize = ctx.maxQian;
    m_context.lastDrawFront = ctx.lastDrawFront;
    auto* layout = new QHBoxLayout(this);
    layout->addWidget(makeParameterFrame(), 0, Qt::AlignTop);
    layout->addWidget(makeGridPanel(), 1);
    GridView first = sixView(false);
    first.idxRange = {1, GridView::kPageSize};
    bindView(first);
    resize(1100, 700);
}

SixFilterWindow::~SixFilterWindow() { m_model->unbind(); }

QWidget* SixFilterWindow::makeParameterFrame() {
    auto* frame = new QGroupBox(QStringLiteral("参数过滤选项设置"), this);
    auto* grid = new QGridLayout(frame);
    grid->setVerticalSpacing(2);
    m_keep = new QRadioButton(QStringLiteral("保留"), frame);
    m_keep->setObjectName(QStringLiteral("Option1(0)"));
    m_keep->setChecked(true);
    auto* exclude = new QRadioButton(QStringLiteral("排除"), frame);
    exclude->setObjectName(QStringLiteral("Option1(1)"));
    grid->addWidget(m_keep, 0, 0);
    grid->addWidget(exclude, 0, 1);
    int row = 1;
    for (const SixParamInfo& p : six_params::all()) {
        const auto i = static_cast<size_t>(p.id);
        m_ticks[i] = new QCheckBox(p.caption, frame);
        m_ticks[i]->setObjectName(QStringLiteral("Check%1").arg(QLatin1String(p.option)));
        m_lo[i] = new QLineEdit(QString::number(p.lo), frame);
        m_lo[i]->setObjectName(QStringLiteral("%1(0)").arg(QLatin1String(p.boxes)));
        m_hi[i] = new QLineEdit(QString::number(p.hi), frame);
        m_hi[i]->setObjectName(QStringLiteral("%1(1)").arg(QLatin1String(p.boxes)));
        for (QLineEdit* box : {m_lo[i], m_hi[i]}) box->setMaximumWidth(48);
        QPushButton* run = button(p.option, QStringLiteral("过滤"), frame);
        const SixParam id = p.id;
        connect(run, &QPushButton::clicked, this, [this, id, run] {
            run->setStyleSheet(kUsedStyle);
            runParameter(id);
        });
        grid->addWidget(m_ticks[i], row, 0);
        grid->addWidget(m_lo[i], row, 1);
        grid->addWidget(new QLabel(QStringLiteral("到"), frame), row, 2);
        grid->addWidget(m_hi[i], row, 3);
        grid->addWidget(run, row, 4);
        if (QComboBox* span = makeSpanCombo(p, frame)) grid->addWidget(span, row, 5);
        ++row;
    }
    const struct {
        const char* name;
        const char* caption;
        int matches;
    } histories[] = {{"Option26", "历史同3号滤", 3}, {"Option28", "历史同4号滤", 4}, {"Option27", "历史同5号滤", 5}};
    auto* historyRow = new QHBoxLayout;
    for (const auto& h : histories) {
        QPushButton* b = button(h.name, QString::fromUtf8(h.caption), frame);
        const int matches = h.matches;
        connect(b, &QPushButton::clicked, this, [this, b, matches] {
            b->setStyleSheet(kUsedStyle);
            runHistory(matches);
        });
        historyRow->addWidget(b);
    }
    grid->addLayout(historyRow, row, 0, 1, 6);
    return frame;
}

// Combo1(i): the row's boxes take the least and the most the draws' column held over the span
// chosen. 第6位 has no column in the draws and no combo.
QComboBox* SixFilterWindow::makeSpanCombo(const SixParamInfo& p, QWidget* parent) {
    if (!*p.drawColumn) return nullptr;
    auto* combo = new QComboBox(parent);
    combo->setObjectName(QStringLiteral("Combo1(%1)").arg(static_cast<int>(p.id)));
    for (const range_query::SpanItem& item : range_query::spanItems()) combo->addItem(item.text, item.data);
    const SixParam id = p.id;
    connect(combo, &QComboBox::activated, this, [this, combo, id] {
        const auto range = six_params::historyRange(id, m_session.history(), combo->currentData().toInt());
        if (!range) return;
        m_lo[static_cast<size_t>(id)]->setText(QString::number(range->first));
        m_hi[static_cast<size_t>(id)]->setText(QString::number(range->second));
    });
    return combo;
}

QWidget* SixFilterWindow::makeSuperFrame() {
    auto* frame = new QGroupBox(QStringLiteral("超级过滤"), this);
    auto* grid = new QGridLayout(frame);
    // The relation buttons keep the filter window's indices (0 相克, 1 相生, 2 保留) in this
    // window's order of captions.
    const struct {
        SuperButton b;
        const char* caption;
    } supers[] = {{SuperButton::RelationKeeping, "保留号过滤"},      {SuperButton::RelationConflicting, "相克号过滤"},
                  {SuperButton::RelationSupporting, "相生号过滤"},   {SuperButton::InclusionKeep, "保留号分组过滤"},
                  {SuperButton::InclusionKill, "相克号分组过滤"}};
    int column = 0;
    for (const auto& s : supers) {
        QPushButton* b = button(super_filter::objectName(s.b).toLatin1().constData(), QString::fromUtf8(s.caption), frame);
        const SuperButton which = s.b;
        connect(b, &QPushButton::clicked, this, [this, b, which] {
            b->setStyleSheet(kUsedStyle);
            runSuper(which);
        });
        grid->addWidget(b, 0, column++);
    }
    QPushButton* integrated = button("Option29", QStringLiteral("多(名称勾选)参数整合过滤"), frame);
    connect(integrated, &QPushButton::clicked, this, [this, integrated] {
        integrated->setStyleSheet(kUsedStyle);
        runIntegrated();
    });
    auto* logicOr = new QRadioButton(QStringLiteral("逻辑或"), frame);
    logicOr->setObjectName(QStringLiteral("Option37(1)"));
    m_logicAnd = new QRadioButton(QStringLiteral("逻辑和"), frame);
    m_logicAnd->setObjectName(QStringLiteral("Option37(0)"));
    m_logicAnd->setChecked(true);
    grid->addWidget(integrated, 1, 0, 1, 2);
    grid->addWidget(logicOr, 1, 2);
    grid->addWidget(m_logicAnd, 1, 3);
    QPushButton* load = button("Command6", QStringLiteral("调用过滤设置(&C)"), frame);
    connect(load, &QPushButton::clicked, this, &SixFilterWindow::loadSetting);
    QPushButton* save = button("Command7", QStringLiteral("保存过滤设置(&S)"), frame);
    connect(save, &QPushButton::clicked, this, &SixFilterWindow::saveSetting);
    grid->addWidget(load, 2, 0);
    grid->addWidget(save, 2, 1);
    return frame;
}

QWidget* SixFilterWindow::makeGridPanel() {
    auto* panel = new QWidget(this);
    auto* column = new QVBoxLayout(panel);
    m_model = new ResultGridModel(this);
    m_grid = new QTableView(panel);
    m_grid->setObjectName(QStringLiteral("MSFlexGrid1"));
    m_grid->setModel(m_model);
    m_grid->verticalHeader()->hide();
    // Narrow columns and rows of one line: idx, six numbers and the value side by side.
    m_grid->horizontalHeader()->setDefaultSectionSize(fontMetrics().horizontalAdvance(QStringLiteral("号码索引")) + 16);
    m_grid->verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 6);
    m_grid->setSelectionBehavior(QAbstractItemView::SelectRows);
    connect(m_grid, &QTableView::doubleClicked, this, [this](const QModelIndex& index) { toggleRow(index.row()); });
    column->addWidget(m_grid, 1);
    column->addWidget(makeSuperFrame());

    auto* pages = new QHBoxLayout;
    m_page = new QLineEdit(QStringLiteral("1"), panel);
    m_page->setObjectName(QStringLiteral("Text1"));
    m_page->setMaximumWidth(60);
    QPushButton* turn = button("Command111", QStringLiteral("翻页(&U)"), panel);
    connect(turn, &QPushButton::clicked, this, &SixFilterWindow::showPage);
    m_money = new QLabel(panel);
    m_money->setObjectName(QStringLiteral("Label所需金额"));
    QPushButton* print = button("CmdPrint", QStringLiteral("打印预览(&P)"), panel);
    connect(print, &QPushButton::clicked, this, &SixFilterWindow::printRequested);
    QPushButton* quit = button("cmdQut", QStringLiteral("返回(&E)"), panel);
    connect(quit, &QPushButton::clicked, this, &QWidget::close);
    pages->addWidget(m_page);
    pages->addWidget(turn);
    pages->addStretch(1);
    pages->addWidget(m_money);
    pages->addStretch(1);
    pages->addWidget(print);
    pages->addWidget(quit);
    column->addLayout(pages);

    const struct {
        const char* name;
        const char* caption;
        void (*action)(CandidateTable&);
    } actions[] = {{"Command1", "全部复位(&S)", six_actions::resetAll},
                   {"cmdRetn", "过滤复位(&T)", six_actions::resetLast},
                   {"Command2", "全部反选(&l)", six_actions::invertAll},
                   {"Command3", "上次反选(&R)", six_actions::invertLast}};
    auto* row = new QHBoxLayout;
    for (const auto& a : actions) {
        QPushButton* b = button(a.name, QString::fromUtf8(a.caption), panel);
        const auto action = a.action;
        connect(b, &QPushButton::clicked, this, [this, action] { act(action); });
        row->addWidget(b);
    }
    column->addLayout(row);
    return panel;
}

void SixFilterWindow::runParameter(SixParam id) {
    const auto i = static_cast<size_t>(id);
    QApplication::setOverrideCursor(Qt::WaitCursor);
    six_params::Result r;
    {
        const FilterWorkspace::Edit edit = m_workspace->edit();
        r = six_params::run(edit.table(), id, m_lo[i]->text(), m_hi[i]->text(), m_keep->isChecked(), m_context);
    }
    QApplication::restoreOverrideCursor();
    bindView(sixView(true, r.heading));
}

void SixFilterWindow::runHistory(int matches) {
    const std::optional<QString> answer = m_prompter.askTextOrCancel(
        QStringLiteral("历史过滤"),
        QStringLiteral("请输入过滤检索历史号码的期数，所填数字表示最近前若干期，缺省将检索所有期，所检索到的历史开出号码将"
                       "被滤除。花费的时间可能较长，请您稍等！"));
    if (!answer) return;
    const six_history::DrawCount count = six_history::parseDrawCount(*answer);
    if (!count.error.isEmpty()) {
        m_prompter.inform(QStringLiteral("输入错误"), count.error, Prompter::Icon::Warning);
        return;
    }
    QApplication::setOverrideCursor(Qt::WaitCursor);
    {
        const FilterWorkspace::Edit edit = m_workspace->edit();
        six_history::run(edit.table(), matches, count.draws, m_session.history());
    }
    QApplication::restoreOverrideCursor();
    bindView(sixView(true));
}

void SixFilterWindow::runSuper(SuperButton b) {
    // The prompts come first; the worker runs only on a complete answer.
    QApplication::setOverrideCursor(Qt::WaitCursor);
    const SuperFilter::Outcome o =
        m_super.click(b, FilterWorkspace::Mouse::Left, m_superInputs, ZoneScope::Front, m_prompter);
    QApplication::restoreOverrideCursor();
    if (o.ran) bindView(sixView(true));
}

void SixFilterWindow::runIntegrated() {
    std::vector<six_integrated::Range> ticked;
    for (const SixParamInfo& p : six_params::all()) {
        const auto i = static_cast<size_t>(p.id);
        if (m_ticks[i]->isChecked()) ticked.push_back({p.id, m_lo[i]->text(), m_hi[i]->text()});
    }
    QApplication::setOverrideCursor(Qt::WaitCursor);
    {
        const FilterWorkspace::Edit edit = m_workspace->edit();
        six_integrated::run(edit.table(), ticked, {m_keep->isChecked(), m_logicAnd->isChecked()}, m_context);
    }
    QApplication::restoreOverrideCursor();
    bindView(sixView(true));
}

six_settings::Bounds SixFilterWindow::readBounds() const {
    six_settings::Bounds b;
    for (size_t i = 0; i < kSixParamCount; ++i) {
        b.lo[i] = m_lo[i]->text();
        b.hi[i] = m_hi[i]->text();
    }
    return b;
}

void SixFilterWindow::saveSetting() {
    const FilterWorkspace::Edit paused = m_workspace->pauseWrite();
    six_settings::save(m_session.filterDb(), readBounds(), m_prompter, QDateTime::currentDateTime());
}

void SixFilterWindow::loadSetting() {
    const FilterWorkspace::Edit paused = m_workspace->pauseWrite();
    SavedSettingsDialog finder(m_session.filterDb(), m_prompter, this);
    if (finder.exec() != QDialog::Accepted || finder.chosen().isNull()) return;
    six_settings::Bounds b = readBounds();
    if (!six_settings::load(m_session.filterDb(), finder.chosen(), b)) return;
    for (size_t i = 0; i < kSixParamCount; ++i) {
        m_lo[i]->setText(b.lo[i]);
        m_hi[i]->setText(b.hi[i]);
    }
}

void SixFilterWindow::act(void (*action)(CandidateTable&)) {
    {
        const FilterWorkspace::Edit edit = m_workspace->edit();
        action(edit.table());
    }
    bindView(sixView(true));
}

void SixFilterWindow::showPage() {
    const auto n = static_cast<int64_t>(param_catalogue::leadingNumber(m_page->text()));
    GridView v = sixView(true);
    v.idxRange = {n * GridView::kPageSize + 1, (n + 1) * GridView::kPageSize};
    bindView(v);
}

// A double click deletes the row by hand, or brings it back; it stays in view, grey while deleted.
void SixFilterWindow::toggleRow(int viewRow) {
    if (viewRow < 0 || viewRow >= m_model->rowCount()) return;
    const int32_t idx = m_model->idxAt(viewRow);
    {
        const FilterWorkspace::Edit edit = m_workspace->edit();
        if (const auto dead = candidate_actions::toggleByHand(edit.table(), idx)) m_model->setPainted(viewRow, *dead);
    }
    showCounts(false);
}

// The caption counts the first page's rows as the first query does, and the live rows after.
void SixFilterWindow::bindView(const GridView& view) {
    m_model->bind(&m_workspace->table(), view);
    showCounts(view.idxRange && !view.liveOnly);
}

void SixFilterWindow::showCounts(bool firstPage) {
    const uint64_t live = m_workspace->table().liveCount();
    setWindowTitle(filter_source::caption(static_cast<qint64>(firstPage ? m_workspace->shownCount() : live)));
    m_money->setText(QStringLiteral("所需金额:%1元").arg(live * kYuanPerRow));
}

void SixFilterWindow::closeEvent(QCloseEvent* event) {
    // The record is brought up to date before the window goes.
    if (m_workspace->writePending()) {
        DialogProgress progress(QStringLiteral("正在保存组合..."), this, false);
        const candidate_store::SaveResult saved = m_workspace->waitForWrite(&progress);
        if (saved.outcome == candidate_store::Outcome::Failed)
            m_prompter.inform(QStringLiteral("保存组合"), QStringLiteral("组合保存失败：") + saved.error,
                              Prompter::Icon::Warning);
    }
    emit closed();
    event->accept();
}

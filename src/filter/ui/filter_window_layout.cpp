#include "filter/ui/filter_window.h"

#include "filter/param/range_query.h"
#include "filter/result_grid_model.h"
#include "filter/ui/pass_rate_labels.h"
#include "workspace/ui/column_widths.h"
#include "workspace/ui/named_widgets.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QTableView>
#include <QVBoxLayout>

// The controls of the filter window, frame by frame, with their names and first states.

namespace {

// The range query's combo of a parameter row (Combo1(i)); 自定区间 has none.
int spanComboIndex(ParamId id) {
    for (const range_query::ComboRow& row : range_query::rows())
        if (row.param == id) return row.combo;
    return -1;
}

// The items of a span combo: "前所有期" (0), then "前10期" .. "前200期".
void fillSpanCombo(QComboBox* combo) {
    for (const range_query::SpanItem& item : range_query::spanItems()) combo->addItem(item.text, item.data);
}

// Wide enough for "100%".
constexpr int kPassRateWidth = 34;

}  // namespace

// One row of the parameter frame: the integrated box, the button, the four boxes and, for the
// parameters the history can be asked about, the span of draws.
FilterWindow::ParamRow FilterWindow::addParameterRow(const ParamInfo& p, QGridLayout* grid, int r,
                                                     QWidget* paramFrame) {
    ParamRow row;
    row.id = p.id;
    row.integratedBox = new QCheckBox(paramFrame);
    row.integratedBox->setObjectName(QStringLiteral("Check1(%1)").arg(p.integratedBox));
    row.integratedBox->setToolTip(param_catalogue::integratedBoxCaption(p.integratedBox, ZoneScope::Front));
    row.button = namedButton(QString::fromLatin1(p.button), p.caption, paramFrame);
    row.button->setMinimumWidth(92);
    const std::array<QString, 4> defaults = param_catalogue::boxDefaults(p.id);
    const QString boxName = QString::fromLatin1(p.boxes);
    for (int i = 0; i < 4; ++i) {
        auto* box = new QLineEdit(defaults[static_cast<size_t>(i)], paramFrame);
        box->setObjectName(QStringLiteral("%1(%2)").arg(boxName).arg(i));
        box->setFixedWidth(i == 3 ? 96 : 38);
        box->installEventFilter(this);
        row.boxes[static_cast<size_t>(i)] = box;
    }
    grid->addWidget(row.integratedBox, r, 0);
    grid->addWidget(row.button, r, 1);
    grid->addWidget(row.boxes[0], r, 2);
    grid->addWidget(new QLabel(QStringLiteral("到"), paramFrame), r, 3);
    grid->addWidget(row.boxes[1], r, 4);
    grid->addWidget(row.boxes[2], r, 5);
    row.countLabel = new QLabel(QStringLiteral("个"), paramFrame);
    grid->addWidget(row.countLabel, r, 6);
    grid->addWidget(row.boxes[3], r, 7);
    if (const int c = spanComboIndex(p.id); c >= 0) {
        row.spanCombo = new QComboBox(paramFrame);
        row.spanCombo->setObjectName(QStringLiteral("Combo1(%1)").arg(c));
        fillSpanCombo(row.spanCombo);
        grid->addWidget(row.spanCombo, r, 8);
        row.passRate = new QLabel(paramFrame);
        row.passRate->setObjectName(QStringLiteral("LabelPassRate(%1)").arg(c));
        row.passRate->setFixedWidth(kPassRateWidth);
        row.passRate->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
        grid->addWidget(row.passRate, r, 9);
        QComboBox* combo = row.spanCombo;
        connect(combo, &QComboBox::activated, this,
                [this, c, combo](int item) { comboChosen(c, combo->itemData(item).toInt()); });
    }
    const ParamId id = p.id;
    connect(row.button, &QPushButton::clicked, this, [this, id] { runParameter(id); });
    connect(row.integratedBox, &QCheckBox::clicked, this, &FilterWindow::integratedCheckClicked);
    return row;
}

QWidget* FilterWindow::makeParameterFrame() {
    auto* paramFrame = new QGroupBox(QStringLiteral("参数过滤选择"), this);
    paramFrame->setObjectName(QStringLiteral("Frame2"));
    auto* grid = new QGridLayout;
    grid->setHorizontalSpacing(3);
    grid->setVerticalSpacing(1);
    // Column headings: the integrated list, the range and the list of best values.
    auto* integratedHeading = new QLabel(QStringLiteral("整合"), paramFrame);
    integratedHeading->setObjectName(QStringLiteral("Frame5"));
    integratedHeading->setToolTip(QStringLiteral("整合过滤选择"));
    grid->addWidget(integratedHeading, 0, 0);
    auto* rangeHeading = new QLabel(QStringLiteral("范围"), paramFrame);
    rangeHeading->setObjectName(QStringLiteral("Frame9"));
    grid->addWidget(rangeHeading, 0, 2, 1, 3, Qt::AlignCenter);
    m_topValuesHeading = new QLabel(QStringLiteral("最值"), paramFrame);
    m_topValuesHeading->setObjectName(QStringLiteral("Frame10"));
    grid->addWidget(m_topValuesHeading, 0, 5, 1, 3, Qt::AlignCenter);
    grid->addWidget(new QLabel(QStringLiteral("检索期数"), paramFrame), 0, 8);
    auto* rateHeading = new QLabel(QStringLiteral("符合率"), paramFrame);
    rateHeading->setToolTip(QStringLiteral("历史符合率：检索期数内参数落在范围（或最值列表）中的期数占比"));
    grid->addWidget(rateHeading, 0, 9, Qt::AlignRight);

    int r = 1;
    for (const ParamInfo& p : param_catalogue::all()) {
        m_rows.push_back(addParameterRow(p, grid, r, paramFrame));
        ++r;
    }
    // The row that asks the history for every parameter at once.
    auto* all = new QComboBox(paramFrame);
    all->setObjectName(QStringLiteral("Combo1(20)"));
    m_allRowsSpan = all;
    fillSpanCombo(all);
    grid->addWidget(new QLabel(QStringLiteral("所有参数检索"), paramFrame), r, 1);
    grid->addWidget(all, r, 8);
    connect(all, &QComboBox::activated, this,
            [this, all](int item) { comboChosen(range_query::kAllRows, all->itemData(item).toInt()); });

    // 自定区间 in list mode reads its numbers from TxtZdqj.
    m_chosenNumbers = new QLineEdit(paramFrame);
    m_chosenNumbers->setObjectName(QStringLiteral("TxtZdqj"));
    m_chosenNumbers->setPlaceholderText(QStringLiteral("指定号码"));
    grid->addWidget(m_chosenNumbers, r + 1, 1, 1, 7);
    m_chosenNumbers->hide();

    auto* inner = new QWidget;
    inner->setLayout(grid);
    auto* scroll = new QScrollArea(paramFrame);
    scroll->setWidget(inner);
    scroll->setWidgetResizable(true);
    scroll->setFrameShape(QFrame::NoFrame);
    auto* v = new QVBoxLayout(paramFrame);
    v->setContentsMargins(2, 2, 2, 2);
    v->addWidget(scroll);
    paramFrame->setMinimumWidth(inner->sizeHint().width() + 24);
    return paramFrame;
}

QWidget* FilterWindow::makeOptionsPanel() {
    auto* panel = new QWidget(this);
    auto* h = new QHBoxLayout(panel);
    h->setContentsMargins(0, 0, 0, 0);

    // Positions and parities.
    auto* positions = new QGroupBox(QStringLiteral("位"), panel);
    auto* pg = new QGridLayout(positions);
    pg->setSpacing(2);
    for (int i = 1; i <= 7; ++i) {
        auto* box = new QCheckBox(QStringLiteral("%1位").arg(i), positions);
        box->setObjectName(QStringLiteral("ChkBt(%1)").arg(i));
        box->setToolTip(QStringLiteral("彩色参数是否按照所选位计算过滤"));
        box->setChecked(true);
        // ChkBt(6) and ChkBt(7) stay hidden in every tab and keep their ticks.
        box->setVisible(i <= 5);
        m_positionChecks[static_cast<size_t>(i - 1)] = box;
        pg->addWidget(box, 0, i - 1);
    }
    for (int i = 4; i <= 13; ++i) {
        auto* box = new QCheckBox((i % 2 == 0) ? QStringLiteral("奇") : QStringLiteral("偶"), positions);
        box->setObjectName(QStringLiteral("Check2(%1)").arg(i));
        m_parityChecks[static_cast<size_t>(i)] = box;
        pg->addWidget(box, 1 + (i - 4) % 2, (i - 4) / 2);
    }
    h->addWidget(positions);

    auto* senseFrame = new QGroupBox(QStringLiteral("参数过滤设置方式"), panel);
    senseFrame->setObjectName(QStringLiteral("Frame4"));
    auto* senseLayout = new QVBoxLayout(senseFrame);
    m_keep = new QRadioButton(QStringLiteral("保留"), senseFrame);
    m_keep->setObjectName(QStringLiteral("Option1(0)"));
    m_exclude = new QRadioButton(QStringLiteral("排除"), senseFrame);
    m_exclude->setObjectName(QStringLiteral("Option1(1)"));
    m_keep->setChecked(true);
    senseLayout->addWidget(m_keep);
    senseLayout->addWidget(m_exclude);
    // In the queue: an action that runs meanwhile keeps the sense it started with.
    connect(m_keep, &QRadioButton::toggled, this,
            [this](bool on) { whenIdle([this, on] { m_workspace->keepSense = on; }); });
    h->addWidget(senseFrame);

    auto* integratedFrame = new QGroupBox(QStringLiteral("多参数整合过滤"), panel);
    integratedFrame->setObjectName(QStringLiteral("Frame6"));
    auto* integratedLayout = new QGridLayout(integratedFrame);
    integratedLayout->setSpacing(2);
    m_logicAnd = new QRadioButton(QStringLiteral("逻辑和"), integratedFrame);
    m_logicAnd->setObjectName(QStringLiteral("Option37(0)"));
    m_logicOr = new QRadioButton(QStringLiteral("逻辑或"), integratedFrame);
    m_logicOr->setObjectName(QStringLiteral("Option37(1)"));
    m_logicAnd->setChecked(true);
    m_toleranceCheck = new QCheckBox(QStringLiteral("整合过滤容错比"), integratedFrame);
    m_toleranceCheck->setObjectName(QStringLiteral("Check3"));
    m_tolerancePercent = new QLineEdit(QStringLiteral("10"), integratedFrame);
    m_tolerancePercent->setObjectName(QStringLiteral("TxtRc(1)"));
    m_toleranceCount = new QLineEdit(QStringLiteral("1"), integratedFrame);
    m_toleranceCount->setObjectName(QStringLiteral("TxtRc(0)"));
    for (QLineEdit* e : {m_toleranceCount, m_tolerancePercent}) e->setFixedWidth(36);
    // The allowed count and the percent follow each other when the player edits one.
    connect(m_toleranceCount, &QLineEdit::textEdited, this,
            [this] { m_tolerancePercent->setText(m_tolerance.onCountEdited(readState())); });
    connect(m_tolerancePercent, &QLineEdit::textEdited, this,
            [this] { m_toleranceCount->setText(m_tolerance.onPercentEdited(readState())); });
    integratedLayout->addWidget(m_logicAnd, 0, 0);
    integratedLayout->addWidget(m_logicOr, 0, 1);
    // Beside the sense: the share of past draws whose winning ticket the filter would keep.
    integratedLayout->addWidget(new QLabel(QStringLiteral("符合率"), integratedFrame), 0, 2, 1, 2);
    m_integratedRate = new QLabel(integratedFrame);
    m_integratedRate->setObjectName(QStringLiteral("LabelPassRateZh"));
    integratedLayout->addWidget(m_integratedRate, 1, 2, 1, 2);
    integratedLayout->addWidget(m_toleranceCheck, 1, 0, 1, 2);
    integratedLayout->addWidget(m_tolerancePercent, 2, 0);
    integratedLayout->addWidget(new QLabel(QStringLiteral("%"), integratedFrame), 2, 1);
    integratedLayout->addWidget(m_toleranceCount, 2, 2);
    integratedLayout->addWidget(new QLabel(QStringLiteral("个"), integratedFrame), 2, 3);
    h->addWidget(integratedFrame);
    return panel;
}

QWidget* FilterWindow::makeSuperFrame() {
    auto* superFrame = new QGroupBox(QStringLiteral("超级过滤"), this);
    superFrame->setObjectName(QStringLiteral("Frame3"));
    auto* g = new QGridLayout(superFrame);
    g->setSpacing(2);
    const struct {
        const char* name;
        const char* caption;
    } items[] = {
        {"Option25(0)", "相克号过滤"},  {"Option25(1)", "相生号过滤"},         {"Option25(2)", "保留号过滤"},
        {"Option27", "历史同5号滤"},    {"Option28", "历史同4号滤"},           {"Option26", "历史同3号滤"},
        {"Option31", "相克号包含过滤"}, {"Option30", "保留号包含过滤"},        {"Option43", "组合模版同号滤"},
        {"Option42", "多选参数导出"},   {"Option29", "多选(勾选)参数整合过滤"}};
    int i = 0;
    for (const auto& it : items) {
        QPushButton* b = namedButton(QString::fromLatin1(it.name), QString::fromUtf8(it.caption), superFrame);
        if (const auto sb = super_filter::byObjectName(b->objectName())) {
            const SuperButton which = *sb;
            connect(b, &QPushButton::clicked, this, [this, which] { superClick(which, false); });
            b->setContextMenuPolicy(Qt::CustomContextMenu);
            connect(b, &QPushButton::customContextMenuRequested, this,
                    [this, which] { superClick(which, true); });
        }
        m_superButtons.insert(b->objectName(), b);
        g->addWidget(b, i / 3, i % 3, 1, it.name == std::string_view("Option29") ? 2 : 1);
        ++i;
    }
    connect(m_superButtons[QStringLiteral("Option29")], &QPushButton::clicked, this,
            &FilterWindow::runIntegrated);
    // Option29's right button runs nothing: it records the whole window as a step.
    m_superButtons[QStringLiteral("Option29")]->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(m_superButtons[QStringLiteral("Option29")], &QPushButton::customContextMenuRequested, this,
            [this] { recordFrom(RecordSource::integrated()); });
    connect(m_superButtons[QStringLiteral("Option42")], &QPushButton::clicked, this,
            &FilterWindow::runExport);
    m_superButtons[QStringLiteral("Option43")]->setToolTip(QStringLiteral("与组号模板相同的组合将其过滤掉"));
    if (m_workspace->traits().filtersTemplateItself) m_superButtons[QStringLiteral("Option43")]->hide();
    return superFrame;
}

QWidget* FilterWindow::makeRangeFrame() {
    auto* rangeQueryFrame = new QGroupBox(QStringLiteral("参数检索设置方式"), this);
    rangeQueryFrame->setObjectName(QStringLiteral("Frame1"));
    auto* v = new QGridLayout(rangeQueryFrame);
    v->setSpacing(2);
    m_averageQuery = new QRadioButton(QStringLiteral("均值差幅查询"), rangeQueryFrame);
    m_averageQuery->setObjectName(QStringLiteral("Option21"));
    m_topValuesQuery =
        new QRadioButton(QStringLiteral("最值查询（出现概率最大的若干个参数）"), rangeQueryFrame);
    m_topValuesQuery->setObjectName(QStringLiteral("Option36"));
    m_rangeQuery = new QRadioButton(QStringLiteral("范围查询"), rangeQueryFrame);
    m_rangeQuery->setObjectName(QStringLiteral("Option22"));
    m_averageQuery->setChecked(true);
    m_averageSpan = new QComboBox(rangeQueryFrame);
    m_averageSpan->setObjectName(QStringLiteral("Combo2"));
    m_averageSpan->setEditable(true);
    m_averageSpan->setEditText(QStringLiteral("100"));
    v->addWidget(m_averageQuery, 0, 0);
    v->addWidget(m_averageSpan, 0, 1);
    v->addWidget(m_topValuesQuery, 1, 0, 1, 2);
    v->addWidget(m_rangeQuery, 2, 0);
    connect(m_averageQuery, &QRadioButton::toggled, m_averageSpan, &QComboBox::setEnabled);
    connect(m_topValuesQuery, &QRadioButton::toggled, this, &FilterWindow::applyListMode);
    return rangeQueryFrame;
}

QWidget* FilterWindow::makeTemplateFrame() {
    auto* panel = new QWidget(this);
    auto* h = new QHBoxLayout(panel);
    h->setContentsMargins(0, 0, 0, 0);
    auto* templateFrame = new QGroupBox(QStringLiteral("过滤模板"), panel);
    templateFrame->setObjectName(QStringLiteral("Frame7"));
    auto* g = new QGridLayout(templateFrame);
    g->setSpacing(2);
    m_templateScroll = new QScrollBar(Qt::Horizontal, templateFrame);
    m_templateScroll->setObjectName(QStringLiteral("HScroll1"));
    m_templateScroll->setRange(1, 1);
    m_templateStepLabel = new QLabel(templateFrame);
    m_templateStepLabel->setObjectName(QStringLiteral("Label3"));
    m_templateStepLabel->setWordWrap(true);
    g->addWidget(m_templateScroll, 0, 0, 1, 2);
    // How the template would have fared on the last draws, in a window of its own.
    QPushButton* backtest = namedButton(QStringLiteral("CmdBacktest"), QStringLiteral("模板回测(&H)"), templateFrame);
    g->addWidget(backtest, 0, 2);
    connect(backtest, &QPushButton::clicked, this, &FilterWindow::backtestRequested);
    g->addWidget(m_templateStepLabel, 1, 0, 1, 3);
    const QString tcap = m_workspace->traits().filtersTemplateItself ? filter_source::kClearTemplateCaption
                                                                     : filter_source::kAddTemplateCaption;
    const struct {
        const char* name;
        QString caption;
    } items[] = {{"Command9", QStringLiteral("过滤模板调用过滤(&B)")},
                 {"Command5", QStringLiteral("过滤模板末次删除(&D)")},
                 {"Command4", QStringLiteral("过滤模板清空(&L)")},
                 {"cmdAdmb", tcap},
                 {"Command6", QStringLiteral("调用过滤设置(&C)")},
                 {"Command7", QStringLiteral("保存过滤设置(&V)")}};
    int i = 0;
    for (const auto& it : items) {
        QPushButton* b = namedButton(QString::fromLatin1(it.name), it.caption, templateFrame);
        g->addWidget(b, 2 + i / 3, i % 3);
        m_superButtons.insert(b->objectName(), b);
        ++i;
    }
    h->addWidget(templateFrame);
    connect(m_superButtons[QStringLiteral("cmdAdmb")], &QPushButton::clicked, this,
            &FilterWindow::addToTemplate);
    connect(m_superButtons[QStringLiteral("Command9")], &QPushButton::clicked, this,
            &FilterWindow::replayTemplate);
    connect(m_superButtons[QStringLiteral("Command5")], &QPushButton::clicked, this,
            &FilterWindow::deleteLastStep);
    connect(m_superButtons[QStringLiteral("Command4")], &QPushButton::clicked, this,
            &FilterWindow::clearTemplate);
    connect(m_superButtons[QStringLiteral("Command7")], &QPushButton::clicked, this,
            &FilterWindow::saveSetting);
    connect(m_superButtons[QStringLiteral("Command6")], &QPushButton::clicked, this,
            &FilterWindow::loadSetting);
    connect(m_templateScroll, &QScrollBar::valueChanged, this, &FilterWindow::browseTemplate);
    return panel;
}

QWidget* FilterWindow::makeGridPanel() {
    auto* panel = new QWidget(this);
    auto* v = new QVBoxLayout(panel);
    v->setContentsMargins(0, 0, 0, 0);
    v->setSpacing(3);

    m_grid = new QTableView(panel);
    m_grid->setObjectName(QStringLiteral("MSFlexGrid1"));
    m_grid->verticalHeader()->hide();
    m_grid->verticalHeader()->setDefaultSectionSize(20);
    m_grid->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    m_grid->horizontalHeader()->setDefaultSectionSize(40);
    m_grid->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_grid->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_model = new ResultGridModel(this);
    m_grid->setModel(m_model);
    ColumnWidths::fit(m_grid);
    connect(m_grid, &QTableView::doubleClicked, this, [this](const QModelIndex& index) {
        whenIdle([this, row = index.row()] {
            m_params->doubleClick(*m_model, row);
            setWindowTitle(m_workspace->caption());
        });
    });
    v->addWidget(m_grid, 1);

    auto* row = new QHBoxLayout;
    m_pageBox = new QLineEdit(QStringLiteral("1"), panel);
    m_pageBox->setObjectName(QStringLiteral("Text1"));
    m_pageBox->setFixedWidth(48);
    m_pageBox->installEventFilter(this);
    QPushButton* pageButton = namedButton(QStringLiteral("Command111"), QStringLiteral("翻页(&U)"), panel);
    auto* reasonFrame = new QGroupBox(QStringLiteral("过滤缘故显示"), panel);
    reasonFrame->setObjectName(QStringLiteral("Frame14"));
    auto* reasonLayout = new QHBoxLayout(reasonFrame);
    reasonLayout->setContentsMargins(4, 0, 4, 0);
    m_showRemaining = new QRadioButton(QStringLiteral("过滤剩余"), reasonFrame);
    m_showRemaining->setObjectName(QStringLiteral("optZzuhe(0)"));
    m_showAllCandidates = new QRadioButton(QStringLiteral("所有组合(含被过滤)显示"), reasonFrame);
    m_showAllCandidates->setObjectName(QStringLiteral("optZzuhe(1)"));
    m_showRemaining->setChecked(true);
    reasonLayout->addWidget(m_showRemaining);
    reasonLayout->addWidget(m_showAllCandidates);
    QPushButton* printButton = namedButton(QStringLiteral("CmdPrint"), QStringLiteral("打印预览(&P)"), panel);
    connect(printButton, &QPushButton::clicked, this, [this] { whenIdle([this] { emit printRequested(); }); });
    connect(pageButton, &QPushButton::clicked, this, &FilterWindow::showPage);
    connect(m_showAllCandidates, &QRadioButton::clicked, this, &FilterWindow::showAllRows);
    row->addWidget(m_pageBox);
    row->addWidget(pageButton);
    row->addWidget(reasonFrame);
    row->addStretch();
    row->addWidget(printButton);
    v->addLayout(row);

    v->addLayout(makeActionRow(panel));
    return panel;
}

// The four actions under the grid: reset all, reset last, invert all, invert last.
QHBoxLayout* FilterWindow::makeActionRow(QWidget* panel) {
    auto* actions = new QHBoxLayout;
    const struct {
        const char* name;
        QString caption;
        QString tip;
        FilterWorkspace::Button which;
    } items[] = {
        {"Command1", filter_source::kResetAll, filter_source::kResetAllTip,
         FilterWorkspace::Button::ResetAll},
        {"cmdRetn", filter_source::kResetLast, filter_source::kResetLastTip,
         FilterWorkspace::Button::ResetLast},
        {"Command2", filter_source::kInvertAll, filter_source::kInvertAllTip,
         FilterWorkspace::Button::InvertAll},
        {"Command3", filter_source::kInvertLast, filter_source::kInvertLastTip,
         FilterWorkspace::Button::InvertLast},
    };
    for (const auto& it : items) {
        QPushButton* b = namedButton(QString::fromLatin1(it.name), it.caption, panel);
        b->setToolTip(it.tip);
        const auto which = it.which;
        connect(b, &QPushButton::clicked, this, [this, which] { runAction(which, false); });
        // The right button of Command2 and Command3 records instead of acting.
        if (which == FilterWorkspace::Button::InvertAll || which == FilterWorkspace::Button::InvertLast) {
            b->setContextMenuPolicy(Qt::CustomContextMenu);
            connect(b, &QPushButton::customContextMenuRequested, this,
                    [this, which] { runAction(which, true); });
        }
        actions->addWidget(b);
    }
    return actions;
}

void FilterWindow::connectPassRates() {
    m_passRates = new PassRateLabels(m_session, [this] { return shownState(); }, this);
    // Every connection lives as long as the labels' keeper, which the window deletes first.
    PassRateLabels* rates = m_passRates;
    for (const ParamRow& row : m_rows) {
        const auto changed = [rates, id = row.id] { rates->rowChanged(id); };
        // A box's text, typed or written by a preset, a template or a saved setting.
        for (QLineEdit* box : row.boxes) connect(box, &QLineEdit::textChanged, rates, changed);
        connect(row.integratedBox, &QCheckBox::toggled, rates, &PassRateLabels::integratedChanged);
        if (!row.passRate) continue;  // 自定区间: no draw column to ask
        connect(row.spanCombo, &QComboBox::currentIndexChanged, rates, changed);
        rates->addRow(row.id, row.passRate, row.spanCombo);
    }
    // The zone comes from setZoneTab, the list mode from Option36; the rest is the integrated
    // filter's alone.
    connect(m_topValuesQuery, &QRadioButton::toggled, rates, &PassRateLabels::allChanged);
    const auto integrated = [rates] { rates->integratedChanged(); };
    for (QAbstractButton* b : std::initializer_list<QAbstractButton*>{m_keep, m_logicAnd, m_toleranceCheck})
        connect(b, &QAbstractButton::toggled, rates, integrated);
    for (QCheckBox* b : m_positionChecks) connect(b, &QCheckBox::toggled, rates, integrated);
    for (QCheckBox* b : m_parityChecks)
        if (b) connect(b, &QCheckBox::toggled, rates, integrated);
    for (QLineEdit* e : {m_toleranceCount, m_tolerancePercent, m_chosenNumbers})
        connect(e, &QLineEdit::textChanged, rates, integrated);
    connect(m_allRowsSpan, &QComboBox::currentIndexChanged, rates, integrated);
    rates->setIntegrated(m_integratedRate, m_allRowsSpan);
}

#include "filter/ui/filter_window.h"

#include "filter/range_query.h"
#include "filter/result_grid_model.h"
#include "workspace/ui/column_widths.h"

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
int combo1Index(ParamId id) {
    for (const range_query::ComboRow& row : range_query::rows())
        if (row.param == id) return row.combo;
    return -1;
}

// The items of a span combo: "前所有期" (0), then "前10期" .. "前200期".
void fillSpanCombo(QComboBox* combo) {
    for (const range_query::SpanItem& item : range_query::spanItems()) combo->addItem(item.text, item.data);
}

}  // namespace

QPushButton* FilterWindow::button(const QString& name, const QString& caption, QWidget* parent) {
    auto* b = new QPushButton(caption, parent);
    b->setObjectName(name);
    return b;
}

QWidget* FilterWindow::makeParameterFrame() {
    auto* frame2 = new QGroupBox(QStringLiteral("参数过滤选择"), this);
    frame2->setObjectName(QStringLiteral("Frame2"));
    auto* grid = new QGridLayout;
    grid->setHorizontalSpacing(3);
    grid->setVerticalSpacing(1);
    // Column headings: the integrated list, the range and the list of best values.
    auto* frame5 = new QLabel(QStringLiteral("整合"), frame2);
    frame5->setObjectName(QStringLiteral("Frame5"));
    frame5->setToolTip(QStringLiteral("整合过滤选择"));
    grid->addWidget(frame5, 0, 0);
    auto* frame9 = new QLabel(QStringLiteral("范围"), frame2);
    frame9->setObjectName(QStringLiteral("Frame9"));
    grid->addWidget(frame9, 0, 2, 1, 3, Qt::AlignCenter);
    m_frame10 = new QLabel(QStringLiteral("最值"), frame2);
    m_frame10->setObjectName(QStringLiteral("Frame10"));
    grid->addWidget(m_frame10, 0, 5, 1, 3, Qt::AlignCenter);
    grid->addWidget(new QLabel(QStringLiteral("检索期数"), frame2), 0, 8);

    int r = 1;
    for (const ParamInfo& p : param_catalogue::all()) {
        ParamRow row;
        row.id = p.id;
        row.check1 = new QCheckBox(frame2);
        row.check1->setObjectName(QStringLiteral("Check1(%1)").arg(p.check1));
        row.check1->setToolTip(param_catalogue::check1Caption(p.check1, ZoneScope::Front));
        row.button = button(QString::fromLatin1(p.button), p.caption, frame2);
        row.button->setMinimumWidth(92);
        const std::array<QString, 4> defaults = param_catalogue::boxDefaults(p.id);
        const QString boxName = QString::fromLatin1(p.boxes);
        for (int i = 0; i < 4; ++i) {
            auto* box = new QLineEdit(defaults[static_cast<size_t>(i)], frame2);
            box->setObjectName(QStringLiteral("%1(%2)").arg(boxName).arg(i));
            box->setFixedWidth(i == 3 ? 96 : 38);
            box->installEventFilter(this);
            row.boxes[static_cast<size_t>(i)] = box;
        }
        grid->addWidget(row.check1, r, 0);
        grid->addWidget(row.button, r, 1);
        grid->addWidget(row.boxes[0], r, 2);
        grid->addWidget(new QLabel(QStringLiteral("到"), frame2), r, 3);
        grid->addWidget(row.boxes[1], r, 4);
        grid->addWidget(row.boxes[2], r, 5);
        row.countLabel = new QLabel(QStringLiteral("个"), frame2);
        grid->addWidget(row.countLabel, r, 6);
        grid->addWidget(row.boxes[3], r, 7);
        if (const int c = combo1Index(p.id); c >= 0) {
            row.combo1 = new QComboBox(frame2);
            row.combo1->setObjectName(QStringLiteral("Combo1(%1)").arg(c));
            fillSpanCombo(row.combo1);
            grid->addWidget(row.combo1, r, 8);
            QComboBox* combo = row.combo1;
            connect(combo, &QComboBox::activated, this,
                    [this, c, combo](int item) { comboChosen(c, combo->itemData(item).toInt()); });
        }
        const ParamId id = p.id;
        connect(row.button, &QPushButton::clicked, this, [this, id] { runParameter(id); });
        connect(row.check1, &QCheckBox::clicked, this, &FilterWindow::check1Clicked);
        m_rows.push_back(row);
        ++r;
    }
    // The row that asks the history for every parameter at once.
    auto* all = new QComboBox(frame2);
    all->setObjectName(QStringLiteral("Combo1(20)"));
    fillSpanCombo(all);
    grid->addWidget(new QLabel(QStringLiteral("所有参数检索"), frame2), r, 1);
    grid->addWidget(all, r, 8);
    connect(all, &QComboBox::activated, this,
            [this, all](int item) { comboChosen(range_query::kAllRows, all->itemData(item).toInt()); });

    // 自定区间 in list mode reads its numbers from TxtZdqj.
    m_txtZdqj = new QLineEdit(frame2);
    m_txtZdqj->setObjectName(QStringLiteral("TxtZdqj"));
    m_txtZdqj->setPlaceholderText(QStringLiteral("指定号码"));
    grid->addWidget(m_txtZdqj, r + 1, 1, 1, 7);
    m_txtZdqj->hide();

    auto* inner = new QWidget;
    inner->setLayout(grid);
    auto* scroll = new QScrollArea(frame2);
    scroll->setWidget(inner);
    scroll->setWidgetResizable(true);
    scroll->setFrameShape(QFrame::NoFrame);
    auto* v = new QVBoxLayout(frame2);
    v->setContentsMargins(2, 2, 2, 2);
    v->addWidget(scroll);
    frame2->setMinimumWidth(inner->sizeHint().width() + 24);
    return frame2;
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
        m_chkBt[static_cast<size_t>(i - 1)] = box;
        pg->addWidget(box, 0, i - 1);
    }
    for (int i = 4; i <= 13; ++i) {
        auto* box = new QCheckBox((i % 2 == 0) ? QStringLiteral("奇") : QStringLiteral("偶"), positions);
        box->setObjectName(QStringLiteral("Check2(%1)").arg(i));
        m_check2[static_cast<size_t>(i)] = box;
        pg->addWidget(box, 1 + (i - 4) % 2, (i - 4) / 2);
    }
    h->addWidget(positions);

    auto* frame4 = new QGroupBox(QStringLiteral("参数过滤设置方式"), panel);
    frame4->setObjectName(QStringLiteral("Frame4"));
    auto* f4 = new QVBoxLayout(frame4);
    m_keep = new QRadioButton(QStringLiteral("保留"), frame4);
    m_keep->setObjectName(QStringLiteral("Option1(0)"));
    m_exclude = new QRadioButton(QStringLiteral("排除"), frame4);
    m_exclude->setObjectName(QStringLiteral("Option1(1)"));
    m_keep->setChecked(true);
    f4->addWidget(m_keep);
    f4->addWidget(m_exclude);
    connect(m_keep, &QRadioButton::toggled, this, [this](bool on) { m_workspace->baoliuMode = on; });
    h->addWidget(frame4);

    auto* frame6 = new QGroupBox(QStringLiteral("多参数整合过滤"), panel);
    frame6->setObjectName(QStringLiteral("Frame6"));
    auto* f6 = new QGridLayout(frame6);
    f6->setSpacing(2);
    m_logicAnd = new QRadioButton(QStringLiteral("逻辑和"), frame6);
    m_logicAnd->setObjectName(QStringLiteral("Option37(0)"));
    m_logicOr = new QRadioButton(QStringLiteral("逻辑或"), frame6);
    m_logicOr->setObjectName(QStringLiteral("Option37(1)"));
    m_logicAnd->setChecked(true);
    m_check3 = new QCheckBox(QStringLiteral("整合过滤容错比"), frame6);
    m_check3->setObjectName(QStringLiteral("Check3"));
    m_txtRc1 = new QLineEdit(QStringLiteral("10"), frame6);
    m_txtRc1->setObjectName(QStringLiteral("TxtRc(1)"));
    m_txtRc0 = new QLineEdit(QStringLiteral("1"), frame6);
    m_txtRc0->setObjectName(QStringLiteral("TxtRc(0)"));
    for (QLineEdit* e : {m_txtRc0, m_txtRc1}) e->setFixedWidth(36);
    // The allowed count and the percent follow each other when the player edits one.
    connect(m_txtRc0, &QLineEdit::textEdited, this,
            [this] { m_txtRc1->setText(m_tolerance.onCountEdited(readState())); });
    connect(m_txtRc1, &QLineEdit::textEdited, this,
            [this] { m_txtRc0->setText(m_tolerance.onPercentEdited(readState())); });
    f6->addWidget(m_logicAnd, 0, 0);
    f6->addWidget(m_logicOr, 0, 1);
    f6->addWidget(m_check3, 1, 0, 1, 2);
    f6->addWidget(m_txtRc1, 2, 0);
    f6->addWidget(new QLabel(QStringLiteral("%"), frame6), 2, 1);
    f6->addWidget(m_txtRc0, 2, 2);
    f6->addWidget(new QLabel(QStringLiteral("个"), frame6), 2, 3);
    h->addWidget(frame6);
    return panel;
}

QWidget* FilterWindow::makeSuperFrame() {
    auto* frame3 = new QGroupBox(QStringLiteral("超级过滤"), this);
    frame3->setObjectName(QStringLiteral("Frame3"));
    auto* g = new QGridLayout(frame3);
    g->setSpacing(2);
    const struct {
        const char* name;
        const char* caption;
    } items[] = {{"Option25(0)", "相克号过滤"},       {"Option25(1)", "相生号过滤"},
                 {"Option25(2)", "保留号过滤"},       {"Option27", "历史同5号滤"},
                 {"Option28", "历史同4号滤"},         {"Option26", "历史同3号滤"},
                 {"Option31", "相克号包含过滤"},      {"Option30", "保留号包含过滤"},
                 {"Option43", "组合模版同号滤"},      {"Option42", "多选参数导出"},
                 {"Option29", "多选(勾选)参数整合过滤"}};
    int i = 0;
    for (const auto& it : items) {
        QPushButton* b = button(QString::fromLatin1(it.name), QString::fromUtf8(it.caption), frame3);
        if (const auto sb = super_filter::byObjectName(b->objectName())) {
            const SuperButton which = *sb;
            connect(b, &QPushButton::clicked, this, [this, which] { superClick(which, false); });
            b->setContextMenuPolicy(Qt::CustomContextMenu);
            connect(b, &QPushButton::customContextMenuRequested, this, [this, which] { superClick(which, true); });
        }
        m_superButtons.insert(b->objectName(), b);
        g->addWidget(b, i / 3, i % 3, 1, it.name == std::string_view("Option29") ? 2 : 1);
        ++i;
    }
    connect(m_superButtons[QStringLiteral("Option29")], &QPushButton::clicked, this, &FilterWindow::runIntegrated);
    // Option29's right button runs nothing: it records the whole window as a step.
    m_superButtons[QStringLiteral("Option29")]->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(m_superButtons[QStringLiteral("Option29")], &QPushButton::customContextMenuRequested, this,
            [this] { recordFrom(RecordSource::option29()); });
    connect(m_superButtons[QStringLiteral("Option42")], &QPushButton::clicked, this, &FilterWindow::runExport);
    m_superButtons[QStringLiteral("Option43")]->setToolTip(QStringLiteral("与组号模板相同的组合将其过滤掉"));
    if (m_workspace->traits().filtersTemplateItself) m_superButtons[QStringLiteral("Option43")]->hide();
    return frame3;
}

QWidget* FilterWindow::makeRangeFrame() {
    auto* frame1 = new QGroupBox(QStringLiteral("参数检索设置方式"), this);
    frame1->setObjectName(QStringLiteral("Frame1"));
    auto* v = new QGridLayout(frame1);
    v->setSpacing(2);
    m_option21 = new QRadioButton(QStringLiteral("均值差幅查询"), frame1);
    m_option21->setObjectName(QStringLiteral("Option21"));
    m_option36 = new QRadioButton(QStringLiteral("最值查询（出现概率最大的若干个参数）"), frame1);
    m_option36->setObjectName(QStringLiteral("Option36"));
    m_option22 = new QRadioButton(QStringLiteral("范围查询"), frame1);
    m_option22->setObjectName(QStringLiteral("Option22"));
    m_option21->setChecked(true);
    m_combo2 = new QComboBox(frame1);
    m_combo2->setObjectName(QStringLiteral("Combo2"));
    m_combo2->setEditable(true);
    m_combo2->setEditText(QStringLiteral("100"));
    v->addWidget(m_option21, 0, 0);
    v->addWidget(m_combo2, 0, 1);
    v->addWidget(m_option36, 1, 0, 1, 2);
    v->addWidget(m_option22, 2, 0);
    connect(m_option21, &QRadioButton::toggled, m_combo2, &QComboBox::setEnabled);
    connect(m_option36, &QRadioButton::toggled, this, &FilterWindow::applyListMode);
    return frame1;
}

QWidget* FilterWindow::makeTemplateFrame() {
    auto* panel = new QWidget(this);
    auto* h = new QHBoxLayout(panel);
    h->setContentsMargins(0, 0, 0, 0);
    auto* frame7 = new QGroupBox(QStringLiteral("过滤模板"), panel);
    frame7->setObjectName(QStringLiteral("Frame7"));
    auto* g = new QGridLayout(frame7);
    g->setSpacing(2);
    m_hScroll1 = new QScrollBar(Qt::Horizontal, frame7);
    m_hScroll1->setObjectName(QStringLiteral("HScroll1"));
    m_hScroll1->setRange(1, 1);
    m_label3 = new QLabel(frame7);
    m_label3->setObjectName(QStringLiteral("Label3"));
    m_label3->setWordWrap(true);
    g->addWidget(m_hScroll1, 0, 0, 1, 3);
    g->addWidget(m_label3, 1, 0, 1, 3);
    const QString tcap = m_workspace->traits().filtersTemplateItself ? filter_texts::kClearTemplateCaption
                                                                      : filter_texts::kAddTemplateCaption;
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
        QPushButton* b = button(QString::fromLatin1(it.name), it.caption, frame7);
        g->addWidget(b, 2 + i / 3, i % 3);
        m_superButtons.insert(b->objectName(), b);
        ++i;
    }
    h->addWidget(frame7);
    connect(m_superButtons[QStringLiteral("cmdAdmb")], &QPushButton::clicked, this, &FilterWindow::addToTemplate);
    connect(m_superButtons[QStringLiteral("Command9")], &QPushButton::clicked, this, &FilterWindow::replayTemplate);
    connect(m_superButtons[QStringLiteral("Command5")], &QPushButton::clicked, this, &FilterWindow::deleteLastStep);
    connect(m_superButtons[QStringLiteral("Command4")], &QPushButton::clicked, this, &FilterWindow::clearTemplate);
    connect(m_superButtons[QStringLiteral("Command7")], &QPushButton::clicked, this, &FilterWindow::saveSetting);
    connect(m_superButtons[QStringLiteral("Command6")], &QPushButton::clicked, this, &FilterWindow::loadSetting);
    connect(m_hScroll1, &QScrollBar::valueChanged, this, &FilterWindow::browseTemplate);
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
        m_params->doubleClick(*m_model, index.row());
        setWindowTitle(m_workspace->caption());
    });
    v->addWidget(m_grid, 1);

    auto* row = new QHBoxLayout;
    m_text1 = new QLineEdit(QStringLiteral("1"), panel);
    m_text1->setObjectName(QStringLiteral("Text1"));
    m_text1->setFixedWidth(48);
    m_text1->installEventFilter(this);
    QPushButton* command111 = button(QStringLiteral("Command111"), QStringLiteral("翻页(&U)"), panel);
    auto* frame14 = new QGroupBox(QStringLiteral("过滤缘故显示"), panel);
    frame14->setObjectName(QStringLiteral("Frame14"));
    auto* f14 = new QHBoxLayout(frame14);
    f14->setContentsMargins(4, 0, 4, 0);
    m_optZzuhe0 = new QRadioButton(QStringLiteral("过滤剩余"), frame14);
    m_optZzuhe0->setObjectName(QStringLiteral("optZzuhe(0)"));
    m_optZzuhe1 = new QRadioButton(QStringLiteral("所有组合(含被过滤)显示"), frame14);
    m_optZzuhe1->setObjectName(QStringLiteral("optZzuhe(1)"));
    m_optZzuhe0->setChecked(true);
    f14->addWidget(m_optZzuhe0);
    f14->addWidget(m_optZzuhe1);
    QPushButton* cmdPrint = button(QStringLiteral("CmdPrint"), QStringLiteral("打印预览(&P)"), panel);
    cmdPrint->setEnabled(false);  // printing comes with the output tools
    connect(command111, &QPushButton::clicked, this, &FilterWindow::showPage);
    connect(m_optZzuhe1, &QRadioButton::clicked, this, &FilterWindow::showAllRows);
    row->addWidget(m_text1);
    row->addWidget(command111);
    row->addWidget(frame14);
    row->addStretch();
    row->addWidget(cmdPrint);
    v->addLayout(row);

    auto* actions = new QHBoxLayout;
    const struct {
        const char* name;
        QString caption;
        QString tip;
        FilterWorkspace::Button which;
    } items[] = {
        {"Command1", filter_texts::kCommand1, filter_texts::kCommand1Tip, FilterWorkspace::Button::Command1},
        {"cmdRetn", filter_texts::kCmdRetn, filter_texts::kCmdRetnTip, FilterWorkspace::Button::CmdRetn},
        {"Command2", filter_texts::kCommand2, filter_texts::kCommand2Tip, FilterWorkspace::Button::Command2},
        {"Command3", filter_texts::kCommand3, filter_texts::kCommand3Tip, FilterWorkspace::Button::Command3},
    };
    for (const auto& it : items) {
        QPushButton* b = button(QString::fromLatin1(it.name), it.caption, panel);
        b->setToolTip(it.tip);
        const auto which = it.which;
        connect(b, &QPushButton::clicked, this, [this, which] { runAction(which, false); });
        // The right button of Command2 and Command3 records instead of acting.
        if (which == FilterWorkspace::Button::Command2 || which == FilterWorkspace::Button::Command3) {
            b->setContextMenuPolicy(Qt::CustomContextMenu);
            connect(b, &QPushButton::customContextMenuRequested, this, [this, which] { runAction(which, true); });
        }
        actions->addWidget(b);
    }
    v->addLayout(actions);
    return panel;
}


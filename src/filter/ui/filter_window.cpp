#include "filter/ui/filter_window.h"

#include "filter/range_query.h"
#include "filter/saved_setting_store.h"
#include "filter/ui/frm_find.h"
#include "filter/result_grid_model.h"
#include "filter/ui/dialog_progress.h"
#include "workspace/prompter.h"
#include "workspace/session.h"

#include <QApplication>

#include <algorithm>
#include <QButtonGroup>
#include <QCheckBox>
#include <QCloseEvent>
#include <QDateTime>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMouseEvent>
#include <QProgressDialog>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QSplitter>
#include <QTabBar>
#include <QTableView>
#include <QVBoxLayout>

namespace {

// The range query's combo of each parameter row (Combo1(i)); 自定区间 has none.
int combo1Index(ParamId id) {
    switch (id) {
        case ParamId::Option23: return 0;
        case ParamId::Option3: return 1;
        case ParamId::Option2: return 2;
        case ParamId::Option4: return 3;
        case ParamId::Option5: return 4;
        case ParamId::Option8: return 5;
        case ParamId::Option9: return 6;
        case ParamId::Option10: return 7;
        case ParamId::Option11: return 8;
        case ParamId::Option12: return 9;
        case ParamId::Option13: return 10;
        case ParamId::Option14: return 11;
        case ParamId::Option15: return 12;
        case ParamId::Option16: return 13;
        case ParamId::Option17: return 14;
        case ParamId::Option39: return 15;
        case ParamId::Option40: return 16;
        case ParamId::Option6: return 17;
        case ParamId::Option7: return 18;
        case ParamId::Option20: return 19;
        case ParamId::Option24: return 21;
        case ParamId::Option35: return 22;
        case ParamId::Option34: return 23;
        case ParamId::Option33: return 24;
        case ParamId::Option32: return 25;
        case ParamId::Option41: return 26;
        case ParamId::Option66: return -1;
    }
    return -1;
}

// The items of a span combo: "前所有期" (0), then "前10期" .. "前200期".
void fillSpanCombo(QComboBox* combo) {
    combo->addItem(QStringLiteral("前所有期"), 0);
    for (int j = 1; j <= 20; ++j) combo->addItem(QStringLiteral("前%1期").arg(10 * j), 10 * j);
}

const QString kUsedStyle = QStringLiteral("QPushButton { color: blue; }");
const QString kTabCaptions[] = {QStringLiteral("前区"), QStringLiteral("后区"), QStringLiteral("全区")};

}  // namespace

FilterWindow::FilterWindow(FilterInstance instance, std::unique_ptr<FilterWorkspace> workspace, Session& session,
                           Prompter& prompter, QWidget* parent)
    : QWidget(parent, Qt::Window),
      m_instance(instance),
      m_workspace(std::move(workspace)),
      m_session(session),
      m_prompter(prompter),
      m_params(std::make_unique<ParamWindow>(*m_workspace, ParamContext::fromSession(session),
                                             session.paths().folder())),
      m_super(std::make_unique<SuperFilter>(*m_workspace, session.history(), session.bitnum(), session.fildb())),
      m_recorder(std::make_unique<MobanRecorder>(*m_workspace, *m_super, session.fildb(),
                                                 ParamContext::fromSession(session))) {
    setObjectName(QString::fromLatin1(m_workspace->traits().className));
    setAttribute(Qt::WA_DeleteOnClose, false);

    m_tabStrip1 = new QTabBar(this);
    m_tabStrip1->setObjectName(QStringLiteral("TabStrip1"));
    for (const QString& t : kTabCaptions) m_tabStrip1->addTab(t);
    connect(m_tabStrip1, &QTabBar::currentChanged, this, [this](int i) { setZoneTab(i + 1); });

    auto* left = new QVBoxLayout;
    left->setSpacing(3);
    left->addWidget(m_tabStrip1);
    left->addWidget(makeParameterFrame(), 1);

    auto* right = new QVBoxLayout;
    right->setSpacing(3);
    right->addWidget(makeOptionsPanel());
    auto* middle = new QHBoxLayout;
    middle->addWidget(makeSuperFrame(), 3);
    middle->addWidget(makeRangeFrame(), 2);
    right->addLayout(middle);
    right->addWidget(makeTemplateFrame());
    right->addWidget(makeGridPanel(), 1);

    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(4, 4, 4, 4);
    layout->addLayout(left, 0);
    layout->addLayout(right, 1);

    // Recording a step by the right button of a command: the popup mnuAdm.
    m_mnuAdm = new QMenu(QStringLiteral("添加模板(&D)"), this);
    m_mnuAdm->setObjectName(QStringLiteral("mnuAdm"));
    QAction* mnuAdf = m_mnuAdm->addAction(QStringLiteral("添加到过滤模板(&A)"));
    mnuAdf->setObjectName(QStringLiteral("mnuAdf"));
    connect(mnuAdf, &QAction::triggered, this, [this] { m_mnuAdfPicked = true; });
    // The step is written once the popup has gone, picked or dismissed.
    connect(m_mnuAdm, &QMenu::aboutToHide, this,
            [this] { QMetaObject::invokeMethod(this, &FilterWindow::finishRecording, Qt::QueuedConnection); });
    m_hScroll1->setMaximum(m_recorder->hScrollMax());

    m_workspace->intQianHou = 1;
    m_workspace->baoliuMode = m_keep->isChecked();
    adaptToZone();
    applyListMode();
    presetRanges();
    showFirstView();
    resize(1366, 740);
}

FilterWindow::~FilterWindow() = default;

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

void FilterWindow::showFirstView() {
    m_params->showFirstView();
    showParamView();
}

void FilterWindow::refreshView() {
    m_model->bind(&m_workspace->table(), GridView::live());
    setWindowTitle(m_workspace->caption());
}

void FilterWindow::showParamView() {
    m_model->bind(&m_workspace->table(), m_params->view());
    setWindowTitle(m_workspace->caption());
    markUsedButtons();
}

void FilterWindow::runIntegrated() {
    m_params->setContext(ParamContext::fromSession(m_session));
    QApplication::setOverrideCursor(Qt::WaitCursor);
    m_params->clickIntegrated(readState(), m_prompter);
    QApplication::restoreOverrideCursor();
    showParamView();
}

void FilterWindow::runExport() {
    m_params->setContext(ParamContext::fromSession(m_session));
    QApplication::setOverrideCursor(Qt::WaitCursor);
    const param_export::Result r = m_params->clickExport(readState(), m_prompter);
    QApplication::restoreOverrideCursor();
    showParamView();
    if (r.written) m_prompter.inform(QStringLiteral("多选参数导出"), m_params->exportPath());
}

void FilterWindow::showPage() {
    m_params->showPage(m_text1->text());
    m_model->bind(&m_workspace->table(), m_params->view());
}

void FilterWindow::showAllRows() {
    m_params->showAllRows();
    m_model->bind(&m_workspace->table(), m_params->view());
    // The choice goes back to 过滤剩余, which itself runs nothing.
    m_optZzuhe0->setChecked(true);
    m_optZzuhe0->setFocus();
}

void FilterWindow::waitForRecord() {
    if (!m_workspace->writePending()) return;
    DialogProgress progress(QStringLiteral("正在保存组合..."), this, false);
    m_workspace->waitForWrite(&progress);
}

void FilterWindow::addToTemplate() {
    // The template lives in filnum.db beside the record being written.
    waitForRecord();
    m_params->clickAddTemplate(m_session.fildb(), m_prompter);
}

void FilterWindow::withRecordPaused(const std::function<void()>& action) {
    if (!m_workspace->writePending()) {
        action();
        return;
    }
    m_workspace->tableForChange();  // stops the running write
    action();
    m_workspace->changed();  // and starts it again
}

void FilterWindow::markUsedButtons() {
    auto used = [this](const QString& name) {
        return m_params->usedButtons().count(name) || m_super->usedButtons().count(name) ||
               m_recorder->usedButtons().count(name);
    };
    for (ParamRow& row : m_rows)
        if (used(row.button->objectName())) row.button->setStyleSheet(kUsedStyle);
    for (QPushButton* b : m_superButtons)
        if (used(b->objectName())) b->setStyleSheet(kUsedStyle);
}

void FilterWindow::superClick(SuperButton b, bool rightButton) {
    SuperFilter::Outcome outcome;
    withRecordPaused([&] {
        DialogProgress progress(QStringLiteral("正在过滤..."), this);
        outcome = m_super->click(b, rightButton ? FilterWorkspace::Mouse::Right : FilterWorkspace::Mouse::Left,
                                 m_superInputs, static_cast<ZoneScope>(m_workspace->intQianHou), m_prompter,
                                 &progress);
    });
    if (outcome.ran) refreshView();
    markUsedButtons();
    if (outcome.popupMnuAdm) recordFrom(RecordSource::super(b));
}

void FilterWindow::recordFrom(RecordSource source) {
    m_recordSource = source;
    m_mnuAdfPicked = false;
    m_mnuAdm->popup(QCursor::pos());
}

void FilterWindow::finishRecording() {
    MobanRecorder::RecordOutcome outcome;
    withRecordPaused([&] {
        m_recorder->setContext(ParamContext::fromSession(m_session));
        outcome = m_recorder->popupClosed(m_mnuAdfPicked, m_recordSource, readState(), m_superInputs);
    });
    m_mnuAdfPicked = false;
    m_hScroll1->setMaximum(outcome.hScrollMax);
}

void FilterWindow::writeSnapshot(const ParamWindowState& state, const moban_snapshot::SnapshotEffects& effects) {
    std::vector<ParamId> all;
    for (const ParamRow& row : m_rows) all.push_back(row.id);
    writeBoxes(state, all);
    for (ParamRow& row : m_rows)
        row.check1->setChecked(state.check1[static_cast<size_t>(param_catalogue::info(row.id).check1)]);
    m_txtRc0->setText(state.txtRc0);
    m_txtRc1->setText(state.txtRc1);
    (state.logicAnd ? m_logicAnd : m_logicOr)->setChecked(true);
    (state.keep ? m_keep : m_exclude)->setChecked(true);
    if (effects.listMode) m_option36->setChecked(true);
    else if (m_option36->isChecked()) m_option21->setChecked(true);
    applyListMode();
}

void FilterWindow::replayTemplate() {
    ParamWindowState state = readState();
    MobanRecorder::ReplayOutcome outcome;
    withRecordPaused([&] {
        DialogProgress progress(QStringLiteral("正在按过滤模板过滤..."), this);
        m_recorder->setContext(ParamContext::fromSession(m_session));
        outcome = m_recorder->replay(state, m_superInputs, static_cast<ZoneScope>(m_workspace->intQianHou),
                                     &progress);
    });
    if (outcome.boxesChanged) writeSnapshot(state, outcome.effects);
    if (outcome.ran) refreshView();
    markUsedButtons();
}

void FilterWindow::browseTemplate(int value) {
    ParamWindowState state = readState();
    MobanRecorder::BrowseOutcome outcome;
    withRecordPaused([&] {
        outcome = m_recorder->browse(value, state, m_superInputs, static_cast<ZoneScope>(m_workspace->intQianHou));
    });
    if (outcome.label3) m_label3->setText(*outcome.label3);
    if (outcome.boxesChanged) writeSnapshot(state, outcome.effects);
}

void FilterWindow::deleteLastStep() {
    withRecordPaused([this] { m_hScroll1->setMaximum(m_recorder->deleteLast()); });
}

void FilterWindow::clearTemplate() {
    withRecordPaused([this] { m_hScroll1->setMaximum(m_recorder->clear()); });
}

void FilterWindow::saveSetting() {
    withRecordPaused(
        [this] { saved_setting::save(m_session.fildb(), readState(), m_prompter, QDateTime::currentDateTime()); });
}

void FilterWindow::loadSetting() {
    withRecordPaused([this] {
        FrmFind finder(m_session.fildb(), m_prompter, this);
        if (finder.exec() != QDialog::Accepted || finder.chosen().isNull()) return;
        ParamWindowState state = readState();
        if (const auto effects = saved_setting::load(m_session.fildb(), finder.chosen(), state))
            writeSnapshot(state, *effects);
    });
}

void FilterWindow::check1Clicked() { m_txtRc0->setText(m_tolerance.onCheck1Click(readState())); }

void FilterWindow::runAction(FilterWorkspace::Button which, bool rightButton) {
    QApplication::setOverrideCursor(Qt::WaitCursor);
    const FilterWorkspace::ClickOutcome outcome =
        m_workspace->release(which, rightButton ? FilterWorkspace::Mouse::Right : FilterWorkspace::Mouse::Left);
    QApplication::restoreOverrideCursor();
    if (outcome.ranAction) refreshView();
    if (outcome.popupMnuAdm) recordFrom(RecordSource::invert());
}

ParamWindowState FilterWindow::readState() const {
    ParamWindowState s = ParamWindowState::defaults();
    s.scope = static_cast<ZoneScope>(m_workspace->intQianHou);
    for (int i = 0; i < 7; ++i) s.chkBt[static_cast<size_t>(i)] = m_chkBt[static_cast<size_t>(i)]->isChecked();
    for (const ParamRow& row : m_rows) {
        for (int i = 0; i < 4; ++i) s.box(row.id)[static_cast<size_t>(i)] = row.boxes[static_cast<size_t>(i)]->text();
        s.check1[static_cast<size_t>(param_catalogue::info(row.id).check1)] = row.check1->isChecked();
    }
    for (int i = 4; i <= 13; ++i) s.check2[static_cast<size_t>(i)] = m_check2[static_cast<size_t>(i)]->isChecked();
    s.keep = m_keep->isChecked();
    s.listMode = m_option36->isChecked();
    s.logicAnd = m_logicAnd->isChecked();
    s.check3 = m_check3->isChecked();
    s.txtRc0 = m_txtRc0->text();
    s.txtRc1 = m_txtRc1->text();
    s.txtZdqj = m_txtZdqj->text();
    return s;
}

void FilterWindow::runParameter(ParamId id) {
    m_params->setContext(ParamContext::fromSession(m_session));
    QApplication::setOverrideCursor(Qt::WaitCursor);
    m_params->clickParameter(id, readState(), m_prompter);
    QApplication::restoreOverrideCursor();
    showParamView();
}

void FilterWindow::setZoneTab(int intQianHou) {
    if (m_tabStrip1->currentIndex() != intQianHou - 1) {
        m_tabStrip1->setCurrentIndex(intQianHou - 1);
        return;  // currentChanged comes back here
    }
    m_workspace->intQianHou = static_cast<int16_t>(intQianHou);
    adaptToZone();
    presetRanges();
}

void FilterWindow::writeBoxes(const ParamWindowState& state, const std::vector<ParamId>& params) {
    for (ParamRow& row : m_rows) {
        if (std::find(params.begin(), params.end(), row.id) == params.end()) continue;
        for (size_t i = 0; i < 4; ++i) row.boxes[i]->setText(state.box(row.id)[i]);
    }
}

void FilterWindow::presetRanges() {
    ParamWindowState s = readState();
    const auto written = range_query::presetAll(s, m_option21->isChecked(), m_combo2->currentText(),
                                                m_session.history(), s.scope);
    writeBoxes(s, written);
}

void FilterWindow::comboChosen(int combo, int spanData) {
    ParamWindowState s = readState();
    const range_query::Mode mode = m_option36->isChecked()   ? range_query::Mode::Top
                                   : m_option21->isChecked() ? range_query::Mode::Average
                                                             : range_query::Mode::Plain;
    const auto written =
        range_query::onCombo1(s, combo, spanData, mode, m_combo2->currentText(), m_session.history(), s.scope);
    writeBoxes(s, written);
}

void FilterWindow::applyListMode() {
    const bool list = m_option36->isChecked();
    m_frame10->setVisible(list);
    m_txtZdqj->setVisible(list);
    for (ParamRow& row : m_rows) {
        row.boxes[2]->setVisible(list);
        row.boxes[3]->setVisible(list);
        row.countLabel->setVisible(list);
    }
    adaptToZone();
}

void FilterWindow::adaptToZone() {
    const auto scope = static_cast<ZoneScope>(m_workspace->intQianHou);
    // The super filters' captions (the history buttons follow the tab) and their enabling.
    for (QPushButton* b : m_superButtons) {
        const auto sb = super_filter::byObjectName(b->objectName());
        if (!sb) continue;
        b->setText(super_filter::caption(*sb, scope));
        b->setEnabled(super_filter::enabled(*sb, scope, m_workspace->traits()));
    }
    // Positions: front 1..5, back 1..2, both none; they keep their ticks.
    for (int i = 1; i <= 7; ++i) {
        const bool on = scope == ZoneScope::Front ? i <= 5 : scope == ZoneScope::Back ? i <= 2 : false;
        m_chkBt[static_cast<size_t>(i - 1)]->setEnabled(on);
    }
    for (ParamRow& row : m_rows) {
        const bool enabled = param_catalogue::enabledIn(row.id, scope);
        row.button->setEnabled(enabled);
        for (QLineEdit* box : row.boxes) box->setEnabled(enabled);
        row.check1->setEnabled(enabled);
        row.button->setText(param_catalogue::caption(row.id, scope, m_option36->isChecked()));
        row.check1->setToolTip(param_catalogue::check1Caption(param_catalogue::info(row.id).check1, scope));
        // The five positions are hidden in the both-zones tab.
        if (param_catalogue::info(row.id).position > 0) {
            const bool shown = scope != ZoneScope::Both;
            row.button->setVisible(shown);
        }
    }
}

bool FilterWindow::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::KeyPress) {
        auto* key = static_cast<QKeyEvent*>(event);
        const QString text = key->text();
        if (text.size() == 1 && text[0].isPrint()) {
            const bool pageBox = watched == m_text1;
            const bool ok = pageBox ? param_catalogue::pageBoxAcceptsKey(text[0])
                                    : param_catalogue::boxAcceptsKey(text[0]);
            if (!ok) {
                QApplication::beep();
                return true;
            }
        }
    }
    return QWidget::eventFilter(watched, event);
}

void FilterWindow::closeEvent(QCloseEvent* event) {
    // The record is brought up to date before the window goes.
    waitForRecord();
    emit closed();
    event->accept();
}

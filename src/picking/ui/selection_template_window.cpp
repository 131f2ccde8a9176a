#include "picking/ui/selection_template_window.h"

#include "picking/selection_template.h"
#include "picking/ui/picking_commands.h"
#include "picking/ui/picking_dialogs.h"
#include "workspace/prompter.h"
#include "workspace/session.h"

#include <QCoreApplication>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QListWidget>
#include <QPushButton>
#include <QTableWidget>
#include <QVBoxLayout>

std::unique_ptr<SelectionTemplateWindow> SelectionTemplateWindow::open(PickingCommands& commands, QWidget* parent,
                                                                       const std::function<void()>& endProgram) {
    Session& s = commands.session();
    if (selection_template::open(s.filterDb(), s.paths().filterDb(), s.root().filterTemplate()) ==
        selection_template::Opened::Failed) {
        commands.prompter().inform(selection_template::kFailedTitle, selection_template::kFailedText,
                                   Prompter::Icon::Critical);
        if (endProgram) endProgram();
        return nullptr;
    }
    return std::unique_ptr<SelectionTemplateWindow>(new SelectionTemplateWindow(commands, parent));
}

std::unique_ptr<SelectionTemplateWindow> SelectionTemplateWindow::open(PickingCommands& commands, QWidget* parent) {
    return open(commands, parent, [] { QCoreApplication::exit(1); });
}

SelectionTemplateWindow::SelectionTemplateWindow(PickingCommands& commands, QWidget* parent)
    : QDialog(parent), m_commands(commands) {
    setObjectName(QStringLiteral("frmSltnum"));
    setWindowTitle(kTitle);
    m_kinds = new QListWidget(this);
    m_kinds->setObjectName(QStringLiteral("List1"));
    for (int cmd = 0; cmd < selection_template::kStepKinds; ++cmd) m_kinds->addItem(selection_template::stepText(cmd));
    m_kinds->setFixedWidth(200);
    m_grid = new QTableWidget(this);
    m_grid->setObjectName(QStringLiteral("MSFlexGrid1"));
    m_grid->setColumnCount(3);
    m_grid->setHorizontalHeaderLabels({QStringLiteral("Idx"), QStringLiteral("选号步骤"), QStringLiteral("参数")});
    m_grid->setColumnHidden(0, true);
    m_grid->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_grid->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_grid->setSelectionMode(QAbstractItemView::SingleSelection);
    m_grid->verticalHeader()->setDefaultSectionSize(20);
    m_grid->horizontalHeader()->setStretchLastSection(true);

    const struct {
        const char* name;
        const char* caption;
        void (SelectionTemplateWindow::*run)();
    } buttons[] = {{"Command1", "添加到模板(&A)", &SelectionTemplateWindow::addStep},
                   {"Command2", "从模板删除(&D)", &SelectionTemplateWindow::deleteStep},
                   {"Command3", "使用模板选号(&M)", &SelectionTemplateWindow::runSteps}};
    auto* row = new QHBoxLayout;
    for (const auto& b : buttons) {
        auto* button = new QPushButton(QString::fromUtf8(b.caption), this);
        button->setObjectName(QString::fromLatin1(b.name));
        connect(button, &QPushButton::clicked, this, b.run);
        row->addWidget(button);
    }
    auto* lists = new QHBoxLayout;
    lists->addWidget(m_kinds);
    lists->addWidget(m_grid, 1);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(lists, 1);
    layout->addLayout(row);
    resize(560, 320);
    reload();
}

void SelectionTemplateWindow::reload() {
    const QList<TemplateStep> steps = SelectionTemplate(m_commands.session().filterDb()).steps();
    m_grid->setRowCount(static_cast<int>(steps.size()));
    for (int i = 0; i < steps.size(); ++i) {
        m_grid->setItem(i, 0, new QTableWidgetItem(QString::number(steps[i].idx)));
        m_grid->setItem(i, 1, new QTableWidgetItem(selection_template::stepText(steps[i].cmd)));
        m_grid->setItem(i, 2, new QTableWidgetItem(QString::number(steps[i].nmb)));
    }
    m_grid->resizeColumnToContents(1);
}

void SelectionTemplateWindow::addStep() {
    const int cmd = m_kinds->currentRow();
    if (cmd < 0) return;
    std::optional<int> value;
    if (cmd == selection_template::kSavedSelectionStep) {
        SavedSelections saved(m_commands.session().savedPicksDb());
        const int row = m_commands.dialogs().chooseSavedSelection(saved, m_commands.prompter());
        if (row != 0) value = row;
    } else {
        const frequency_picks::Prompt p = selection_template::stepPrompt(cmd);
        const std::optional<QString> answer = m_commands.prompter().askTextOrCancel(p.title, p.text, p.proposal);
        if (answer) value = frequency_picks::parseValue(*answer);
    }
    if (!value) return;
    SelectionTemplate(m_commands.session().filterDb()).add(cmd, *value);
    reload();
}

void SelectionTemplateWindow::deleteStep() {
    const QTableWidgetItem* idx = m_grid->item(m_grid->currentRow(), 0);
    if (!idx) return;
    SelectionTemplate(m_commands.session().filterDb()).remove(idx->text().toInt());
    reload();
}

void SelectionTemplateWindow::runSteps() {
    Session& s = m_commands.session();
    SavedSelections saved(s.savedPicksDb());
    SelectionTemplate(s.filterDb()).run(m_commands.board(), {s.stats(), saved});
    m_commands.boardChanged();
}

#include "app/ui/start_window.h"

#include "workspace/prompter.h"
#include "workspace/settings.h"
#include "workspace/workspace_lock.h"

#include <QEvent>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QMouseEvent>
#include <QVBoxLayout>

namespace {
const QString kTitle = QStringLiteral("欢迎进入鹤鸣轩.明略乐透彩票助理");
// The start window's colour: red 237, green 0, blue 14.
const QString kLabelStyle =
    QStringLiteral("QLabel { color: rgb(237,0,14); font-size: 11pt; padding: 4px 10px; }");
const QString kHotStyle = QStringLiteral(
    "QLabel { color: white; background: rgb(237,0,14); font-size: 11pt; padding: 4px 10px; border-radius: "
    "3px; }");
}  // namespace

StartWindow::StartWindow(WorkspaceList& list, Prompter& prompter, QWidget* parent)
    : QWidget(parent), m_list(list), m_prompter(prompter) {
    setObjectName(QStringLiteral("Frmpre"));
    setWindowTitle(kTitle);

    m_workspaceFrame = new QGroupBox(QStringLiteral("用户名及彩票类型选择"), this);
    m_workspaceFrame->setObjectName(QStringLiteral("Frame1"));
    m_workspaceFrame->setStyleSheet(QStringLiteral("QGroupBox { color: rgb(237,0,14); font-weight: bold; }"));
    m_workspaceFrame->setMouseTracking(true);
    m_workspaceFrame->installEventFilter(this);

    m_nameList = new QListWidget(m_workspaceFrame);
    m_nameList->setObjectName(QStringLiteral("LstName"));
    connect(m_nameList, &QListWidget::itemDoubleClicked, this, &StartWindow::enterWorkspace);

    auto* labels = new QHBoxLayout;
    const struct {
        const char* name;
        const char* text;
        void (StartWindow::*action)();
    } items[] = {{"Label2", "新建用户", &StartWindow::newWorkspace},
                 {"Label3", "进入系统", &StartWindow::enterWorkspace},
                 {"Label4", "删除用户", &StartWindow::deleteWorkspace}};
    for (const auto& it : items) {
        auto* label = new QLabel(QString::fromUtf8(it.text), m_workspaceFrame);
        label->setObjectName(QString::fromLatin1(it.name));
        label->setStyleSheet(kLabelStyle);
        label->setCursor(Qt::PointingHandCursor);
        label->setAlignment(Qt::AlignCenter);
        label->installEventFilter(this);
        label->setProperty("action", QVariant::fromValue(static_cast<int>(m_labels.size())));
        labels->addWidget(label);
        m_labels << label;
    }

    auto* frameLayout = new QVBoxLayout(m_workspaceFrame);
    frameLayout->addWidget(m_nameList);
    frameLayout->addLayout(labels);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_workspaceFrame);
    resize(420, 340);

    fillList();
}

void StartWindow::fillList() {
    m_list.load();
    m_nameList->clear();
    for (int row = 0; row < m_list.count(); ++row) {
        auto* item = new QListWidgetItem(m_list.name(row), m_nameList);
        item->setData(Qt::UserRole, row + 1);
    }
    const int pre = m_list.preselectedRow();
    if (pre >= 0) m_nameList->setCurrentRow(pre);
}

int StartWindow::selectedRow() const {
    const auto selected = m_nameList->selectedItems();
    return selected.isEmpty() ? -1 : m_nameList->row(selected.first());
}

void StartWindow::newWorkspace() {
    const int row = m_list.askNew(m_prompter);
    if (row < 0) return;
    auto* item = new QListWidgetItem(m_list.name(row), m_nameList);
    item->setData(Qt::UserRole, row + 1);
    m_nameList->setCurrentRow(row);
}

void StartWindow::enterWorkspace() {
    auto w = m_list.enter(selectedRow(), m_prompter);
    if (!w) return;
    // A settings file of the workspace that cannot be read is not read as defaults, nor saved over.
    const QString problem = m_list.settings().filesProblem(w->name);
    if (!problem.isEmpty()) {
        m_prompter.inform(Settings::kDamagedTitle, problem, Prompter::Icon::Warning);
        return;
    }
    // The window is the workspace's one writer while the player stays in it.
    QString error;
    w->lock = WorkspaceLock::forWorkspace(m_list.root(), w->name, &error);
    if (!w->lock) {
        m_prompter.inform(WorkspaceLock::kTitle, error, Prompter::Icon::Warning);
        return;
    }
    emit entered(*w);
}

void StartWindow::deleteWorkspace() {
    const int row = selectedRow();
    if (!m_list.remove(row, m_prompter)) return;
    delete m_nameList->takeItem(row);
}

void StartWindow::highlight(QLabel* label) {
    for (QLabel* l : m_labels) l->setStyleSheet(l == label ? kHotStyle : kLabelStyle);
}

bool StartWindow::eventFilter(QObject* watched, QEvent* event) {
    if (auto* label = qobject_cast<QLabel*>(watched); label && m_labels.contains(label)) {
        if (event->type() == QEvent::Enter) highlight(label);
        if (event->type() == QEvent::MouseButtonRelease &&
            static_cast<QMouseEvent*>(event)->button() == Qt::LeftButton) {
            switch (label->property("action").toInt()) {
                case 0:
                    newWorkspace();
                    break;
                case 1:
                    enterWorkspace();
                    break;
                case 2:
                    deleteWorkspace();
                    break;
            }
            return true;
        }
    } else if (watched == m_workspaceFrame && event->type() == QEvent::MouseMove) {
        highlight(nullptr);
    }
    return QWidget::eventFilter(watched, event);
}

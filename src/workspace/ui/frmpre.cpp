#include "workspace/ui/frmpre.h"

#include "workspace/prompter.h"

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
const QString kLabelStyle = QStringLiteral("QLabel { color: rgb(237,0,14); font-size: 11pt; padding: 4px 10px; }");
const QString kHotStyle = QStringLiteral(
    "QLabel { color: white; background: rgb(237,0,14); font-size: 11pt; padding: 4px 10px; border-radius: 3px; }");
}  // namespace

Frmpre::Frmpre(WorkspaceList& list, Prompter& prompter, QWidget* parent)
    : QWidget(parent), m_list(list), m_prompter(prompter) {
    setObjectName(QStringLiteral("Frmpre"));
    setWindowTitle(kTitle);

    m_frame1 = new QGroupBox(QStringLiteral("用户名及彩票类型选择"), this);
    m_frame1->setObjectName(QStringLiteral("Frame1"));
    m_frame1->setStyleSheet(QStringLiteral("QGroupBox { color: rgb(237,0,14); font-weight: bold; }"));
    m_frame1->setMouseTracking(true);
    m_frame1->installEventFilter(this);

    m_lstName = new QListWidget(m_frame1);
    m_lstName->setObjectName(QStringLiteral("LstName"));
    connect(m_lstName, &QListWidget::itemDoubleClicked, this, &Frmpre::enterWorkspace);

    auto* labels = new QHBoxLayout;
    const struct {
        const char* name;
        const char* text;
        void (Frmpre::*action)();
    } items[] = {{"Label2", "新建用户", &Frmpre::newWorkspace},
                 {"Label3", "进入系统", &Frmpre::enterWorkspace},
                 {"Label4", "删除用户", &Frmpre::deleteWorkspace}};
    for (const auto& it : items) {
        auto* label = new QLabel(QString::fromUtf8(it.text), m_frame1);
        label->setObjectName(QString::fromLatin1(it.name));
        label->setStyleSheet(kLabelStyle);
        label->setCursor(Qt::PointingHandCursor);
        label->setAlignment(Qt::AlignCenter);
        label->installEventFilter(this);
        label->setProperty("action", QVariant::fromValue(static_cast<int>(m_labels.size())));
        labels->addWidget(label);
        m_labels << label;
    }

    auto* frameLayout = new QVBoxLayout(m_frame1);
    frameLayout->addWidget(m_lstName);
    frameLayout->addLayout(labels);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_frame1);
    resize(420, 340);

    fillList();
}

void Frmpre::fillList() {
    m_list.load();
    m_lstName->clear();
    for (int row = 0; row < m_list.count(); ++row) {
        auto* item = new QListWidgetItem(m_list.name(row), m_lstName);
        item->setData(Qt::UserRole, row + 1);
    }
    const int pre = m_list.preselectedRow();
    if (pre >= 0) m_lstName->setCurrentRow(pre);
}

int Frmpre::selectedRow() const {
    const auto selected = m_lstName->selectedItems();
    return selected.isEmpty() ? -1 : m_lstName->row(selected.first());
}

void Frmpre::newWorkspace() {
    const int row = m_list.askNew(m_prompter);
    if (row < 0) return;
    auto* item = new QListWidgetItem(m_list.name(row), m_lstName);
    item->setData(Qt::UserRole, row + 1);
    m_lstName->setCurrentRow(row);
}

void Frmpre::enterWorkspace() {
    auto w = m_list.enter(selectedRow(), m_prompter);
    if (!w) return;
    emit entered(*w);
}

void Frmpre::deleteWorkspace() {
    const int row = selectedRow();
    if (!m_list.remove(row, m_prompter)) return;
    delete m_lstName->takeItem(row);
}

void Frmpre::highlight(QLabel* label) {
    for (QLabel* l : m_labels) l->setStyleSheet(l == label ? kHotStyle : kLabelStyle);
}

bool Frmpre::eventFilter(QObject* watched, QEvent* event) {
    if (auto* label = qobject_cast<QLabel*>(watched); label && m_labels.contains(label)) {
        if (event->type() == QEvent::Enter) highlight(label);
        if (event->type() == QEvent::MouseButtonRelease &&
            static_cast<QMouseEvent*>(event)->button() == Qt::LeftButton) {
            switch (label->property("action").toInt()) {
                case 0: newWorkspace(); break;
                case 1: enterWorkspace(); break;
                case 2: deleteWorkspace(); break;
            }
            return true;
        }
    } else if (watched == m_frame1 && event->type() == QEvent::MouseMove) {
        highlight(nullptr);
    }
    return QWidget::eventFilter(watched, event);
}

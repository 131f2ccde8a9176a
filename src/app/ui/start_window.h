#pragma once

#include "workspace/workspace_list.h"

#include <QWidget>

class Prompter;
class QGroupBox;
class QLabel;
class QListWidget;

// The start window: the workspace list with 新建用户, 进入系统 and 删除用户.
class StartWindow : public QWidget {
    Q_OBJECT
public:
    StartWindow(WorkspaceList& list, Prompter& prompter, QWidget* parent = nullptr);

    QListWidget* nameList() const { return m_nameList; }

    void newWorkspace();     // Label2
    void enterWorkspace();   // Label3
    void deleteWorkspace();  // Label4

signals:
    void entered(const EnteredWorkspace& workspace);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void fillList();
    int selectedRow() const;
    void highlight(QLabel* label);

    WorkspaceList& m_list;
    Prompter& m_prompter;
    QGroupBox* m_workspaceFrame;
    QListWidget* m_nameList;
    QList<QLabel*> m_labels;
};

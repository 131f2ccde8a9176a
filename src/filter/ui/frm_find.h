#pragma once

#include <QDialog>

class Prompter;
class QListWidget;
class SqliteDb;
namespace saved_setting {
class Finder;
}

// The list of saved filter settings: a double click chooses one; the popup deletes or renames.
class FrmFind : public QDialog {
    Q_OBJECT
public:
    FrmFind(SqliteDb& fildb, Prompter& prompter, QWidget* parent = nullptr);
    ~FrmFind() override;
    QString chosen() const { return m_chosen; }
    QListWidget* list() const { return m_list; }

    void removeCurrent();
    void renameCurrent();

private:
    void fill();

    std::unique_ptr<saved_setting::Finder> m_finder;
    Prompter& m_prompter;
    QListWidget* m_list;
    QString m_chosen;
};

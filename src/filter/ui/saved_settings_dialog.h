#pragma once

#include <QDialog>

class Prompter;
class QListWidget;
class SqliteDb;
namespace saved_setting_store {
class Finder;
}

// The list of saved filter settings: a double click chooses one; the popup deletes or renames.
class SavedSettingsDialog : public QDialog {
    Q_OBJECT
public:
    SavedSettingsDialog(SqliteDb& filterDb, Prompter& prompter, QWidget* parent = nullptr);
    ~SavedSettingsDialog() override;
    QString chosen() const { return m_chosen; }
    QListWidget* list() const { return m_list; }

    void removeCurrent();
    void renameCurrent();

private:
    void fill();

    std::unique_ptr<saved_setting_store::Finder> m_finder;
    Prompter& m_prompter;
    QListWidget* m_list;
    QString m_chosen;
};

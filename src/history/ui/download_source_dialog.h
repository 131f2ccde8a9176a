#pragma once

#include <QDialog>

class QListWidget;

// The list of downloadable history files: a double click chooses a game.
class DownloadSourceDialog : public QDialog {
    Q_OBJECT
public:
    explicit DownloadSourceDialog(QWidget* parent = nullptr);
    QString chosen() const { return m_chosen; }
    // Shows the list modally; the double-clicked game, or empty when closed.
    static QString choose(QWidget* parent);

private:
    QListWidget* m_list;
    QString m_chosen;
};

#pragma once

// A workspace with a small history imported, its main window, and the analysis windows opened
// from it by their buttons and menus.

#include "analysis/ui/trend_window.h"
#include "history/history_import.h"
#include "support/main_window_fixture.h"

#include <QAction>
#include <QFile>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>

// Five draws; 07 comes in three of them.
inline const QStringList kTrendDraws{
    QStringLiteral("2025101 01 07 14 22 30 03 11"), QStringLiteral("2025102 05 07 19 26 33 03 09"),
    QStringLiteral("2025103 02 08 15 23 29 01 12"), QStringLiteral("2025104 10 13 18 27 35 06 12"),
    QStringLiteral("2025105 07 21 28 31 34 02 08")};

struct TrendFixture : MainWindowFixture {
    QTemporaryDir files;
    // With `windowPrompter` the windows ask through it instead of the scripted prompter.
    explicit TrendFixture(const QStringList& draws = kTrendDraws, Prompter* windowPrompter = nullptr) {
        const QString path = files.filePath(QStringLiteral("h.txt"));
        QFile f(path);
        f.open(QIODevice::WriteOnly);
        f.write(draws.join(QLatin1Char('\n')).toUtf8());
        f.close();
        open(
            [this, path](Session& s) {
                if (!isEmptyFile(path))
                    HistoryImport(s, prompter).importFile(HistoryImport::Mode::Whole, path);
            },
            windowPrompter);
    }
    static bool isEmptyFile(const QString& path) { return QFile(path).size() == 0; }

    TrendWindow* openBy(const char* button) {
        window->findChild<QPushButton*>(QString::fromLatin1(button))->click();
        if (window->trendWindows().isEmpty()) return nullptr;
        TrendWindow* w = window->trendWindows().last();
        // Laid out and scrolled before a test clicks into it.
        if (!QTest::qWaitForWindowExposed(w)) return nullptr;
        QTest::qWait(50);
        return w;
    }
    template <typename T>
    static T* child(QWidget* w, const QString& name) {
        return w->findChild<T*>(name);
    }
    QPushButton* boardButton(const QString& name) const { return window->findChild<QPushButton*>(name); }

    // Triggers a menu entry of a trend window and returns the window it opened: the newest of
    // that name among the trend window's children.
    template <typename W = QWidget>
    static W* openView(TrendWindow* from, const QString& entry, const QString& objectName) {
        QAction* action = from ? from->findChild<QAction*>(entry) : nullptr;
        if (!action || !action->isEnabled()) return nullptr;
        action->trigger();
        const QList<W*> opened = from->findChildren<W*>(objectName, Qt::FindDirectChildrenOnly);
        return opened.isEmpty() ? nullptr : opened.last();
    }
};

// Runs one step of the interrupted-write test on a filnum.db the way a filter window does
// (the action, then the record written in the background, image and derived rows), and waits
// for the writer to finish; the test kills it at a random moment.
//
//   record_crash_helper FILE STEP
#include "filter/filter_workspace.h"
#include "filter/record_steps.h"
#include "workspace/sqlite_db.h"

#include <QCoreApplication>

#include <chrono>
#include <cstdio>
#include <thread>

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    if (argc != 3) return 2;
    const QString path = QString::fromLocal8Bit(argv[1]);
    const int step = std::atoi(argv[2]);
    FilterWorkspace window(FilterSource::StoredExpansion, path);
    if (record_steps::isSave(step)) {
        window.openMade(std::make_unique<CandidateTable>(record_steps::savedTable(step)),
                        record_steps::kRows);
    } else {
        SqliteDb db;
        QString error;
        if (!db.open(path) || !window.openStored(db, nullptr, &error) || window.table().rowCount() == 0) {
            std::fprintf(stderr, "%s\n", qPrintable(error));
            return 1;
        }
        record_steps::act(window.edit().table(), step);
    }
    std::printf("started\n");
    std::fflush(stdout);
    // The window stays open and idle: the writer goes on to the derived rows.
    while (window.writePending()) std::this_thread::sleep_for(std::chrono::milliseconds(5));
    return 0;
}

#pragma once

#include <QMap>
#include <QString>
#include <QTemporaryDir>

#include <gtest/gtest.h>

// A canonical picture of a data root: what a player's data is, independent of how the bytes
// lie. Every SQLite file gives its integrity check and each table's schema and rows (opened
// read-write, so that a hot journal left by a killed writer is rolled back as the program
// would); every settings file and text file gives its content. Lock files and the temporary
// files of an interrupted save are not data and are left out. A report's name carries the
// time it was written, so reports are keyed by their order and give their line count and text
// after the header lines. The relational form of a candidate table kept as a record image is
// derived from the image in a later transaction and is left out (the record's own crash test
// covers it).
namespace store_state {

struct Snapshot {
    QMap<QString, QString> entries;  // relative path (and table) -> digest or text
    QStringList damaged;             // SQLite files whose integrity check failed
    // The history text written beside the database after each change of the history (a copy
    // for the player, saved whole through a temporary file once the database has committed):
    // a kill between the two leaves the copy one change behind, so it is compared on its own.
    QMap<QString, QString> exports;
};

Snapshot take(const QString& root);

// The data root the store tests start from, made through shuangqu-cli in `home`: workspaces 乙
// and 甲 (甲 current) with the five draws of the small fixture, an expansion with its record,
// a template entry and a report. False when a step failed.
bool makeBaseRoot(const QString& home, const QString& scratch);
bool copyTree(const QString& from, const QString& to);

// A suite whose tests start from copies of one base root (makeBaseRoot), made once.
class BaseRootSuite : public ::testing::Test {
protected:
    static inline QTemporaryDir* s_dir = nullptr;
    static QString base() { return s_dir->filePath(QStringLiteral("base")); }
    static void SetUpTestSuite() {
        s_dir = new QTemporaryDir;
        ASSERT_TRUE(makeBaseRoot(base(), s_dir->filePath(QStringLiteral("scratch"))));
    }
    static void TearDownTestSuite() {
        delete s_dir;
        s_dir = nullptr;
    }
};

// Empty when equal; else the first keys that differ, for a failure message. `exports` compares
// the history text copies instead of the data.
QString difference(const Snapshot& a, const Snapshot& b, bool exports = false);

}  // namespace store_state

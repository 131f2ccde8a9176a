#pragma once

#include <QString>
#include <QStringList>

class SqliteDb;

// Column types of the stored tables, as the program reads them. SQLite stores them as
// INTEGER, REAL and TEXT; bits are 1/0.
enum class ColumnType { Integer, Long, Single, Double, String, Bit };

struct ColumnDef {
    QString name;
    ColumnType type;
};

struct TableDef {
    QString name;
    QList<ColumnDef> columns;
    QStringList columnNames() const;
    // CREATE TABLE with every column; numeric columns default to 0 so that a column a writer
    // leaves out reads as 0.
    QString createStatement() const;
};

// The template databases that first start generates.
enum class TemplateKind {
    History,     // Lishihaoma: draws, omissions, frequencies
    FilterDb,    // candidates' database: reduced fig, Canshu, moban, Xhmb
    SavedPicks,  // saved selections
    Empty,       // filnumR, Gailv: reached by no query
};

namespace schema {
// History database <workspace>.db
TableDef frontDrawTable();
TableDef backDrawTable();
TableDef wholeDrawTable();
TableDef frontOmissionTable();                        // Ylqs
TableDef backOmissionTable();                         // YlqsHou
TableDef wholeOmissionTable();                        // YlqsQuan
TableDef frequencyTable(const QString& name);         // Gailv, GailvHou, GailvQuan
TableDef frequencyScratchTable(const QString& name);  // Gailvtmp, Gailvtmphou

// filnum.db
TableDef reducedDrawTable();
TableDef snapshotTable(const QString& name);  // Canshu and moban share their columns
TableDef xhmb();

// numsave.db
TableDef saveTable(const QString& name);  // SAVE, SAVEHOU, SAVEdan, SAVEHOUdan

// Candidate tables, created by the expansion that fills them.
enum class CandidateKind { Combinations, Wheel, Template, Imported, SixNumbers };
TableDef candidate(CandidateKind kind);
QString candidateTableName(CandidateKind kind);

// The tables of a template, in creation order.
QList<TableDef> templateTables(TemplateKind kind);

// Rows that a template holds from the start: the frequency tables with one zero row per number.
int frequencyRows(const QString& table);  // 36, 24, 36
}  // namespace schema

// Writes a new template database at `path` (replacing nothing: fails if the file exists).
bool createTemplate(const QString& path, TemplateKind kind);
// Creates the tables of `kind` in an open database, in one transaction.
bool createTemplateTables(SqliteDb& db, TemplateKind kind);

#pragma once

// Reads the first sheet of an .xlsx back as rows of cell texts. The file is a zip: `unzip -p`
// hands over xl/worksheets/sheet1.xml and xl/sharedStrings.xml, parsed here with
// QXmlStreamReader. Shared, inline and formula strings give their text, numbers the text of
// <v>; cells left out of a row are empty strings, so row r column c is rows[r][c].

#include <QByteArray>
#include <QList>
#include <QProcess>
#include <QStandardPaths>
#include <QString>
#include <QStringList>
#include <QXmlStreamReader>

struct XlsxSheet {
    QList<QStringList> rows;
    // The solid background of each cell as "RRGGBB", empty for none; same shape as rows.
    QList<QStringList> backgrounds;
    QString error;  // empty when the sheet was read
};

namespace xlsx_reader {

inline bool available() { return !QStandardPaths::findExecutable(QStringLiteral("unzip")).isEmpty(); }

// One member of the archive; a missing member gives an empty array and sets *missing.
inline QByteArray member(const QString& file, const QString& name, bool* missing) {
    QProcess p;
    p.start(QStringLiteral("unzip"), {QStringLiteral("-p"), file, name});
    p.waitForFinished(30000);
    *missing = p.exitStatus() != QProcess::NormalExit || p.exitCode() != 0;
    return p.readAllStandardOutput();
}

// "C12" -> column 2 (0-based); the row comes from <row r=...>.
inline int columnOf(const QString& ref) {
    int col = 0;
    for (QChar ch : ref) {
        if (ch < QLatin1Char('A') || ch > QLatin1Char('Z')) break;
        col = col * 26 + (ch.unicode() - 'A' + 1);
    }
    return col - 1;
}

// The text of every <si>, its runs joined.
inline QStringList sharedStrings(const QByteArray& xml) {
    QStringList out;
    QXmlStreamReader r(xml);
    QString current;
    bool inSi = false;
    while (!r.atEnd()) {
        r.readNext();
        if (r.isStartElement() && r.name() == QLatin1String("si")) {
            inSi = true;
            current.clear();
        } else if (r.isEndElement() && r.name() == QLatin1String("si")) {
            inSi = false;
            out << current;
        } else if (inSi && r.isStartElement() && r.name() == QLatin1String("t")) {
            current += r.readElementText();
        }
    }
    return out;
}

// The solid fill colour ("RRGGBB") of each cell style of xl/styles.xml, empty for none.
inline QStringList styleFills(const QByteArray& xml) {
    QStringList fills, styles;
    QXmlStreamReader r(xml);
    bool inFills = false, inXfs = false;
    while (!r.atEnd()) {
        r.readNext();
        const auto name = r.name();
        if (r.isStartElement()) {
            if (name == QLatin1String("fills")) inFills = true;
            if (name == QLatin1String("cellXfs")) inXfs = true;
            if (inFills && name == QLatin1String("fill")) fills << QString();
            if (inFills && name == QLatin1String("fgColor") && !fills.isEmpty())
                fills.last() = r.attributes().value(QLatin1String("rgb")).toString().right(6);
            if (inXfs && name == QLatin1String("xf")) {
                const int fill = r.attributes().value(QLatin1String("fillId")).toInt();
                styles << fills.value(fill);
            }
        } else if (r.isEndElement()) {
            if (name == QLatin1String("fills")) inFills = false;
            if (name == QLatin1String("cellXfs")) inXfs = false;
        }
    }
    return styles;
}

inline XlsxSheet read(const QString& file) {
    XlsxSheet sheet;
    if (!available()) {
        sheet.error = QStringLiteral("unzip is not installed");
        return sheet;
    }
    bool missing = false;
    const QByteArray xml = member(file, QStringLiteral("xl/worksheets/sheet1.xml"), &missing);
    if (missing) {
        sheet.error = QStringLiteral("no xl/worksheets/sheet1.xml in ") + file;
        return sheet;
    }
    bool noStrings = false;
    const QStringList strings = sharedStrings(member(file, QStringLiteral("xl/sharedStrings.xml"), &noStrings));
    bool noStyles = false;
    const QStringList fills = styleFills(member(file, QStringLiteral("xl/styles.xml"), &noStyles));

    QXmlStreamReader r(xml);
    int row = -1, col = -1;
    QString type, text, fill;
    while (!r.atEnd()) {
        r.readNext();
        if (r.isStartElement()) {
            if (r.name() == QLatin1String("row")) {
                row = r.attributes().value(QLatin1String("r")).toInt() - 1;
                if (row < 0) {
                    sheet.error = QStringLiteral("a row without its number");
                    return sheet;
                }
                while (sheet.rows.size() <= row) sheet.rows.append(QStringList());
                while (sheet.backgrounds.size() <= row) sheet.backgrounds.append(QStringList());
            } else if (r.name() == QLatin1String("c")) {
                col = columnOf(r.attributes().value(QLatin1String("r")).toString());
                type = r.attributes().value(QLatin1String("t")).toString();
                fill = fills.value(r.attributes().value(QLatin1String("s")).toInt());
                text.clear();
            } else if (r.name() == QLatin1String("v") || r.name() == QLatin1String("t")) {
                text += r.readElementText();
            }
        } else if (r.isEndElement() && r.name() == QLatin1String("c")) {
            if (row < 0 || col < 0) {
                sheet.error = QStringLiteral("a cell outside a row");
                return sheet;
            }
            if (type == QLatin1String("s")) {
                bool ok = false;
                const int k = text.toInt(&ok);
                if (!ok || k < 0 || k >= strings.size()) {
                    sheet.error = QStringLiteral("shared string %1 out of range").arg(text);
                    return sheet;
                }
                text = strings[k];
            }
            QStringList& cells = sheet.rows[row];
            while (cells.size() <= col) cells << QString();
            cells[col] = text;
            QStringList& colours = sheet.backgrounds[row];
            while (colours.size() <= col) colours << QString();
            colours[col] = fill;
        }
    }
    if (r.hasError()) sheet.error = r.errorString();
    return sheet;
}

}  // namespace xlsx_reader

#pragma once

// The text of a PDF as `pdftotext -layout FILE -` lays it out, so that a test can look for the
// headings and rows a printout must hold. A missing tool or a file it cannot read gives a null
// string. The CJK fonts map some glyphs to their Kangxi radical (日 comes out as U+2F47), so
// radicals are folded back to the ideographs they stand for.

#include <QProcess>
#include <QStandardPaths>
#include <QString>
#include <QStringList>

namespace pdf_text {

inline QString read(const QString& file) {
    if (QStandardPaths::findExecutable(QStringLiteral("pdftotext")).isEmpty()) return {};
    QProcess p;
    p.start(QStringLiteral("pdftotext"), {QStringLiteral("-layout"), QStringLiteral("-enc"), QStringLiteral("UTF-8"), file,
                                          QStringLiteral("-")});
    if (!p.waitForFinished(30000) || p.exitStatus() != QProcess::NormalExit || p.exitCode() != 0) return {};
    QString text = QString::fromUtf8(p.readAllStandardOutput());
    for (qsizetype i = 0; i < text.size(); ++i) {
        const char16_t c = text[i].unicode();
        if ((c >= 0x2E80 && c <= 0x2EFF) || (c >= 0x2F00 && c <= 0x2FDF)) {
            const QString folded = QString(text[i]).normalized(QString::NormalizationForm_KC);
            if (folded.size() == 1) text[i] = folded[0];
        }
    }
    return text;
}

// The lines with text, each trimmed (page breaks and blank lines dropped).
inline QStringList lines(const QString& text) {
    QStringList out;
    for (const QString& l : text.split(QLatin1Char('\n'))) {
        const QString t = l.trimmed().remove(QChar(0x0C));
        if (!t.isEmpty()) out << t;
    }
    return out;
}

}  // namespace pdf_text

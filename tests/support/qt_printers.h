#pragma once

#include <QString>
#include <QStringList>

#include <ostream>

// Readable QString values in GoogleTest failure messages.
inline void PrintTo(const QString& s, std::ostream* os) { *os << '"' << s.toStdString() << '"'; }
inline void PrintTo(const QStringList& l, std::ostream* os) { *os << '[' << l.join(QStringLiteral(", ")).toStdString() << ']'; }

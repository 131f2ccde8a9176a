#include "generation/wheels/wheel.h"

#include "workspace/saved_file.h"

#include <QFile>
#include <QRegularExpression>
#include <QSaveFile>
#include <QStringList>

namespace wheels {

QString Guarantee::name() const {
    return p == t ? QStringLiteral("C(%1,%2,%3)").arg(n).arg(k).arg(t)
                  : QStringLiteral("L(%1,%2,%3,%4)").arg(n).arg(k).arg(p).arg(t);
}

std::vector<int> positionsOf(Block b) {
    std::vector<int> positions;
    for (; b; b &= b - 1) positions.push_back(std::countr_zero(b) + 1);
    return positions;
}

Block blockOf(const std::vector<int>& positions) {
    Block b = 0;
    for (int p : positions) b |= Block{1} << (p - 1);
    return b;
}

QString toText(const std::vector<Block>& blocks) {
    QString text;
    for (Block b : blocks) {
        QStringList line;
        for (int p : positionsOf(b)) line << QString::number(p);
        text += line.join(QLatin1Char(' ')) + QLatin1Char('\n');
    }
    return text;
}

ReadResult fromText(const QString& text, const Guarantee& g) {
    static const QRegularExpression separators(QStringLiteral("[\\s,]+"));
    ReadResult r;
    const QStringList lines = text.split(QLatin1Char('\n'));
    for (int i = 0; i < lines.size(); ++i) {
        const QString line = lines[i].trimmed();
        if (line.isEmpty() || line.startsWith(QLatin1Char('#'))) continue;
        Block b = 0;
        int count = 0;
        for (const QString& field : line.split(separators, Qt::SkipEmptyParts)) {
            bool ok = false;
            const int p = field.toInt(&ok);
            if (!ok || p < 1 || p > g.n) {
                r.error =
                    QStringLiteral("line %1: \"%2\" is no position of 1..%3").arg(i + 1).arg(field).arg(g.n);
                return r;
            }
            b |= Block{1} << (p - 1);
            ++count;
        }
        if (count != g.k || size(b) != g.k) {
            r.error = QStringLiteral("line %1: a ticket needs %2 different positions").arg(i + 1).arg(g.k);
            return r;
        }
        r.blocks.push_back(b);
    }
    return r;
}

ReadResult readFile(const QString& path, const Guarantee& g) {
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly))
        return {{}, QStringLiteral("cannot read %1: %2").arg(path, f.errorString())};
    ReadResult r = fromText(QString::fromUtf8(f.readAll()), g);
    if (!r.error.isEmpty()) r.error = path + QStringLiteral(", ") + r.error;
    return r;
}

QString writeFile(const QString& path, const std::vector<Block>& blocks) {
    QSaveFile f(path);
    if (!f.open(QIODevice::WriteOnly))
        return QStringLiteral("cannot write %1: %2").arg(path, f.errorString());
    f.write(toText(blocks).toUtf8());
    if (!saved_file::commit(f)) return QStringLiteral("cannot write %1: %2").arg(path, f.errorString());
    return {};
}

}  // namespace wheels

#include "workspace/password_hash.h"

#include <QList>
#include <QMessageAuthenticationCode>
#include <QRandomGenerator>
#include <QStringList>

#include <optional>

namespace password_hash {

namespace {

const QString kScheme = QStringLiteral("pbkdf2-sha256");
constexpr QChar kSeparator = QLatin1Char('$');
// A stored count above this is a damaged or doctored entry, not one this program wrote.
constexpr int kMaxIterations = 10000000;

struct Parsed {
    int iterations = 0;
    QByteArray salt;
    QByteArray hash;
};

std::optional<Parsed> parse(const QString& stored) {
    const QStringList parts = stored.split(kSeparator);
    if (parts.size() != 4 || parts[0] != kScheme) return std::nullopt;
    Parsed p;
    bool ok = false;
    p.iterations = parts[1].toInt(&ok);
    if (!ok || p.iterations < 1 || p.iterations > kMaxIterations) return std::nullopt;
    const auto decode = [](const QString& text) {
        return QByteArray::fromBase64Encoding(text.toLatin1(), QByteArray::AbortOnBase64DecodingErrors);
    };
    const auto salt = decode(parts[2]);
    const auto hash = decode(parts[3]);
    if (!salt || !hash || salt.decoded.isEmpty() || hash.decoded.size() != kHashBytes) return std::nullopt;
    p.salt = salt.decoded;
    p.hash = hash.decoded;
    return p;
}

// Compares in a time that does not depend on where the first difference lies.
bool sameBytes(const QByteArray& a, const QByteArray& b) {
    if (a.size() != b.size()) return false;
    unsigned char diff = 0;
    for (qsizetype i = 0; i < a.size(); ++i) diff |= static_cast<unsigned char>(a[i] ^ b[i]);
    return diff == 0;
}

QByteArray randomSalt() {
    QList<quint32> words(kSaltBytes / static_cast<int>(sizeof(quint32)));
    QRandomGenerator::system()->fillRange(words.data(), words.size());
    return QByteArray(reinterpret_cast<const char*>(words.constData()), kSaltBytes);
}

}  // namespace

QByteArray pbkdf2Sha256(const QByteArray& password, const QByteArray& salt, int iterations, int length) {
    QMessageAuthenticationCode mac(QCryptographicHash::Sha256, password);
    QByteArray out;
    // Block i is U1 ^ U2 ^ ... ^ Uc with U1 = HMAC(salt || INT(i)) and Uj = HMAC(Uj-1).
    for (quint32 block = 1; out.size() < length; ++block) {
        const char index[4] = {static_cast<char>(block >> 24), static_cast<char>(block >> 16),
                               static_cast<char>(block >> 8), static_cast<char>(block)};
        mac.reset();
        mac.addData(salt);
        mac.addData(index, sizeof index);
        QByteArray u = mac.result();
        QByteArray t = u;
        for (int j = 1; j < iterations; ++j) {
            mac.reset();
            mac.addData(u);
            u = mac.result();
            for (qsizetype k = 0; k < t.size(); ++k) t[k] = static_cast<char>(t[k] ^ u[k]);
        }
        out += t;
    }
    return out.left(length);
}

QString hash(const QString& password) {
    if (password.isEmpty()) return {};
    const QByteArray salt = randomSalt();
    const QByteArray derived = pbkdf2Sha256(password.toUtf8(), salt, kIterations, kHashBytes);
    return QStringList{kScheme, QString::number(kIterations), QString::fromLatin1(salt.toBase64()),
                       QString::fromLatin1(derived.toBase64())}
        .join(kSeparator);
}

bool isHash(const QString& stored) { return parse(stored).has_value(); }

bool verify(const QString& stored, const QString& typed) {
    if (stored.isEmpty()) return false;
    const std::optional<Parsed> p = parse(stored);
    if (!p) return stored == typed;
    return sameBytes(pbkdf2Sha256(typed.toUtf8(), p->salt, p->iterations, kHashBytes), p->hash);
}

}  // namespace password_hash

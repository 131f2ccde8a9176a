#pragma once

#include <QByteArray>
#include <QString>

// Workspace passwords as the settings store keeps them: a salted PBKDF2-HMAC-SHA256 hash in
// the form "pbkdf2-sha256$<iterations>$<salt base64>$<hash base64>". An empty text stands for
// no password; any other text that is not of this form is a password kept in plain text by an
// earlier version.
namespace password_hash {

inline constexpr int kIterations = 120000;
inline constexpr int kSaltBytes = 16;
inline constexpr int kHashBytes = 32;

// PBKDF2 (RFC 8018) with HMAC-SHA256 as its pseudo-random function.
QByteArray pbkdf2Sha256(const QByteArray& password, const QByteArray& salt, int iterations, int length);

// The stored form of `password` with a fresh random salt; empty for an empty password.
QString hash(const QString& password);

// True when `stored` is a hash in the stored form (and not a plain text).
bool isHash(const QString& stored);

// True when `typed` is the password that `stored` holds: through the hash, or by exact
// comparison with a plain text. An empty `stored` accepts nothing: such a workspace is open
// and asks for no password.
bool verify(const QString& stored, const QString& typed);

}  // namespace password_hash

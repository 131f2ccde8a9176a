// Passwords are kept as salted PBKDF2 hashes; plain ones of an earlier version open once and
// are rewritten as hashes.
#include "support/temp_home.h"
#include "workspace/password_hash.h"
#include "workspace/scripted_prompter.h"
#include "workspace/workspace_list.h"

#include <QFile>

#include <gtest/gtest.h>

namespace {

QByteArray rawText(const QString& file) {
    QFile f(file);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

// A workspace entry as an earlier version wrote it: the password in plain text.
void plantPlainEntry(Settings& settings, const QString& name, const QString& password) {
    settings.write(setting_keys::UserName, name, {}, 1);
    settings.write(setting_keys::UserPassword, password, {}, 1);
    settings.write(setting_keys::WorkspaceCount, 1);
}

}  // namespace

TEST(PasswordHash, Pbkdf2MatchesTheReferenceVectors) {
    using password_hash::pbkdf2Sha256;
    // Two blocks of output, one and many iterations (RFC 7914, section 11).
    EXPECT_EQ(pbkdf2Sha256("passwd", "salt", 1, 64).toHex(),
              QByteArray("55ac046e56e3089fec1691c22544b605f94185216dde0465e68b9d57c20dacbc"
                         "49ca9cccf179b645991664b39d77ef317c71b845b1e30bd509112041d3a19783"));
    EXPECT_EQ(pbkdf2Sha256("Password", "NaCl", 80000, 64).toHex(),
              QByteArray("4ddcd8f60b98be21830cee5ef22701f9641a4418d04c0414aeff08876b34ab56"
                         "a1d425a1225833549adb841b51c9b3176a272bdebba1d078478f62b397f33c8d"));
    EXPECT_EQ(pbkdf2Sha256("password", "salt", 4096, 32).toHex(),
              QByteArray("c5e478d59288c841aa530db6845c4c8d962893a001ce4e11a4963873aa98134a"));
    // A length that ends inside a block; the password as UTF-8.
    EXPECT_EQ(pbkdf2Sha256(QStringLiteral("密码").toUtf8(), "salt", 2, 20).toHex(),
              QByteArray("2cf1906c440f6382fc545b0575fea20feb4b142c"));
}

TEST(PasswordHash, StoredFormVerifiesAndIsSaltedAnew) {
    const QString a = password_hash::hash(QStringLiteral("秘密 pw"));
    const QString b = password_hash::hash(QStringLiteral("秘密 pw"));
    EXPECT_TRUE(a.startsWith(QStringLiteral("pbkdf2-sha256$%1$").arg(password_hash::kIterations)));
    EXPECT_NE(a, b);
    EXPECT_TRUE(password_hash::isHash(a));
    EXPECT_TRUE(password_hash::verify(a, QStringLiteral("秘密 pw")));
    EXPECT_TRUE(password_hash::verify(b, QStringLiteral("秘密 pw")));
    EXPECT_FALSE(password_hash::verify(a, QStringLiteral("秘密 PW")));
    EXPECT_FALSE(password_hash::verify(a, a));
    EXPECT_EQ(password_hash::hash({}), QString());

    // Plain texts compare exactly; a damaged hash (count, base64, length) is such a text.
    EXPECT_FALSE(password_hash::isHash(QStringLiteral("secret")));
    EXPECT_TRUE(password_hash::verify(QStringLiteral("secret"), QStringLiteral("secret")));
    EXPECT_FALSE(password_hash::verify(QStringLiteral("secret"), QStringLiteral("secret ")));
    EXPECT_FALSE(password_hash::verify({}, {}));
    QStringList parts = a.split(QLatin1Char('$'));
    for (const QString& count : {QStringLiteral("0"), QStringLiteral("99999999"), QStringLiteral("x")}) {
        QStringList damaged = parts;
        damaged[1] = count;
        EXPECT_FALSE(password_hash::isHash(damaged.join(QLatin1Char('$')))) << count.toStdString();
    }
    QStringList shortHash = parts;
    shortHash[3] = QString::fromLatin1(QByteArray(16, 'x').toBase64());
    EXPECT_FALSE(password_hash::isHash(shortHash.join(QLatin1Char('$'))));
    QStringList badBase64 = parts;
    badBase64[2] = QStringLiteral("#!");
    EXPECT_FALSE(password_hash::isHash(badBase64.join(QLatin1Char('$'))));
}

TEST(WorkspacePasswords, SettingsHoldNoPasswordText) {
    TempHome home;
    WorkspaceList list(home.settings, home.root);
    list.load();
    ScriptedPrompter p;
    p.answer(QStringLiteral("甲"))
        .answer(QStringLiteral("s3cret-口令"))
        .answer(QStringLiteral("s3cret-口令"));
    ASSERT_EQ(list.askNew(p), 0);
    ASSERT_EQ(list.create(QStringLiteral("乙"), QStringLiteral("other-pw")), 1);
    const QByteArray ini = rawText(home.settings.fileFor(setting_keys::UserPassword));
    ASSERT_FALSE(ini.isEmpty());
    EXPECT_FALSE(ini.contains("s3cret")) << ini.constData();
    EXPECT_FALSE(ini.contains(QStringLiteral("口令").toUtf8()));
    EXPECT_FALSE(ini.contains("other-pw"));
    EXPECT_EQ(ini.count("pbkdf2-sha256$"), 2);
    EXPECT_TRUE(list.hasPassword(0));

    // The box opens on the right text only.
    ScriptedPrompter wrong;
    wrong.answer(QStringLiteral("s3cret")).cancel();
    EXPECT_FALSE(list.enter(0, wrong));
    ScriptedPrompter right;
    right.answer(QStringLiteral("s3cret-口令"));
    EXPECT_TRUE(list.enter(0, right));

    // A new password given by a rename is hashed as well.
    ScriptedPrompter rename;
    rename.answer(QStringLiteral("丙"))
        .answer(QStringLiteral("renamed-pw"))
        .answer(QStringLiteral("renamed-pw"));
    ASSERT_TRUE(list.askRename(2, QStringLiteral("乙"), rename));
    EXPECT_FALSE(rawText(home.settings.fileFor(setting_keys::UserPassword)).contains("renamed-pw"));
    EXPECT_TRUE(list.checkPassword(1, QStringLiteral("renamed-pw")));
}

TEST(WorkspacePasswords, APlainEntryOpensOnceAndIsRewrittenAsAHash) {
    TempHome home;
    plantPlainEntry(home.settings, QStringLiteral("老用户"), QStringLiteral("plain-123"));
    const QString file = home.settings.fileFor(setting_keys::UserPassword);
    ASSERT_TRUE(rawText(file).contains("plain-123"));
    WorkspaceList list(home.settings, home.root);
    list.load();
    ASSERT_TRUE(list.hasPassword(0));

    // A wrong text neither opens nor rewrites it.
    ScriptedPrompter wrong;
    wrong.answer(QStringLiteral("plain-12")).cancel();
    EXPECT_FALSE(list.enter(0, wrong));
    EXPECT_TRUE(rawText(file).contains("plain-123"));

    ScriptedPrompter right;
    right.answer(QStringLiteral("plain-123"));
    ASSERT_TRUE(list.enter(0, right));
    EXPECT_FALSE(rawText(file).contains("plain-123"));
    EXPECT_TRUE(password_hash::isHash(home.settings.read(setting_keys::UserPassword, {}, 1)));

    // After a restart the same password still opens it, now through the hash.
    WorkspaceList reloaded(home.settings, home.root);
    reloaded.load();
    ScriptedPrompter again;
    again.answer(QStringLiteral("plain-123"));
    EXPECT_TRUE(reloaded.enter(0, again));
    EXPECT_FALSE(reloaded.checkPassword(0, QStringLiteral("plain-124")));
}

TEST(WorkspacePasswords, DeletingWithAPlainPasswordChecksItThroughTheSameFunction) {
    TempHome home;
    plantPlainEntry(home.settings, QStringLiteral("老用户"), QStringLiteral("del-pw"));
    WorkspaceList list(home.settings, home.root);
    list.load();
    ScriptedPrompter wrong;
    wrong.answer(true).answer(QStringLiteral("nope")).cancel();
    EXPECT_FALSE(list.remove(0, wrong));
    EXPECT_EQ(wrong.messages(), QStringList({QStringLiteral("无效的密码，请重试!"),
                                             QStringLiteral("密码有误，没有权限删除该用户")}));
    ScriptedPrompter right;
    right.answer(true).answer(QStringLiteral("del-pw"));
    EXPECT_TRUE(list.remove(0, right));
    EXPECT_EQ(list.count(), 0);
    EXPECT_FALSE(rawText(home.settings.fileFor(setting_keys::UserPassword)).contains("del-pw"));
}

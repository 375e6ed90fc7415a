// The keyring for real: a gnome-keyring daemon on a private session bus per test, or a bus
// with no Secret Service at all.
#include "services/keychain/ixkeychainitem.h"

#include "keyringsession.h"

#include <QDir>
#include <QDirIterator>
#include <QElapsedTimer>
#include <QFile>

#include <gtest/gtest.h>

namespace {

const QString kService = QStringLiteral("Keychain Test Service");
const QString kAccount = QStringLiteral("Orvane");

// Files below the folder whose bytes hold the text.
QStringList filesContaining(const QString &folder, const QByteArray &text)
{
    QStringList found;
    QDirIterator files(folder, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (files.hasNext()) {
        QFile file(files.next());
        if (file.open(QIODevice::ReadOnly) && file.readAll().contains(text))
            found << file.fileName();
    }
    return found;
}

class KeychainItemTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        if (KeyringSession::usedInThisProcess())
            GTEST_SKIP() << "one keyring session per process: run the cases one by one (as CTest does)";
        QString error;
        ASSERT_TRUE(session.startBus(&error)) << error.toStdString();
    }
    void startKeyring()
    {
        QString error;
        ASSERT_TRUE(session.startKeyring(&error)) << error.toStdString();
    }
    std::unique_ptr<IXKeychainItemGeneric> find(const QString &account = kAccount)
    {
        return IXKeychainItemGeneric::findFirstGenericKeychainItemForService(kService, account, store);
    }

    KeyringSession session;
    std::shared_ptr<KeychainStore> store = std::make_shared<SecretServiceKeychain>();
};

} // namespace

TEST_F(KeychainItemTest, StoresReadsChangesMovesAndDeletesOnePassword)
{
    startKeyring();
    const QString secret = QStringLiteral("0123456789abcdef0123456789abcdef");
    EXPECT_EQ(find(), nullptr);
    EXPECT_EQ(IXKeychainItemGeneric::genericKeychainItemWithService(QString(), kAccount, secret, store), nullptr);
    EXPECT_EQ(IXKeychainItemGeneric::genericKeychainItemWithService(kService, QString(), secret, store), nullptr);

    const auto made = IXKeychainItemGeneric::genericKeychainItemWithService(kService, kAccount, secret, store);
    ASSERT_NE(made, nullptr);
    EXPECT_EQ(made->lastResultCode(), 0);
    EXPECT_FALSE(made->lastResultMessage());

    // A fresh lookup reaches the same item, through the daemon and not through memory.
    auto item = find();
    ASSERT_NE(item, nullptr);
    EXPECT_EQ(item->getPassword(), secret);
    EXPECT_EQ(item->getService(), kService);
    EXPECT_EQ(item->getAccount(), kAccount);
    EXPECT_EQ(find(QStringLiteral("someone else")), nullptr);

    const QString changed = QStringLiteral("ffffffffffffffffffffffffffffffff");
    ASSERT_TRUE(item->editPassword(changed));
    EXPECT_EQ(find()->getPassword(), changed);
    EXPECT_EQ(made->getPassword(), changed);

    // Only the keyring's own encrypted file is written: the secret is in no file as text.
    EXPECT_FALSE(QDir(qEnvironmentVariable("XDG_DATA_HOME") + "/keyrings").entryList(QDir::Files).isEmpty());
    EXPECT_EQ(filesContaining(qEnvironmentVariable("HOME"), changed.toUtf8()), QStringList());

    ASSERT_TRUE(item->editAccount(QStringLiteral("moved")));
    EXPECT_EQ(find(), nullptr);
    EXPECT_EQ(find(QStringLiteral("moved"))->getPassword(), changed);

    ASSERT_TRUE(item->removeFromKeychain());
    EXPECT_FALSE(item->getPassword());
    EXPECT_FALSE(item->editPassword(secret));
    EXPECT_FALSE(item->removeFromKeychain());
    EXPECT_FALSE(item->getAccount());
    EXPECT_EQ(find(QStringLiteral("moved")), nullptr);
    // The other handle of the deleted item now fails in the keyring, and says why.
    EXPECT_FALSE(made->getPassword());
    EXPECT_EQ(made->lastResultCode(), qint32(KeychainStatus::NotFound));
    EXPECT_TRUE(made->lastResultMessage());
}

TEST_F(KeychainItemTest, WithoutSecretServiceEveryCallEndsInNoneQuickly)
{
    // The bus is there, but nothing serves the Secret Service on it.
    QElapsedTimer clock;
    clock.start();
    EXPECT_EQ(find(), nullptr);
    const auto made = IXKeychainItemGeneric::genericKeychainItemWithService(kService, kAccount, "secret", store);
    EXPECT_EQ(made, nullptr);
    const KeychainStore::Answer answer = store->read(kService, kAccount);
    EXPECT_NE(answer.status, KeychainStatus::Success);
    EXPECT_NE(answer.status, KeychainStatus::NotFound);
    EXPECT_FALSE(answer.message.isEmpty());
    EXPECT_LT(clock.elapsed(), 5000);
}

TEST_F(KeychainItemTest, LockedKeyringGivesNoneWithinTheTimeout)
{
    startKeyring();
    ASSERT_NE(IXKeychainItemGeneric::genericKeychainItemWithService(kService, kAccount, "secret", store), nullptr);
    QString error;
    ASSERT_TRUE(session.lockKeyring(&error)) << error.toStdString();

    // Unlocking needs a prompt that nobody answers here; the job gives up instead of waiting.
    auto quick = std::make_shared<SecretServiceKeychain>(1000);
    QElapsedTimer clock;
    clock.start();
    const KeychainStore::Answer answer = quick->read(kService, kAccount);
    EXPECT_NE(answer.status, KeychainStatus::Success);
    EXPECT_EQ(IXKeychainItemGeneric::findFirstGenericKeychainItemForService(kService, kAccount, quick), nullptr);
    EXPECT_LT(clock.elapsed(), 5000);
}

// One password in a real gnome-keyring daemon on a private session bus.
#include "services/keychain/ixkeychainitem.h"

#include "keyringsession.h"

#include <QDir>
#include <QDirIterator>

#include <gtest/gtest.h>

namespace {

// Files below the folder whose bytes hold the text.
QStringList filesContaining(const QString &folder, const QByteArray &text)
{
    QStringList found;
    for (QDirIterator files(folder, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories); files.hasNext();) {
        QFile file(files.next());
        if (file.open(QIODevice::ReadOnly) && file.readAll().contains(text))
            found << file.fileName();
    }
    return found;
}

} // namespace

TEST(KeychainItemTest, StoresReadsChangesMovesAndDeletesOnePassword)
{
    if (KeyringSession::usedInThisProcess())
        GTEST_SKIP() << "one keyring session per process: run the cases one by one, as CTest does";
    KeyringSession session;
    QString error;
    ASSERT_TRUE(session.startBus(&error) && session.startKeyring(&error)) << error.toStdString();
    const auto store = std::make_shared<SecretServiceKeychain>();
    const QString service = "Keychain Test", account = "Orvane", secret(32, 'a'), changed(32, 'b');
    const auto find = [&](const QString &who) {
        return IXKeychainItemGeneric::findFirstGenericKeychainItemForService(service, who, store);
    };

    EXPECT_EQ(find(account), nullptr);
    EXPECT_EQ(IXKeychainItemGeneric::genericKeychainItemWithService(service, QString(), secret, store), nullptr);
    const auto made = IXKeychainItemGeneric::genericKeychainItemWithService(service, account, secret, store);
    ASSERT_NE(made, nullptr);
    // A fresh lookup reaches the item through the daemon.
    auto item = find(account);
    ASSERT_NE(item, nullptr);
    EXPECT_EQ(item->getPassword(), secret);
    EXPECT_EQ(item->getService(), service);
    EXPECT_EQ(find("someone else"), nullptr);

    ASSERT_TRUE(item->editPassword(changed));
    EXPECT_EQ(made->getPassword(), changed);
    // Only the keyring's own encrypted file is written: the secret is in no file as text.
    EXPECT_FALSE(QDir(qEnvironmentVariable("XDG_DATA_HOME") + "/keyrings").isEmpty());
    EXPECT_EQ(filesContaining(qEnvironmentVariable("HOME"), changed.toUtf8()), QStringList());

    ASSERT_TRUE(item->editAccount("moved"));
    EXPECT_EQ(find(account), nullptr);
    EXPECT_EQ(find("moved")->getPassword(), changed);
    ASSERT_TRUE(item->removeFromKeychain());
    EXPECT_FALSE(item->getPassword());
    EXPECT_FALSE(item->removeFromKeychain());
    EXPECT_EQ(find("moved"), nullptr);
    // The other handle, of the old account, now fails in the keyring and says why.
    EXPECT_FALSE(made->getPassword());
    EXPECT_EQ(made->lastResultCode(), qint32(KeychainStatus::NotFound));
    EXPECT_TRUE(made->lastResultMessage());
}

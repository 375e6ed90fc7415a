#pragma once

#include "services/keychain/keychainstore.h"

#include <QString>

#include <memory>
#include <optional>

// One item of the keyring, addressed by service and account. Nothing here reports by itself:
// each operation ends in none or false, and lastResultCode()/lastResultMessage() tell why. An
// absent item and a refusal look the same to a caller that only asks for the item. Main thread;
// owned by whoever found or made it.
class IXKeychainItem
{
public:
    virtual ~IXKeychainItem() = default;

    // The status of the last keyring call (KeychainStatus as a number); 0 is success.
    qint32 lastResultCode() const { return lastResultCode_; }
    // What went wrong in the last call, for people; none after a success.
    std::optional<QString> lastResultMessage() const;

    // The password, or none when there is no item or the keyring fails.
    std::optional<QString> getPassword();
    bool editPassword(const QString &password);
    // Deletes the item from the keyring. Afterwards every operation finds no item.
    bool removeFromKeychain();

    std::optional<QString> getAccount() const;
    // Moves the password to another account of the same service.
    bool editAccount(const QString &account);

    bool hasItem() const { return present_; }

protected:
    IXKeychainItem(std::shared_ptr<KeychainStore> store, QString service, QString account);
    bool keep(const KeychainStore::Answer &answer);
    // Writes the password under the new address and removes the old one.
    bool moveTo(const QString &service, const QString &account);

    std::shared_ptr<KeychainStore> store_;
    QString service_;
    QString account_;
    bool present_ = true;

private:
    qint32 lastResultCode_ = 0;
    QString lastResultMessage_;
};

// A generic password: a secret for a service and an account.
class IXKeychainItemGeneric : public IXKeychainItem
{
public:
    // The item for that service and account; none for an empty service or account, a missing
    // item, or a keyring that refuses, is locked or absent.
    static std::unique_ptr<IXKeychainItemGeneric> findFirstGenericKeychainItemForService(
        const QString &service, const QString &account,
        std::shared_ptr<KeychainStore> store = KeychainStore::system());
    // Adds a new item; none for an empty service or account, or when the keyring refuses.
    static std::unique_ptr<IXKeychainItemGeneric> genericKeychainItemWithService(
        const QString &service, const QString &account, const QString &password,
        std::shared_ptr<KeychainStore> store = KeychainStore::system());

    std::optional<QString> getService() const;
    bool editService(const QString &service);

private:
    using IXKeychainItem::IXKeychainItem;
};

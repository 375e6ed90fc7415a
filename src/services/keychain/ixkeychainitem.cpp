#include "services/keychain/ixkeychainitem.h"

IXKeychainItem::IXKeychainItem(std::shared_ptr<KeychainStore> store, QString service, QString account)
    : store_(std::move(store)), service_(std::move(service)), account_(std::move(account))
{
}

bool IXKeychainItem::keep(const KeychainStore::Answer &answer)
{
    lastResultCode_ = qint32(answer.status);
    lastResultMessage_ = answer.message;
    return answer.status == KeychainStatus::Success;
}

std::optional<QString> IXKeychainItem::lastResultMessage() const
{
    if (lastResultCode_ == 0)
        return std::nullopt;
    return lastResultMessage_;
}

std::optional<QString> IXKeychainItem::getPassword()
{
    if (!present_)
        return std::nullopt;
    const KeychainStore::Answer answer = store_->read(service_, account_);
    if (!keep(answer))
        return std::nullopt;
    return answer.password;
}

bool IXKeychainItem::editPassword(const QString &password)
{
    return present_ && keep(store_->write(service_, account_, password));
}

bool IXKeychainItem::removeFromKeychain()
{
    if (!present_ || !keep(store_->remove(service_, account_)))
        return false;
    present_ = false;
    return true;
}

std::optional<QString> IXKeychainItem::getAccount() const
{
    return present_ ? std::optional<QString>(account_) : std::nullopt;
}

bool IXKeychainItem::editAccount(const QString &account)
{
    return moveTo(service_, account);
}

bool IXKeychainItem::moveTo(const QString &service, const QString &account)
{
    if (!present_ || service.isEmpty() || account.isEmpty())
        return false;
    if (service == service_ && account == account_)
        return true;
    const std::optional<QString> password = getPassword();
    if (!password || !keep(store_->write(service, account, *password)))
        return false;
    // The copy exists; a failure to remove the old one leaves both, and the item at the old.
    if (!keep(store_->remove(service_, account_))) {
        store_->remove(service, account);
        return false;
    }
    service_ = service;
    account_ = account;
    return true;
}

std::unique_ptr<IXKeychainItemGeneric> IXKeychainItemGeneric::findFirstGenericKeychainItemForService(
    const QString &service, const QString &account, std::shared_ptr<KeychainStore> store)
{
    if (service.isEmpty() || account.isEmpty() || !store)
        return nullptr;
    if (store->read(service, account).status != KeychainStatus::Success)
        return nullptr;
    return std::unique_ptr<IXKeychainItemGeneric>(new IXKeychainItemGeneric(std::move(store), service, account));
}

std::unique_ptr<IXKeychainItemGeneric> IXKeychainItemGeneric::genericKeychainItemWithService(
    const QString &service, const QString &account, const QString &password, std::shared_ptr<KeychainStore> store)
{
    if (service.isEmpty() || account.isEmpty() || !store)
        return nullptr;
    if (store->write(service, account, password).status != KeychainStatus::Success)
        return nullptr;
    return std::unique_ptr<IXKeychainItemGeneric>(new IXKeychainItemGeneric(std::move(store), service, account));
}

std::optional<QString> IXKeychainItemGeneric::getService() const
{
    return present_ ? std::optional<QString>(service_) : std::nullopt;
}

bool IXKeychainItemGeneric::editService(const QString &service)
{
    return moveTo(service, account_);
}

#pragma once

#include <QString>

#include <memory>

// How a keychain call ended. The numbers are what IXKeychainItem::lastResultCode() answers.
enum class KeychainStatus : qint32 {
    Success = 0,
    NotFound = 1,    // no item for that service and account
    Refused = 2,     // the user or the keyring denied access
    Unavailable = 3, // no Secret Service (no keyring daemon, no session bus)
    TimedOut = 4,    // no answer in time, typically a locked keyring waiting for a prompt
    Failed = 5,      // anything else; the message says what
};

// Generic passwords by service and account. Calls block the calling thread (its event loop
// keeps turning) and never longer than the store's timeout. Main thread.
class KeychainStore
{
public:
    struct Answer
    {
        KeychainStatus status = KeychainStatus::Failed;
        QString password; // for read(), on success
        QString message;  // what went wrong, for people; empty on success
    };

    virtual ~KeychainStore() = default;
    virtual Answer read(const QString &service, const QString &account) = 0;
    // Adds the item, or replaces the password of the one that is there.
    virtual Answer write(const QString &service, const QString &account, const QString &password) = 0;
    virtual Answer remove(const QString &service, const QString &account) = 0;

    // The Secret Service of the session (gnome-keyring, KWallet ...) through QtKeychain, shared
    // by the whole program.
    static std::shared_ptr<KeychainStore> system();
};

// The Secret Service through QtKeychain. Every job has a timeout: a locked keyring can wait
// for a prompt forever, and the program must not. Nothing is ever written to a file instead
// (QtKeychain's plain-text fallback stays off).
class SecretServiceKeychain : public KeychainStore
{
public:
    static constexpr int kDefaultTimeoutMs = 3000;
    explicit SecretServiceKeychain(int timeoutMs = kDefaultTimeoutMs) : timeoutMs_(timeoutMs) {}

    Answer read(const QString &service, const QString &account) override;
    Answer write(const QString &service, const QString &account, const QString &password) override;
    Answer remove(const QString &service, const QString &account) override;

private:
    int timeoutMs_;
};

#include "services/keychain/keychainstore.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QTimer>

#include <qt6keychain/keychain.h>

namespace {

KeychainStatus statusOf(QKeychain::Error error, const QString &text)
{
    switch (error) {
    case QKeychain::NoError:
        return KeychainStatus::Success;
    case QKeychain::EntryNotFound:
        return KeychainStatus::NotFound;
    case QKeychain::AccessDenied:
    case QKeychain::AccessDeniedByUser:
        return KeychainStatus::Refused;
    case QKeychain::NoBackendAvailable:
    case QKeychain::NotImplemented:
        return KeychainStatus::Unavailable;
    default:
        // libsecret reports a missing service as a plain D-Bus error.
        if (text.contains(QLatin1String("org.freedesktop.secrets")) || text.contains(QLatin1String("ServiceUnknown"))
            || text.contains(QLatin1String("D-Bus")) || text.contains(QLatin1String("DBus")))
            return KeychainStatus::Unavailable;
        return KeychainStatus::Failed;
    }
}

QString messageFor(KeychainStatus status, const QString &detail, int timeoutMs)
{
    switch (status) {
    case KeychainStatus::Success:
        return {};
    case KeychainStatus::NotFound:
        return QStringLiteral("The keyring holds no such item.");
    case KeychainStatus::Refused:
        return QStringLiteral("The keyring refused access (%1). Unlock the keyring and allow access, then try again.")
            .arg(detail);
    case KeychainStatus::Unavailable:
        return QStringLiteral("No Secret Service answers (%1). Start a keyring daemon such as gnome-keyring in "
                              "this session, then try again.")
            .arg(detail);
    case KeychainStatus::TimedOut:
        return QStringLiteral("The keyring did not answer within %1 s; it may be locked and waiting for a "
                              "password. Unlock it, then try again.")
            .arg(timeoutMs / 1000.0);
    case KeychainStatus::Failed:
        break;
    }
    return QStringLiteral("The keyring failed: %1").arg(detail);
}

// Runs the job in a nested event loop until it finishes or the time is up. A job that is given
// up on keeps running and deletes itself when it ends (it may hold callbacks into itself, so it
// must not be deleted early); its answer then goes nowhere.
KeychainStore::Answer runJob(QKeychain::Job *job, int timeoutMs,
                             const std::function<void(QKeychain::Job *, KeychainStore::Answer &)> &onSuccess = {})
{
    struct Outcome
    {
        bool finished = false;
        KeychainStore::Answer answer;
    };
    auto outcome = std::make_shared<Outcome>();
    job->setAutoDelete(true);
    job->setInsecureFallback(false);

    QEventLoop loop;
    QObject::connect(job, &QKeychain::Job::finished, &loop, [outcome, onSuccess, timeoutMs, &loop](QKeychain::Job *done) {
        outcome->finished = true;
        outcome->answer.status = statusOf(done->error(), done->errorString());
        if (outcome->answer.status == KeychainStatus::Success) {
            if (onSuccess)
                onSuccess(done, outcome->answer);
        } else {
            outcome->answer.message = messageFor(outcome->answer.status, done->errorString(), timeoutMs);
        }
        loop.quit();
    });
    QTimer timer;
    timer.setSingleShot(true);
    QObject::connect(&timer, &QTimer::timeout, &loop, &QEventLoop::quit);
    timer.start(timeoutMs);
    job->start();
    if (!outcome->finished)
        loop.exec();
    if (!outcome->finished) {
        QObject::disconnect(job, nullptr, &loop, nullptr);
        return {KeychainStatus::TimedOut, {}, messageFor(KeychainStatus::TimedOut, {}, timeoutMs)};
    }
    return outcome->answer;
}

} // namespace

std::shared_ptr<KeychainStore> KeychainStore::system()
{
    static const std::shared_ptr<KeychainStore> store = std::make_shared<SecretServiceKeychain>();
    return store;
}

KeychainStore::Answer SecretServiceKeychain::read(const QString &service, const QString &account)
{
    auto *job = new QKeychain::ReadPasswordJob(service);
    job->setKey(account);
    return runJob(job, timeoutMs_, [](QKeychain::Job *done, Answer &answer) {
        answer.password = static_cast<QKeychain::ReadPasswordJob *>(done)->textData();
    });
}

KeychainStore::Answer SecretServiceKeychain::write(const QString &service, const QString &account,
                                                   const QString &password)
{
    auto *job = new QKeychain::WritePasswordJob(service);
    job->setKey(account);
    job->setTextData(password);
    return runJob(job, timeoutMs_);
}

KeychainStore::Answer SecretServiceKeychain::remove(const QString &service, const QString &account)
{
    auto *job = new QKeychain::DeletePasswordJob(service);
    job->setKey(account);
    return runJob(job, timeoutMs_);
}

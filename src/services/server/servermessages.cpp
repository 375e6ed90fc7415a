#include "services/server/servermessages.h"

#include "additions/configuration.h"
#include "additions/exceptionsink.h"
#include "additions/filewriting.h"
#include "additions/ovapplication.h"
#include "additions/ovurlconnection.h"
#include "services/server/applink.h"
#include "services/server/servermessagesui.h"

#include <QCoreApplication>
#include <QFile>
#include <QHostInfo>
#include <QNetworkRequest>
#include <QProcess>
#include <QTimer>

namespace {

constexpr int kRequestTimeoutMs = 5000;

QString serverBase()
{
    return Configuration::baseURL(Configuration::ServerBaseURL);
}

// The cached document, or nothing when there is none; a file that cannot be read counts as
// damaged.
enum class CacheRead { Missing, Unreadable, Read };
CacheRead readCache(const QString &path, QByteArray &document)
{
    QFile file(path);
    if (path.isEmpty() || !file.exists())
        return CacheRead::Missing;
    if (!file.open(QIODevice::ReadOnly))
        return CacheRead::Unreadable;
    document = file.readAll();
    return CacheRead::Read;
}

} // namespace

ServerMessages::ServerMessages(ServerMessagesUi &ui) : ui_(ui) {}

ServerMessages::~ServerMessages() = default;

QString ServerMessages::cachePath()
{
    return OVApplication::ov_applicationInfoURLForFileHidden();
}

bool ServerMessages::isOVServerAvailable() const
{
    const QString host = QUrl(serverBase()).host();
    if (host.isEmpty())
        return false;
    if (hostProbe_)
        return hostProbe_(host);
    const QHostInfo info = QHostInfo::fromName(host);
    return info.error() == QHostInfo::NoError && !info.addresses().isEmpty();
}

ServerDownload ServerMessages::checkRequestDownload()
{
    const QString path = cachePath();
    try {
        // Unreachable: the document of the last launch stays, and its messages still hold.
        if (!isOVServerAvailable())
            return ServerDownload::Failed;
        QFile::remove(path);

        QNetworkRequest request(QUrl(serverRequestAddress(serverBase(), ServerQueryValues::current())));
        request.setAttribute(QNetworkRequest::CacheLoadControlAttribute, QNetworkRequest::AlwaysNetwork);
        request.setTransferTimeout(kRequestTimeoutMs);
        const QByteArray data = ov_sendSynchronousRequest(request);
        if (data.isEmpty())
            return ServerDownload::Failed;

        const QByteArray text = QString::fromUtf8(data).toUtf8();
        switch (serverDocumentState(text)) {
        case ServerDocumentState::Unreadable:
            return ServerDownload::Failed;
        case ServerDocumentState::Refused:
            return ServerDownload::Refused;
        case ServerDocumentState::Accepted:
            break;
        }
        if (path.isEmpty() || !writeFileAtomically(path, text)) {
            QFile::remove(path);
            return ServerDownload::Failed;
        }
        return ServerDownload::Cached;
    } catch (const std::exception &exception) {
        ExceptionSink::logException(exception);
        QFile::remove(path);
        return ServerDownload::Failed;
    }
}

ServerLaunch ServerMessages::checkApplicationLaunch()
{
    const QString path = cachePath();
    try {
        QByteArray document;
        const CacheRead read = readCache(path, document);
        if (read == CacheRead::Missing)
            return ServerLaunch::Run;
        const LaunchDecision decision =
            read == CacheRead::Read ? evaluateLaunch(document) : LaunchDecision{ServerLaunch::Unreadable, {}};
        if (decision.result == ServerLaunch::Unreadable) {
            // A damaged document counts as none and never stops the program.
            QFile::remove(path);
            return ServerLaunch::Unreadable;
        }
        if (decision.result == ServerLaunch::Run)
            return ServerLaunch::Run;
        showDocumentAlert(decision.alert, {QStringLiteral("0002.0001")});
        return ServerLaunch::Stop;
    } catch (const std::exception &exception) {
        ExceptionSink::logException(exception);
        QFile::remove(path);
        return ServerLaunch::Unreadable;
    }
}

ServerUpdate ServerMessages::checkApplicationUpdate()
{
    const QString path = cachePath();
    try {
        QByteArray document;
        const CacheRead read = readCache(path, document);
        if (read == CacheRead::Missing)
            return ServerUpdate::None;
        const UpdateDecision decision =
            read == CacheRead::Read ? evaluateUpdate(document, OVApplication::ov_version()) : UpdateDecision{ServerUpdate::Unreadable, {}};
        if (decision.result == ServerUpdate::Unreadable) {
            QFile::remove(path);
            return ServerUpdate::Unreadable;
        }
        if (decision.result == ServerUpdate::None)
            return ServerUpdate::None;
        // Whichever button was chosen: the announcement's page opens either way.
        showDocumentAlert(decision.alert, {QStringLiteral("0002.0001"), QStringLiteral("0002.0002")});
        return ServerUpdate::Announced;
    } catch (const std::exception &exception) {
        ExceptionSink::logException(exception);
        QFile::remove(path);
        return ServerUpdate::Unreadable;
    }
}

void ServerMessages::showDocumentAlert(const ServerAlert &alert, const QStringList &buttonKeys)
{
    ui_.activateApplication();
    ui_.showServerAlert(alert.title, alert.message, buttonKeys);
    if (alert.opensURL())
        openWebsite(alert.url, WebsiteOption::None);
}

void ServerMessages::openWebsite(const QString &address, WebsiteOption option)
{
    try {
        const QUrl url(address.isEmpty() ? serverLinkAddress(serverBase(), ServerQueryValues::current(), option)
                                         : address);
        if (url.isValid() && !url.isEmpty())
            ui_.openURL(url, true);
    } catch (const std::exception &exception) {
        ExceptionSink::logException(exception);
    }
}

void ServerMessages::openAffLinkWithOption(AffiliateOption option)
{
    QString address;
    try {
        address = serverAffiliateAddress(serverBase(), ServerQueryValues::current(), option);
    } catch (const std::exception &exception) {
        ExceptionSink::logException(exception);
        return;
    }
    auto *link = new AppLink(ui_, &links_);
    QObject::connect(link, &AppLink::finished, link, &QObject::deleteLater);
    QTimer::singleShot(qRound(affiliateDelay_ * 1000), link, [link, address] {
        if (!link->openURLAddress(address))
            link->deleteLater();
    });
}

bool startRelaunchHelper(qint64 processId, const QString &program, const QStringList &arguments)
{
    // The shell outlives this process: it waits until the process id is gone, then starts the
    // program in its place.
    const QString script = QStringLiteral("while kill -0 \"$1\" 2>/dev/null; do sleep 0.2; done; shift; exec \"$@\"");
    return QProcess::startDetached(QStringLiteral("/bin/sh"),
                                   QStringList{QStringLiteral("-c"), script, QStringLiteral("orvane-relaunch"),
                                               QString::number(processId), program}
                                       + arguments);
}

void relaunchMe(const std::function<void()> &terminate)
{
    const QString program = QCoreApplication::applicationFilePath();
    if (program.isEmpty()
        || !startRelaunchHelper(QCoreApplication::applicationPid(), program, QCoreApplication::arguments().mid(1)))
        return;
    if (terminate)
        terminate();
}

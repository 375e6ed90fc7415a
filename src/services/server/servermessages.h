#pragma once

#include "application/services.h"
#include "services/server/serverdocument.h"

#include <QObject>
#include <QString>

#include <functional>

class ServerMessagesUi;

// The program's server: the document fetched at launch and cached as ".orvane", the checks
// that read it (may this version run, is there a newer one), and the addresses the menus open on
// the server. checkRequestDownload() runs on the launch thread (and at orvane-cli's start), the
// rest on the main thread after it, so a check never sees a half-written file. Owned by the
// application controller; the store links it starts (AppLink) die with it.
class ServerMessages : public AppLinks
{
public:
    explicit ServerMessages(ServerMessagesUi &ui);
    ~ServerMessages() override;

    // An unreachable server leaves the cached document of an earlier launch in place.
    ServerDownload checkRequestDownload() override;
    // An unreadable cached document is removed.
    ServerLaunch checkApplicationLaunch() override;
    ServerUpdate checkApplicationUpdate() override;
    void openWebsite(const QString &address, WebsiteOption option) override;
    void openAffLinkWithOption(AffiliateOption option) override;

    // The server's host can be looked up; no connection is made.
    bool isOVServerAvailable() const;

    // How the server's host is looked up; tests stand in for a host that cannot be found.
    using HostProbe = std::function<bool(const QString &host)>;
    void setHostProbe(HostProbe probe) { hostProbe_ = std::move(probe); }

    // Seconds before the affiliate link is followed (1.0; tests shorten it).
    void setAffiliateDelay(double seconds) { affiliateDelay_ = seconds; }

    static QString cachePath();

private:
    // Brings the program forward, shows the document's alert and opens its address, if any.
    void showDocumentAlert(const ServerAlert &alert, const QStringList &buttonKeys);
    ServerMessagesUi &ui_;
    HostProbe hostProbe_;
    double affiliateDelay_ = 1.0;
    QObject links_; // parent of the running AppLinks
};

// Starts the program again once this process has ended, through a detached shell that waits
// for the process to go; false when the helper could not start. The caller then quits.
bool startRelaunchHelper(qint64 processId, const QString &program, const QStringList &arguments = {});
// startRelaunchHelper() for this process and its program, then the given way to quit.
void relaunchMe(const std::function<void()> &terminate);

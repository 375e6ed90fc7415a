#include "cli/servercommand.h"

#include "additions/localizedstrings.h"
#include "services/server/servermessages.h"
#include "services/server/servermessagesui.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QTextStream>

namespace {

// The server's alerts as lines on standard error; nothing is opened from the command line.
class TextServerMessagesUi : public ServerMessagesUi
{
public:
    void activateApplication() override {}
    int showServerAlert(const QString &title, const QString &message, const QStringList &) override
    {
        QTextStream(stderr) << "orvane-cli: " << title << (message.isEmpty() ? QString() : ": " + message) << "\n";
        return 0;
    }
    void openURL(const QUrl &url, bool) override
    {
        QTextStream(stderr) << "orvane-cli: more at " << url.toString() << "\n";
    }
};

} // namespace

std::optional<ServerDownload> refreshServerDocument(bool offline)
{
    if (offline)
        return std::nullopt;
    TextServerMessagesUi ui;
    ServerMessages messages(ui);
    const ServerDownload result = messages.checkRequestDownload();
    if (result == ServerDownload::Refused)
        QTextStream(stderr) << "orvane-cli: " << ov_localizedString(QStringLiteral("0003.0025"))
                            << " Try again later, or use --offline to work with the document of the last start.\n";
    return result;
}

int runServerCommand(const QStringList &arguments, std::optional<ServerDownload> download)
{
    if (arguments != QStringList{QStringLiteral("check")}) {
        QTextStream(stderr) << "usage: orvane-cli [--offline] server check\n";
        return 2;
    }
    TextServerMessagesUi ui;
    ServerMessages messages(ui);
    QJsonObject results;
    // The results as the numbers scripts have always read.
    results.insert(QStringLiteral("download"), download ? QJsonValue(int(*download)) : QJsonValue(QJsonValue::Null));
    results.insert(QStringLiteral("launch"), int(messages.checkApplicationLaunch()));
    results.insert(QStringLiteral("update"), int(messages.checkApplicationUpdate()));
    QTextStream(stdout) << QJsonDocument(results).toJson(QJsonDocument::Compact) << "\n";
    return 0;
}

#include "cli/lastfmcommand.h"

#include "additions/appcontext.h"
#include "additions/configuration.h"
#include "services/keychain/ixkeychainitem.h"
#include "services/lastfm/lastfmwebscrobbler.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QTextStream>

#include <cstdio>
#include <cstring>

namespace {

const char kUsage[] = "usage: orvane-cli lastfm connect [--user NAME] | status | disconnect\n";

QTextStream &err()
{
    static QTextStream stream(stderr);
    return stream;
}

// The session as the keyring holds it now, asked afresh.
std::optional<QString> storedSessionKey()
{
    const auto item = IXKeychainItemGeneric::findFirstGenericKeychainItemForService(
        LastFMWebScrobbler::keychainService(), LastFMWebScrobbler::keychainAccount());
    return item ? item->getPassword() : std::nullopt;
}

int connect(LastFMWebScrobbler &scrobbler, const QStringList &options)
{
    if (options.size() == 2 && options.first() == QLatin1String("--user")) {
        scrobbler.yourPreferences().setPrefUserName(options.at(1));
        scrobbler.yourPreferences().saveUserPreferences();
    } else if (!options.isEmpty()) {
        err() << kUsage;
        return 2;
    }
    if (Configuration::text(Configuration::LastfmApiKey).isEmpty()
        || Configuration::text(Configuration::LastfmApiSecret).isEmpty()) {
        err() << "orvane-cli: Last.fm has no API key and secret configured. Set LastfmApiKey and LastfmApiSecret "
                 "in Configuration.plist, or ORVANE_LASTFM_API_KEY and ORVANE_LASTFM_API_SECRET.\n";
        return 1;
    }
    const QUrl consent = scrobbler.fetchAuthURL();
    if (consent.isEmpty()) {
        err() << "orvane-cli: Last.fm gave no request token. Check the network and the configured Last.fm "
                 "address, then try again.\n";
        return 1;
    }
    QTextStream(stdout) << consent.toString(QUrl::FullyEncoded) << "\n" << Qt::flush;
    err() << "Open the address above, allow access, then press Enter.\n" << Qt::flush;
    // Any line, or the end of the input, means the user is done.
    char line[256];
    while (std::fgets(line, sizeof line, stdin) && !std::strchr(line, '\n')) {
    }
    if (!scrobbler.fetchNewSessionKey()) {
        err() << "orvane-cli: Last.fm gave no session. Was access allowed on the page? Run connect again.\n";
        return 1;
    }
    if (storedSessionKey() != scrobbler.yourScrobbleSessionKey()) {
        err() << "orvane-cli: the session could not be stored in the keyring. Start and unlock a keyring "
                 "(such as gnome-keyring) in this session, then run connect again.\n";
        return 1;
    }
    return 0;
}

} // namespace

int runLastFMCommand(const QStringList &arguments, AppContext &context)
{
    const QString command = arguments.value(0);
    if (command != QLatin1String("connect") && (arguments.size() != 1
                                                || (command != QLatin1String("status")
                                                    && command != QLatin1String("disconnect")))) {
        err() << kUsage;
        return 2;
    }
    // The service's complaints are the reasons a user needs.
    context.setExceptionHandler([](const OVException &exception) {
        err() << "orvane-cli: Last.fm: " << exception.reason() << "\n" << Qt::flush;
    });
    LastFMWebScrobbler scrobbler;
    if (command == QLatin1String("connect"))
        return connect(scrobbler, arguments.mid(1));
    if (command == QLatin1String("disconnect")) {
        scrobbler.resetSessionInfos();
        if (storedSessionKey()) {
            err() << "orvane-cli: the keyring still holds the session. Unlock the keyring and run disconnect "
                     "again.\n";
            return 1;
        }
        return 0;
    }
    scrobbler.isSessionKeyValid();
    const QJsonObject status{{QStringLiteral("state"), scrobbler.yourScrobbleState()},
                             {QStringLiteral("userName"), scrobbler.prefUserName()},
                             {QStringLiteral("sessionKey"), !scrobbler.yourScrobbleSessionKey().isEmpty()}};
    QTextStream(stdout) << QJsonDocument(status).toJson(QJsonDocument::Compact) << "\n";
    return 0;
}

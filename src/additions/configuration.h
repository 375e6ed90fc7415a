#pragma once

#include <QString>
#include <QStringList>
#include <QVariant>

// Values the program is built with but that a deployment or a test may need to change: host
// names, service keys, the systems the program is known to run on. Each key has a built-in
// default; a property list "Configuration.plist" in the settings root
// ($XDG_CONFIG_HOME/Orvane) overrides it, and an environment variable overrides both. The
// variable for a key is ORVANE_ followed by the key in upper case with words split by "_":
// "SupportedSystems" is ORVANE_SUPPORTED_SYSTEMS. Lists in a variable are separated by ";".
// Read afresh on each call, so any thread may ask.
namespace Configuration {

QVariant value(const QString &key);
QString text(const QString &key);
QStringList list(const QString &key);

// The environment variable that overrides a key.
QByteArray environmentName(const QString &key);

// The web services' keys. A base URL is scheme, host and optional port without a trailing
// slash; callers append the paths they use.
inline constexpr char ServerBaseURL[] = "ServerBaseURL";       // request.php, link.php, index.php
inline constexpr char StoreBaseURL[] = "StoreBaseURL";         // the store's /search
inline constexpr char StoreHost[] = "StoreHost";               // marks an address as the store's
inline constexpr char AffiliateToken[] = "AffiliateToken";     // "at" of store addresses
inline constexpr char LastfmBaseURL[] = "LastfmBaseURL";       // /2.0/
inline constexpr char LastfmAuthURL[] = "LastfmAuthURL";       // consent page
inline constexpr char LastfmApiKey[] = "LastfmApiKey";
inline constexpr char LastfmApiSecret[] = "LastfmApiSecret";
inline constexpr char LeoLyricsBaseURL[] = "LeoLyricsBaseURL";
inline constexpr char LeoLyricsAuth[] = "LeoLyricsAuth";
inline constexpr char LyricWikiBaseURL[] = "LyricWikiBaseURL";
inline constexpr char ChartLyricsBaseURL[] = "ChartLyricsBaseURL";
inline constexpr char CoverParadiesBaseURL[] = "CoverParadiesBaseURL"; // /private/API/
inline constexpr char CoverParadiesKey[] = "CoverParadiesKey";
inline constexpr char RadioPlaylistURL[] = "RadioPlaylistURL";     // whole URL of the HLS playlist
inline constexpr char RadioStreamPattern[] = "RadioStreamPattern"; // regular expression

// A base URL's value with any trailing "/" taken off, so that paths can be appended as written.
QString baseURL(const char *key);

} // namespace Configuration

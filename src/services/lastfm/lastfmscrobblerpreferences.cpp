#include "services/lastfm/lastfmscrobblerpreferences.h"

#include "application/apppreferences.h"

LastFMScrobblerPreferences::LastFMScrobblerPreferences(QObject *parent)
    : PreferenceObject({{"prefUserName", "UserName", QByteArray()},
                        {"prefScrobblePercentValue", "ScrobbleValue", kMinimumScrobblePercent},
                        {"prefNowPlayingNotification", "NowPlayingNotification", true}},
                       parent)
{
    loadUserPreferencesDefaults();
    readUserPreferences();
}

QString LastFMScrobblerPreferences::preferencesLocation() const
{
    return AppPreferences::locationToPreferences(PreferenceLocation::LastFm);
}

void LastFMScrobblerPreferences::readUserPreferences()
{
    PreferenceObject::readUserPreferences();
    // A lower threshold cannot be configured, not even by editing the file.
    if (qint64(prefScrobblePercentValue()) < qint64(kMinimumScrobblePercent))
        setPrefScrobblePercentValue(kMinimumScrobblePercent);
}

QString LastFMScrobblerPreferences::prefUserName() const
{
    return QString::fromUtf8(setting(QStringLiteral("prefUserName")).toByteArray());
}

void LastFMScrobblerPreferences::setPrefUserName(const QString &name)
{
    setSetting(QStringLiteral("prefUserName"), name.toUtf8());
}

void LastFMScrobblerPreferences::setPrefUserPassword(const QString &password)
{
    if (password == prefUserPassword_)
        return;
    prefUserPassword_ = password;
    emit settingsChanged();
}

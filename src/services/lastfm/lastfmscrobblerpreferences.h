#pragma once

#include "application/preferenceobject.h"

// The Last.fm settings, in the "Last.fm" property list of the settings folder. The user name
// is stored as its UTF-8 bytes; the password is held in memory only and never stored. Main
// thread; each scrobbler owns one, and orvane-cli makes its own.
class LastFMScrobblerPreferences : public PreferenceObject
{
    Q_OBJECT
    Q_PROPERTY(QString prefUserName READ prefUserName WRITE setPrefUserName NOTIFY settingsChanged)
    Q_PROPERTY(QString prefUserPassword READ prefUserPassword WRITE setPrefUserPassword NOTIFY settingsChanged)
    Q_PROPERTY(double prefScrobblePercentValue READ prefScrobblePercentValue WRITE setPrefScrobblePercentValue
                   NOTIFY settingsChanged)
    Q_PROPERTY(bool prefNowPlayingNotification READ prefNowPlayingNotification WRITE setPrefNowPlayingNotification
                   NOTIFY settingsChanged)

public:
    // No share of a track below this counts as listened to, whatever the file says.
    static constexpr double kMinimumScrobblePercent = 50;

    explicit LastFMScrobblerPreferences(QObject *parent = nullptr);

    QString preferencesLocation() const override;
    void readUserPreferences() override;

    QString prefUserName() const;
    void setPrefUserName(const QString &name);
    QString prefUserPassword() const { return prefUserPassword_; }
    void setPrefUserPassword(const QString &password);
    double prefScrobblePercentValue() const { return realSetting("prefScrobblePercentValue"); }
    void setPrefScrobblePercentValue(double percent)
    {
        setSetting(QStringLiteral("prefScrobblePercentValue"), percent);
    }
    bool prefNowPlayingNotification() const { return boolSetting("prefNowPlayingNotification"); }
    void setPrefNowPlayingNotification(bool on) { setSetting(QStringLiteral("prefNowPlayingNotification"), on); }

private:
    QString prefUserPassword_;
};

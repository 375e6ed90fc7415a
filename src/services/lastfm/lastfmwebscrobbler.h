#pragma once

#include "application/services.h"
#include "player/itunes.h"
#include "services/keychain/keychainstore.h"
#include "services/lastfm/lastfmcall.h"
#include "services/lastfm/lastfmscrobblerpreferences.h"

#include <QObject>
#include <QTimer>
#include <QUrl>

#include <functional>
#include <optional>

class IXKeychainItemGeneric;

// What a test replaces in a scrobbler; the defaults are the program's.
struct LastFMScrobblerEnvironment
{
    std::shared_ptr<KeychainStore> keychain = KeychainStore::system();
    std::function<qint64()> clock; // seconds since 1970; the system clock when unset
    int snapshotDelayMs = 3000;
    QString bundleIdentifier; // the player to follow; the program's when empty
};

// Reports what the player plays to the Last.fm web service: now playing about three seconds
// after a track starts, a scrobble of the track left behind once enough of it was heard, and
// the loved flag of the playing track. Owns the authorisation with the service, the signing of
// every call and the session key, which lives in the keyring and nowhere else.
//
// Main thread. Every web call waits up to five seconds in a nested event loop, so player
// events can arrive during a call; each step therefore reads the held track afresh. Owned by
// the application controller while "Use Last.fm" is on; orvane-cli makes one to authorise.
class LastFMWebScrobbler : public QObject,
                           public LastFMScrobbler,
                           public ScriptingBridgeDelegate,
                           public std::enable_shared_from_this<LastFMWebScrobbler>
{
    Q_OBJECT

public:
    // Connection state, as the preferences and navigation windows show it.
    enum State : int { NotConnected = 0, Connected = 1, AuthorisationNeeded = 2 };

    // The snapshot of the track being measured.
    struct TrackInfo
    {
        ITunesTrack track; // kept, never read again
        QString artist, name, album, albumArtist;
        QString duration;    // whole seconds
        QString trackNumber;
        QString startTime;   // seconds since 1970, UTC
        QString source = QStringLiteral("P"); // never sent
        QString rating;                      // never sent
    };

    using Environment = LastFMScrobblerEnvironment;

    static constexpr int kRequestTimeoutMs = 5000;
    static constexpr int kMinimumDuration = 31;

    // The keyring item of the session: service and account.
    static QString keychainService();
    static QString keychainAccount();

    explicit LastFMWebScrobbler(Environment environment = {}, QObject *parent = nullptr);
    ~LastFMWebScrobbler() override;
    // How the program makes one: it is deleted from the event loop, and never while one of its
    // calls waits for the service, even when its owner drops it meanwhile (as switching
    // Last.fm off during a call does).
    static std::shared_ptr<LastFMWebScrobbler> create(Environment environment = {});

    LastFMScrobblerPreferences &yourPreferences() { return yourPreferences_; }

    // The player's events (AppController::scrobbleCurrentTrack).
    void scrobbleTrack() override;
    void scrobbleTrackNow() override;
    void scrobbleSubmission() override;
    void scrobbleClean() override;
    void scrobbleNowPlayingNotification();
    bool isSnapshotPending() const { return yourScrobbleTimer_.isActive(); }
    const std::optional<TrackInfo> &yourTrackInfo() const { return yourTrackInfo_; }

    // Loved flag.
    void loveCurrentTrack() override;
    void unloveCurrentTrack() override;
    void loveTrackWithName(const QString &name, const QString &artist);
    void unloveTrackWithName(const QString &name, const QString &artist);

    // Session.
    bool isSessionKeyValid() const override;
    int yourScrobbleState() const override { return yourScrobbleState_; }
    QString prefUserName() const override { return yourPreferences_.prefUserName(); }
    const QString &yourScrobbleSessionKey() const { return yourScrobbleSessionKey_; }
    const QString &yourScrobbleToken() const { return yourScrobbleToken_; }
    // Forgets the session in memory and in the keyring.
    void resetSessionInfos();

    // Authorisation: a request token, the address where the user consents to it, then the
    // session for it.
    QString fetchAuthToken();
    QUrl fetchAuthURL();
    bool fetchNewSessionKey();

    // Signs and sends one call of the service; none when nothing usable came back (no answer
    // within five seconds, an empty body, no document, or no API key configured).
    std::optional<LastFMReply> executeLastFMAction(const QString &method, const LastFMParameters &parameters = {});

    void eventDidFail(const QString &className, const QString &operation, const BridgeError &withError) override;

signals:
    void yourScrobbleStateChanged(int state);

private:
    // Held by every operation that may wait; empty for an object not made by create().
    std::shared_ptr<LastFMWebScrobbler> keepAlive() { return weak_from_this().lock(); }
    void scrobbleTimerCancel();
    void syncLovedFlag();
    void sendLove(const QString &method, const QString &name, const QString &artist);
    // Reports a reply that is not OK; error code 9 (invalid session) ends the session too.
    void handleFailedReply(const QString &method, const LastFMReply &reply, bool sessionCall);
    std::unique_ptr<IXKeychainItemGeneric> findKeychainItem() const;
    qint64 now() const;
    LastFMParameters trackParameters(const TrackInfo &info, const QString &suffix) const;

    Environment environment_;
    LastFMScrobblerPreferences yourPreferences_;
    ITunesApplication yourTunes_;
    ITunesTrack yourCurrentTrack_;
    mutable int yourScrobbleState_ = NotConnected;
    QString yourScrobbleSessionKey_;
    QString yourScrobbleToken_;
    std::optional<TrackInfo> yourTrackInfo_;
    QTimer yourScrobbleTimer_;
};

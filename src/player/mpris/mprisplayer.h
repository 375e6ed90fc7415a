#pragma once

#include "player/mpris/mpriscaller.h"
#include "player/mpris/mprisfollower.h"
#include "player/playerbackend.h"

// The player as an MPRIS2 media player on the D-Bus session bus: state, position, volume, the
// current track and the transport commands. Each read or write is one blocking D-Bus call with
// the caller's timeout (3 s unless set), so it may be used from any thread; notifications come
// on the thread that made the backend, which must be the main thread.
//
// MPRIS has no counterpart for a few of the player's operations; they map so:
// - mute is a volume of 0: muting remembers the volume, unmuting restores it (full volume if
//   none was remembered), and a player whose volume is 0 reads as muted;
// - fastForward and rewind seek 10 seconds forward or back;
// - backTrack restarts the track when more than 3 seconds have played, otherwise goes back
//   to the previous one;
// - frontmost is always false: no MPRIS player says whether it has the focus.
class MprisPlayer : public PlayerBackend
{
public:
    static constexpr double kSeekStepSeconds = 10.0;
    static constexpr double kRestartAfterSeconds = 3.0;

    // An empty busName follows the first org.mpris.MediaPlayer2.* player on the bus.
    explicit MprisPlayer(const QString &busName = {},
                         const QDBusConnection &bus = QDBusConnection::sessionBus());
    ~MprisPlayer() override;
    MprisPlayer(const MprisPlayer &) = delete;
    MprisPlayer &operator=(const MprisPlayer &) = delete;

    QString busName() const { return follower_->followedName(); }
    // Set by whoever owns the library, so that the current track is the library's track
    // when the library holds the playing file.
    void setTrackResolver(MprisTrackResolver resolver);
    void setCallTimeout(int milliseconds) { caller_.setTimeout(milliseconds); }

    bool isRunning() const override;
    PlayerNotifier *notifier() override { return follower_->notifier(); }

    QVariant read(Prop property) override;
    RemoteObjectList elements(Prop list) override;
    void write(Prop property, const QVariant &value) override;
    RemoteObjectPtr object(Prop relation) override;
    void perform(Command command) override;

private:
    QString requireName() const;
    QVariant playerProperty(const QString &name) const;
    void setPlayerProperty(const QString &name, const QVariant &value) const;
    void callPlayer(const QString &method, const QVariantList &arguments = {}) const;

    RemoteObjectPtr currentTrackObject() const;
    double positionSeconds() const;
    void setPositionSeconds(double seconds) const;
    double volume() const;
    void setMute(bool mute);

    MprisCaller caller_;
    MprisFollower *follower_;
    std::mutex muteMutex_;
    double volumeBeforeMute_ = -1;
};

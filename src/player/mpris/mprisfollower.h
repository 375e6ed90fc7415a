#pragma once

#include "player/mpris/mpriscaller.h"
#include "player/mpris/mprismetadata.h"
#include "player/playerbackend.h"

#include <QDBusMessage>
#include <QObject>

#include <functional>
#include <mutex>

// Finds the library's track for a file the player plays; null when the library has none.
// Called on the main thread for notifications and on any thread that reads the current track.
using MprisTrackResolver = std::function<RemoteObjectPtr(const QString &filePath)>;

// Follows one MPRIS player on the bus: the configured name, or else the first
// org.mpris.MediaPlayer2.* name there is or that appears. It turns the player's owner changes
// into launched/terminated and its PropertiesChanged into the player notification. Lives on
// the thread that made it (the main thread); the name, owner and resolver may be read from
// any thread.
class MprisFollower : public QObject
{
    Q_OBJECT
public:
    MprisFollower(const MprisCaller &caller, const QString &configuredName,
                  QObject *parent = nullptr);

    PlayerNotifier *notifier() { return &notifier_; }
    QString followedName() const; // empty while no player is followed

    void setTrackResolver(MprisTrackResolver resolver);
    MprisTrackResolver trackResolver() const;

private slots:
    void onOwnerChanged(const QString &name, const QString &oldOwner, const QString &newOwner);
    void onPropertiesChanged(const QDBusMessage &message);

private:
    bool followsAnyPlayer() const { return configuredName_.isEmpty(); }
    void followFirstPlayer();
    void follow(const QString &name, const QString &owner);
    void forget();
    void loadState();
    void announce();
    QString persistentIDFromResolver(const QString &filePath) const;

    const MprisCaller &caller_;
    const QString configuredName_;
    PlayerNotifier notifier_;

    mutable std::mutex mutex_; // guards the three below
    QString followedName_;
    QString owner_;
    MprisTrackResolver resolver_;

    // Main thread only: what the player last said, and the last notification sent.
    QString status_;
    Mpris::Metadata metadata_;
    QVariantMap lastInfo_;
};

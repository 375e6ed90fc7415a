#pragma once

#include "application/services.h"
#include "player/itunes.h"

#include <QObject>
#include <QVariantMap>

#include <functional>
#include <memory>

class AppPreferences;
class ExceptionLog;
class WindowRegistry;

// The live services the player notification reaches, each through its interface; a null
// pointer is a service that is not there. Owned by the application controller.
struct LiveServices
{
    std::shared_ptr<TuneController> tuneController;
    std::shared_ptr<LastFMScrobbler> lastFMScrobbler;
    std::shared_ptr<RatingNotifierController> ratingNotifier;
    std::shared_ptr<HotkeyListener> hotkeyListener;
};

// Follows the player: holds the controller's connection to it, and fans each player
// notification out to the live services and the track windows (controller, rating reminder,
// scrobbler, track info and lyrics windows, current track action). Main thread; owned by the
// application controller, which hands it the services, windows and settings it reaches.
class PlayerEventRouter : public QObject
{
    Q_OBJECT

public:
    struct Context
    {
        ServiceFactory &factory;
        AppPreferences &preferences;
        WindowRegistry &windows;
        LiveServices &services;
        ExceptionLog &exceptionLog;
        // Brings the lyrics window up, as its menu item does.
        std::function<void()> showLyricsWindow;
    };
    explicit PlayerEventRouter(Context context, QObject *parent = nullptr);
    ~PlayerEventRouter() override;

    const ITunesApplication &yourTunes() const { return yourTunes_; }
    // Connects to the player and starts following its notification; failed calls on the
    // connection go to the delegate.
    void connectPlayer(const QString &bundleIdentifier, ScriptingBridgeDelegate *delegate);

    void observeYourTunesPlayerState(const QVariantMap &userInfo);
    void currentTrackIsChanging();
    // 1 a new current track, 2 submit, 3 submit and clean.
    void scrobbleCurrentTrack(int option);
    void lastFMScrobblerCreate();
    // 1 track change or hotkey, 2 mouse-over, 3 rating reminder, 4 as 2.
    void showTrackInfoWindow(int option);
    void showTrackInfoWindowByMouseOver();
    void showTrackLyricsWindow();
    void currentTrackActionRun();
    void currentTrackActionCleanup();

private:
    template <class Body>
    void guarded(Body body);

    Context context_;
    ITunesApplication yourTunes_;
    QMetaObject::Connection playerInfoConnection_;
};

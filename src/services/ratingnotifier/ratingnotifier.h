#pragma once

#include "application/services.h"
#include "player/itunes.h"
#include "services/ratingnotifier/ratingnotifierpreferences.h"

#include <QObject>
#include <QTimer>

#include <functional>

class DisplayFlash;

// What the reminder reaches outside itself; unset hooks are skipped.
struct RatingNotifierHooks
{
    // True while the status strip's controller exists and is hidden; no controller at all never
    // holds a reminder back.
    std::function<bool()> controllerIsHidden;
    // The track info window brought forward without the focus (showTrackInfoWindow with 3).
    std::function<void()> showTrackInfoWindow;
    std::function<void()> beep;
    DisplayFlash *displayFlash = nullptr;
};

// Reminds the user, shortly before the playing track ends, that it has no rating of note: a
// one-shot timer armed the notify time before the end, and on firing a flash of the screens, a
// beep and the track info window, as set. Main thread (the timer runs in its event loop); owned
// by the application controller while the reminder is switched on.
class RatingNotifier : public QObject, public RatingNotifierController, public ScriptingBridgeDelegate
{
    Q_OBJECT

public:
    // The program's player unless a connection is given; this object becomes its delegate.
    explicit RatingNotifier(RatingNotifierHooks hooks, ITunesApplication tunes = {}, QObject *parent = nullptr);
    ~RatingNotifier() override;

    RatingNotifierPreferences &yourPreferences() { return yourPreferences_; }

    // Arms the reminder for the current track, or leaves it unarmed when the controller is
    // hidden, the player is not playing, the track is rated above the limit or it is too late.
    void ratingNotifierTimerFire() override;
    void ratingNotifierTimerCancel() override;
    // The timer's target: arms anew if the position moved back, otherwise reminds.
    void alertCurrentTrack();

    bool isArmed() const { return yourRatingNotifierTimer_.isActive(); }
    // The armed delay in seconds, 0 when nothing is armed.
    qint64 armedDelay() const { return isArmed() ? yourRatingNotifierTimer_.interval() / 1000 : 0; }
    // Whole seconds from the position to the track's finish.
    qint64 remainingTime() const;

    void eventDidFail(const QString &className, const QString &operation, const BridgeError &withError) override;

signals:
    // After the reminder was given, whichever ways are switched on (none included).
    void reminded();

private:
    RatingNotifierHooks hooks_;
    RatingNotifierPreferences yourPreferences_;
    ITunesApplication yourTunes_;
    QTimer yourRatingNotifierTimer_;
};

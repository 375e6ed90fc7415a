#include "services/ratingnotifier/ratingnotifier.h"

#include "additions/exceptionsink.h"
#include "player/apptodo.h"
#include "pool/displayflash.h"

#include <cmath>

RatingNotifier::RatingNotifier(RatingNotifierHooks hooks, ITunesApplication tunes, QObject *parent)
    : QObject(parent),
      hooks_(std::move(hooks)),
      yourTunes_(tunes ? std::move(tunes) : ITunesApplication::initWithBundleIdentifier(AppToDo::iTunesBundleIdentifier()))
{
    yourTunes_.setDelegate(this);
    yourRatingNotifierTimer_.setSingleShot(true);
    // Minutes ahead, a coarse timer could be seconds late.
    yourRatingNotifierTimer_.setTimerType(Qt::PreciseTimer);
    connect(&yourRatingNotifierTimer_, &QTimer::timeout, this, &RatingNotifier::alertCurrentTrack);
}

RatingNotifier::~RatingNotifier()
{
    yourTunes_.setDelegate(nullptr);
}

// The finish, not the duration, so that a track's own stop time counts.
qint64 RatingNotifier::remainingTime() const
{
    const double finish = std::trunc(yourTunes_.currentTrack().get().finish());
    return qint64(std::trunc(finish - yourTunes_.playerPosition()));
}

void RatingNotifier::ratingNotifierTimerFire()
{
    ratingNotifierTimerCancel();
    if (hooks_.controllerIsHidden && hooks_.controllerIsHidden())
        return;
    if (!yourTunes_.isRunning() || yourTunes_.playerState() != kPSP)
        return;
    // A rating computed by the player is no rating of the user's: it always gets the reminder.
    const ITunesTrack track = yourTunes_.currentTrack().get();
    if (track.ratingKind() == kRtU && track.rating() > yourPreferences_.prefIgnoreTrackRatingValue())
        return;
    const qint64 delay = remainingTime() - yourPreferences_.prefNotifyTimeBeforeTrackEnds();
    if (delay <= 0)
        return; // too late for this track, streams included
    yourRatingNotifierTimer_.start(int(std::min<qint64>(delay, 24 * 3600) * 1000));
}

void RatingNotifier::ratingNotifierTimerCancel()
{
    yourRatingNotifierTimer_.stop();
}

void RatingNotifier::alertCurrentTrack()
{
    // Moved back, or another track: the reminder is due later.
    if (remainingTime() > yourPreferences_.prefNotifyTimeBeforeTrackEnds() + 5) {
        ratingNotifierTimerFire();
        return;
    }
    if (yourPreferences_.prefNotifyWithDisplayFlash() && hooks_.displayFlash)
        hooks_.displayFlash->flashDisplays();
    if (yourPreferences_.prefNotifyWithSound() && hooks_.beep)
        hooks_.beep();
    if (yourPreferences_.prefNotifyWithTrackInfoWindow() && !yourTunes_.frontmost() && hooks_.showTrackInfoWindow)
        hooks_.showTrackInfoWindow();
    emit reminded();
}

void RatingNotifier::eventDidFail(const QString &className, const QString &operation, const BridgeError &withError)
{
    ExceptionSink::logException(OVException(withError.domain, QStringLiteral("%1 | %2").arg(className, operation),
                                            {{QStringLiteral("code"), withError.code},
                                             {QStringLiteral("message"), withError.message}}));
}

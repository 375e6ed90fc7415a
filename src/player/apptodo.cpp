#include "player/apptodo.h"

#include "additions/appcontext.h"

#include "player/itunes.h"
#include "player/runningapplication.h"

#include <algorithm>

namespace {

AppContext::AutoLoveSource currentAutoLoveSource()
{
    const AppContext *context = appContext();
    return context ? context->autoLoveSource() : AppContext::AutoLoveSource();
}

AppContext::LovedScrobbler currentLovedScrobbler()
{
    const AppContext *context = appContext();
    return context ? context->lovedScrobbler() : AppContext::LovedScrobbler();
}

} // namespace

QString AppToDo::iTunesBundleIdentifier()
{
    return QStringLiteral("com.apple.iTunes");
}

bool AppToDo::isITunesRunning()
{
    return RunningApplication::ov_iTunesIsRunning();
}

bool AppToDo::openITunes()
{
    const PlayerBackendPtr backend = contextPlayerBackend();
    return backend && backend->launch();
}

// There is one player application here: the default backend stands for "com.apple.iTunes"
// while it runs. No other identifier has a running application the program could follow.
PlayerBackendPtr AppToDo::runningApplicationForApplicationWithBundleIdentifier(
    const QString &bundleIdentifier)
{
    if (bundleIdentifier.isEmpty() || bundleIdentifier != iTunesBundleIdentifier())
        return nullptr;
    return RunningApplication::ov_iTunes();
}

bool AppToDo::toggleLovedForThePlayingTrack()
{
    ITunesApplication::ov_toggleTrackLoved();
    scrobbleLoved();
    return true;
}

bool AppToDo::setLovedForThePlayingTrack(bool loved)
{
    ITunesApplication::ov_setCurrentTrackLoved(loved);
    scrobbleLoved();
    return true;
}

bool AppToDo::setRatingForThePlayingTrack(qint64 rating)
{
    ITunesApplication::ov_setCurrentTrackRating(rating);
    scrobbleLoved();
    return true;
}

bool AppToDo::toggleLovedForThePlayingAlbum()
{
    return ITunesApplication::ov_toggleAlbumLoved();
}

bool AppToDo::setLovedForThePlayingAlbum(bool loved)
{
    return ITunesApplication::ov_setCurrentAlbumLoved(loved);
}

bool AppToDo::setRatingForThePlayingAlbum(qint64 rating)
{
    return ITunesApplication::ov_setCurrentAlbumRating(rating);
}

bool AppToDo::scrobbleLoved()
{
    const AppContext::LovedScrobbler scrobbler = currentLovedScrobbler();
    if (!scrobbler.ready || !scrobbler.send || !scrobbler.ready())
        return false;
    if (RunningApplication::ov_iTunesIsPlayingBeats1())
        return false;
    const ITunesTrack track = ITunesApplication::ov_currentTrack().get();
    if (!track)
        return false;
    scrobbler.send(track.loved());
    return true;
}

bool AppToDo::autoLoveUse()
{
    const AppContext::AutoLoveSource source = currentAutoLoveSource();
    return source.use && source.use();
}

qint64 AppToDo::autoLoveValue()
{
    const AppContext::AutoLoveSource source = currentAutoLoveSource();
    return source.value ? std::clamp<qint64>(source.value(), 0, 100) : 0;
}

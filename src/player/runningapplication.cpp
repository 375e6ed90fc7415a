#include "player/runningapplication.h"

#include "player/itunes.h"

#include "additions/configuration.h"

#include <QRegularExpression>

PlayerBackendPtr RunningApplication::ov_iTunes()
{
    PlayerBackendPtr backend = contextPlayerBackend();
    return backend && backend->isRunning() ? backend : nullptr;
}

bool RunningApplication::ov_iTunesIsRunning()
{
    return ov_iTunes() != nullptr;
}

bool RunningApplication::ov_iTunesIsRunningAndPlaying()
{
    if (!ov_iTunesIsRunning())
        return false;
    const FourCharCode state = ITunesApplication::ov_iTunesApplication().playerState();
    return state != 0 && state != kPSS;
}

bool RunningApplication::ov_iTunesIsPlayingBeats1()
{
    if (!ov_iTunesIsRunning())
        return false;
    const ITunesTrack track = ITunesApplication::ov_currentTrack().get();
    const ITunesURLTrack stream = track.as<ITunesURLTrack>();
    return stream && isRadioStationStream(stream.address(), stream.name());
}

bool RunningApplication::isRadioStationStream(const QString &address, const QString &name)
{
    const QRegularExpression pattern(Configuration::text(QLatin1String(Configuration::RadioStreamPattern)));
    // An empty or broken pattern recognises nothing.
    if (pattern.pattern().isEmpty() || !pattern.isValid())
        return false;
    return (!address.isEmpty() && pattern.match(address).hasMatch()) || (!name.isEmpty() && pattern.match(name).hasMatch());
}

#include "services/currenttrackaction/currenttrackinfo.h"

#include <QJsonArray>

namespace CurrentTrackInfo {

void FailureCounter::eventDidFail(const QString &className, const QString &operation, const BridgeError &withError)
{
    ++count_;
    if (next_)
        next_->eventDidFail(className, operation, withError);
}

namespace {

// Builds a description and drops it when a read failed meanwhile, so that a half-read object
// never reaches a file. A null handle has no description.
template <class Build>
QJsonObject described(const ScriptingObject &handle, Build build)
{
    if (handle.isNull())
        return {};
    auto *counter = handle.connection() ? dynamic_cast<FailureCounter *>(handle.connection()->delegate) : nullptr;
    const int before = counter ? counter->count() : 0;
    QJsonObject info = build();
    if (counter && counter->count() != before) {
        // Settled here: an element that failed leaves its list whole.
        counter->rewind(before);
        return {};
    }
    return info;
}

// Runs a read whose failure means only that there is nothing to read (no current playlist).
template <class Read>
auto ignoringFailures(const ScriptingObject &handle, Read read)
{
    auto *counter = handle.connection() ? dynamic_cast<FailureCounter *>(handle.connection()->delegate) : nullptr;
    const int before = counter ? counter->count() : 0;
    auto result = read();
    if (counter)
        counter->rewind(before);
    return result;
}

void insertNamed(QJsonObject &info, const QString &key, const QString &name)
{
    if (!name.isNull())
        info.insert(key, name);
}

} // namespace

QString playerStateName(FourCharCode state)
{
    switch (state) {
    case kPSS: return QStringLiteral("stopped");
    case kPSP: return QStringLiteral("playing");
    case kPSp: return QStringLiteral("paused");
    case kPSF: return QStringLiteral("fast forwarding");
    case kPSR: return QStringLiteral("rewinding");
    default: return {};
    }
}

QString sourceKindName(SourceKind kind)
{
    switch (kind) {
    case SourceKind::kUnk: return QStringLiteral("unknown");
    case SourceKind::kLib: return QStringLiteral("library");
    case SourceKind::kPod: return QStringLiteral("ipod");
    case SourceKind::kACD: return QStringLiteral("audio cd");
    case SourceKind::kMCD: return QStringLiteral("mp3 cd");
    case SourceKind::kTun: return QStringLiteral("radio tuner");
    case SourceKind::kShd: return QStringLiteral("shared library");
    }
    return {};
}

QString playlistKindName(FourCharCode specialKind)
{
    switch (specialKind) {
    case kNon: return QStringLiteral("none");
    case kSpA: return QStringLiteral("books");
    case kSpF: return QStringLiteral("folder");
    case kSpG: return QStringLiteral("genius");
    case kSpI: return QStringLiteral("movies");
    case kSpL: return QStringLiteral("library");
    case kSpM: return QStringLiteral("purchased music");
    case kSpP: return QStringLiteral("podcasts");
    case kSpT: return QStringLiteral("shows");
    case kSpU: return QStringLiteral("itunes u");
    case kSpZ: return QStringLiteral("music");
    default: return {};
    }
}

QString repeatName(FourCharCode songRepeat)
{
    switch (songRepeat) {
    case kRpO: return QStringLiteral("off");
    case kRp1: return QStringLiteral("one");
    case kAll: return QStringLiteral("all");
    default: return {};
    }
}

QString airPlayDeviceKindName(AirPlayDeviceKind kind)
{
    switch (kind) {
    case AirPlayDeviceKind::kAPC: return QStringLiteral("computer");
    case AirPlayDeviceKind::kAPO: return QStringLiteral("airplay device");
    case AirPlayDeviceKind::kAPT: return QStringLiteral("apple tv");
    case AirPlayDeviceKind::kAPX: return QStringLiteral("airport express");
    case AirPlayDeviceKind::kAPU: return QStringLiteral("unknown");
    }
    return {};
}

QJsonObject infoForTrack(const ITunesTrack &track, const ITunesPlaylist &currentPlaylist)
{
    // Nothing playing: the specifier resolves to nothing, and there is no track to describe.
    const ITunesTrack resolved = ignoringFailures(track, [&] { return track.get(); });
    return described(resolved, [&] {
        const ITunesFileTrack file = resolved.as<ITunesFileTrack>();
        QJsonObject info{
            {QStringLiteral("artist"), resolved.artist()},
            {QStringLiteral("name"), resolved.name()},
            {QStringLiteral("album"), resolved.album()},
            {QStringLiteral("genre"), resolved.genre()},
            {QStringLiteral("album artist"), resolved.albumArtist()},
            {QStringLiteral("lyrics"), resolved.lyrics()},
            {QStringLiteral("comment"), resolved.comment()},
            {QStringLiteral("composer"), resolved.composer()},
            {QStringLiteral("grouping"), resolved.grouping()},
            {QStringLiteral("kind"), resolved.kind()},
            {QStringLiteral("eq"), resolved.EQ()},
            {QStringLiteral("time"), resolved.time()},
            {QStringLiteral("location"), file ? file.location() : QString()},
            {QStringLiteral("year"), resolved.year()},
            {QStringLiteral("track number"), resolved.trackNumber()},
            {QStringLiteral("track count"), resolved.trackCount()},
            {QStringLiteral("disc number"), resolved.discNumber()},
            {QStringLiteral("disc count"), resolved.discCount()},
            {QStringLiteral("duration"), resolved.duration()},
            {QStringLiteral("album loved"), resolved.albumLoved()},
            {QStringLiteral("album rating"), resolved.albumRating()},
            {QStringLiteral("loved"), resolved.loved()},
            {QStringLiteral("rating"), resolved.rating()},
        };
        const QString playlist = ignoringFailures(currentPlaylist, [&] { return currentPlaylist.ov_path(); });
        if (!playlist.isEmpty())
            info.insert(QStringLiteral("playlist"), playlist);
        return info;
    });
}

QJsonObject infoForApplication(const ITunesApplication &application)
{
    return described(application, [&] {
        QJsonObject info{
            {QStringLiteral("mute"), application.mute()},
            {QStringLiteral("airplay enabled"), application.AirPlayEnabled()},
            {QStringLiteral("eq enabled"), application.EQEnabled()},
            {QStringLiteral("sound volume"), application.soundVolume()},
            {QStringLiteral("position"), application.playerPosition()},
        };
        insertNamed(info, QStringLiteral("state"), playerStateName(application.playerState()));
        return info;
    });
}

ITunesSource librarySource(const ITunesApplication &application)
{
    for (const ITunesSource &source : application.sources())
        if (source.kind() == SourceKind::kLib)
            return source;
    return {};
}

QJsonObject infoForSource(const ITunesSource &source)
{
    return described(source, [&] {
        QJsonArray playlists;
        for (const ITunesPlaylist &playlist : source.playlists())
            playlists.append(infoForPlaylist(playlist));
        QJsonObject info{
            {QStringLiteral("playlists"), playlists},
            {QStringLiteral("capacity"), qint64(source.capacity())},
            {QStringLiteral("free space"), qint64(source.freeSpace())},
        };
        insertNamed(info, QStringLiteral("kind"), sourceKindName(source.kind()));
        return info;
    });
}

QJsonObject infoForPlaylist(const ITunesPlaylist &playlist)
{
    return described(playlist, [&] {
        const ITunesPlaylist resolved = playlist.get();
        QJsonObject info{
            {QStringLiteral("name"), resolved.name()},
            {QStringLiteral("path"), resolved.ov_path()},
            {QStringLiteral("time"), resolved.time()},
            {QStringLiteral("tracks count"), resolved.ov_tracksCount()},
            {QStringLiteral("duration"), qint64(resolved.duration())},
            {QStringLiteral("size"), resolved.size()},
            {QStringLiteral("loved"), resolved.loved()},
            {QStringLiteral("shuffle"), resolved.shuffle()},
        };
        insertNamed(info, QStringLiteral("repeat"), repeatName(resolved.songRepeat()));
        insertNamed(info, QStringLiteral("kind"), playlistKindName(resolved.specialKind()));
        if (const ITunesUserPlaylist user = resolved.as<ITunesUserPlaylist>()) {
            info.insert(QStringLiteral("shared"), user.shared());
            info.insert(QStringLiteral("smart"), user.smart());
        }
        return info;
    });
}

QJsonObject infoForAirPlay(const ITunesApplication &application)
{
    return described(application, [&] {
        QJsonArray devices;
        for (const ITunesAirPlayDevice &device : application.AirPlayDevices())
            devices.append(infoForAirPlayDevice(device));
        return QJsonObject{{QStringLiteral("devices"), devices}};
    });
}

QJsonObject infoForAirPlayDevice(const ITunesAirPlayDevice &device)
{
    return described(device, [&] {
        QJsonObject info{
            {QStringLiteral("name"), device.name()},
            {QStringLiteral("network address"), device.networkAddress()},
            {QStringLiteral("active"), device.active()},
            {QStringLiteral("available"), device.available()},
            {QStringLiteral("protected"), device.isProtected()},
            {QStringLiteral("selected"), device.selected()},
            {QStringLiteral("supports audio"), device.supportsAudio()},
            {QStringLiteral("supports video"), device.supportsVideo()},
            {QStringLiteral("sound volume"), device.soundVolume()},
        };
        insertNamed(info, QStringLiteral("kind"), airPlayDeviceKindName(device.kind()));
        return info;
    });
}

QJsonObject infoForEq(const ITunesApplication &application)
{
    return described(application, [&] {
        QJsonArray presets;
        for (const ITunesEQPreset &preset : application.EQPresets())
            presets.append(infoForEqPreset(preset));
        return QJsonObject{{QStringLiteral("presets"), presets}};
    });
}

QJsonObject infoForEqPreset(const ITunesEQPreset &preset)
{
    return described(preset, [&] {
        QJsonObject info{{QStringLiteral("name"), preset.name()}, {QStringLiteral("preamp"), preset.preamp()}};
        for (int band = 1; band <= 10; ++band)
            info.insert(QStringLiteral("band %1").arg(band), preset.band(band));
        return info;
    });
}

} // namespace CurrentTrackInfo

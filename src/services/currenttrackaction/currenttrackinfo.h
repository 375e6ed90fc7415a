#pragma once

#include "player/itunes.h"

#include <QJsonObject>

#include <algorithm>

// The player's state as the JSON objects the current track action writes: plain functions over
// bridge handles, one read per property. A description fails, and comes back empty, when any
// read on its connection fails while it is built; the connection's delegate must then be a
// FailureCounter (see below), otherwise failures go unseen and the values are the empty ones.
namespace CurrentTrackInfo {

// Counts the failed calls of a connection, so that a description can tell a failed read from an
// empty value. Set it as the connection's delegate; it passes every failure on to the next one.
class FailureCounter : public ScriptingBridgeDelegate
{
public:
    explicit FailureCounter(ScriptingBridgeDelegate *next = nullptr) : next_(next) {}
    void eventDidFail(const QString &className, const QString &operation, const BridgeError &withError) override;
    int count() const { return count_; }
    // Forgets the failures after the given count, once a description has dealt with them.
    void rewind(int to) { count_ = std::min(count_, to); }

private:
    ScriptingBridgeDelegate *next_;
    int count_ = 0;
};

// Every text key is present (empty for none); "playlist" is left out without a current playlist.
QJsonObject infoForTrack(const ITunesTrack &track, const ITunesPlaylist &currentPlaylist);
QJsonObject infoForApplication(const ITunesApplication &application);
QJsonObject infoForSource(const ITunesSource &source);
QJsonObject infoForPlaylist(const ITunesPlaylist &playlist);
QJsonObject infoForAirPlay(const ITunesApplication &application);
QJsonObject infoForAirPlayDevice(const ITunesAirPlayDevice &device);
QJsonObject infoForEq(const ITunesApplication &application);
QJsonObject infoForEqPreset(const ITunesEQPreset &preset);

// The first source of the library kind, or a null handle.
ITunesSource librarySource(const ITunesApplication &application);

// The names of the player's codes in the files; null where a code has none.
QString playerStateName(FourCharCode state);
QString sourceKindName(SourceKind kind);
QString playlistKindName(FourCharCode specialKind);
QString repeatName(FourCharCode songRepeat);
QString airPlayDeviceKindName(AirPlayDeviceKind kind);

} // namespace CurrentTrackInfo

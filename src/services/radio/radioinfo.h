#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QString>
#include <QStringList>

#include <optional>

// Pure readers over what the radio station serves: its HLS media playlist and the first bytes
// of a segment, which carry the show's ID3 frames. Nothing here touches the network.
namespace RadioInfo {

// How many bytes of a segment are fetched: the Range header asks for bytes 0 to 8192.
inline constexpr qsizetype SegmentHeadBytes = 8193;
inline constexpr char SegmentRangeHeader[] = "bytes=0-8192";
// The wait after a failed round, or when the segment's end can't be worked out.
inline constexpr double DefaultRoundWaitSeconds = 5.0;

// The playlist's segment lines (those ending in ".aac", any case), in order; empty for none.
QStringList playlistTracksFromText(const QString &text);

// The segment to read: the third from the end with four or more lines, else the last one.
// The newest segments may still be incomplete on the server. Empty for an empty list.
QString chooseTrack(const QStringList &tracks);

// The start time in a segment's name ("...-20240102T030405Z.aac"); none if it can't be read.
std::optional<QDateTime> trackDateFromName(const QString &line);

// The first value of a "#EXT-X-TARGETDURATION:<seconds>" line above 0; 0 without one.
double playlistTargetDuration(const QString &playlist);

// Seconds until the next round: one second after the chosen segment should have ended, taken
// as an absolute distance from now; 0 (meaning the default wait) without a date or duration.
double loadingTimeInterval(const std::optional<QDateTime> &date, double duration, const QDateTime &now);

struct ByteRange
{
    qsizetype offset = 0;
    qsizetype size = 0;
};

// Where a frame's value lies: a flat search for the key (not an ID3 parser), the 32-bit
// big-endian size after it, the value 6 bytes further on. None for a missing key, a key in the
// last 7 bytes, or a size of 0. The range may reach past the data's end; callers check.
std::optional<ByteRange> frameRange(const QByteArray &key, const QByteArray &data);

// A text frame's value as one clean line; empty when missing, cut off by the data's end, not
// UTF-8, or blank.
QString frameText(const QByteArray &key, const QByteArray &data);

// The artwork address: "http..." up to ".jpg", found after the word "artwork"; empty for none.
QString artworkWebAddress(const QByteArray &data);

} // namespace RadioInfo

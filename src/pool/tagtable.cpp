#include "pool/tagtable.h"

#include "additions/textvalues.h"
#include "player/itunes.h"
#include "pool/storemetadata.h"

#include <map>

namespace {

// How one tag number reaches the track: text tags as they are, number tags through their
// decimal text. Exactly one pair of members is set.
struct TrackTag
{
    QString (ITunesTrack::*readText)() const = nullptr;
    void (ITunesTrack::*writeText)(const QString &) const = nullptr;
    qint64 (ITunesTrack::*readNumber)() const = nullptr;
    void (ITunesTrack::*writeNumber)(qint64) const = nullptr;
};

TrackTag textTag(QString (ITunesTrack::*read)() const, void (ITunesTrack::*write)(const QString &) const)
{
    return {read, write, nullptr, nullptr};
}

TrackTag numberTag(qint64 (ITunesTrack::*read)() const, void (ITunesTrack::*write)(qint64) const)
{
    return {nullptr, nullptr, read, write};
}

const std::map<qint64, TrackTag> &trackTags()
{
    static const std::map<qint64, TrackTag> tags = {
        {1, textTag(&ITunesTrack::name, &ITunesTrack::setName)},
        {2, textTag(&ITunesTrack::artist, &ITunesTrack::setArtist)},
        {3, textTag(&ITunesTrack::album, &ITunesTrack::setAlbum)},
        {4, textTag(&ITunesTrack::albumArtist, &ITunesTrack::setAlbumArtist)},
        {5, textTag(&ITunesTrack::composer, &ITunesTrack::setComposer)},
        {6, textTag(&ITunesTrack::show, &ITunesTrack::setShow)},
        {7, numberTag(&ITunesTrack::discNumber, &ITunesTrack::setDiscNumber)},
        {8, numberTag(&ITunesTrack::trackNumber, &ITunesTrack::setTrackNumber)},
        {9, numberTag(&ITunesTrack::seasonNumber, &ITunesTrack::setSeasonNumber)},
        {10, numberTag(&ITunesTrack::episodeNumber, &ITunesTrack::setEpisodeNumber)},
        {11, textTag(&ITunesTrack::genre, &ITunesTrack::setGenre)},
        {12, numberTag(&ITunesTrack::year, &ITunesTrack::setYear)},
        {13, textTag(&ITunesTrack::grouping, &ITunesTrack::setGrouping)},
        {14, textTag(&ITunesTrack::objectDescription, &ITunesTrack::setObjectDescription)},
        {15, textTag(&ITunesTrack::comment, &ITunesTrack::setComment)},
        {16, textTag(&ITunesTrack::lyrics, &ITunesTrack::setLyrics)},
        {17, textTag(&ITunesTrack::episodeID, &ITunesTrack::setEpisodeID)},
        {18, numberTag(&ITunesTrack::playedCount, &ITunesTrack::setPlayedCount)},
        {19, numberTag(&ITunesTrack::rating, &ITunesTrack::setRating)},
        {20, numberTag(&ITunesTrack::albumRating, &ITunesTrack::setAlbumRating)},
        {21, textTag(&ITunesTrack::sortName, &ITunesTrack::setSortName)},
        {22, textTag(&ITunesTrack::sortArtist, &ITunesTrack::setSortArtist)},
        {23, textTag(&ITunesTrack::sortAlbum, &ITunesTrack::setSortAlbum)},
        {24, textTag(&ITunesTrack::sortAlbumArtist, &ITunesTrack::setSortAlbumArtist)},
        {25, textTag(&ITunesTrack::sortComposer, &ITunesTrack::setSortComposer)},
        {26, textTag(&ITunesTrack::sortShow, &ITunesTrack::setSortShow)},
        {27, numberTag(&ITunesTrack::discCount, &ITunesTrack::setDiscCount)},
        {28, numberTag(&ITunesTrack::trackCount, &ITunesTrack::setTrackCount)},
        {29, numberTag(&ITunesTrack::bpm, &ITunesTrack::setBpm)},
    };
    return tags;
}

// The store values answer a null text for a value that is not there.
QVariant textOrNone(const QString &text)
{
    return text.isNull() ? QVariant() : QVariant(text);
}

} // namespace

QVariant pullTrackObject(const ITunesTrack &track, qint64 sourceTag, bool asText)
{
    const auto found = trackTags().find(sourceTag);
    if (found != trackTags().end()) {
        const TrackTag &tag = found->second;
        if (tag.readText)
            return (track.*tag.readText)();
        return QString::asprintf("%lld", static_cast<long long>((track.*tag.readNumber)()));
    }
    switch (sourceTag) {
    case 101:
        return textOrNone(ov_iTunesStoreIdentifierFromTrack(track));
    case 102:
        return textOrNone(ov_iTunesStoreAppleIdFromTrack(track));
    case 103:
        return textOrNone(ov_iTunesStorePurchasedByFromTrack(track));
    case 104: {
        if (asText)
            return textOrNone(ov_iTunesStorePurchaseDateDescriptionFromTrack(track));
        const QDateTime date = ov_iTunesStorePurchaseDateFromTrack(track);
        return date.isValid() ? QVariant(date) : QVariant();
    }
    case 105:
        return textOrNone(ov_iTunesStoreAdvisoryFromTrack(track));
    default:
        return {};
    }
}

QString pullTrackTag(const ITunesTrack &track, qint64 sourceTag)
{
    const QVariant value = pullTrackObject(track, sourceTag, true);
    if (value.typeId() != QMetaType::QString || value.toString().isNull())
        return QStringLiteral("");
    return value.toString();
}

void pushTrackTag(const ITunesTrack &track, qint64 targetTag, const QString &tagInfo)
{
    const auto found = trackTags().find(targetTag);
    if (found != trackTags().end()) {
        const TrackTag &tag = found->second;
        if (tag.writeText)
            (track.*tag.writeText)(tagInfo);
        else
            (track.*tag.writeNumber)(integerValue(tagInfo));
    } else if (targetTag == 100) {
        track.setAlbumArtist(tagInfo);
        track.setArtist(tagInfo);
    }
}

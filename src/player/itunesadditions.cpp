#include "player/apptodo.h"
#include "player/itunes.h"

#include "additions/ovapplication.h"
#include "additions/propertylist.h"

#include <algorithm>

namespace {

bool isNumberType(QMetaType type)
{
    switch (type.id()) {
    case QMetaType::Bool: case QMetaType::Int: case QMetaType::UInt: case QMetaType::LongLong:
    case QMetaType::ULongLong: case QMetaType::Double:
        return true;
    default:
        return false;
    }
}

// The track's or the album's rating and love, so that one set of rules serves both.
struct LoveFields
{
    qint64 (ITunesTrack::*rating)() const;
    void (ITunesTrack::*setRating)(qint64) const;
    FourCharCode (ITunesTrack::*ratingKind)() const;
    bool (ITunesTrack::*loved)() const;
    void (ITunesTrack::*setLoved)(bool) const;
    bool (*setLovedOperation)(bool);
    bool leavesStreamsAlone; // the album form deliberately lacks the stream test
};

const LoveFields kTrackFields{&ITunesTrack::rating,     &ITunesTrack::setRating,
                              &ITunesTrack::ratingKind, &ITunesTrack::loved,
                              &ITunesTrack::setLoved,   &ITunesApplication::ov_setCurrentTrackLoved,
                              true};
const LoveFields kAlbumFields{&ITunesTrack::albumRating,     &ITunesTrack::setAlbumRating,
                              &ITunesTrack::albumRatingKind, &ITunesTrack::albumLoved,
                              &ITunesTrack::setAlbumLoved,   &ITunesApplication::ov_setCurrentAlbumLoved,
                              false};

ITunesTrack resolvedCurrentTrack()
{
    return ITunesApplication::ov_currentTrack().get();
}

// A computed rating counts as none in every auto-love decision.
qint64 userRating(const ITunesTrack &track, const LoveFields &fields)
{
    return (track.*fields.ratingKind)() == kRtU ? (track.*fields.rating)() : 0;
}

bool autoLoved(const LoveFields &fields)
{
    const ITunesTrack track = resolvedCurrentTrack();
    if (!track || (fields.leavesStreamsAlone && track.isKindOf<ITunesURLTrack>()))
        return false;
    fields.setLovedOperation(userRating(track, fields) >= ITunesTrack::ov_autoLovedRating());
    return true;
}

// One-sided on purpose: an unloved track is pulled down to ten points below the threshold.
bool autoRating(const LoveFields &fields)
{
    const ITunesTrack track = resolvedCurrentTrack();
    if (!track)
        return false;
    const qint64 threshold = ITunesTrack::ov_autoLovedRating();
    const qint64 rating = userRating(track, fields);
    if ((track.*fields.loved)()) {
        if (rating >= threshold)
            return false;
        (track.*fields.setRating)(threshold);
        return true;
    }
    const qint64 unlovedRating = std::max<qint64>(threshold - 10, 0);
    if (rating < unlovedRating)
        return false;
    (track.*fields.setRating)(unlovedRating);
    return true;
}

bool setLoved(const LoveFields &fields, bool loved)
{
    const ITunesTrack track = resolvedCurrentTrack();
    if (!track)
        return false;
    (track.*fields.setLoved)(loved);
    if (ITunesTrack::ov_useAutoLovedRating())
        autoRating(fields);
    return true;
}

bool setRating(const LoveFields &fields, qint64 rating)
{
    const ITunesTrack track = resolvedCurrentTrack();
    if (!track)
        return false;
    (track.*fields.setRating)(std::clamp<qint64>(rating, 0, 100));
    if (ITunesTrack::ov_useAutoLovedRating())
        autoLoved(fields);
    return true;
}

bool toggleLoved(const LoveFields &fields)
{
    const ITunesTrack track = resolvedCurrentTrack();
    return fields.setLovedOperation(!(track.*fields.loved)());
}

} // namespace

QVariantMap ITunesTrack::ov_generalPreferencesInfo()
{
    return PropertyList::readMap(OVApplication::ov_applicationPreferencesURLForPlistGeneral());
}

QVariant ITunesTrack::ov_generalPreferencesInfoValueForKey(const QString &key, QMetaType andClass)
{
    const QVariant value = ov_generalPreferencesInfo().value(key);
    if (!value.isValid())
        return {};
    const bool wanted = value.metaType() == andClass
                        || (isNumberType(andClass) && isNumberType(value.metaType()));
    return wanted ? value : QVariant();
}

bool ITunesTrack::ov_useAutoLovedRating()
{
    return ov_generalPreferencesInfoValueForKey(QStringLiteral("UseAutoLove"),
                                                QMetaType::fromType<bool>())
        .toBool();
}

qint64 ITunesTrack::ov_autoLovedRating()
{
    const QVariant value = ov_generalPreferencesInfoValueForKey(QStringLiteral("UseAutoLoveValue"),
                                                                QMetaType::fromType<qint64>());
    return std::clamp<qint64>(value.toLongLong(), 0, 100);
}

ITunesApplication ITunesApplication::ov_iTunesApplication()
{
    return initWithBundleIdentifier(AppToDo::iTunesBundleIdentifier());
}

ITunesTrack ITunesApplication::ov_currentTrack()
{
    return ov_iTunesApplication().currentTrack();
}

bool ITunesApplication::ov_toggleTrackLoved() { return toggleLoved(kTrackFields); }
bool ITunesApplication::ov_setCurrentTrackLoved(bool loved) { return setLoved(kTrackFields, loved); }
bool ITunesApplication::ov_setCurrentTrackAutoLoved() { return autoLoved(kTrackFields); }
bool ITunesApplication::ov_setCurrentTrackRating(qint64 rating) { return setRating(kTrackFields, rating); }
bool ITunesApplication::ov_setCurrentTrackAutoRating() { return autoRating(kTrackFields); }

bool ITunesApplication::ov_toggleAlbumLoved() { return toggleLoved(kAlbumFields); }
bool ITunesApplication::ov_setCurrentAlbumLoved(bool loved) { return setLoved(kAlbumFields, loved); }
bool ITunesApplication::ov_setCurrentAlbumAutoLoved() { return autoLoved(kAlbumFields); }
bool ITunesApplication::ov_setCurrentAlbumRating(qint64 rating) { return setRating(kAlbumFields, rating); }
bool ITunesApplication::ov_setCurrentAlbumAutoRating() { return autoRating(kAlbumFields); }

QString ITunesPlaylist::ov_path() const
{
    if (isNull())
        return {};
    ITunesItem container;
    if (specialKind() != kSpL) {
        container = this->container().get();
        if (!container)
            return {};
    }
    QStringList names;
    for (ITunesPlaylist playlist = *this; playlist && !playlist.name().isEmpty();
         playlist = playlist.parent().get())
        names.prepend(playlist.name());
    if (const ITunesSource source = container.as<ITunesSource>())
        names.prepend(source.name());
    return names.isEmpty() ? QString() : names.join(QLatin1Char('/'));
}

qint64 ITunesPlaylist::ov_tracksCount() const
{
    return tracks().size();
}

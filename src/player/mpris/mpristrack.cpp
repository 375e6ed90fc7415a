#include "player/mpris/mpristrack.h"

#include "player/playervalues.h"

#include <QFileInfo>

namespace {

// Track properties lie between name and storeMetadata in Prop; container is a relation.
bool isTrackProperty(Prop property)
{
    return property >= Prop::name && property <= Prop::storeMetadata && property != Prop::container;
}

} // namespace

RemoteObjectPtr MprisTrack::fromMetadata(const Mpris::Metadata &metadata)
{
    if (metadata.isEmpty())
        return nullptr;
    const ObjectClass objectClass =
        metadata.filePath().isEmpty() ? ObjectClass::URLTrack : ObjectClass::FileTrack;
    return RemoteObjectPtr(new MprisTrack(objectClass, metadata));
}

MprisTrack::MprisTrack(ObjectClass objectClass, Mpris::Metadata metadata)
    : objectClass_(objectClass), metadata_(std::move(metadata))
{
}

bool MprisTrack::isSameObject(const RemoteObject &other) const
{
    const auto *track = dynamic_cast<const MprisTrack *>(&other);
    return track && track->metadata_.url() == metadata_.url();
}

QVariant MprisTrack::read(Prop property)
{
    const double seconds = metadata_.lengthMicroseconds() / 1e6;
    switch (property) {
    case Prop::name: {
        const QString title = metadata_.title();
        return title.isEmpty() && objectClass_ == ObjectClass::FileTrack
                   ? QFileInfo(metadata_.filePath()).completeBaseName()
                   : title;
    }
    case Prop::persistentID: return metadata_.derivedPersistentID();
    case Prop::artist: return metadata_.text(QStringLiteral("xesam:artist"));
    case Prop::album: return metadata_.text(QStringLiteral("xesam:album"));
    case Prop::albumArtist: return metadata_.text(QStringLiteral("xesam:albumArtist"));
    case Prop::composer: return metadata_.text(QStringLiteral("xesam:composer"));
    case Prop::genre: return metadata_.text(QStringLiteral("xesam:genre"));
    case Prop::comment: return metadata_.text(QStringLiteral("xesam:comment"));
    case Prop::lyrics: return metadata_.text(QStringLiteral("xesam:asText"));
    case Prop::trackNumber: return metadata_.integer(QStringLiteral("xesam:trackNumber"));
    case Prop::discNumber: return metadata_.integer(QStringLiteral("xesam:discNumber"));
    case Prop::bpm: return metadata_.integer(QStringLiteral("xesam:audioBPM"));
    case Prop::year: return metadata_.year();
    case Prop::duration: return seconds;
    case Prop::time: return seconds > 0 ? durationText(seconds) : QString();
    case Prop::mediaKind: return kMdS;
    case Prop::videoKind: return kNon;
    case Prop::enabled: return true;
    case Prop::location:
        if (objectClass_ != ObjectClass::FileTrack)
            break;
        return metadata_.filePath();
    case Prop::address:
        if (objectClass_ != ObjectClass::URLTrack)
            break;
        return metadata_.url();
    default:
        if (isTrackProperty(property))
            return {};
        break;
    }
    return RemoteObject::read(property);
}

void MprisTrack::write(Prop property, const QVariant &)
{
    throwBridgeFailure(kBridgeErrorUnsupported,
                       QStringLiteral("the player's track %1 is not in the library; %2 cannot be "
                                      "written")
                           .arg(metadata_.url(), propertyName(property)));
}

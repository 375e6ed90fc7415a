#include "player/mpris/mprisplayer.h"
#include "player/mpris/mpristrack.h"

#include <QDBusObjectPath>
#include <QDBusVariant>
#include <QThread>

#include <cmath>

namespace {

qint64 microseconds(double seconds)
{
    return qint64(std::llround(seconds * 1e6));
}

} // namespace

MprisPlayer::MprisPlayer(const QString &busName, const QDBusConnection &bus)
    : caller_(bus), follower_(new MprisFollower(caller_, busName))
{
}

MprisPlayer::~MprisPlayer()
{
    // The follower belongs to the thread that made it; the last owner may be a worker.
    if (follower_->thread() == QThread::currentThread())
        delete follower_;
    else
        follower_->deleteLater();
}

void MprisPlayer::setTrackResolver(MprisTrackResolver resolver)
{
    follower_->setTrackResolver(std::move(resolver));
}

bool MprisPlayer::isRunning() const
{
    const QString name = follower_->followedName();
    if (name.isEmpty())
        return false;
    try {
        return caller_.callBus(QStringLiteral("NameHasOwner"), {name}).value(0).toBool();
    } catch (const BridgeFailure &) {
        return false;
    }
}

QString MprisPlayer::requireName() const
{
    const QString name = follower_->followedName();
    if (name.isEmpty())
        throwBridgeFailure(kBridgeErrorNotRunning, QStringLiteral("no MPRIS player on the bus"));
    return name;
}

QVariant MprisPlayer::playerProperty(const QString &name) const
{
    const QVariantList reply =
        caller_.call(requireName(), Mpris::kObjectPath, Mpris::kPropertiesInterface,
                     QStringLiteral("Get"), {Mpris::kPlayerInterface, name});
    return Mpris::plainValue(reply.value(0));
}

void MprisPlayer::setPlayerProperty(const QString &name, const QVariant &value) const
{
    caller_.call(requireName(), Mpris::kObjectPath, Mpris::kPropertiesInterface,
                 QStringLiteral("Set"),
                 {Mpris::kPlayerInterface, name, QVariant::fromValue(QDBusVariant(value))});
}

void MprisPlayer::callPlayer(const QString &method, const QVariantList &arguments) const
{
    caller_.call(requireName(), Mpris::kObjectPath, Mpris::kPlayerInterface, method, arguments);
}

QVariant MprisPlayer::read(Prop property)
{
    switch (property) {
    case Prop::playerState:
        return Mpris::playerStateFromStatus(playerProperty(QStringLiteral("PlaybackStatus")).toString());
    case Prop::playerPosition:
        return positionSeconds();
    case Prop::soundVolume:
        return qint64(std::lround(std::clamp(volume(), 0.0, 1.0) * 100));
    case Prop::mute:
        return volume() <= 0.0;
    case Prop::frontmost:
        return false;
    // MPRIS has no equaliser and no AirPlay: they are switched off.
    case Prop::EQEnabled:
    case Prop::AirPlayEnabled:
        return false;
    default:
        return PlayerBackend::read(property);
    }
}

RemoteObjectList MprisPlayer::elements(Prop list)
{
    if (list == Prop::EQPresets || list == Prop::AirPlayDevices)
        return {}; // none to be had over MPRIS
    return PlayerBackend::elements(list);
}

void MprisPlayer::write(Prop property, const QVariant &value)
{
    switch (property) {
    case Prop::playerPosition:
        setPositionSeconds(value.toDouble());
        return;
    case Prop::soundVolume: {
        std::lock_guard lock(muteMutex_);
        volumeBeforeMute_ = -1;
        setPlayerProperty(QStringLiteral("Volume"), std::clamp(value.toLongLong(), 0LL, 100LL) / 100.0);
        return;
    }
    case Prop::mute:
        setMute(value.toBool());
        return;
    default:
        PlayerBackend::write(property, value);
    }
}

RemoteObjectPtr MprisPlayer::object(Prop relation)
{
    if (relation != Prop::currentTrack)
        return PlayerBackend::object(relation);
    std::weak_ptr<RemoteObject> self = weak_from_this();
    return std::make_shared<SpecifierObject>(ObjectClass::Track, [self]() -> RemoteObjectPtr {
        const auto player = std::static_pointer_cast<MprisPlayer>(self.lock());
        return player ? player->currentTrackObject() : nullptr;
    });
}

void MprisPlayer::perform(Command command)
{
    switch (command) {
    case Command::playpause:
        callPlayer(QStringLiteral("PlayPause"));
        return;
    case Command::nextTrack:
        callPlayer(QStringLiteral("Next"));
        return;
    case Command::backTrack:
        if (positionSeconds() > kRestartAfterSeconds)
            setPositionSeconds(0);
        else
            callPlayer(QStringLiteral("Previous"));
        return;
    case Command::resume:
        // Leaves fast forward or rewind; both are single seeks here, so there is nothing to
        // leave. Never Play: the controller sends resume after every click, pause included.
        return;
    case Command::fastForward:
        callPlayer(QStringLiteral("Seek"), {microseconds(kSeekStepSeconds)});
        return;
    case Command::rewind:
        callPlayer(QStringLiteral("Seek"), {microseconds(-kSeekStepSeconds)});
        return;
    case Command::activate:
        caller_.call(requireName(), Mpris::kObjectPath, Mpris::kRootInterface, QStringLiteral("Raise"));
        return;
    default:
        PlayerBackend::perform(command);
    }
}

RemoteObjectPtr MprisPlayer::currentTrackObject() const
{
    const Mpris::Metadata metadata(playerProperty(QStringLiteral("Metadata")).toMap());
    const QString filePath = metadata.filePath();
    if (const MprisTrackResolver resolver = follower_->trackResolver(); resolver && !filePath.isEmpty())
        if (RemoteObjectPtr libraryTrack = resolver(filePath))
            return libraryTrack;
    return MprisTrack::fromMetadata(metadata);
}

double MprisPlayer::positionSeconds() const
{
    // mpv reads a little before a fresh seek target, even below 0 at the start of a track.
    return std::max(playerProperty(QStringLiteral("Position")).toLongLong() / 1e6, 0.0);
}

void MprisPlayer::setPositionSeconds(double seconds) const
{
    const QString trackId = Mpris::Metadata(playerProperty(QStringLiteral("Metadata")).toMap()).trackId();
    if (trackId.isEmpty())
        throwBridgeFailure(kBridgeErrorNoSuchObject, QStringLiteral("the player has no track"));
    callPlayer(QStringLiteral("SetPosition"),
               {QVariant::fromValue(QDBusObjectPath(trackId)), microseconds(std::max(seconds, 0.0))});
}

double MprisPlayer::volume() const
{
    return playerProperty(QStringLiteral("Volume")).toDouble();
}

void MprisPlayer::setMute(bool mute)
{
    std::lock_guard lock(muteMutex_);
    const double current = volume();
    if (mute && current > 0.0) {
        volumeBeforeMute_ = current;
        setPlayerProperty(QStringLiteral("Volume"), 0.0);
    } else if (!mute && current <= 0.0) {
        setPlayerProperty(QStringLiteral("Volume"), volumeBeforeMute_ > 0.0 ? volumeBeforeMute_ : 1.0);
        volumeBeforeMute_ = -1;
    }
}

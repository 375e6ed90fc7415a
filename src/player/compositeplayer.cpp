#include "player/compositeplayer.h"

CompositePlayer::CompositePlayer(PlayerBackendPtr library, PlayerBackendPtr player)
    : library_(std::move(library)), player_(std::move(player))
{
}

PlayerBackend &CompositePlayer::checked(const PlayerBackendPtr &backend) const
{
    if (!backend)
        throwBridgeFailure(kBridgeErrorNotRunning, QStringLiteral("no such player"));
    return *backend;
}

PlayerBackend &CompositePlayer::owner(Prop property) const
{
    switch (property) {
    case Prop::currentTrack:
    case Prop::currentPlaylist:
    case Prop::playerState:
    case Prop::playerPosition:
    case Prop::soundVolume:
    case Prop::mute:
    case Prop::frontmost:
    case Prop::EQEnabled:
    case Prop::AirPlayEnabled:
    case Prop::EQPresets:
    case Prop::AirPlayDevices:
    case Prop::name:
    case Prop::version:
        return checked(player_);
    default:
        return checked(library_);
    }
}

bool CompositePlayer::isRunning() const
{
    return player_ && player_->isRunning();
}

bool CompositePlayer::launch()
{
    return player_ && player_->launch();
}

PlayerNotifier *CompositePlayer::notifier()
{
    return player_ ? player_->notifier() : nullptr;
}

QVariant CompositePlayer::read(Prop property)
{
    return owner(property).read(property);
}

void CompositePlayer::write(Prop property, const QVariant &value)
{
    owner(property).write(property, value);
}

RemoteObjectPtr CompositePlayer::object(Prop relation)
{
    return owner(relation).object(relation);
}

RemoteObjectList CompositePlayer::elements(Prop list)
{
    return owner(list).elements(list);
}

void CompositePlayer::perform(Command command)
{
    checked(player_).perform(command);
}

RemoteObjectPtr CompositePlayer::make(ObjectClass objectClass, const QVariantMap &properties,
                                      Prop list, qsizetype index)
{
    return checked(library_).make(objectClass, properties, list, index);
}

RemoteObjectList CompositePlayer::add(const QStringList &paths, const RemoteObjectPtr &to)
{
    return checked(library_).add(paths, to);
}

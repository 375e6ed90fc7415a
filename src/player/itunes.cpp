#include "player/itunes.h"

#include "additions/ovexception.h"

ITunesItem ITunesItem::duplicateTo(const ScriptingObject &target) const
{
    return wrap<ITunesItem>(guarded(QStringLiteral("duplicateTo"), RemoteObjectPtr(),
                                    [&](RemoteObject &object) {
                                        return object.duplicateTo(target.remoteObject());
                                    }));
}

ITunesItem ITunesItem::moveTo(const ScriptingObject &target) const
{
    return wrap<ITunesItem>(guarded(QStringLiteral("moveTo"), RemoteObjectPtr(),
                                    [&](RemoteObject &object) {
                                        return object.moveTo(target.remoteObject());
                                    }));
}

void ITunesTrack::saveTags() const
{
    if (!object_)
        return;
    try {
        object_->perform(Command::saveTags);
    } catch (const BridgeFailure &failure) {
        throw OVException(failure.error().domain, failure.error().message,
                          {{QStringLiteral("code"), failure.error().code}});
    }
}

QList<ITunesArtwork> ITunesTrack::artworks() const
{
    return wrapAll<ITunesArtwork>(elementObjects(Prop::artworks));
}

ITunesArtwork ITunesTrack::artworkAt(qsizetype index) const
{
    return wrap<ITunesArtwork>(elementObjectAt(Prop::artworks, index));
}

QList<ITunesTrack> ITunesPlaylist::tracks() const
{
    return wrapAll<ITunesTrack>(elementObjects(Prop::tracks));
}

QList<ITunesFileTrack> ITunesPlaylist::fileTracks() const
{
    return wrapAll<ITunesFileTrack>(elementObjects(Prop::fileTracks));
}

QList<ITunesPlaylist> ITunesSource::playlists() const
{
    return wrapAll<ITunesPlaylist>(elementObjects(Prop::playlists));
}

QList<ITunesLibraryPlaylist> ITunesSource::libraryPlaylists() const
{
    return wrapAll<ITunesLibraryPlaylist>(elementObjects(Prop::libraryPlaylists));
}

QList<ITunesUserPlaylist> ITunesSource::userPlaylists() const
{
    return wrapAll<ITunesUserPlaylist>(elementObjects(Prop::userPlaylists));
}

ITunesUserPlaylist ITunesSource::makeUserPlaylist(const QVariantMap &properties,
                                                  ObjectClass objectClass, qsizetype index) const
{
    return wrap<ITunesUserPlaylist>(guarded(QStringLiteral("make"), RemoteObjectPtr(),
                                            [&](RemoteObject &object) {
                                                return object.make(objectClass, properties,
                                                                   Prop::userPlaylists, index);
                                            }));
}

double ITunesEQPreset::band(int number) const
{
    static constexpr Prop bands[] = {Prop::band1, Prop::band2, Prop::band3, Prop::band4,
                                     Prop::band5, Prop::band6, Prop::band7, Prop::band8,
                                     Prop::band9, Prop::band10};
    return number >= 1 && number <= 10 ? real(bands[number - 1]) : 0.0;
}

ITunesApplication ITunesApplication::initWithBundleIdentifier(const QString &bundleIdentifier)
{
    Q_UNUSED(bundleIdentifier);
    return withBackend(contextPlayerBackend());
}

ITunesApplication ITunesApplication::withBackend(PlayerBackendPtr backend)
{
    if (!backend)
        return {};
    auto connection = std::make_shared<ScriptingConnection>();
    connection->backend = backend;
    return ITunesApplication(connection, backend);
}

void ITunesApplication::setDelegate(ScriptingBridgeDelegate *delegate) const
{
    if (connection_)
        connection_->delegate = delegate;
}

ScriptingBridgeDelegate *ITunesApplication::delegate() const
{
    return connection_ ? connection_->delegate : nullptr;
}

bool ITunesApplication::isRunning() const
{
    return connection_ && connection_->backend && connection_->backend->isRunning();
}

PlayerNotifier *ITunesApplication::notifier() const
{
    return connection_ && connection_->backend ? connection_->backend->notifier() : nullptr;
}

ITunesTrack ITunesApplication::currentTrack() const
{
    return wrap<ITunesTrack>(relatedObject(Prop::currentTrack));
}

ITunesPlaylist ITunesApplication::currentPlaylist() const
{
    return wrap<ITunesPlaylist>(relatedObject(Prop::currentPlaylist));
}

QList<ITunesEQPreset> ITunesApplication::EQPresets() const
{
    return wrapAll<ITunesEQPreset>(elementObjects(Prop::EQPresets));
}

QList<ITunesAirPlayDevice> ITunesApplication::AirPlayDevices() const
{
    return wrapAll<ITunesAirPlayDevice>(elementObjects(Prop::AirPlayDevices));
}

QList<ITunesSource> ITunesApplication::sources() const
{
    return wrapAll<ITunesSource>(elementObjects(Prop::sources));
}

QList<ITunesTrack> ITunesApplication::selection() const
{
    return wrapAll<ITunesTrack>(elementObjects(Prop::selection));
}

QList<ITunesTrack> ITunesApplication::add(const QStringList &paths, const ITunesPlaylist &to) const
{
    return wrapAll<ITunesTrack>(guarded(QStringLiteral("add"), RemoteObjectList(),
                                        [&](RemoteObject &object) {
                                            return object.add(paths, to.remoteObject());
                                        }));
}

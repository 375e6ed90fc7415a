#include "player/mpris/mprisfollower.h"

namespace {
const QString kPlaybackStatus = QStringLiteral("PlaybackStatus");
const QString kMetadata = QStringLiteral("Metadata");
} // namespace

MprisFollower::MprisFollower(const MprisCaller &caller, const QString &configuredName,
                             QObject *parent)
    : QObject(parent), caller_(caller), configuredName_(configuredName)
{
    QDBusConnection bus = caller_.bus();
    bus.connect(QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
                QStringLiteral("org.freedesktop.DBus"), QStringLiteral("NameOwnerChanged"), this,
                SLOT(onOwnerChanged(QString, QString, QString)));
    // Any sender: the owner of the followed name is checked per message, which also covers
    // a player that comes and goes under one name.
    bus.connect(QString(), Mpris::kObjectPath, Mpris::kPropertiesInterface,
                QStringLiteral("PropertiesChanged"), this, SLOT(onPropertiesChanged(QDBusMessage)));

    if (followsAnyPlayer()) {
        followFirstPlayer();
        return;
    }
    followedName_ = configuredName_;
    try {
        follow(configuredName_, caller_.callBus(QStringLiteral("GetNameOwner"), {configuredName_})
                                    .value(0).toString());
    } catch (const BridgeFailure &) {
        // Not on the bus yet: the watcher tells when it comes.
    }
}

QString MprisFollower::followedName() const
{
    std::lock_guard lock(mutex_);
    return followedName_;
}

void MprisFollower::setTrackResolver(MprisTrackResolver resolver)
{
    std::lock_guard lock(mutex_);
    resolver_ = std::move(resolver);
}

MprisTrackResolver MprisFollower::trackResolver() const
{
    std::lock_guard lock(mutex_);
    return resolver_;
}

void MprisFollower::followFirstPlayer()
{
    QStringList names;
    try {
        names = caller_.callBus(QStringLiteral("ListNames")).value(0).toStringList();
    } catch (const BridgeFailure &) {
        return;
    }
    names.sort();
    for (const QString &name : std::as_const(names)) {
        if (!name.startsWith(Mpris::kNamePrefix))
            continue;
        try {
            follow(name, caller_.callBus(QStringLiteral("GetNameOwner"), {name}).value(0).toString());
            return;
        } catch (const BridgeFailure &) {
            // Gone between the two calls; try the next.
        }
    }
}

void MprisFollower::follow(const QString &name, const QString &owner)
{
    {
        std::lock_guard lock(mutex_);
        followedName_ = name;
        owner_ = owner;
    }
    loadState();
}

void MprisFollower::forget()
{
    {
        std::lock_guard lock(mutex_);
        owner_.clear();
        if (followsAnyPlayer())
            followedName_.clear();
    }
    status_.clear();
    metadata_ = {};
    lastInfo_.clear();
}

void MprisFollower::loadState()
{
    try {
        const QVariantMap properties =
            Mpris::plainValue(caller_.call(followedName(), Mpris::kObjectPath,
                                           Mpris::kPropertiesInterface, QStringLiteral("GetAll"),
                                           {Mpris::kPlayerInterface})
                                  .value(0))
                .toMap();
        status_ = properties.value(kPlaybackStatus).toString();
        metadata_ = Mpris::Metadata(properties.value(kMetadata).toMap());
    } catch (const BridgeFailure &) {
        // A player that has just taken its name may not serve its object yet; its first
        // PropertiesChanged fills the state in.
    }
}

void MprisFollower::onOwnerChanged(const QString &name, const QString &oldOwner,
                                   const QString &newOwner)
{
    const QString followed = followedName();
    const bool concernsUs = followed.isEmpty() ? name.startsWith(Mpris::kNamePrefix) : name == followed;
    if (!concernsUs)
        return;
    if (newOwner.isEmpty()) {
        if (followed.isEmpty())
            return;
        forget();
        emit notifier_.playerTerminated();
        if (followsAnyPlayer()) {
            followFirstPlayer();
            if (!followedName().isEmpty())
                emit notifier_.playerLaunched();
        }
        return;
    }
    follow(name, newOwner);
    if (oldOwner.isEmpty())
        emit notifier_.playerLaunched();
}

void MprisFollower::onPropertiesChanged(const QDBusMessage &message)
{
    const QVariantList arguments = message.arguments();
    if (arguments.value(0).toString() != Mpris::kPlayerInterface)
        return;
    {
        std::lock_guard lock(mutex_);
        if (owner_.isEmpty() || message.service() != owner_)
            return;
    }
    const QVariantMap changed = Mpris::plainValue(arguments.value(1)).toMap();
    const QStringList invalidated = Mpris::plainValue(arguments.value(2)).toStringList();
    if (invalidated.contains(kPlaybackStatus) || invalidated.contains(kMetadata))
        loadState();
    else if (!changed.contains(kPlaybackStatus) && !changed.contains(kMetadata))
        return; // volume, rate ...: not a change of track or state
    if (changed.contains(kPlaybackStatus))
        status_ = changed.value(kPlaybackStatus).toString();
    if (changed.contains(kMetadata))
        metadata_ = Mpris::Metadata(changed.value(kMetadata).toMap());
    announce();
}

void MprisFollower::announce()
{
    QVariantMap info = Mpris::playerInfo(Mpris::playerStateFromStatus(status_), metadata_);
    if (info.contains(QStringLiteral("Location"))) {
        const QString libraryID = persistentIDFromResolver(metadata_.filePath());
        if (!libraryID.isEmpty())
            info.insert(QStringLiteral("Persistent ID"), libraryID);
    }
    if (info == lastInfo_)
        return;
    lastInfo_ = info;
    emit notifier_.playerInfo(info);
}

QString MprisFollower::persistentIDFromResolver(const QString &filePath) const
{
    const MprisTrackResolver resolver = trackResolver();
    if (!resolver)
        return {};
    try {
        const RemoteObjectPtr track = resolver(filePath);
        return track ? track->read(Prop::persistentID).toString() : QString();
    } catch (const BridgeFailure &) {
        return {};
    }
}

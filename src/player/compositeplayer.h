#pragma once

#include "player/playerbackend.h"

// The player the program follows: the library answers for tracks, playlists, sources, the
// selection and add; the followed media player answers for the current track, the player
// state, position, volume, the transport commands and the player notification. Objects handed
// out belong to the backend that made them, so later calls on them go straight there.
//
// "Running" is the media player's: the live side asks it. The organizer asks the library
// itself, through a connection of its own.
class CompositePlayer : public PlayerBackend
{
public:
    CompositePlayer(PlayerBackendPtr library, PlayerBackendPtr player);

    const PlayerBackendPtr &library() const { return library_; }
    const PlayerBackendPtr &player() const { return player_; }

    bool isRunning() const override;
    bool launch() override;
    PlayerNotifier *notifier() override;

    QVariant read(Prop property) override;
    void write(Prop property, const QVariant &value) override;
    RemoteObjectPtr object(Prop relation) override;
    RemoteObjectList elements(Prop list) override;
    void perform(Command command) override;
    RemoteObjectPtr make(ObjectClass objectClass, const QVariantMap &properties, Prop list,
                         qsizetype index) override;
    RemoteObjectList add(const QStringList &paths, const RemoteObjectPtr &to) override;
    QString musicFolder() override { return library_ ? library_->musicFolder() : QString(); }
    void organizerRunWillStart() override
    {
        if (library_)
            library_->organizerRunWillStart();
    }
    void organizerRunDidEnd() override
    {
        if (library_)
            library_->organizerRunDidEnd();
    }

private:
    // The backend that answers for a property of the application.
    PlayerBackend &owner(Prop property) const;
    PlayerBackend &checked(const PlayerBackendPtr &backend) const;

    PlayerBackendPtr library_;
    PlayerBackendPtr player_;
};

#pragma once

#include "player/mpris/mprismetadata.h"
#include "player/remoteobject.h"

// The player's current track as its metadata describes it, for a file the library does not
// hold (a file track) or a stream (a URL track). A read-only snapshot: the properties the
// metadata has answer from it, the other track properties answer empty, and every write is
// refused. Safe to read from any thread.
class MprisTrack : public RemoteObject
{
public:
    // Null when the metadata names no address (the player has no track).
    static RemoteObjectPtr fromMetadata(const Mpris::Metadata &metadata);

    ObjectClass objectClass() const override { return objectClass_; }
    bool isSameObject(const RemoteObject &other) const override;
    QVariant read(Prop property) override;
    void write(Prop property, const QVariant &value) override;

    const Mpris::Metadata &metadata() const { return metadata_; }

private:
    MprisTrack(ObjectClass objectClass, Mpris::Metadata metadata);

    ObjectClass objectClass_;
    Mpris::Metadata metadata_;
};

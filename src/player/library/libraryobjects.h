#pragma once

#include "player/library/librarystore.h"

// The remote objects of the library backend: light references by row id into a LibraryStore.

class LibraryObject : public RemoteObject
{
public:
    LibraryObject(std::shared_ptr<LibraryStore> store, qint64 id)
        : store_(std::move(store)), id_(id) {}
    qint64 id() const { return id_; }
    const std::shared_ptr<LibraryStore> &store() const { return store_; }
    bool isSameObject(const RemoteObject &other) const override;

protected:
    std::shared_ptr<LibraryStore> store_;
    qint64 id_;
};

class LibrarySourceObject : public LibraryObject
{
public:
    explicit LibrarySourceObject(std::shared_ptr<LibraryStore> store)
        : LibraryObject(std::move(store), 0) {}
    ObjectClass objectClass() const override { return ObjectClass::Source; }
    QVariant read(Prop property) override;
    RemoteObjectList elements(Prop list) override;
    RemoteObjectPtr make(ObjectClass objectClass, const QVariantMap &properties, Prop list,
                         qsizetype index) override;
};

class LibraryPlaylistObject : public LibraryObject
{
public:
    LibraryPlaylistObject(std::shared_ptr<LibraryStore> store, qint64 id, FourCharCode kind)
        : LibraryObject(std::move(store), id), specialKind_(kind) {}
    ObjectClass objectClass() const override;
    QVariant read(Prop property) override;
    void write(Prop property, const QVariant &value) override;
    RemoteObjectPtr object(Prop relation) override;
    RemoteObjectList elements(Prop list) override;
    void perform(Command command) override;
    RemoteObjectPtr duplicateTo(const RemoteObjectPtr &target) override;
    RemoteObjectPtr moveTo(const RemoteObjectPtr &target) override;

private:
    LibraryStore::PlaylistRow row() const;
    FourCharCode specialKind_;
};

class LibraryTrackObject : public LibraryObject
{
public:
    LibraryTrackObject(std::shared_ptr<LibraryStore> store, qint64 id, qint64 playlistId)
        : LibraryObject(std::move(store), id), playlistId_(playlistId) {}
    ObjectClass objectClass() const override { return ObjectClass::FileTrack; }
    QVariant read(Prop property) override;
    void write(Prop property, const QVariant &value) override;
    RemoteObjectPtr object(Prop relation) override;
    RemoteObjectList elements(Prop list) override;
    RemoteObjectPtr elementAt(Prop list, qsizetype index) override;
    void perform(Command command) override;
    RemoteObjectPtr duplicateTo(const RemoteObjectPtr &target) override;

private:
    qint64 playlistId_;
};

// One artwork slot of a track; the slot one past the end makes a new artwork when written.
class LibraryArtworkObject : public LibraryObject
{
public:
    LibraryArtworkObject(std::shared_ptr<LibraryStore> store, qint64 trackId, qsizetype index)
        : LibraryObject(std::move(store), trackId), index_(index) {}
    ObjectClass objectClass() const override { return ObjectClass::Artwork; }
    bool isSameObject(const RemoteObject &other) const override;
    QVariant read(Prop property) override;
    void write(Prop property, const QVariant &value) override;
    RemoteObjectPtr object(Prop relation) override;
    void perform(Command command) override;

private:
    LibraryStore::Artwork artwork() const;
    qsizetype index_;
};

// The library playlist behind a target given to add, duplicateTo or moveTo; 0 for a source,
// -1 for anything that is not a playlist of this library.
qint64 libraryPlaylistIdOf(const RemoteObjectPtr &target, const LibraryStore *store);

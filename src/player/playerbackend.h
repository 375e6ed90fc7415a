#pragma once

#include "player/remoteobject.h"

#include <QObject>
#include <QVariantMap>

// Tells whoever listens what the player does. playerInfo carries the player notification's
// user information, at least "Player State" ("Playing", "Paused" or "Stopped"); launched and
// terminated follow the player process (for MPRIS: its bus name gaining or losing an owner).
// Signals are emitted on the main thread.
class PlayerNotifier : public QObject
{
    Q_OBJECT
public:
    using QObject::QObject;

signals:
    void playerInfo(const QVariantMap &userInfo);
    void playerLaunched();
    void playerTerminated();
};

// The application object of a backend: the root of its object tree, plus what is asked of the
// player as a process.
class PlayerBackend : public RemoteObject
{
public:
    ObjectClass objectClass() const override { return ObjectClass::Application; }

    // The organizer asks whether the library is open; the live side whether the followed
    // player is on the bus. Each backend answers for what it is.
    virtual bool isRunning() const = 0;

    // Starts the player if the backend knows how (a configured player command); false if not.
    virtual bool launch() { return false; }

    // Null for a backend that never notifies.
    virtual PlayerNotifier *notifier() { return nullptr; }

    // The folder the backend keeps its music in, which the organizer never renames or leaves;
    // empty when the backend has none (the organizer then refuses to rename folders).
    virtual QString musicFolder() { return {}; }

    // The organizer calls these on its worker thread around a run: before it fetches its tracks
    // a backend that keeps copies of file tags reads back files changed behind its back, and
    // after the last track it makes what the run saved durable.
    virtual void organizerRunWillStart() {}
    virtual void organizerRunDidEnd() {}
};

using PlayerBackendPtr = std::shared_ptr<PlayerBackend>;

// The backend that new connections use (the composite in the program, an in-memory player in
// tests), and the one the organizer works on (the library alone, whose being open is what
// "running" means there; the player backend when none is set). Both are given by the
// composition root through the AppContext; null without one. Safe from any thread.
PlayerBackendPtr contextPlayerBackend();
PlayerBackendPtr contextLibraryBackend();

#pragma once

#include "additions/ovexception.h"

#include <QtGlobal>

#include <functional>
#include <memory>
#include <mutex>

class OVNotificationCenter;
class PlayerBackend;

// What every part of the program may reach without being handed it, and nothing more: the
// player backends, where failures go, the auto-love settings and the loved-track scrobbler of
// the live side, and the notification centre. A composition root (the program's main, the
// command line's main, each test's environment) makes one on the main thread and installs it
// on the application object; it owns it and uninstalls it (or destroys it) before the
// application object ends. Read from any thread: every field is behind the object's lock.
class AppContext
{
public:
    AppContext();
    ~AppContext();
    AppContext(const AppContext &) = delete;
    AppContext &operator=(const AppContext &) = delete;

    // Makes this the context that appContext() answers; needs the application object.
    void install();
    void uninstall();

    // The backend that new player connections use.
    void setPlayerBackend(std::shared_ptr<PlayerBackend> backend);
    std::shared_ptr<PlayerBackend> playerBackend() const;
    // The backend the organizer works on (the library alone); the player backend when unset.
    void setLibraryBackend(std::shared_ptr<PlayerBackend> backend);
    std::shared_ptr<PlayerBackend> libraryBackend() const;

    // Where failures caught at a risky edge go; without a handler they are dropped.
    using ExceptionHandler = std::function<void(const OVException &)>;
    void setExceptionHandler(ExceptionHandler handler);
    ExceptionHandler exceptionHandler() const;

    // The auto-love settings, given by the application while it runs.
    struct AutoLoveSource
    {
        std::function<bool()> use;     // prefUseAutoLove
        std::function<qint64()> value; // prefUseAutoLoveValue
    };
    void setAutoLoveSource(AutoLoveSource source);
    AutoLoveSource autoLoveSource() const;

    // The scrobbler that is told when the playing track is loved.
    struct LovedScrobbler
    {
        std::function<bool()> ready;          // a scrobbler exists and yourScrobbleState is 1
        std::function<void(bool loved)> send; // loveCurrentTrack or unloveCurrentTrack
    };
    void setLovedScrobbler(LovedScrobbler scrobbler);
    LovedScrobbler lovedScrobbler() const;

    // Lives as long as the context; on the application's thread.
    OVNotificationCenter &notificationCenter() const { return *notificationCenter_; }

private:
    mutable std::mutex mutex_;
    std::shared_ptr<PlayerBackend> playerBackend_;
    std::shared_ptr<PlayerBackend> libraryBackend_;
    ExceptionHandler exceptionHandler_;
    AutoLoveSource autoLoveSource_;
    LovedScrobbler lovedScrobbler_;
    std::unique_ptr<OVNotificationCenter> notificationCenter_;
    bool installed_ = false;
};

// The context installed on the application object, or null (no application object, or none
// installed: a tool that needs no player and drops its failures).
AppContext *appContext();

#pragma once

#include "player/itunes.h"
#include "pool/paneldescription.h"

#include <QObject>

class FunctionPoolController;

// Base of the numbered organizer functions. A function validates its settings, prepares a run,
// handles one track at a time and finishes; it tells the engine what happened to a track only
// through myFunctionPool()->setYourLogNo(1) and by letting an exception pass. Threads, progress
// and logs are the engine's business.
//
// Settings are Q_PROPERTYs of the subclass under their own names, so that panels bind to them
// and orvane-cli sets them by name. Lives on the main thread; doMyFunctionMain and
// doMyFunctionEnd run on the engine's worker thread.
class PoolFunction : public QObject
{
    Q_OBJECT

public:
    explicit PoolFunction(FunctionPoolController *pool, QObject *parent = nullptr);

    FunctionPoolController *myFunctionPool() const { return myFunctionPool_; }

    // Main thread. Negative: an alert code; 0: stop (the function shows something itself or
    // continues later through poolFunctionPreAfterDelay); positive: go on.
    virtual qint64 doMyFunctionCheck() = 0;
    // Main thread, progress sheet up. Negative: alert code; 0: stop; 14: the function starts
    // the worker itself (poolFunctionStartThread); 2: no track loop; other: the track loop.
    // Most functions have nothing to prepare and go on.
    virtual qint64 doMyFunctionPre() { return 1; }
    // Worker thread, once per track; counters start at 0.
    virtual void doMyFunctionMain(const ITunesTrack &track) = 0;
    // Worker thread, after the last track or after cancel.
    virtual void doMyFunctionEnd() {}

    // The function's panel in the organizer window, built from this description.
    virtual PanelDescription panelDescription() const { return {}; }

    // Only library synchronisation may be asked to run on the selection.
    virtual bool canHandleRunOnSelection() const { return false; }
    // The per-track work of the two library functions, which log their own entries. The base
    // raises: a function run this way must provide it.
    virtual void runSynchronizeLibrary(const ITunesTrack &track, qint64 counter);
    virtual void runSearchLibrary(const ITunesTrack &track, qint64 counter);

private:
    FunctionPoolController *myFunctionPool_; // not owned: the engine owns its functions
};

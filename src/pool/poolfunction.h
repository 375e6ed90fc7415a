#pragma once

#include "player/itunes.h"
#include "pool/paneldescription.h"
#include "pool/poolfrontend.h"

#include <QObject>

class FunctionPoolController;

// How a run goes on after a function's check or preparation.
enum class PoolStep : qint64 {
    Stop = 0,        // quietly: the function shows something itself or goes on later
    GoOn = 1,        // the run goes on; after the preparation, with the track loop
    NoTrackLoop = 2, // the worker only ends the run (doMyFunctionEnd)
    OwnWorker = 14,  // the function starts the worker itself (poolFunctionStartThread)
};

// The answer of a function's check or preparation: a step, or an alert that ends the run.
class PoolFunctionAnswer
{
public:
    constexpr PoolFunctionAnswer(PoolStep step) : number_(qint64(step)) {}
    constexpr PoolFunctionAnswer(PoolAlertCode alert) : number_(qint64(alert)), isAlert_(true) {}

    constexpr bool isAlert() const { return isAlert_; }
    constexpr PoolAlertCode alert() const { return isAlert_ ? PoolAlertCode(number_) : PoolAlertCode::Failure; }
    constexpr PoolStep step() const { return isAlert_ ? PoolStep::Stop : PoolStep(number_); }
    // The number functions have always answered: an alert's code or the step's number.
    constexpr qint64 number() const { return number_; }

    friend constexpr bool operator==(const PoolFunctionAnswer &, const PoolFunctionAnswer &) = default;

private:
    qint64 number_;
    bool isAlert_ = false;
};

// Base of the numbered organizer functions. A function validates its settings, prepares a run,
// handles one track at a time and finishes; it tells the engine what happened to a track only
// through myFunctionPool()->setYourLogNo(TrackLogState::Changed) and by letting an exception
// pass. Threads, progress and logs are the engine's business.
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

    // Main thread. An alert, Stop (the function shows something itself or continues later
    // through poolFunctionPreAfterDelay) or GoOn.
    virtual PoolFunctionAnswer doMyFunctionCheck() = 0;
    // Main thread, progress sheet up. An alert, or any step. Most functions have nothing to
    // prepare and go on.
    virtual PoolFunctionAnswer doMyFunctionPre() { return PoolStep::GoOn; }
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

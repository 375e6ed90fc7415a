#pragma once

#include "player/itunes.h"
#include "pool/functionpoollog.h"
#include "pool/poolfrontend.h"
#include "pool/servergate.h"

#include <QMap>
#include <QObject>

#include <atomic>
#include <condition_variable>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>

class FunctionPoolPreferences;
class PoolFunction;
class PoolFunctionRegistry;
enum class PoolStep : qint64;

// The track sets a run covers.
enum class PoolTrackSet : qint64 { None = 0, Selection = 1, Library = 2 }; // None: no run yet

// The comments of the progress sheet, by number; None clears it.
enum class PoolProgressComment : qint64 {
    None = 0,
    FetchingTracks = 1,
    CheckingLibrary = 2,
    LookingForFiles = 3, // in the music folder
    AddingFiles = 4,     // to the library
    SearchingArtwork = 5,
    EmbeddingArtwork = 6,
    Working = 7,
    Finishing = 8,
};

// The organizer's engine: runs one numbered function at a time over a set of the player's
// tracks. Decides the track set, asks the server gate, the function and the user, then walks
// the tracks on a worker thread of its own, reporting progress, alerts and log entries to its
// front end (the organizer window or orvane-cli) on the main thread. Owns the preferences, the
// two logs and one object of each registered function. Lives on the main thread; its owner
// calls close() before it deletes the engine or the front end.
class FunctionPoolController : public QObject, public ScriptingBridgeDelegate
{
    Q_OBJECT

public:
    // Where a run stands; Idle between runs.
    enum class RunState {
        Idle, Checking, Confirming, Waiting, Preparing, FunctionThread, Fetching, Looping, Ending
    };
    Q_ENUM(RunState)

    // The application context must be installed first: the engine's connection to its library
    // backend is made here. One object of each function in `functions` is made here; the
    // registry is not kept.
    FunctionPoolController(PoolFrontEnd *frontEnd, const PoolFunctionRegistry &functions,
                           QObject *parent = nullptr);
    // Expects close() to have been called.
    ~FunctionPoolController() override;

    // Main thread. Cancels a run under way, lets go of a worker waiting for the main thread and
    // joins it. Afterwards nothing reaches the front end any more, not even what the worker
    // queued before, and no run starts. Calling it again does nothing.
    void close();
    bool isClosed() const { return closed_; }

    PoolFrontEnd *frontEnd() const { return frontEnd_; }
    FunctionPoolPreferences *myPreferences() const { return myPreferences_; }
    FunctionPoolLog *myFunctionPoolLog() const { return myFunctionPoolLog_; }
    FunctionPoolErrorLog *myFunctionPoolErrorLog() const { return myFunctionPoolErrorLog_; }
    // myFunction0001 ... myFunction0026; null for a number this build does not have.
    PoolFunction *myFunction(qint64 number) const { return myFunctions_.value(number); }

    PoolFunction *yourCurrentFunction() const { return yourCurrentFunction_; }
    qint64 yourCurrentFunctionNo() const { return yourCurrentFunctionNo_; }
    PoolTrackSet yourCurrentFunctionTyp() const { return yourCurrentFunctionTyp_; }
    bool yourCurrentFunctionCancel() const { return yourCurrentFunctionCancel_; }
    qint64 yourLastErrorNo() const { return yourLastErrorNo_; }
    TrackLogState yourLogNo() const { return yourLogNo_; }
    // Tracks of the last run that ended in an error (TrackLogState::Error).
    qint64 yourFailedTrackCount() const { return yourFailedTrackCount_; }
    // Worker thread, within doMyFunctionMain: whether a write, save or move of the track under
    // way has failed so far (the track then ends as an error whatever the function says).
    bool currentTrackFailed() const;
    void setYourLogNo(TrackLogState changeState) { yourLogNo_ = changeState; }
    const ITunesApplication &yourTunes() const { return yourTunes_; }
    RunState runState() const { return runState_; }

    // The track set a function runs on unless the other one is asked for.
    static PoolTrackSet defaultFunctionTyp(qint64 number);

    // --- User actions, main thread.
    void clickFunctionRun(qint64 number);
    void clickFunctionCancel() { yourCurrentFunctionCancel_ = true; }

    // --- For functions.
    // Continues a run whose doMyFunctionCheck answered Stop; main thread.
    void poolFunctionPre();
    // The same 0.1 s later, as a function does once its own question is answered.
    void poolFunctionPreAfterDelay();
    // Starts the worker: NoTrackLoop skips the track loop. Main thread.
    void poolFunctionStartThread(PoolStep step);
    // Asks the user for a folder through the front end; an empty answer ends the run.
    void askForFolder(const QString &messageKey, std::function<void(const QString &path)> answer);
    // Main thread. The two confirmations ask; every other alert ends the run.
    void showAlertMessage(PoolAlertCode code);
    // The server gate; ShowMessage: the gate showed its own message.
    ServerGateDecision::Result checkFunctionRun();
    // Runs work on the main thread: at once there, otherwise queued, or with wait queued and
    // waited for. Once the engine is closed, queued work is dropped and a waiting caller goes
    // on at once.
    void onMainThread(std::function<void()> work, bool wait = false);

    // Progress, from any thread.
    void poolProgressOpen();
    void poolProgressEmpty();
    void poolProgressMessage(PoolProgressComment comment);
    void poolProgressValues(qint64 total);
    void poolProgressUpdate(qint64 counter);
    void poolProgressClose();

    // Library lookups and file helpers.
    ITunesSource subLibrarySource() const;
    ITunesLibraryPlaylist subLibraryPlaylist(const ITunesSource &source) const;
    QString subAlbumFolderPath(const QString &path) const;
    bool subIsAudioFile(const QString &path) const;
    bool subIsImageFile(const QString &path) const;
    // The library's music folder with symbolic links resolved; empty when there is none.
    QString subMusicFolder() const;

    // The alert of a code, and the key of a progress comment (empty: none).
    static PoolAlert alertForCode(PoolAlertCode code);
    static QString progressCommentKey(PoolProgressComment comment);

    void eventDidFail(const QString &className, const QString &operation,
                      const BridgeError &withError) override;

signals:
    void runStateChanged(FunctionPoolController::RunState state);

private:
    void setRunState(RunState state);
    // Runs the oldest work that onMainThread queued; one queued call per piece of work.
    Q_INVOKABLE void runMainThreadWork();
    void presentAlert(const PoolAlert &alert);
    void confirmationDidEnd(int returnCode, bool suppressionOn, bool hadSuppression);

    // Worker thread.
    void poolFunctionMain(PoolStep step);
    bool poolFunctionLoop(); // false when it stopped with an alert
    void poolFunctionEnd();
    void stopWithAlert(PoolAlertCode code); // closes the progress, then the alert on the main thread
    QList<ITunesTrack> fetchTrackSet(bool &libraryMissing);
    QString trackInfoText(const ITunesTrack &track, const QString &path) const;
    void poolFunctionPerformOnTrack(const ITunesTrack &track, qint64 counter);
    void poolFunctionPerformLibrarySynchronize(const ITunesTrack &track, qint64 counter);
    void poolFunctionPerformLibrarySearch(const ITunesTrack &track, qint64 counter);
    void performLibraryForm(const ITunesTrack &track, qint64 counter,
                            void (PoolFunction::*operation)(const ITunesTrack &, qint64));
    void joinWorker();
    // Collect the failed writes of one track (worker thread) and turn them into its error.
    void beginTrack();
    bool endTrack(); // true when the track failed; its failures are then in the error log

    PoolFrontEnd *frontEnd_;
    FunctionPoolPreferences *myPreferences_;
    FunctionPoolLog *myFunctionPoolLog_;
    FunctionPoolErrorLog *myFunctionPoolErrorLog_;
    QMap<qint64, PoolFunction *> myFunctions_; // children of this object

    PoolFunction *yourCurrentFunction_ = nullptr;
    std::atomic<qint64> yourCurrentFunctionNo_{0};
    PoolTrackSet yourCurrentFunctionTyp_ = PoolTrackSet::None;
    std::atomic<bool> yourCurrentFunctionCancel_{false};
    std::atomic<qint64> yourLastErrorNo_{0};
    TrackLogState yourLogNo_ = TrackLogState::Unchanged; // worker only
    std::atomic<qint64> yourFailedTrackCount_{0};
    // Failed writes reported by the bridge while a track is under way on the worker.
    struct TrackFailure
    {
        QString className;
        QString operation;
        BridgeError error;
    };
    std::atomic<std::thread::id> workerThreadId_{};
    std::atomic<bool> trackUnderWay_{false};
    mutable std::mutex trackFailuresMutex_;
    QList<TrackFailure> trackFailures_;
    ITunesApplication yourTunes_;
    RunState runState_ = RunState::Idle; // main thread
    bool preScheduled_ = false;
    std::thread worker_;
    // Work for the main thread, handed over under mainThreadMutex_ rather than inside Qt's
    // event, so that ThreadSanitizer sees the hand-over. done is set once the work has run.
    struct MainThreadWork
    {
        std::function<void()> work;
        std::shared_ptr<bool> done; // null when nobody waits
    };
    std::mutex mainThreadMutex_;
    std::condition_variable mainThreadDone_;
    std::deque<MainThreadWork> mainThreadWork_;
    // Set by close() under mainThreadMutex_, so that a waiting worker cannot miss it.
    std::atomic<bool> closed_{false};
};

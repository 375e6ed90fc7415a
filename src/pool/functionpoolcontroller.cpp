#include "pool/functionpoolcontroller.h"

#include "additions/exceptionsink.h"
#include "additions/fileadditions.h"
#include "additions/localizedstrings.h"
#include "additions/ovapplication.h"
#include "player/apptodo.h"
#include "player/playerbackend.h"
#include "pool/functionpoollog.h"
#include "pool/functionpoolpreferences.h"
#include "pool/poolfunction.h"
#include "pool/poolfunctionregistry.h"
#include "pool/servergate.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QThread>
#include <QTimer>

namespace {

constexpr qint64 kLibrarySynchronizeFunction = 14;
constexpr qint64 kLibrarySearchFunction = 15;

const QString kNoLocationPath = QStringLiteral(".../... ?");

// Calls that change something: writes ("setComment"), saves, moves, copies and deletions. A
// failed read only yields an empty value and is left to the function.
bool isChangingOperation(const QString &operation)
{
    if (operation.size() > 3 && operation.startsWith(QLatin1String("set")) && operation.at(3).isUpper())
        return true;
    static const QStringList changing{QStringLiteral("saveTags"), QStringLiteral("moveTo"),
                                      QStringLiteral("duplicateTo"), QStringLiteral("deleteItem"),
                                      QStringLiteral("make"), QStringLiteral("add")};
    return changing.contains(operation);
}

} // namespace

FunctionPoolController::FunctionPoolController(PoolFrontEnd *frontEnd, const PoolFunctionRegistry &functions,
                                               QObject *parent)
    : QObject(parent),
      frontEnd_(frontEnd),
      myPreferences_(new FunctionPoolPreferences(this, this)),
      myFunctionPoolLog_(new FunctionPoolLog(this, myPreferences_, this)),
      myFunctionPoolErrorLog_(new FunctionPoolErrorLog(this, this)),
      yourTunes_(ITunesApplication::withBackend(contextLibraryBackend()))
{
    yourTunes_.setDelegate(this);
    for (const PoolFunctionRegistry::Entry &entry : functions.entries()) {
        PoolFunction *function = entry.factory(this);
        if (!function)
            continue;
        function->setParent(this);
        myFunctions_.insert(entry.number, function);
    }
    myPreferences_->openFunctionPool();
}

FunctionPoolController::~FunctionPoolController()
{
    Q_ASSERT_X(closed_, "~FunctionPoolController", "close() the engine before deleting it");
    // Without the owner's close() (a release build), at least no thread outlives the engine.
    close();
    yourTunes_.setDelegate(nullptr);
}

void FunctionPoolController::close()
{
    Q_ASSERT(QThread::currentThread() == thread());
    yourCurrentFunctionCancel_ = true;
    std::deque<MainThreadWork> dropped;
    {
        std::lock_guard lock(mainThreadMutex_);
        closed_ = true;
        dropped.swap(mainThreadWork_);
    }
    mainThreadDone_.notify_all();
    joinWorker();
}

PoolTrackSet FunctionPoolController::defaultFunctionTyp(qint64 number)
{
    return number == kLibrarySynchronizeFunction || number == kLibrarySearchFunction ? PoolTrackSet::Library
                                                                                     : PoolTrackSet::Selection;
}

// --- Start of a run

void FunctionPoolController::clickFunctionRun(qint64 number)
{
    if (closed_)
        return;
    setRunState(RunState::Checking);
    // The organizer needs the library open, whether or not a media player is running.
    if (!yourTunes_.isRunning()) {
        showAlertMessage(PoolAlertCode::LibraryNotOpen);
        return;
    }
    yourCurrentFunctionNo_ = number;
    if (number < PoolFunctionRegistry::kFirstFunction || number > PoolFunctionRegistry::kLastFunction) {
        showAlertMessage(PoolAlertCode::Failure);
        return;
    }
    yourCurrentFunctionTyp_ = defaultFunctionTyp(number);
    yourCurrentFunction_ = myFunction(number);
    if (!yourCurrentFunction_) {
        PoolAlert alert = alertForCode(PoolAlertCode::Failure);
        alert.informativeKey = QStringLiteral("0003.0026");
        yourCurrentFunctionNo_ = 0;
        presentAlert(alert);
        setRunState(RunState::Idle);
        return;
    }
    if (frontEnd_ && frontEnd_->isAltKeyHeld()) {
        if (yourCurrentFunctionTyp_ == PoolTrackSet::Selection)
            yourCurrentFunctionTyp_ = PoolTrackSet::Library;
        else if (number != kLibrarySynchronizeFunction || yourCurrentFunction_->canHandleRunOnSelection())
            yourCurrentFunctionTyp_ = PoolTrackSet::Selection;
    }

    const ServerGateDecision::Result gate = checkFunctionRun();
    if (gate != ServerGateDecision::Result::Run) {
        yourCurrentFunctionNo_ = 0;
        if (gate == ServerGateDecision::Result::Unreadable)
            showAlertMessage(PoolAlertCode::ServerInfoUnreadable);
        else
            setRunState(RunState::Idle);
        return;
    }

    const PoolFunctionAnswer check = yourCurrentFunction_->doMyFunctionCheck();
    if (check.isAlert()) {
        showAlertMessage(check.alert());
        return;
    }
    if (check.step() == PoolStep::Stop) {
        // The function either asked something (Waiting) or has nothing more to do.
        if (runState_ == RunState::Checking)
            setRunState(RunState::Idle);
        return;
    }
    if (!myPreferences_->prefConfirmFunction()) {
        poolFunctionPre();
        return;
    }
    showAlertMessage(yourCurrentFunctionTyp_ == PoolTrackSet::Library     ? PoolAlertCode::ConfirmLibrary
                     : yourCurrentFunctionTyp_ == PoolTrackSet::Selection ? PoolAlertCode::ConfirmSelection
                                                                          : PoolAlertCode::Failure);
}

ServerGateDecision::Result FunctionPoolController::checkFunctionRun()
{
    const ServerGateDecision decision =
        evaluateServerGateFile(OVApplication::ov_applicationInfoURLForFileHidden(),
                               yourCurrentFunctionNo_);
    if (decision.result == ServerGateDecision::Result::ShowMessage) {
        PoolAlert alert;
        alert.informativeText = decision.message;
        presentAlert(alert);
    }
    return decision.result;
}

void FunctionPoolController::showAlertMessage(PoolAlertCode code)
{
    const PoolAlert alert = alertForCode(code);
    if (alert.hasSuppression()) {
        setRunState(RunState::Confirming);
        if (!frontEnd_) {
            confirmationDidEnd(kAlertSecondButtonReturn, false, true);
            return;
        }
        frontEnd_->presentAlert(alert, [this](int returnCode, bool suppressionOn) {
            confirmationDidEnd(returnCode, suppressionOn, true);
        });
        return;
    }
    yourCurrentFunctionNo_ = 0;
    presentAlert(alert);
    setRunState(RunState::Idle);
}

void FunctionPoolController::confirmationDidEnd(int returnCode, bool suppressionOn, bool hadSuppression)
{
    if (yourCurrentFunctionNo_ <= 0) {
        setRunState(RunState::Idle);
        return;
    }
    if (hadSuppression && suppressionOn)
        myPreferences_->setPrefConfirmFunction(false);
    if (returnCode == kAlertFirstButtonReturn)
        poolFunctionPre();
    else
        setRunState(RunState::Idle);
}

void FunctionPoolController::presentAlert(const PoolAlert &alert)
{
    if (frontEnd_)
        frontEnd_->presentAlert(alert, {});
}

// --- Preparation

void FunctionPoolController::poolFunctionPre()
{
    preScheduled_ = false;
    if (closed_)
        return;
    if (!yourCurrentFunction_) {
        showAlertMessage(PoolAlertCode::Failure);
        return;
    }
    setRunState(RunState::Preparing);
    poolProgressOpen();
    if (frontEnd_)
        frontEnd_->setCancelEnabled(false);
    const PoolFunctionAnswer result = yourCurrentFunction_->doMyFunctionPre();
    if (result.isAlert()) {
        poolProgressClose();
        showAlertMessage(result.alert());
    } else if (result.step() == PoolStep::Stop) {
        yourCurrentFunctionNo_ = 0;
        poolProgressClose();
        setRunState(RunState::Idle);
    } else if (result.step() == PoolStep::OwnWorker) {
        setRunState(RunState::FunctionThread);
    } else {
        poolFunctionStartThread(result.step());
    }
}

void FunctionPoolController::poolFunctionPreAfterDelay()
{
    preScheduled_ = true;
    setRunState(RunState::Waiting);
    QTimer::singleShot(100, this, [this] { poolFunctionPre(); });
}

void FunctionPoolController::askForFolder(const QString &messageKey,
                                          std::function<void(const QString &)> answer)
{
    setRunState(RunState::Waiting);
    auto finish = [this, answer](const QString &path) {
        if (answer)
            answer(path);
        if (!preScheduled_ && runState_ == RunState::Waiting)
            setRunState(RunState::Idle);
    };
    if (frontEnd_)
        frontEnd_->chooseFolder(messageKey, finish);
    else
        finish({});
}

void FunctionPoolController::poolFunctionStartThread(PoolStep step)
{
    if (closed_)
        return;
    joinWorker();
    setRunState(RunState::Fetching);
    worker_ = std::thread([this, step] { poolFunctionMain(step); });
}

void FunctionPoolController::joinWorker()
{
    if (worker_.joinable())
        worker_.join();
}

// --- The worker

void FunctionPoolController::poolFunctionMain(PoolStep step)
{
    workerThreadId_ = std::this_thread::get_id();
    try {
        // A run that stopped with an alert leaves the state to the alert, which sets idle on
        // the main thread; a second idle from here could land in the next run.
        bool endedNormally = true;
        if (step == PoolStep::NoTrackLoop)
            poolFunctionEnd();
        else
            endedNormally = poolFunctionLoop();
        if (endedNormally)
            setRunState(RunState::Idle);
    } catch (const std::exception &exception) {
        ExceptionSink::logException(exception);
        stopWithAlert(PoolAlertCode::Failure);
    } catch (...) {
        ExceptionSink::logException(OVException(QStringLiteral("NSGenericException"),
                                                QStringLiteral("an object that is not an exception was thrown")));
        stopWithAlert(PoolAlertCode::Failure);
    }
}

void FunctionPoolController::stopWithAlert(PoolAlertCode code)
{
    poolProgressClose();
    onMainThread([this, code] { showAlertMessage(code); });
}

QList<ITunesTrack> FunctionPoolController::fetchTrackSet(bool &libraryMissing)
{
    QList<ITunesTrack> handles;
    if (yourCurrentFunctionTyp_ == PoolTrackSet::Selection) {
        handles = yourTunes_.selection();
    } else {
        const ITunesLibraryPlaylist playlist = subLibraryPlaylist(subLibrarySource());
        if (playlist.isNull()) {
            libraryMissing = true;
            return {};
        }
        const QList<ITunesFileTrack> files = playlist.fileTracks();
        handles = QList<ITunesTrack>(files.begin(), files.end());
    }
    QList<ITunesTrack> tracks;
    for (const ITunesTrack &handle : std::as_const(handles))
        if (const ITunesTrack track = handle.get(); !track.isNull())
            tracks.append(track);
    return tracks;
}

bool FunctionPoolController::poolFunctionLoop()
{
    yourCurrentFunctionCancel_ = false;
    poolProgressMessage(PoolProgressComment::FetchingTracks);
    yourLastErrorNo_ = 0;
    yourFailedTrackCount_ = 0;

    const PlayerBackendPtr backend = contextLibraryBackend();
    if (backend) {
        // A file that changed behind the library's back is read again first, so the run works on
        // what the files hold; if that fails the run goes on with what the library has.
        try {
            backend->organizerRunWillStart();
        } catch (const std::exception &exception) {
            ExceptionSink::logException(exception);
        }
    }
    bool libraryMissing = false;
    const QList<ITunesTrack> tracks = fetchTrackSet(libraryMissing);
    if (libraryMissing) {
        stopWithAlert(PoolAlertCode::LibraryPlaylistMissing);
        return false;
    }
    if (yourLastErrorNo_ < 0) {
        stopWithAlert(PoolAlertCode::FetchFailed);
        return false;
    }
    poolProgressMessage(PoolProgressComment::None);
    const qint64 count = tracks.size();
    const qint64 number = yourCurrentFunctionNo_;
    if (count <= 0 && number != kLibrarySynchronizeFunction) {
        stopWithAlert(yourCurrentFunctionTyp_ == PoolTrackSet::Selection ? PoolAlertCode::NoSelection
                                                                          : PoolAlertCode::LibraryWithoutTracks);
        return false;
    }
    onMainThread([this, count] { poolProgressValues(count); }, true);
    onMainThread([this] {
        if (frontEnd_)
            frontEnd_->setCancelEnabled(true);
    });
    onMainThread([this, number] {
        poolProgressMessage(number == kLibrarySynchronizeFunction ? PoolProgressComment::CheckingLibrary
                                                                  : PoolProgressComment::None);
    }, true);
    // Only a run that found its tracks replaces the logs of the run before.
    myFunctionPoolLog_->emptyLog();
    myFunctionPoolErrorLog_->emptyErrorLog();
    setRunState(RunState::Looping);

    void (FunctionPoolController::*perform)(const ITunesTrack &, qint64) =
        &FunctionPoolController::poolFunctionPerformOnTrack;
    if (number == kLibrarySearchFunction)
        perform = &FunctionPoolController::poolFunctionPerformLibrarySearch;
    else if (number == kLibrarySynchronizeFunction)
        perform = &FunctionPoolController::poolFunctionPerformLibrarySynchronize;

    for (qint64 index = 0; index < count; ++index) {
        if (yourCurrentFunctionCancel_)
            break;
        poolProgressUpdate(index);
        try {
            (this->*perform)(tracks.at(index), index);
        } catch (const std::exception &exception) {
            trackUnderWay_ = false;
            try {
                myFunctionPoolErrorLog_->addErrorLogEntry(exception);
            } catch (...) {
            }
        }
    }
    if (backend)
        backend->organizerRunDidEnd();
    poolFunctionEnd();
    return true;
}

QString FunctionPoolController::trackInfoText(const ITunesTrack &track, const QString &path) const
{
    return QStringLiteral("%1 - %2\n%3").arg(track.artist(), track.name(), path);
}

void FunctionPoolController::poolFunctionPerformOnTrack(const ITunesTrack &track, qint64 counter)
{
    if (track.as<ITunesFileTrack>().location().isEmpty()) {
        yourLogNo_ = TrackLogState::NoLocation;
        myFunctionPoolLog_->addLogEntry(track, counter, yourLogNo_, trackInfoText(track, kNoLocationPath));
        return;
    }
    yourLogNo_ = TrackLogState::Unchanged;
    QString infoText;
    beginTrack();
    try {
        yourCurrentFunction_->doMyFunctionMain(track);
        // Saved even after a failed write, so that the file and the library agree on the rest.
        track.saveTags();
        if (endTrack())
            yourLogNo_ = TrackLogState::Error;
        infoText = trackInfoText(track, track.as<ITunesFileTrack>().location());
    } catch (const std::exception &exception) {
        if (!endTrack())
            ++yourFailedTrackCount_;
        yourLogNo_ = TrackLogState::Error;
        myFunctionPoolErrorLog_->addErrorLogEntry(exception);
        infoText = trackInfoText(track, track.as<ITunesFileTrack>().location());
    } catch (...) {
        trackUnderWay_ = false;
        myFunctionPoolLog_->addLogEntry(track, counter, yourLogNo_, QString());
        throw;
    }
    myFunctionPoolLog_->addLogEntry(track, counter, yourLogNo_, infoText);
}

void FunctionPoolController::poolFunctionPerformLibrarySynchronize(const ITunesTrack &track, qint64 counter)
{
    performLibraryForm(track, counter, &PoolFunction::runSynchronizeLibrary);
}

void FunctionPoolController::poolFunctionPerformLibrarySearch(const ITunesTrack &track, qint64 counter)
{
    performLibraryForm(track, counter, &PoolFunction::runSearchLibrary);
}

void FunctionPoolController::performLibraryForm(const ITunesTrack &track, qint64 counter,
                                                void (PoolFunction::*operation)(const ITunesTrack &, qint64))
{
    beginTrack();
    try {
        (yourCurrentFunction_->*operation)(track, counter);
        track.saveTags();
        // These functions log their own entries; a failed write adds the track's error.
        if (endTrack()) {
            yourLogNo_ = TrackLogState::Error;
            myFunctionPoolLog_->addLogEntry(track, counter, yourLogNo_,
                                            trackInfoText(track, track.as<ITunesFileTrack>().location()));
        }
    } catch (const std::exception &exception) {
        const bool writeFailed = endTrack();
        QString path = track.as<ITunesFileTrack>().location();
        if (!path.isEmpty()) {
            yourLogNo_ = TrackLogState::Error;
            if (!writeFailed)
                ++yourFailedTrackCount_;
            myFunctionPoolErrorLog_->addErrorLogEntry(exception);
        } else {
            yourLogNo_ = TrackLogState::NoLocation;
            path = kNoLocationPath;
        }
        myFunctionPoolLog_->addLogEntry(track, counter, yourLogNo_, trackInfoText(track, path));
    }
}

void FunctionPoolController::beginTrack()
{
    std::lock_guard lock(trackFailuresMutex_);
    trackFailures_.clear();
    trackUnderWay_ = true;
}

bool FunctionPoolController::endTrack()
{
    trackUnderWay_ = false;
    QList<TrackFailure> failures;
    {
        std::lock_guard lock(trackFailuresMutex_);
        failures.swap(trackFailures_);
    }
    if (failures.isEmpty())
        return false;
    ++yourFailedTrackCount_;
    for (const TrackFailure &failure : std::as_const(failures))
        myFunctionPoolErrorLog_->addErrorLogEntry(OVException(
            failure.error.domain,
            QStringLiteral("%1 failed: %2").arg(failure.operation, failure.error.message),
            {{QStringLiteral("code"), failure.error.code},
             {QStringLiteral("className"), failure.className},
             {QStringLiteral("operation"), failure.operation}}));
    return true;
}

bool FunctionPoolController::currentTrackFailed() const
{
    std::lock_guard lock(trackFailuresMutex_);
    return !trackFailures_.isEmpty();
}

void FunctionPoolController::poolFunctionEnd()
{
    setRunState(RunState::Ending);
    yourCurrentFunction_->doMyFunctionEnd();
    poolProgressClose();
    const bool showLog = myPreferences_->prefLogDisplayOnFunctionEnd();
    onMainThread([this, showLog] {
        if (showLog)
            myFunctionPoolLog_->openLogPanel();
        if (frontEnd_)
            frontEnd_->functionRunDidEnd();
    });
}

// --- Progress

void FunctionPoolController::poolProgressOpen()
{
    onMainThread([this] {
        if (!frontEnd_)
            return;
        frontEnd_->progressEmpty();
        frontEnd_->progressOpen();
    });
}

void FunctionPoolController::poolProgressEmpty()
{
    onMainThread([this] {
        if (frontEnd_)
            frontEnd_->progressEmpty();
    });
}

void FunctionPoolController::poolProgressMessage(PoolProgressComment comment)
{
    const QString key = progressCommentKey(comment);
    const QString text = key.isEmpty() ? QString() : ov_localizedString(key);
    onMainThread([this, text] {
        if (frontEnd_)
            frontEnd_->progressComment(text);
    });
}

void FunctionPoolController::poolProgressValues(qint64 total)
{
    onMainThread([this, total] {
        if (frontEnd_)
            frontEnd_->progressValues(total);
    });
}

void FunctionPoolController::poolProgressUpdate(qint64 counter)
{
    onMainThread([this, counter] {
        if (frontEnd_)
            frontEnd_->progressUpdate(counter);
    });
}

void FunctionPoolController::poolProgressClose()
{
    onMainThread([this] {
        if (frontEnd_)
            frontEnd_->progressClose();
    });
}

// --- Lookups

ITunesSource FunctionPoolController::subLibrarySource() const
{
    for (const ITunesSource &source : yourTunes_.sources())
        if (source.kind() == SourceKind::kLib)
            return source;
    return {};
}

ITunesLibraryPlaylist FunctionPoolController::subLibraryPlaylist(const ITunesSource &source) const
{
    for (const ITunesLibraryPlaylist &playlist : source.libraryPlaylists())
        if (playlist.remoteObject()->objectClass() == ObjectClass::LibraryPlaylist)
            return playlist;
    return {};
}

QString FunctionPoolController::subAlbumFolderPath(const QString &path) const
{
    // An empty disc folder name would make every folder a disc folder of its parent.
    const QString discFolderName = myPreferences_->prefAlbumDiscFolderName();
    const qsizetype slash = path.lastIndexOf(QLatin1Char('/'));
    if (slash < 0 || discFolderName.isEmpty() || !path.mid(slash + 1).startsWith(discFolderName))
        return path;
    return slash == 0 ? QStringLiteral("/") : path.left(slash);
}

bool FunctionPoolController::subIsAudioFile(const QString &path) const
{
    return myPreferences_->prefFileAudioSuffixList().contains(ov_pathExtension(path), Qt::CaseInsensitive);
}

bool FunctionPoolController::subIsImageFile(const QString &path) const
{
    return myPreferences_->prefFileImageSuffixList().contains(ov_pathExtension(path), Qt::CaseInsensitive);
}

QString FunctionPoolController::subMusicFolder() const
{
    const ScriptingConnectionPtr &connection = yourTunes_.connection();
    if (!connection || !connection->backend)
        return {};
    try {
        const QString folder = connection->backend->musicFolder();
        return folder.isEmpty() ? QString() : QFileInfo(folder).canonicalFilePath();
    } catch (const BridgeFailure &) {
        return {}; // the library is not open
    }
}

// --- Tables

PoolAlert FunctionPoolController::alertForCode(PoolAlertCode code)
{
    using enum PoolAlertCode;
    static const QMap<PoolAlertCode, QString> keys{
        {FetchFailed, "0003.0014"},
        {ServerInfoUnreadable, "0003.0025"},
        {LyricsSourcesUnreadable, "0003.0024"},
        {ServerUnreachable, "0003.0023"},
        {LibraryNotOpen, "0003.0020"},
        {FunctionUnavailable, "0003.0018"},
        {LibraryWithoutTracks, "0003.0011"},
        {NoSelection, "0003.0003"},
        {MusicFolderIsRoot, "0003.0012"},
        {MusicFolderMissing, "0003.0010"},
        {LibraryPlaylistMissing, "0003.0008"},
        {InvalidSettings, "0003.0005"},
        {ContradictorySettings, "0003.0004"},
        {IncompleteSettings, "0003.0002"},
        {ConfirmSelection, "0003.0015"},
        {ConfirmLibrary, "0003.0016"},
        {ConfirmReset, "0003.0017"},
    };
    PoolAlert alert;
    alert.code = code;
    alert.informativeKey = keys.value(code, QStringLiteral("0003.0013"));
    if (code == ConfirmSelection || code == ConfirmLibrary || code == ConfirmReset)
        alert.buttonKeys = {QStringLiteral("0002.0001"), QStringLiteral("0002.0002")};
    // Only a run's confirmation can be turned off from the alert.
    if (code == ConfirmSelection || code == ConfirmLibrary)
        alert.suppressionKey = QStringLiteral("0002.0004");
    return alert;
}

QString FunctionPoolController::progressCommentKey(PoolProgressComment comment)
{
    using enum PoolProgressComment;
    static const QMap<PoolProgressComment, QString> keys{
        {FetchingTracks, "0004.0001"},   {CheckingLibrary, "0004.0002"}, {LookingForFiles, "0004.0003"},
        {AddingFiles, "0004.0004"},      {SearchingArtwork, "0004.0005"}, {EmbeddingArtwork, "0004.0006"},
        {Working, "0004.0011"},          {Finishing, "0004.0014"},
    };
    return keys.value(comment);
}

// --- Bridge failures and threads

void FunctionPoolController::eventDidFail(const QString &className, const QString &operation,
                                          const BridgeError &withError)
{
    yourLastErrorNo_ = -1;
    if (trackUnderWay_ && std::this_thread::get_id() == workerThreadId_.load()
        && isChangingOperation(operation)) {
        // The track's error: the error log reports it when the track ends.
        std::lock_guard lock(trackFailuresMutex_);
        trackFailures_.append({className, operation, withError});
        return;
    }
    ExceptionSink::logException(OVException(withError.domain, QStringLiteral("FunctionPoolController"),
                                            {{QStringLiteral("code"), withError.code},
                                             {QStringLiteral("message"), withError.message},
                                             {QStringLiteral("className"), className},
                                             {QStringLiteral("operation"), operation}}));
}

void FunctionPoolController::setRunState(RunState state)
{
    onMainThread([this, state] {
        if (runState_ == state)
            return;
        runState_ = state;
        emit runStateChanged(state);
    });
}

// Not a blocking queued call: close() must be able to let a waiting worker go, or joining it
// on the main thread would wait for ever.
void FunctionPoolController::onMainThread(std::function<void()> work, bool wait)
{
    if (QThread::currentThread() == thread()) {
        work();
        return;
    }
    const auto done = wait ? std::make_shared<bool>(false) : nullptr;
    {
        std::lock_guard lock(mainThreadMutex_);
        if (closed_)
            return;
        mainThreadWork_.push_back({std::move(work), done});
    }
    QMetaObject::invokeMethod(this, "runMainThreadWork", Qt::QueuedConnection);
    if (!done)
        return;
    std::unique_lock lock(mainThreadMutex_);
    mainThreadDone_.wait(lock, [this, &done] { return *done || closed_; });
}

void FunctionPoolController::runMainThreadWork()
{
    MainThreadWork next;
    {
        std::lock_guard lock(mainThreadMutex_);
        if (mainThreadWork_.empty()) // dropped by close()
            return;
        next = std::move(mainThreadWork_.front());
        mainThreadWork_.pop_front();
    }
    if (!closed_)
        next.work();
    if (next.done) {
        {
            std::lock_guard lock(mainThreadMutex_);
            *next.done = true;
        }
        mainThreadDone_.notify_all();
    }
}

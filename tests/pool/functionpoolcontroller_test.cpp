#include "pooltestsupport.h"

#include "additions/ovexception.h"
#include "application/apppreferences.h"
#include "pool/functionpoollog.h"
#include "pool/functionpoolpreferences.h"
#include "pool/servergate.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QFile>

using RunState = FunctionPoolController::RunState;

struct ContractCase
{
    PoolFunctionAnswer check;
    PoolFunctionAnswer pre;
    QStringList calls;
    QList<PoolAlertCode> alerts;
};

TEST_F(PoolTest, ResultsOfCheckAndPreDecideHowFarARunGoes)
{
    using enum PoolStep;
    using enum PoolAlertCode;
    const QList<ContractCase> cases{
        {ContradictorySettings, GoOn, {"check"}, {ContradictorySettings}},
        {Stop, GoOn, {"check"}, {}},
        {GoOn, ServerUnreachable, {"check", "pre"}, {ServerUnreachable}},
        {GoOn, Stop, {"check", "pre"}, {}},
        {GoOn, NoTrackLoop, {"check", "pre", "end"}, {}},
        {GoOn, GoOn, {"check", "pre", "main Track 1", "main Track 2", "end"}, {}},
    };
    addSelectedTracks(2);
    makePool();
    for (const ContractCase &c : cases) {
        SCOPED_TRACE(QStringLiteral("check %1 pre %2").arg(c.check.number()).arg(c.pre.number()).toStdString());
        pool = nullptr;
        pool.reset(new FunctionPoolController(&frontEnd, functions));
        pool->myPreferences()->setPrefConfirmFunction(false);
        frontEnd.alerts.clear();
        function(3)->checkResult = c.check;
        function(3)->preResult = c.pre;
        runFunction(3);
        EXPECT_EQ(function(3)->calls(), c.calls);
        QList<PoolAlertCode> codes;
        for (const PoolAlert &alert : frontEnd.alerts)
            codes.append(alert.code);
        EXPECT_EQ(codes, c.alerts);
    }
}

TEST_F(PoolTest, PreAnswering14WaitsForTheFunctionToStartTheWorker)
{
    addSelectedTracks(1);
    makePool();
    function(3)->preResult = PoolStep::OwnWorker;
    pool->clickFunctionRun(3);
    EXPECT_EQ(pool->runState(), RunState::FunctionThread);
    EXPECT_EQ(function(3)->calls(), (QStringList{"check", "pre"}));
    pool->poolFunctionStartThread(PoolStep::GoOn);
    waitUntilIdle();
    EXPECT_EQ(function(3)->calls(), (QStringList{"check", "pre", "main Track 1", "end"}));
}

TEST_F(PoolTest, AnAnsweredQuestionContinuesThroughPoolFunctionPreWithoutConfirmation)
{
    addSelectedTracks(1);
    makePool();
    pool->myPreferences()->setPrefConfirmFunction(true);
    function(3)->checkResult = PoolStep::Stop;
    frontEnd.folderAnswer = "/music";
    pool->clickFunctionRun(3);
    pool->askForFolder("0005.0001", [this](const QString &path) {
        if (!path.isEmpty())
            pool->poolFunctionPreAfterDelay();
    });
    EXPECT_EQ(pool->runState(), RunState::Waiting);
    waitUntilIdle();
    EXPECT_EQ(function(3)->calls(), (QStringList{"check", "pre", "main Track 1", "end"}));
    EXPECT_TRUE(frontEnd.alerts.isEmpty());
}

struct TrackSetCase
{
    int number;
    bool alt;
    bool handlesSelection;
    PoolTrackSet typ;
};

TEST_F(PoolTest, AltSwitchesToTheOtherTrackSetExceptForSynchronisationThatCannot)
{
    using enum PoolTrackSet;
    const QList<TrackSetCase> cases{
        {3, false, false, Selection}, {3, true, false, Library},   {15, false, false, Library},
        {15, true, false, Selection}, {14, false, true, Library},  {14, true, false, Library},
        {14, true, true, Selection},
    };
    makePool({3, 14, 15});
    for (const TrackSetCase &c : cases) {
        SCOPED_TRACE(c.number);
        frontEnd.altHeld = c.alt;
        function(c.number)->checkResult = PoolStep::Stop;
        function(c.number)->handlesSelection = c.handlesSelection;
        runFunction(c.number);
        EXPECT_EQ(pool->yourCurrentFunctionTyp(), c.typ);
    }
}

TEST_F(PoolTest, RunsThatEndInAnAlertLeaveThePreviousLogsAndSkipTheEnd)
{
    const QList<MemoryObjectPtr> tracks = addSelectedTracks(2);
    makePool({3, 15});
    runFunction(3);
    ASSERT_EQ(pool->myFunctionPoolLog()->rowCount(), 2);

    struct Case
    {
        const char *name;
        std::function<void()> arrange;
        int number;
        PoolAlertCode alert;
    };
    const QList<Case> cases{
        {"empty selection", [&] { player->setSelection({}); }, 3, PoolAlertCode::NoSelection},
        {"library without file tracks", [&] { for (auto &t : tracks) player->remove(t); }, 15,
         PoolAlertCode::LibraryWithoutTracks},
        {"failed fetch", [&] { player->injectFailure(Prop::selection, MemoryPlayer::Access::Read); }, 3,
         PoolAlertCode::FetchFailed},
        {"no library playlist",
         [&] { player->injectFailure(Prop::libraryPlaylists, MemoryPlayer::Access::Read); }, 15,
         PoolAlertCode::LibraryPlaylistMissing},
        {"number outside the table", [] {}, 27, PoolAlertCode::Failure},
        {"player not running", [&] { player->setRunning(false); }, 3, PoolAlertCode::LibraryNotOpen},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.name);
        c.arrange();
        frontEnd.alerts.clear();
        TestFunction *asked = function(c.number == 27 ? 3 : c.number);
        const qsizetype endsBefore = asked->calls().count("end");
        runFunction(c.number);
        ASSERT_EQ(frontEnd.alerts.size(), 1);
        EXPECT_EQ(frontEnd.alerts.first().code, c.alert);
        EXPECT_EQ(pool->yourCurrentFunctionNo(), 0);
        EXPECT_EQ(asked->calls().count("end"), endsBefore);
        EXPECT_EQ(pool->myFunctionPoolLog()->rowCount(), 2);
    }
}

TEST_F(PoolTest, AnUnregisteredFunctionEndsInAClearAlert)
{
    makePool({3});
    runFunction(9);
    ASSERT_EQ(frontEnd.alerts.size(), 1);
    EXPECT_EQ(frontEnd.alerts.first().informativeKey, "0003.0026");
}

TEST_F(PoolTest, TracksWithoutLocationAreLoggedButNotHandedToTheFunction)
{
    const auto file = player->addFileTrack("Song", "/music/song.mp3", {{Prop::artist, "Band"}});
    const auto gone = player->addFileTrack("Gone", "", {{Prop::artist, "Band"}});
    const auto stream = player->addURLTrack("Radio", "http://127.0.0.1/stream", {{Prop::artist, "Station"}});
    player->setSelection({file, gone, stream});
    makePool();
    runFunction(3);
    EXPECT_EQ(function(3)->calls(), (QStringList{"check", "pre", "main Song", "end"}));
    EXPECT_EQ(logTexts(), (QStringList{"OVImageStatusLogUnchanged Band - Song\n/music/song.mp3",
                                       "OVImageStatusLogMissing Band - Gone\n.../... ?",
                                       "OVImageStatusLogMissing Station - Radio\n.../... ?"}));
}

TEST_F(PoolTest, FailuresOnOneTrackGoToBothLogsWhileTheRunGoesOn)
{
    const QList<MemoryObjectPtr> tracks = addSelectedTracks(4);
    makePool();
    MemoryPlayer *memory = player.get();
    function(3)->onTrack = [this, memory, tracks](const ITunesTrack &track) {
        if (track.name() == "Track 1")
            pool->setYourLogNo(TrackLogState::Changed);
        if (track.name() == "Track 2")
            throw OVException("TestException", "no good");
        if (track.name() == "Track 3")
            memory->remove(tracks.at(2)); // its tags can no longer be saved
    };
    runFunction(3);
    EXPECT_EQ(function(3)->calls().last(), "end");
    const QStringList log = logTexts();
    ASSERT_EQ(log.size(), 4);
    EXPECT_EQ(log.at(0), "OVImageStatusLogChanged Artist - Track 1\n/music/1.mp3");
    EXPECT_EQ(log.at(1), "OVImageStatusLogError Artist - Track 2\n/music/2.mp3");
    EXPECT_TRUE(log.at(2).startsWith("OVImageStatusLogError"));
    EXPECT_EQ(log.at(3), "OVImageStatusLogUnchanged Artist - Track 4\n/music/4.mp3");
    const QList<QVariantMap> errors = pool->myFunctionPoolErrorLog()->yourErrorLogEntries();
    ASSERT_EQ(errors.size(), 2);
    EXPECT_EQ(errors.at(0).value("Error").toString(), "TestException | no good");
    EXPECT_TRUE(errors.at(1).value("Error").toString().startsWith(kBridgeErrorDomain + " | "));
}

TEST_F(PoolTest, AFailedWriteMakesItsTrackAnErrorNeverAChange)
{
    const QList<MemoryObjectPtr> tracks = addSelectedTracks(3);
    makePool();
    function(3)->onTrack = [this](const ITunesTrack &track) {
        track.genre();
        track.setComment("new");
        pool->setYourLogNo(TrackLogState::Changed);
    };
    player->injectFailure(Prop::comment, MemoryPlayer::Access::Write, 1, tracks.at(1));
    // A failed read is the function's business, not the track's error.
    player->injectFailure(Prop::genre, MemoryPlayer::Access::Read, 1, tracks.at(2));
    runFunction(3);

    EXPECT_EQ(logTexts(), (QStringList{"OVImageStatusLogChanged Artist - Track 1\n/music/1.mp3",
                                       "OVImageStatusLogError Artist - Track 2\n/music/2.mp3",
                                       "OVImageStatusLogChanged Artist - Track 3\n/music/3.mp3"}));
    const QList<QVariantMap> errors = pool->myFunctionPoolErrorLog()->yourErrorLogEntries();
    ASSERT_EQ(errors.size(), 1);
    EXPECT_EQ(errors.at(0).value("Error").toString(),
              kBridgeErrorDomain + " | setComment failed: injected failure: comment");
    EXPECT_EQ(pool->yourFailedTrackCount(), 1);
    EXPECT_TRUE(tracks.at(1)->stored(Prop::comment).toString().isEmpty());

    // The count is the last run's.
    runFunction(3);
    EXPECT_EQ(pool->yourFailedTrackCount(), 0);
}

TEST_F(PoolTest, CancelTakesEffectBetweenTracksAndTheRunStillEnds)
{
    for (const int cancelAt : {1, 3}) {
        SCOPED_TRACE(cancelAt);
        addSelectedTracks(3);
        frontEnd.events.clear();
        makePool();
        pool->myPreferences()->setPrefLogDisplayOnFunctionEnd(true);
        function(3)->onTrack = [this, cancelAt](const ITunesTrack &track) {
            if (track.name() == QStringLiteral("Track %1").arg(cancelAt))
                pool->clickFunctionCancel();
        };
        runFunction(3);
        EXPECT_EQ(pool->myFunctionPoolLog()->rowCount(), cancelAt);
        EXPECT_EQ(function(3)->calls().last(), "end");
        EXPECT_EQ(frontEnd.events.mid(frontEnd.events.size() - 3),
                  (QStringList{"close", "log panel", "run end"}));
        pool.reset();
    }
}

// The owner closes the engine while its worker waits for the main thread (here: the closing
// is the very work the worker waits for). A blocking call would never return and the join
// would wait for ever; closed, the worker is let go, ends the run and is joined, and what it
// queued for the front end is dropped.
TEST_F(PoolTest, CloseLetsAWaitingWorkerGoJoinsItAndCutsOffTheFrontEnd)
{
    addSelectedTracks(3);
    makePool();
    QStringList eventsAtClose;
    QStringList callsAtClose;
    function(3)->onTrack = [this, &eventsAtClose, &callsAtClose](const ITunesTrack &track) {
        if (track.name() != QStringLiteral("Track 1"))
            return;
        pool->onMainThread([this, &eventsAtClose, &callsAtClose] {
            pool->close();
            eventsAtClose = frontEnd.events;
            callsAtClose = function(3)->calls();
        }, true);
    };
    pool->clickFunctionRun(3);
    const QDeadlineTimer deadline(60000); // a guard against a hang, not a measure
    while (!pool->isClosed() && !deadline.hasExpired())
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
    ASSERT_TRUE(pool->isClosed());

    // Joined: the worker had ended the run (cancelled after the first track) by then.
    EXPECT_EQ(callsAtClose, (QStringList{"check", "pre", "main Track 1", "end"}));
    QCoreApplication::processEvents();
    EXPECT_EQ(frontEnd.events, eventsAtClose);
    EXPECT_FALSE(frontEnd.events.contains("run end"));

    // Closing again, and running once closed, do nothing.
    pool->close();
    pool->clickFunctionRun(3);
    QCoreApplication::processEvents();
    EXPECT_EQ(function(3)->calls(), callsAtClose);
}

TEST_F(PoolTest, ProgressCountsFromZeroAndOpensCancelOnlyForTheLoop)
{
    addSelectedTracks(2);
    makePool();
    runFunction(3);
    EXPECT_EQ(frontEnd.events, (QStringList{"open", "cancel off", "values 2", "cancel on", "update 0",
                                            "update 1", "close", "run end"}));
}

TEST_F(PoolTest, ConfirmationAsksByTrackSetAndItsCheckBoxTurnsItselfOff)
{
    addSelectedTracks(1);
    makePool({3, 15});
    pool->myPreferences()->setPrefConfirmFunction(true);
    frontEnd.confirmationAnswer = kAlertSecondButtonReturn;
    frontEnd.suppressionAnswer = true;
    runFunction(3);
    ASSERT_EQ(frontEnd.alerts.size(), 1);
    EXPECT_EQ(frontEnd.alerts.first().informativeKey, "0003.0015");
    EXPECT_TRUE(frontEnd.alerts.first().hasSuppression());
    EXPECT_FALSE(pool->myPreferences()->prefConfirmFunction());
    EXPECT_EQ(function(3)->calls(), QStringList{"check"});

    pool->myPreferences()->setPrefConfirmFunction(true);
    frontEnd.confirmationAnswer = kAlertFirstButtonReturn;
    frontEnd.suppressionAnswer = false;
    runFunction(15);
    EXPECT_EQ(frontEnd.alerts.last().informativeKey, "0003.0016");
    EXPECT_TRUE(pool->myPreferences()->prefConfirmFunction());
    EXPECT_EQ(function(15)->calls(), (QStringList{"check", "pre", "search Track 1 0", "end"}));
}

TEST(ServerGate, RunAndMessageDecidePerFunctionNumber)
{
    const QByteArray document = "<Orvane><FunctionPool><Functions>"
                                "<Function><ID>3</ID><Run>No</Run><Message>Off for now</Message></Function>"
                                "<Function><ID>4</ID><Run>false</Run></Function>"
                                "<Function><ID>5</ID><Run>  0042</Run><Message>unused</Message></Function>"
                                "<Function><ID>6</ID><Message>no Run element</Message></Function>"
                                "</Functions></FunctionPool></Orvane>";
    const QList<QPair<qint64, ServerGateDecision>> cases{
        {3, {ServerGateDecision::Result::ShowMessage, "Off for now"}},
        {4, {ServerGateDecision::Result::Run, {}}},
        {5, {ServerGateDecision::Result::Run, {}}},
        {6, {ServerGateDecision::Result::Run, {}}},
        {7, {ServerGateDecision::Result::Run, {}}},
    };
    for (const auto &[number, expected] : cases) {
        const ServerGateDecision decision = evaluateServerGate(document, number);
        EXPECT_EQ(decision.result, expected.result) << number;
        EXPECT_EQ(decision.message, expected.message) << number;
    }
    EXPECT_EQ(evaluateServerGate("<a><FunctionPool><Functions><Function><ID>3</ID><Run>n</Run>"
                                 "<Message>tidied",
                                 3).message,
              "tidied");
    EXPECT_EQ(evaluateServerGate("not xml at all", 3).result, ServerGateDecision::Result::Unreadable);
    EXPECT_EQ(evaluateServerGateFile("/nonexistent/.orvane", 3).result, ServerGateDecision::Result::Run);
}

TEST_F(PoolTest, TheServerGateStopsARunBeforeTheFunctionIsAsked)
{
    addSelectedTracks(1);
    makePool();
    QFile document(AppPreferences::locationToPreferences(PreferenceLocation::ServerDocument));
    ASSERT_TRUE(document.open(QIODevice::WriteOnly));
    document.write("<r><FunctionPool><Functions><Function><ID>3</ID><Run>no</Run>"
                   "<Message>Function 3 is resting</Message></Function></Functions></FunctionPool></r>");
    document.close();
    runFunction(3);
    ASSERT_EQ(frontEnd.alerts.size(), 1);
    EXPECT_EQ(frontEnd.alerts.first().informativeTextShown(), "Function 3 is resting");
    EXPECT_TRUE(function(3)->calls().isEmpty());

    ASSERT_TRUE(document.open(QIODevice::WriteOnly));
    document.write("garbage");
    document.close();
    runFunction(3);
    EXPECT_EQ(frontEnd.alerts.last().code, PoolAlertCode::ServerInfoUnreadable);
    EXPECT_TRUE(function(3)->calls().isEmpty());
}

#include "additions/appcontext.h"
#include "pooltestsupport.h"

#include "pool/functionpoollog.h"
#include "pool/functionpoolpreferences.h"

#include <QCoreApplication>
#include <QDeadlineTimer>

void RecordingFrontEnd::presentAlert(const PoolAlert &alert, AlertCompletion completion)
{
    alerts.append(alert);
    record(QStringLiteral("alert %1").arg(qint64(alert.code)));
    if (completion)
        completion(confirmationAnswer, suppressionAnswer);
}

PoolFunctionAnswer TestFunction::doMyFunctionCheck()
{
    record("check");
    return checkResult;
}

PoolFunctionAnswer TestFunction::doMyFunctionPre()
{
    record("pre");
    return preResult;
}

void TestFunction::doMyFunctionMain(const ITunesTrack &track)
{
    record("main " + track.name());
    if (onTrack)
        onTrack(track);
}

void TestFunction::doMyFunctionEnd()
{
    record("end");
}

void TestFunction::runSearchLibrary(const ITunesTrack &track, qint64 counter)
{
    record(QStringLiteral("search %1 %2").arg(track.name()).arg(counter));
    if (onTrack)
        onTrack(track);
}

QStringList TestFunction::calls() const
{
    std::lock_guard lock(mutex_);
    return calls_;
}

void TestFunction::record(const QString &call)
{
    std::lock_guard lock(mutex_);
    calls_.append(call);
}

void PoolTest::SetUp()
{
    player->makeDefault();
}

void PoolTest::TearDown()
{
    pool.reset();
    appContext()->setPlayerBackend(nullptr);
}

void PoolTest::makePool(QList<int> numbers)
{
    for (int number : numbers)
        functions.registerFunction(number, QStringLiteral("Test %1").arg(number),
                                   [](FunctionPoolController *p) { return new TestFunction(p); });
    pool.reset(new FunctionPoolController(&frontEnd, functions));
    pool->myPreferences()->setPrefConfirmFunction(false);
}

TestFunction *PoolTest::function(int number) const
{
    return static_cast<TestFunction *>(pool->myFunction(number));
}

void PoolTest::runFunction(qint64 number)
{
    pool->clickFunctionRun(number);
    waitUntilIdle();
}

void PoolTest::waitUntilIdle()
{
    const QDeadlineTimer deadline(60000); // a guard against a hang, not a measure
    while (pool->runState() != FunctionPoolController::RunState::Idle && !deadline.hasExpired())
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
    QCoreApplication::processEvents(); // entries queued before the end
    ASSERT_EQ(pool->runState(), FunctionPoolController::RunState::Idle);
}

QList<MemoryObjectPtr> PoolTest::addSelectedTracks(int count)
{
    QList<MemoryObjectPtr> tracks;
    for (int i = 1; i <= count; ++i)
        tracks.append(player->addFileTrack(QStringLiteral("Track %1").arg(i), QStringLiteral("/music/%1.mp3").arg(i),
                                           {{Prop::artist, QStringLiteral("Artist")}}));
    player->setSelection(tracks);
    return tracks;
}

QStringList PoolTest::logTexts() const
{
    QStringList texts;
    for (const QVariantMap &entry : pool->myFunctionPoolLog()->yourLogEntries())
        texts.append(entry.value("Icon").toString() + " " + entry.value("InfoText").toString());
    return texts;
}

#pragma once

#include "player/memoryplayer.h"
#include "pool/functionpoolcontroller.h"
#include "pool/poolfunction.h"
#include "pool/poolfunctionregistry.h"

#include <QStringList>

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <mutex>

// Failure messages name the engine's codes by number.
inline void PrintTo(PoolAlertCode code, std::ostream *out) { *out << "alert " << qint64(code); }
inline void PrintTo(PoolStep step, std::ostream *out) { *out << "step " << qint64(step); }
inline void PrintTo(const PoolFunctionAnswer &answer, std::ostream *out)
{
    *out << (answer.isAlert() ? "alert " : "step ") << answer.number();
}

// A front end that records what the engine shows and answers its questions as told.
class RecordingFrontEnd : public PoolFrontEnd
{
public:
    void progressOpen() override { record("open"); }
    void progressEmpty() override {}
    void progressValues(qint64 total) override { record(QStringLiteral("values %1").arg(total)); }
    void progressUpdate(qint64 counter) override { record(QStringLiteral("update %1").arg(counter)); }
    void progressComment(const QString &) override {}
    void progressClose() override { record("close"); }
    void setCancelEnabled(bool enabled) override { record(enabled ? "cancel on" : "cancel off"); }
    void presentAlert(const PoolAlert &alert, AlertCompletion completion) override;
    void chooseFolder(const QString &, FolderAnswer answer) override { answer(folderAnswer); }
    bool isAltKeyHeld() const override { return altHeld; }
    void openLogPanel() override { record("log panel"); }
    void openErrorLogPanel() override {}
    void revealFile(const QString &path) override { revealed.append(path); }
    void functionRunDidEnd() override { record("run end"); }

    void record(const QString &event) { events.append(event); }

    QStringList events;
    QList<PoolAlert> alerts;
    QStringList revealed;
    bool altHeld = false;
    int confirmationAnswer = kAlertFirstButtonReturn;
    bool suppressionAnswer = false;
    QString folderAnswer;
};

// A pool function whose answers and per-track work the test decides. Records its calls.
class TestFunction : public PoolFunction
{
    Q_OBJECT
    Q_PROPERTY(QString yourText MEMBER yourText)
    Q_PROPERTY(bool yourFlag MEMBER yourFlag)
    Q_PROPERTY(qint64 yourCount MEMBER yourCount)

public:
    using PoolFunction::PoolFunction;

    PoolFunctionAnswer doMyFunctionCheck() override;
    PoolFunctionAnswer doMyFunctionPre() override;
    void doMyFunctionMain(const ITunesTrack &track) override;
    void doMyFunctionEnd() override;
    bool canHandleRunOnSelection() const override { return handlesSelection; }
    void runSearchLibrary(const ITunesTrack &track, qint64 counter) override;

    QStringList calls() const;

    QString yourText = QStringLiteral("feat.");
    bool yourFlag = true;
    qint64 yourCount = 3;

    PoolFunctionAnswer checkResult = PoolStep::GoOn;
    PoolFunctionAnswer preResult = PoolStep::GoOn;
    bool handlesSelection = false;
    std::function<void(const ITunesTrack &)> onTrack; // worker thread

private:
    void record(const QString &call);
    mutable std::mutex mutex_;
    QStringList calls_;
};

// A memory player as the default backend, the test's own registry of functions (TestFunction
// under the numbers makePool is given, and whatever else the test adds first), an engine with a
// recording front end, and confirmation off unless a test turns it on.
class PoolTest : public ::testing::Test
{
protected:
    void SetUp() override;
    void TearDown() override;

    void makePool(QList<int> numbers = {3});
    TestFunction *function(int number) const;
    // Clicks run and processes events until the engine is idle again.
    void runFunction(qint64 number);
    void waitUntilIdle();
    // File tracks "Track N" at /music/N.mp3 by "Artist", all selected.
    QList<MemoryObjectPtr> addSelectedTracks(int count);
    QStringList logTexts() const;

    MemoryPlayerPtr player = MemoryPlayer::create();
    RecordingFrontEnd frontEnd;
    PoolFunctionRegistry functions;
    // Closed before it is deleted, as its owners do.
    struct ClosingDeleter
    {
        void operator()(FunctionPoolController *engine) const
        {
            engine->close();
            delete engine;
        }
    };
    std::unique_ptr<FunctionPoolController, ClosingDeleter> pool;
};

#pragma once

#include "player/memoryplayer.h"

#include <QVariantMap>

#include <gtest/gtest.h>

// A memory player as the process-wide default backend, for the operations that make their own
// handles; and the general preference file they read.
class MemoryPlayerTest : public ::testing::Test
{
protected:
    void SetUp() override;
    void TearDown() override;

    // Writes the auto-love settings to the general preference file.
    static void writeAutoLove(bool use, const QVariant &value);
    static void writeGeneral(const QVariantMap &general);

    MemoryPlayerPtr player = MemoryPlayer::create();
};

// Records what the bridge reports as failed.
class RecordingDelegate : public ScriptingBridgeDelegate
{
public:
    struct Failure
    {
        QString className;
        QString operation;
        BridgeError error;
    };
    void eventDidFail(const QString &className, const QString &operation,
                      const BridgeError &withError) override
    {
        failures.append({className, operation, withError});
    }
    QList<Failure> failures;
};

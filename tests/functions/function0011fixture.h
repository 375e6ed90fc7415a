#pragma once

#include "pooltestsupport.h"

#include "functions/builtinfunctions.h"
#include "pool/functionpoollog.h"

#include <QProcess>
#include <QProcessEnvironment>

// The engine over the in-memory player with the program's own functions.
class TagToolTest : public PoolTest
{
protected:
    void SetUp() override
    {
        PoolTest::SetUp();
        registerBuiltInFunctions(functions);
        makePool({});
        QObject::connect(pool->myFunctionPoolLog(), &FunctionPoolLog::logEntryAdded,
                         [this](TrackLogState state, const QString &) { states.append(qint64(state)); });
    }

    void set(int number, const char *name, const QVariant &value)
    {
        ASSERT_TRUE(pool->myFunction(number)->setProperty(name, value)) << name;
    }

    // The alert codes of the run; the change states land in `states`.
    QList<qint64> run(int number)
    {
        states.clear();
        frontEnd.alerts.clear();
        runFunction(number);
        QList<qint64> codes;
        for (const PoolAlert &alert : frontEnd.alerts)
            codes.append(qint64(alert.code));
        return codes;
    }

    QList<qint64> states;
};

// orvane-cli in this test process's private home; its standard output.
inline QString orvaneCli(const QStringList &arguments)
{
    QProcess cli;
    cli.setProcessEnvironment(QProcessEnvironment::systemEnvironment());
    cli.start(QStringLiteral(ORVANE_CLI_PATH), arguments);
    EXPECT_TRUE(cli.waitForFinished(60000));
    EXPECT_EQ(cli.exitCode(), 0) << arguments.join(' ').toStdString() << ": "
                                 << cli.readAllStandardError().toStdString();
    return QString::fromUtf8(cli.readAllStandardOutput());
}

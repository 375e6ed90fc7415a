#pragma once

#include "audiofixtures.h"
#include "pooltestsupport.h"

#include "pool/functionpoollog.h"
#include "pool/poolfunctionregistry.h"

#include <QProcessEnvironment>
#include <QTemporaryDir>

// The engine with the real name and tag functions over the in-memory player, a private folder
// for the files of a test, and the change state of every track of the last run.
class TagNameFunctionTest : public PoolTest
{
protected:
    void SetUp() override
    {
        // The engine fixture empties the registry after each test; bring back what the
        // functions registered when the program started.
        static const QList<PoolFunctionRegistry::Entry> startRegistrations = PoolFunctionRegistry::entries();
        PoolTest::SetUp();
        for (const auto &entry : startRegistrations)
            PoolFunctionRegistry::registerFunction(entry.number, entry.title, entry.factory);
        makePool({});
        QObject::connect(pool->myFunctionPoolLog(), &FunctionPoolLog::logEntryAdded,
                         [this](qint64 state, const QString &) { states.append(state); });
        ASSERT_TRUE(music.isValid());
    }

    MemoryObjectPtr addTrack(const QString &location, const MemoryProperties &properties = {})
    {
        const QString name = properties.value(Prop::name, QStringLiteral("Title")).toString();
        selected.append(player->addFileTrack(name, location, properties));
        player->setSelection(selected);
        return selected.last();
    }

    // Sets the function's settings by name, runs it on the selection and answers the states.
    QList<qint64> run(int number, const QVariantMap &settings = {})
    {
        for (auto it = settings.begin(); it != settings.end(); ++it)
            EXPECT_TRUE(pool->myFunction(number)->setProperty(it.key().toLatin1().constData(), it.value()))
                << it.key().toStdString();
        states.clear();
        player->resetWriteCounts();
        runFunction(number);
        return states;
    }

    QString path(const QString &relative) const { return music.path() + QLatin1Char('/') + relative; }

    QTemporaryDir music;
    QList<MemoryObjectPtr> selected;
    QList<qint64> states;
};

// Readable texts in failure messages.
inline void PrintTo(const QString &text, std::ostream *out)
{
    *out << '"' << text.toStdString() << '"';
}

// orvane-cli run with this test process's private home; answers its output.
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

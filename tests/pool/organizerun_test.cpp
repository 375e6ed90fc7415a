#include "pooltestsupport.h"

#include "additions/ovexception.h"

#include "pool/organizerun.h"
#include "pool/poolfunctionregistry.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QProcessEnvironment>
#include <QTemporaryDir>

TEST_F(PoolTest, PathsSelectTheirTracksInGivenOrderAndFoldersByPath)
{
    QTemporaryDir root;
    const QString a = root.path() + "/a";
    QDir().mkpath(a);
    QList<ITunesTrack> library;
    for (const QString &path : {a + "/2.mp3", root.path() + "/b.mp3", a + "/1.mp3", root.path() + "/ab.mp3"}) {
        QFile(path).open(QIODevice::WriteOnly);
        library.append(player->handle<ITunesTrack>(player->addFileTrack(QFileInfo(path).fileName(), path)));
    }
    auto names = [](const QList<ITunesTrack> &tracks) {
        QStringList list;
        for (const ITunesTrack &track : tracks)
            list.append(track.name());
        return list;
    };
    EXPECT_EQ(names(OrganizeRun::tracksForPaths(library, {root.path() + "/b.mp3", a})),
              (QStringList{"b.mp3", "1.mp3", "2.mp3"}));
    EXPECT_EQ(names(OrganizeRun::tracksForPaths(library, {a + "/2.mp3", a + "/"})), (QStringList{"2.mp3", "1.mp3"}));
    EXPECT_TRUE(OrganizeRun::tracksForPaths(library, {root.path() + "/missing"}).isEmpty());
}

TEST(OrganizeRun, SettingsAreSetByNameFromText)
{
    TestFunction function(nullptr);
    struct Case
    {
        const char *name;
        const char *value;
        bool ok;
        QVariant result;
    };
    const QList<Case> cases{
        {"yourFlag", "0", true, false}, {"yourFlag", "true", true, true}, {"yourFlag", "yes", false, true},
        {"yourCount", "12", true, 12},  {"yourCount", "x", false, 12},    {"yourText", "a=b", true, "a=b"},
        {"objectName", "n", false, {}}, {"yourNothing", "1", false, {}},
    };
    for (const Case &c : cases) {
        QString problem;
        EXPECT_EQ(OrganizeRun::applySetting(&function, c.name, c.value, problem), c.ok) << c.name << c.value;
        EXPECT_EQ(problem.isEmpty(), c.ok);
        if (c.result.isValid()) {
            EXPECT_EQ(function.property(c.name).toString(), c.result.toString()) << c.name << c.value;
        }
    }
}

TEST_F(PoolTest, ARunPrintsTheLogsAsJsonLinesAndAlertsOnStandardError)
{
    const QList<MemoryObjectPtr> tracks = addSelectedTracks(3);
    functions.registerFunction(3, "Test", [](FunctionPoolController *p) {
        auto *function = new TestFunction(p);
        function->onTrack = [function](const ITunesTrack &track) {
            if (track.name() == "Track 1" && function->yourFlag)
                function->myFunctionPool()->setYourLogNo(TrackLogState::Changed);
            if (track.name() == "Track 3")
                throw OVException("Broken", function->yourText);
        };
        return function;
    });
    QString out, err;
    QTextStream outStream(&out), errStream(&err);
    QList<ITunesTrack> selected;
    OrganizeRun run(functions, outStream, errStream, [&](const QList<ITunesTrack> &t) {
        selected = t;
        QList<MemoryObjectPtr> objects;
        for (const ITunesTrack &track : t)
            objects.append(std::dynamic_pointer_cast<MemoryObject>(track.remoteObject()));
        player->setSelection(objects);
    });
    OrganizeRequest request;
    request.number = 3;
    request.all = true;
    request.settings = {{"yourText", "bad \"tag\""}};
    EXPECT_EQ(run.run(request), 1); // a track failed

    EXPECT_EQ(out, "{\"state\": 1, \"info\": \"Artist - Track 1\\n/music/1.mp3\"}\n"
                   "{\"state\": 0, \"info\": \"Artist - Track 2\\n/music/2.mp3\"}\n"
                   "{\"error\": \"Broken | bad \\\"tag\\\"\"}\n"
                   "{\"state\": -1, \"info\": \"Artist - Track 3\\n/music/3.mp3\"}\n");
    EXPECT_EQ(err, "orvane-cli: 1 track failed; the \"error\" lines on standard output say why\n");

    out.clear();
    err.clear();
    request.all = false;
    request.paths = {"/music/1.mp3", "/music/2.mp3"};
    EXPECT_EQ(run.run(request), 0);
    EXPECT_TRUE(err.isEmpty()) << err.toStdString();

    out.clear();
    request.number = 27;
    EXPECT_EQ(run.run(request), 2);
    EXPECT_TRUE(out.isEmpty());
    EXPECT_TRUE(err.startsWith("0003.0013: ")) << err.toStdString();

    err.clear();
    request.number = 3;
    request.settings = {{"yourFlag", "maybe"}};
    EXPECT_EQ(run.run(request), 2);
    EXPECT_TRUE(err.contains("yourFlag")) << err.toStdString();

    QString help;
    QTextStream helpStream(&help);
    EXPECT_EQ(OrganizeRun::describeFunction(functions, 3, helpStream, errStream), 0);
    EXPECT_EQ(help, "yourText\ttext\t\"feat.\"\nyourFlag\tboolean\ttrue\nyourCount\tinteger\t3\n");
}

TEST(OrganizeCommand, ListHelpAndTheEnginesOwnAlertFromTheCommandLine)
{
    // Which numbers this build has decides which cases can be asked.
    QProcess list;
    list.start(ORVANE_CLI_PATH, {"organize", "--list"});
    ASSERT_TRUE(list.waitForFinished(30000));
    EXPECT_EQ(list.exitCode(), 0);
    QList<int> built;
    for (const QByteArray &line : list.readAllStandardOutput().split('\n'))
        if (!line.isEmpty())
            built.append(line.split('\t').first().toInt());
    ASSERT_FALSE(built.isEmpty());
    int missing = 0;
    for (int number = 1; number <= 26 && !missing; ++number)
        if (!built.contains(number))
            missing = number;

    struct Case
    {
        QStringList arguments;
        int status;
        QString errStart;
    };
    QList<Case> cases{
        {{"27", "--all"}, 2, "0003.0013: "},
        {{"0", "/nowhere"}, 2, "0003.0013: "},
        {{QString::number(built.first())}, 2, "orvane-cli: give either"},
        {{"five"}, 2, "orvane-cli: organize needs"},
    };
    if (missing) {
        cases.append({{QString::number(missing), "--all"}, 2, "0003.0026: "});
        cases.append({{QString::number(missing), "--help"}, 2, "0003.0026: "});
    }
    for (const Case &c : cases) {
        QProcess cli;
        cli.start(ORVANE_CLI_PATH, QStringList{"organize"} + c.arguments);
        ASSERT_TRUE(cli.waitForFinished(30000));
        EXPECT_EQ(cli.exitCode(), c.status) << c.arguments.join(' ').toStdString();
        const QString err = QString::fromUtf8(cli.readAllStandardError());
        EXPECT_TRUE(c.errStart.isEmpty() ? err.isEmpty() : err.startsWith(c.errStart))
            << c.arguments.join(' ').toStdString() << ": " << err.toStdString();
        EXPECT_TRUE(cli.readAllStandardOutput().isEmpty());
    }

    // A library that cannot be opened (its folder is a file) stops the run before it starts.
    QTemporaryDir data;
    QFile blocker(data.path() + "/Orvane Library");
    ASSERT_TRUE(blocker.open(QIODevice::WriteOnly));
    blocker.close();
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("XDG_DATA_HOME", data.path());
    QProcess cli;
    cli.setProcessEnvironment(environment);
    cli.start(ORVANE_CLI_PATH, {"organize", QString::number(built.first()), "--all"});
    ASSERT_TRUE(cli.waitForFinished(30000));
    EXPECT_EQ(cli.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(cli.exitCode(), 1);
    const QString err = QString::fromUtf8(cli.readAllStandardError());
    EXPECT_TRUE(err.startsWith("orvane-cli: ") && err.contains(data.path() + "/Orvane Library")) << err.toStdString();
}

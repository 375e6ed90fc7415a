#include "function0011fixture.h"

#include "audiofixtures.h"
#include "testenvironment.h"

#include <QFile>

using Function0011Test = TagToolTest;

namespace {

struct LayoutCase
{
    const char *what;
    QStringList files;   // made below the test's folder
    QString track;       // one of the files
    qint64 countOption;
    qint64 trackCount, discNumber, discCount;
};

} // namespace

TEST_F(Function0011Test, DiscAndTrackCountsFollowTheFolderLayout)
{
    const QList<LayoutCase> cases{
        {"album folder only", {"A/1.mp3", "A/2.m4a", "A/cover.jpg"}, "A/1.mp3", 1, 2, 1, 1},
        {"CD1 and CD3, all discs", {"B/CD1/1.mp3", "B/CD1/2.mp3", "B/CD3/1.mp3"}, "B/CD3/1.mp3", 1, 3, 3, 3},
        {"CD1 and CD3, this disc", {"B/CD1/1.mp3", "B/CD1/2.mp3", "B/CD3/1.mp3"}, "B/CD3/1.mp3", 2, 1, 3, 3},
        {"disc folder without a number", {"C/CD/1.mp3", "C/CD/2.mp3"}, "C/CD/1.mp3", 1, 2, 1, 1},
        {"disc folder name respects case", {"D/cd2/1.mp3", "D/cd2/2.mp3"}, "D/cd2/1.mp3", 1, 2, 1, 1},
        {"no audio suffix known", {"E/1.ogg"}, "E/1.ogg", 1, 0, 1, 1},
        {"files beside the disc folders", {"F/CD2/1.mp3", "F/bonus.mp3"}, "F/CD2/1.mp3", 1, 1, 2, 2},
    };
    TestEnvironment environment;
    for (const LayoutCase &c : cases) {
        SCOPED_TRACE(c.what);
        for (const QString &file : c.files) {
            const QString path = environment.root() + "/" + file;
            QDir().mkpath(QFileInfo(path).path());
            QFile(path).open(QIODevice::WriteOnly);
        }
        const MemoryObjectPtr track = player->addFileTrack(
            "Song", environment.root() + "/" + c.track,
            {{Prop::trackCount, 99}, {Prop::discNumber, 99}, {Prop::discCount, 99}});
        player->setSelection({track});
        set(11, "yourCountTracksOption", c.countOption);
        EXPECT_TRUE(run(11).isEmpty());
        EXPECT_EQ(states, QList<qint64>{1});
        EXPECT_EQ(track->stored(Prop::trackCount).toLongLong(), c.trackCount);
        EXPECT_EQ(track->stored(Prop::discNumber).toLongLong(), c.discNumber);
        EXPECT_EQ(track->stored(Prop::discCount).toLongLong(), c.discCount);
    }
}

TEST_F(Function0011Test, EachHalfCanBeLeftOutButNotBoth)
{
    TestEnvironment environment;
    const QString folder = environment.makeFolder("Album/CD2");
    QFile(folder + "/1.mp3").open(QIODevice::WriteOnly);
    const MemoryProperties untouched{{Prop::trackCount, 99}, {Prop::discNumber, 99}, {Prop::discCount, 99}};
    const MemoryObjectPtr track = player->addFileTrack("Song", folder + "/1.mp3", untouched);
    player->setSelection({track});

    set(11, "yourCountDiscs", false);
    run(11);
    EXPECT_EQ(track->stored(Prop::trackCount).toLongLong(), 1);
    EXPECT_EQ(track->stored(Prop::discNumber).toLongLong(), 99);

    track->setStored(untouched);
    set(11, "yourCountDiscs", true);
    set(11, "yourCountTracks", false);
    EXPECT_FALSE(pool->myFunction(11)->property("enableCountTracksOption").toBool());
    run(11);
    EXPECT_EQ(track->stored(Prop::trackCount).toLongLong(), 99);
    EXPECT_EQ(track->stored(Prop::discNumber).toLongLong(), 2);

    set(11, "yourCountDiscs", false);
    EXPECT_EQ(run(11), QList<qint64>{-1});
    EXPECT_TRUE(states.isEmpty());
}

TEST_F(Function0011Test, NumbersAndCountsReachTheFilesThroughOrvaneCli)
{
    TestEnvironment environment;
    const QString album = environment.makeFolder("Music/Album");
    const QStringList files{makeAudio(album + "/CD1", "a.mp3"), makeAudio(album + "/CD1", "b.mp3"),
                            makeAudio(album + "/CD2", "c.mp3")};
    orvaneCli({"library", "add", album});
    orvaneCli({"organize", "17", album, "--set", "yourOptionChoosen=2", "--set", "yourNumberTracksStartValue=5"});
    orvaneCli({"organize", "11", album});

    const QStringList tracks{"5/3", "6/3", "7/3"};
    const QStringList discs{"1/2", "1/2", "2/2"};
    for (int i = 0; i < files.size(); ++i) {
        EXPECT_EQ(mutagenTag(files.at(i), "tracknumber"), tracks.at(i)) << files.at(i).toStdString();
        EXPECT_EQ(mutagenTag(files.at(i), "discnumber"), discs.at(i)) << files.at(i).toStdString();
    }
}

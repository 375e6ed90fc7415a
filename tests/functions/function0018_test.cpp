#include "function0011fixture.h"

#include "audiofixtures.h"
#include "functions/function0018.h"
#include "functions/likepattern.h"
#include "testenvironment.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>

namespace {

class Function0018Test : public TagToolTest
{
protected:
    Function0018 *function() const { return static_cast<Function0018 *>(pool->myFunction(18)); }

    MemoryObjectPtr addTrack(const QString &albumArtist, const QString &album)
    {
        return player->addFileTrack("Song", QStringLiteral("/music/%1.mp3").arg(player->tracks().size()),
                                    {{Prop::albumArtist, albumArtist}, {Prop::album, album}});
    }

    // Playlist name and track count per playlist of the folder, newest first.
    QList<QPair<QString, qsizetype>> playlistsIn(const QString &folderName) const
    {
        QList<QPair<QString, qsizetype>> found;
        for (const ITunesUserPlaylist &playlist : source().userPlaylists())
            if (playlist.parent().get().name() == folderName)
                found.append({playlist.name(), playlist.tracks().size()});
        return found;
    }

    QStringList folderNames() const
    {
        QStringList names;
        for (const ITunesUserPlaylist &playlist : source().userPlaylists())
            if (playlist.get().isKindOf<ITunesFolderPlaylist>())
                names.append(playlist.name());
        return names;
    }

    ITunesSource source() const { return player->handle<ITunesSource>(player->librarySource()); }
};

const QRegularExpression runFolderName(R"(^\d{4}-\d\d-\d\d \d\d:\d\d:\d\d$)");

} // namespace

TEST(LikePatternTest, WildcardsAndEscapes)
{
    const QList<std::tuple<QString, QString, bool>> cases{
        {"AA - Album", "AA - Album", true},   {"AA - Album", "aa - album", false},
        {"AA - Album", "AA - *", true},       {"AA - ", "AA - *", true},
        {"AA - Album", "AA - ?lbum", true},   {"AA - lbum", "AA - ?lbum", false},
        {"AA - Album", "*Al*m", true},        {"AA - Album", "*Al*x", false},
        {"AA - Album", "AA", false},          {"AA", "AA - Album", false},
        {"a*b", R"(a\*b)", true},             {"axb", R"(a\*b)", false},
        {"", "*", true},                      {"", "", true},
        {"x", "", false},                     {"aaab", "*a*ab", true},
    };
    for (const auto &[text, pattern, matches] : cases)
        EXPECT_EQ(matchesLikePattern(text, pattern), matches) << text.toStdString() << " LIKE " << pattern.toStdString();
}

TEST_F(Function0018Test, TracksGoIntoPlaylistsOfANewFolderOnly)
{
    const MemoryObjectPtr old = player->addFolderPlaylist("Old");
    player->addUserPlaylist("AA - Album", old);
    player->setSelection({addTrack("AA", "Album"), addTrack("AA", "Other"), addTrack("AA", "Album")});
    EXPECT_TRUE(run(18).isEmpty());
    EXPECT_EQ(states, (QList<qint64>{1, 1, 1}));

    const QStringList folders = folderNames();
    ASSERT_EQ(folders.size(), 2);
    EXPECT_TRUE(runFolderName.match(folders.first()).hasMatch()) << folders.first().toStdString();
    EXPECT_EQ(playlistsIn(folders.first()),
              (QList<QPair<QString, qsizetype>>{{"AA - Other", 1}, {"AA - Album", 2}}));
    EXPECT_EQ(playlistsIn("Old"), (QList<QPair<QString, qsizetype>>{{"AA - Album", 0}}));
    EXPECT_TRUE(function()->yourFolderPlaylist().isNull());
}

TEST_F(Function0018Test, AStarInAComposedNameMatchesAnotherPlaylistOfTheFolder)
{
    player->setSelection({addTrack("AA", "Album"), addTrack("AA", "*"), addTrack("AA", "Alb?m")});
    set(18, "yourTag3", 2);
    set(18, "yourDel2", "|");
    run(18);
    EXPECT_EQ(playlistsIn(folderNames().first()), (QList<QPair<QString, qsizetype>>{{"AA - Album|", 3}}));
}

TEST_F(Function0018Test, ASmartPlaylistIsNeverMatched)
{
    const ITunesTrack track = player->handle<ITunesTrack>(addTrack("AA", "Album"));
    ASSERT_EQ(function()->doMyFunctionPre(), PoolStep::GoOn);
    const auto folder = std::dynamic_pointer_cast<MemoryObject>(function()->yourFolderPlaylist().remoteObject());
    player->addUserPlaylist("AA - Album", folder, {{Prop::smart, true}});
    function()->doMyFunctionMain(track);
    EXPECT_EQ(playlistsIn(folder->stored(Prop::name).toString()),
              (QList<QPair<QString, qsizetype>>{{"AA - Album", 1}, {"AA - Album", 0}}));
}

TEST_F(Function0018Test, NoDuplicateTickedAddsATrackAgainWithoutLooking)
{
    for (const bool noDuplicate : {false, true}) {
        const MemoryObjectPtr track = addTrack("AA", QStringLiteral("Album %1").arg(noDuplicate));
        player->setSelection({track, track});
        set(18, "yourNoDuplicate", noDuplicate);
        run(18);
        EXPECT_EQ(states, (QList<qint64>{1, noDuplicate ? 1 : 0}));
        EXPECT_EQ(playlistsIn(folderNames().first()).value(0).second, noDuplicate ? 2 : 1);
    }
}

TEST_F(Function0018Test, UnsetTagsTakeTheirDelimitersAndAnEmptyNameMakesNoPlaylist)
{
    player->setSelection({addTrack("AA", "Album")});
    set(18, "yourTag2", 0);
    set(18, "yourTag3", 3);
    set(18, "yourPrefix", "<");
    set(18, "yourSuffix", ">");
    run(18);
    EXPECT_EQ(playlistsIn(folderNames().first()), (QList<QPair<QString, qsizetype>>{{"<AA - Album>", 1}}));

    for (const char *name : {"yourTag1", "yourTag3"})
        set(18, name, 0);
    set(18, "yourPrefix", "");
    set(18, "yourSuffix", "");
    run(18);
    EXPECT_EQ(states, QList<qint64>{0});
    EXPECT_EQ(folderNames().size(), 2) << "the empty folder stays";
}

TEST_F(Function0018Test, WithoutALibrarySourceTheRunStopsBeforeAnyTrack)
{
    player->setSelection({addTrack("AA", "Album")});
    player->injectFailure(Prop::sources, MemoryPlayer::Access::Read, MemoryPlayer::kAlways);
    EXPECT_EQ(run(18), QList<qint64>{-4});
    EXPECT_TRUE(states.isEmpty());
}

TEST_F(Function0018Test, PlaylistsMadeThroughOrvaneCliAreInTheLibrary)
{
    TestEnvironment environment;
    const QString folder = environment.makeFolder("Music");
    const QStringList files{makeAudio(folder, "A.mp3"), makeAudio(folder, "A.m4a"), makeAudio(folder, "B.mp3")};
    orvaneCli({"library", "add", folder});
    // The file names become the albums, and the albums the playlists.
    orvaneCli({"organize", "17", folder, "--set", "yourOptionChoosen=1", "--set", "yourPerformOnTrackInfo=3"});
    orvaneCli({"organize", "18", folder, "--set", "yourTag1=3", "--set", "yourTag2=0"});
    EXPECT_EQ(mutagenTag(files.at(1), "album"), "A");

    QMap<QString, QJsonObject> playlists; // by persistentID
    for (const QString &line : orvaneCli({"library", "playlists", "--json"}).split('\n', Qt::SkipEmptyParts)) {
        const QJsonObject playlist = QJsonDocument::fromJson(line.toUtf8()).object();
        playlists.insert(playlist.value("persistentID").toString(), playlist);
    }
    QMap<QString, qsizetype> made; // name and track count of the playlists inside the run's folder
    for (const QJsonObject &playlist : std::as_const(playlists)) {
        const QJsonObject parent = playlists.value(playlist.value("parent").toString());
        if (runFolderName.match(parent.value("name").toString()).hasMatch())
            made.insert(playlist.value("name").toString(), playlist.value("tracks").toArray().size());
    }
    EXPECT_EQ(made, (QMap<QString, qsizetype>{{"A", 2}, {"B", 1}}));
}

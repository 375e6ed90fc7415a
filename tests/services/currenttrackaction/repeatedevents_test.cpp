// Events one after another: the playlists file over the real library has its bytes pinned for
// a small library, and a library kept open through playlist changes writes what a freshly
// opened one writes; the artwork follows the playing track.
#include "services/currenttrackaction/currenttrackaction.h"

#include "additions/propertylist.h"
#include "player/compositeplayer.h"
#include "player/library/librarybackend.h"
#include "player/memoryplayer.h"

#include <QDir>
#include <QFile>
#include <QImage>
#include <QRegularExpression>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

class PlaylistsFileTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(dir.isValid());
        ASSERT_TRUE(QDir().mkpath(workspace()));
        ASSERT_TRUE(PropertyList::write(configuration(), QVariantMap{{"workspace directory path", workspace()},
                                                                     {"write info to json file",
                                                                      QVariantMap{{"playlists", "playlists"}}}}));
        // Tracks with known durations and sizes, written before the library opens (it reads
        // its tracks whole on open): no audio files needed for the playlists file.
        LibraryBackend{databasePath()};
        {
            QSqlDatabase db = QSqlDatabase::addDatabase("QSQLITE", "playlistsfile-setup");
            db.setDatabaseName(databasePath());
            ASSERT_TRUE(db.open());
            QSqlQuery insert(db);
            ASSERT_TRUE(insert.prepare("INSERT INTO tracks (persistentID, path, name, duration, size) VALUES (?, ?, ?, ?, ?)"));
            const QList<QVariantList> tracks = {{"A1", "/music/a.mp3", "A", 61.5, 1000},
                                                {"B2", "/music/b.mp3", "B", 125.25, 2000000},
                                                {"C3", "/music/c.mp3", "C", 3600.0, 30000000}};
            for (const QVariantList &track : tracks) {
                for (int i = 0; i < track.size(); ++i)
                    insert.bindValue(i, track.at(i));
                ASSERT_TRUE(insert.exec());
            }
        }
        QSqlDatabase::removeDatabase("playlistsfile-setup");
        open();
    }

    void open()
    {
        library = std::make_shared<LibraryBackend>(databasePath());
        ASSERT_TRUE(library->isRunning()) << qPrintable(library->openError());
        app = ITunesApplication::withBackend(std::make_shared<CompositePlayer>(library, player));
    }

    // The playlists file of one event, with the disk's capacity and free space masked.
    QString playlistsFile()
    {
        CurrentTrackAction action(app, configuration(), [](const QString &) { return true; });
        EXPECT_TRUE(action.runInWorkspace());
        QFile file(workspace() + "/playlists.json");
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        QString text = QString::fromUtf8(file.readAll());
        text.replace(QRegularExpression(R"re("(capacity|free space)": \d+)re"), R"re("\1": N)re");
        return text;
    }

    ITunesPlaylist playlist(const QString &name) const
    {
        for (const ITunesPlaylist &playlist : app.sources().value(0).playlists())
            if (playlist.name() == name)
                return playlist;
        ADD_FAILURE() << "no playlist " << qPrintable(name);
        return {};
    }
    ITunesTrack track(const QString &name) const
    {
        for (const ITunesTrack &track : playlist("Library").tracks())
            if (track.name() == name)
                return track;
        ADD_FAILURE() << "no track " << qPrintable(name);
        return {};
    }
    ITunesUserPlaylist make(const QString &name, ObjectClass objectClass, qsizetype index)
    {
        return app.sources().value(0).makeUserPlaylist({{"name", name}}, objectClass, index);
    }

    QString workspace() const { return dir.filePath("workspace"); }
    QString configuration() const { return dir.filePath("Current Track Action.plist"); }
    QString databasePath() const { return dir.filePath("Library.sqlite"); }

    QTemporaryDir dir;
    MemoryPlayerPtr player = MemoryPlayer::create();
    std::shared_ptr<LibraryBackend> library;
    ITunesApplication app;
};

TEST_F(PlaylistsFileTest, TheFileIsPinnedAndFollowsEveryPlaylistChange)
{
    // Folder > (Mix, Inner > Deep), Road with a track twice, an empty one, a name to escape.
    const ITunesUserPlaylist folder = make("Folder", ObjectClass::FolderPlaylist, 0);
    const ITunesUserPlaylist road = make("Road", ObjectClass::UserPlaylist, 1);
    make("Empty \"quoted\" Ü", ObjectClass::UserPlaylist, 2);
    const ITunesUserPlaylist mix = make("Mix", ObjectClass::UserPlaylist, 3);
    const ITunesUserPlaylist inner = make("Inner", ObjectClass::FolderPlaylist, 4);
    const ITunesUserPlaylist deep = make("Deep", ObjectClass::UserPlaylist, 5);
    mix.moveTo(folder);
    inner.moveTo(folder);
    deep.moveTo(inner);
    for (const auto &[name, into] : QList<QPair<QString, ITunesPlaylist>>{
             {"A", road}, {"C", road}, {"A", road}, {"A", mix}, {"B", mix}, {"B", deep}, {"C", deep}})
        ASSERT_FALSE(track(name).duplicateTo(into).isNull());

    const QString pinned = playlistsFile();
    EXPECT_EQ(pinned.toStdString(), R"json({
    "capacity": N,
    "free space": N,
    "kind": "library",
    "playlists": [
        {
            "duration": 3786,
            "kind": "library",
            "loved": false,
            "name": "Library",
            "path": "Library",
            "repeat": "off",
            "shuffle": false,
            "size": 32001000,
            "time": "1:03:07",
            "tracks count": 3
        },
        {
            "duration": 3786,
            "kind": "folder",
            "loved": false,
            "name": "Folder",
            "path": "Library/Folder",
            "repeat": "off",
            "shared": false,
            "shuffle": false,
            "size": 32001000,
            "smart": false,
            "time": "1:03:07",
            "tracks count": 3
        },
        {
            "duration": 3723,
            "kind": "none",
            "loved": false,
            "name": "Road",
            "path": "Library/Road",
            "repeat": "off",
            "shared": false,
            "shuffle": false,
            "size": 30002000,
            "smart": false,
            "time": "1:02:03",
            "tracks count": 3
        },
        {
            "duration": 0,
            "kind": "none",
            "loved": false,
            "name": "Empty \"quoted\" Ü",
            "path": "Library/Empty \"quoted\" Ü",
            "repeat": "off",
            "shared": false,
            "shuffle": false,
            "size": 0,
            "smart": false,
            "time": "0:00",
            "tracks count": 0
        },
        {
            "duration": 186,
            "kind": "none",
            "loved": false,
            "name": "Mix",
            "path": "Library/Folder/Mix",
            "repeat": "off",
            "shared": false,
            "shuffle": false,
            "size": 2001000,
            "smart": false,
            "time": "3:07",
            "tracks count": 2
        },
        {
            "duration": 3725,
            "kind": "folder",
            "loved": false,
            "name": "Inner",
            "path": "Library/Folder/Inner",
            "repeat": "off",
            "shared": false,
            "shuffle": false,
            "size": 32000000,
            "smart": false,
            "time": "1:02:05",
            "tracks count": 2
        },
        {
            "duration": 3725,
            "kind": "none",
            "loved": false,
            "name": "Deep",
            "path": "Library/Folder/Inner/Deep",
            "repeat": "off",
            "shared": false,
            "shuffle": false,
            "size": 32000000,
            "smart": false,
            "time": "1:02:05",
            "tracks count": 2
        }
    ]
}
)json");

    // Every kind of change shows at the next event, as a library opened afresh sees it.
    playlist("Mix").setName("Mix 2");
    playlist("Road").moveTo(playlist("Folder"));
    playlist("Inner").deleteItem();
    track("C").deleteItem();
    make("First", ObjectClass::UserPlaylist, 0);
    ASSERT_FALSE(track("B").duplicateTo(playlist("First")).isNull());
    const QString changed = playlistsFile();
    EXPECT_NE(changed, pinned);
    EXPECT_FALSE(changed.contains("Deep"));
    library.reset();
    open();
    EXPECT_EQ(playlistsFile().toStdString(), changed.toStdString());
}

TEST_F(PlaylistsFileTest, TheArtworkFollowsTheTrackFromEventToEvent)
{
    ASSERT_TRUE(PropertyList::write(configuration(), QVariantMap{{"workspace directory path", workspace()},
                                                                 {"write info to json file",
                                                                  QVariantMap{{"artwork", "artwork"}}}}));
    QList<MemoryObjectPtr> tracks;
    for (const QColor color : {Qt::red, Qt::blue}) {
        QImage cover(8, 8, QImage::Format_RGB32);
        cover.fill(color);
        tracks.append(player->addFileTrack(color.name(), "/music/" + color.name() + ".mp3"));
        player->addArtwork(tracks.last(), cover);
    }
    for (int track : {0, 0, 1, 0}) {
        player->setCurrentTrack(tracks.at(track));
        CurrentTrackAction action(app, configuration(), [](const QString &) { return true; });
        ASSERT_TRUE(action.runInWorkspace());
        const QImage written(workspace() + "/artwork.jpg");
        ASSERT_FALSE(written.isNull());
        const QColor pixel = written.pixelColor(4, 4);
        EXPECT_EQ(track ? pixel.blue() > 200 && pixel.red() < 50 : pixel.red() > 200 && pixel.blue() < 50, true)
            << "track " << track << " wrote " << qPrintable(pixel.name());
    }
}

} // namespace

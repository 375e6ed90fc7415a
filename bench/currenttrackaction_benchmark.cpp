// The current track action at one player event: the old files removed, the player, track,
// playlists, equaliser and AirPlay files and the artwork written, and the script started, with
// a library of 1,000 playlists (the playlists file walks them all); beside the floor of writing
// one small JSON file atomically.
#include "additions/filewriting.h"
#include "additions/propertylist.h"
#include "player/compositeplayer.h"
#include "player/library/librarybackend.h"
#include "player/memoryplayer.h"
#include "services/currenttrackaction/currenttrackaction.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QImage>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

namespace {

constexpr int kPlaylists = 1000;

struct Fixture
{
    Fixture()
    {
        workspace = dir.filePath("workspace");
        QDir().mkpath(workspace);
        QFile script(workspace + "/hook.sh");
        script.open(QIODevice::WriteOnly);
        script.write(": nothing to do\n");
        script.close();
        configuration = dir.filePath("Current Track Action.plist");
        PropertyList::write(configuration,
                            QVariantMap{{"workspace directory path", workspace},
                                        {"write info to json file",
                                         QVariantMap{{"track", "track"}, {"player", "player"}, {"playlists", "playlists"},
                                                     {"airplay", "airplay"}, {"eq", "eq"}, {"artwork", "artwork"}}},
                                        {"run sh script", "hook"}});

        library = std::make_shared<LibraryBackend>(dir.filePath("Library.sqlite"));
        player = MemoryPlayer::create();
        const ITunesApplication app = ITunesApplication::withBackend(std::make_shared<CompositePlayer>(library, player));
        const ITunesSource source = app.sources().value(0);
        for (int i = 0; i < kPlaylists; ++i)
            source.makeUserPlaylist({{"name", QStringLiteral("Playlist %1").arg(i)}}, ObjectClass::UserPlaylist, i);
        application = app;

        // Two tracks with covers of their own: repeated events of one track find its JPEG
        // already made, a change of track encodes the new cover.
        for (const QColor color : {QColor(Qt::darkCyan), QColor(Qt::darkMagenta)}) {
            tracks.append(player->addFileTrack("Song " + color.name(), "/music/song.mp3",
                                               {{Prop::artist, "Artist"}, {Prop::duration, 200.0}}));
            QImage cover(600, 600, QImage::Format_RGB32);
            cover.fill(color);
            player->addArtwork(tracks.last(), cover);
        }
        player->setCurrentTrack(tracks.first());
        player->setPlayerState(kPSP);
    }

    QTemporaryDir dir;
    QString workspace;
    QString configuration;
    std::shared_ptr<LibraryBackend> library;
    MemoryPlayerPtr player;
    QList<MemoryObjectPtr> tracks;
    ITunesApplication application;
};

Fixture &fixture()
{
    static Fixture instance;
    return instance;
}

void BM_CurrentTrackActionEvent(benchmark::State &state)
{
    Fixture &f = fixture();
    for (auto _ : state) {
        CurrentTrackAction action(f.application, f.configuration);
        benchmark::DoNotOptimize(action.runInWorkspace());
    }
    state.counters["playlists"] = kPlaylists;
}
BENCHMARK(BM_CurrentTrackActionEvent)->Unit(benchmark::kMillisecond)->UseRealTime();

// Every event a new track, so its cover is decoded and encoded afresh.
void BM_CurrentTrackActionEventNewTrack(benchmark::State &state)
{
    Fixture &f = fixture();
    qsizetype next = 0;
    for (auto _ : state) {
        f.player->setCurrentTrack(f.tracks.at(++next % f.tracks.size()));
        CurrentTrackAction action(f.application, f.configuration);
        benchmark::DoNotOptimize(action.runInWorkspace());
    }
    f.player->setCurrentTrack(f.tracks.first());
    state.counters["playlists"] = kPlaylists;
}
BENCHMARK(BM_CurrentTrackActionEventNewTrack)->Unit(benchmark::kMillisecond)->UseRealTime();

// Without the playlists file, which is the costly one and chosen by the user.
void BM_CurrentTrackActionEventWithoutPlaylists(benchmark::State &state)
{
    Fixture &f = fixture();
    const QString configuration = f.dir.filePath("Without playlists.plist");
    QVariantMap settings = PropertyList::readMap(f.configuration);
    QVariantMap files = settings.value("write info to json file").toMap();
    files.remove("playlists");
    settings.insert("write info to json file", files);
    PropertyList::write(configuration, settings);
    for (auto _ : state) {
        CurrentTrackAction action(f.application, configuration);
        benchmark::DoNotOptimize(action.runInWorkspace());
    }
}
BENCHMARK(BM_CurrentTrackActionEventWithoutPlaylists)->Unit(benchmark::kMillisecond)->UseRealTime();

void BM_WriteOneSmallJsonFile(benchmark::State &state)
{
    Fixture &f = fixture();
    const QByteArray json = QJsonDocument(QJsonObject{{"state", "playing"}, {"sound volume", 35}, {"mute", false}})
                                .toJson(QJsonDocument::Indented);
    const QString path = f.workspace + "/small.json";
    for (auto _ : state)
        benchmark::DoNotOptimize(writeFileAtomically(path, json));
}
BENCHMARK(BM_WriteOneSmallJsonFile)->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    // The program's folders in a temporary home, never the user's.
    QTemporaryDir home;
    qputenv("HOME", home.path().toUtf8());
    qputenv("XDG_CONFIG_HOME", (home.path() + "/config").toUtf8());
    qputenv("XDG_DATA_HOME", (home.path() + "/data").toUtf8());
    ::benchmark::Initialize(&argc, argv);
    ::benchmark::RunSpecifiedBenchmarks();
    ::benchmark::Shutdown();
    return 0;
}

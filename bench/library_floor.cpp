// Library throughput against its floor: importing N files and writing one text tag over N
// tracks through the bridge, beside a plain TagLib loop doing the same to the same files.
// Usage: bench_library FOLDER FLOOR_FOLDER DATABASE (two folders of the same files, so that
// both loops find them in the same state)
#include "player/itunes.h"
#include "player/library/librarybackend.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QTextStream>

#include <taglib/fileref.h>
#include <taglib/tpropertymap.h>

namespace {

void report(const char *what, qsizetype files, qint64 nanoseconds)
{
    QTextStream(stdout) << QString::asprintf("%-34s %6lld files %9.1f ms %10.0f files/s\n", what,
                                             qlonglong(files), nanoseconds / 1e6,
                                             files / (nanoseconds / 1e9));
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    if (argc != 4) {
        QTextStream(stderr) << "usage: bench_library FOLDER FLOOR_FOLDER DATABASE\n";
        return 2;
    }
    const QString folder = QString::fromLocal8Bit(argv[1]);
    const QDir floorFolder(QString::fromLocal8Bit(argv[2]));
    const QString database = QString::fromLocal8Bit(argv[3]);
    QStringList files;
    for (const QString &name : floorFolder.entryList(QDir::Files, QDir::Name))
        files.append(floorFolder.filePath(name));
    QFile::remove(database);
    QElapsedTimer timer;

    // Floor: what TagLib alone costs to read every file's tags and properties.
    timer.start();
    for (const QString &file : files) {
        TagLib::FileRef ref(QFile::encodeName(file).constData(), true);
        ref.file()->properties();
    }
    report("floor: TagLib read", files.size(), timer.nsecsElapsed());

    auto backend = std::make_shared<LibraryBackend>(database);
    const ITunesApplication app = ITunesApplication::withBackend(backend);
    timer.start();
    const QList<ITunesTrack> tracks = app.add({folder});
    report("library: import", tracks.size(), timer.nsecsElapsed());

    timer.start();
    for (const QString &file : files) {
        TagLib::FileRef ref(QFile::encodeName(file).constData(), false);
        TagLib::PropertyMap map = ref.file()->properties();
        map.replace("COMMENT", TagLib::String("floor"));
        ref.file()->setProperties(map);
        ref.save();
    }
    report("floor: TagLib write one tag", files.size(), timer.nsecsElapsed());

    timer.start();
    for (const ITunesTrack &track : tracks) {
        track.setComment(QStringLiteral("bridge"));
        backend->saveTrack(track.persistentID());
    }
    report("library: write one tag", tracks.size(), timer.nsecsElapsed());

    timer.start();
    qint64 characters = 0;
    const ITunesPlaylist library = app.sources().value(0).libraryPlaylists().value(0);
    for (const ITunesTrack &track : library.tracks())
        characters += track.name().size() + track.comment().size();
    report("library: list and read two tags", tracks.size(), timer.nsecsElapsed());
    return characters > 0 ? 0 : 1;
}

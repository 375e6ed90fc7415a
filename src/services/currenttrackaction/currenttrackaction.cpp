#include "services/currenttrackaction/currenttrackaction.h"

#include "additions/collectionadditions.h"
#include "additions/ovapplication.h"
#include "additions/propertylist.h"
#include "player/apptodo.h"
#include "services/currenttrackaction/currenttrackinfo.h"

#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QImageWriter>
#include <QJsonDocument>
#include <QMutex>
#include <QProcess>
#include <QTemporaryFile>

#include <cstdio>

namespace {

const QString kWorkspaceKey = QStringLiteral("workspace directory path");
const QString kFilesKey = QStringLiteral("write info to json file");
const QString kScriptKey = QStringLiteral("run sh script");

// The files in the order they are removed.
const QStringList kCleanupOrder = {QStringLiteral("artwork"), QStringLiteral("track"), QStringLiteral("player"),
                                   QStringLiteral("playlists"), QStringLiteral("airplay"), QStringLiteral("eq")};

// Whole or not at all, as writeFileAtomically, but without its sync to disk: the files are
// replaced at every player event and removed at quit, so a reader must never see half a file,
// while surviving a power cut matters not at all. Six syncs would cost most of an event.
bool replaceFile(const QString &path, const QByteArray &bytes)
{
    QTemporaryFile file(path + QStringLiteral(".XXXXXX"));
    if (!file.open() || file.write(bytes) != bytes.size() || !file.flush())
        return false;
    // Readable by others as any file the user writes, not private as a temporary one.
    file.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup | QFile::ReadOther);
    // rename() replaces the old file in one step; QFile::rename would refuse an existing one.
    if (std::rename(QFile::encodeName(file.fileName()).constData(), QFile::encodeName(path).constData()) != 0)
        return false;
    file.setAutoRemove(false);
    return true;
}

// The last artwork written, with the bytes it was encoded from: the events of one track (pause,
// play, a seek) write the same picture again, and decoding and encoding it is most of an event.
struct EncodedArtwork
{
    QMutex mutex;
    QByteArray source;
    QByteArray jpeg;
};

EncodedArtwork &lastArtwork()
{
    static EncodedArtwork last;
    return last;
}

QString standardizedPath(const QString &path)
{
    if (path.isEmpty())
        return {};
    QString expanded = path;
    if (expanded == QLatin1String("~") || expanded.startsWith(QLatin1String("~/")))
        expanded.replace(0, 1, QDir::homePath());
    return QDir::cleanPath(expanded);
}

} // namespace

CurrentTrackActionConfiguration CurrentTrackActionConfiguration::read(const QString &path)
{
    CurrentTrackActionConfiguration configuration;
    if (path.isEmpty())
        return configuration;
    const QVariantMap map = PropertyList::readMap(path);
    configuration.workspaceDirectoryPath =
        standardizedPath(ov_objectForKey(map, kWorkspaceKey, ValueClass::Text).toString());
    const QVariantMap files = ov_objectForKey(map, kFilesKey, ValueClass::Map).toMap();
    for (auto it = files.cbegin(); it != files.cend(); ++it) {
        const QString name = ov_objectForKey(files, it.key(), ValueClass::Text).toString();
        if (!name.isEmpty())
            configuration.fileNames.insert(it.key(), name);
    }
    configuration.scriptName = ov_objectForKey(map, kScriptKey, ValueClass::Text).toString();
    return configuration;
}

QString CurrentTrackActionConfiguration::pathForFile(const QString &file, const QString &extension) const
{
    const QString name = fileNames.value(file);
    if (workspaceDirectoryPath.isEmpty() || name.isEmpty())
        return {};
    return workspaceDirectoryPath + QLatin1Char('/') + name + QLatin1Char('.') + extension;
}

QString CurrentTrackActionConfiguration::scriptPath() const
{
    if (workspaceDirectoryPath.isEmpty() || scriptName.isEmpty())
        return {};
    return workspaceDirectoryPath + QLatin1Char('/') + scriptName + QStringLiteral(".sh");
}

CurrentTrackAction::CurrentTrackAction(ITunesApplication application, QString configurationPath,
                                       ScriptLauncher launcher)
    : configuration_(CurrentTrackActionConfiguration::read(
          configurationPath.isEmpty() ? OVApplication::ov_applicationPreferencesURLForPlistCurrentTrackAction()
                                      : configurationPath)),
      application_(application ? std::move(application)
                               : ITunesApplication::initWithBundleIdentifier(AppToDo::iTunesBundleIdentifier())),
      launcher_(launcher ? std::move(launcher) : ScriptLauncher(&CurrentTrackAction::launchDetached))
{
}

bool CurrentTrackAction::isWorkspaceDirectoryAvailable() const
{
    const QString &path = configuration_.workspaceDirectoryPath;
    return !path.isEmpty() && QFileInfo(path).isDir();
}

bool CurrentTrackAction::runInWorkspace()
{
    if (!isWorkspaceDirectoryAvailable())
        return false;
    cleanup();
    write();
    runScript();
    return true;
}

void CurrentTrackAction::cleanup()
{
    for (const QString &file : kCleanupOrder) {
        const QString path =
            configuration_.pathForFile(file, file == QLatin1String("artwork") ? QStringLiteral("jpg") : QStringLiteral("json"));
        if (!path.isEmpty())
            QFile::remove(path);
    }
}

void CurrentTrackAction::write() const
{
    // The player gone, there is nothing to describe; the script still runs.
    if (!application_.isRunning())
        return;
    // A connection of its own counts the failed reads, so that a failed description is left
    // out instead of reaching a file half read.
    CurrentTrackInfo::FailureCounter failures(application_.delegate());
    const ITunesApplication application(
        std::make_shared<ScriptingConnection>(ScriptingConnection{application_.connection()->backend, &failures}),
        application_.remoteObject());
    const auto wanted = [this](const char *file) {
        return !configuration_.pathForFile(QLatin1String(file), QStringLiteral("json")).isEmpty();
    };
    if (wanted("player"))
        writeJsonFile(QStringLiteral("player"), CurrentTrackInfo::infoForApplication(application));
    // The whole library is walked only when its file is asked for.
    if (wanted("playlists"))
        writeJsonFile(QStringLiteral("playlists"),
                      CurrentTrackInfo::infoForSource(CurrentTrackInfo::librarySource(application)));
    if (wanted("eq"))
        writeJsonFile(QStringLiteral("eq"), CurrentTrackInfo::infoForEq(application));
    if (wanted("airplay"))
        writeJsonFile(QStringLiteral("airplay"), CurrentTrackInfo::infoForAirPlay(application));
    if (wanted("track"))
        writeJsonFile(QStringLiteral("track"),
                      CurrentTrackInfo::infoForTrack(application.currentTrack(), application.currentPlaylist()));
    writeArtworkFile();
}

void CurrentTrackAction::writeJsonFile(const QString &file, const QJsonObject &info) const
{
    if (info.isEmpty())
        return;
    replaceFile(configuration_.pathForFile(file, QStringLiteral("json")),
                QJsonDocument(info).toJson(QJsonDocument::Indented));
}

// The first artwork, always re-encoded as a JPEG at full quality, whatever the player holds.
void CurrentTrackAction::writeArtworkFile() const
{
    const QString path = configuration_.pathForFile(QStringLiteral("artwork"), QStringLiteral("jpg"));
    if (path.isEmpty())
        return;
    const QList<ITunesArtwork> artworks = application_.currentTrack().get().artworks();
    if (artworks.isEmpty())
        return;
    const QByteArray data = artworks.first().rawData();
    if (data.isEmpty())
        return;
    EncodedArtwork &last = lastArtwork();
    QMutexLocker locker(&last.mutex);
    if (data != last.source) {
        const QImage image = QImage::fromData(data);
        if (image.isNull())
            return;
        QBuffer buffer;
        buffer.open(QIODevice::WriteOnly);
        QImageWriter writer(&buffer, "jpeg");
        writer.setQuality(100);
        if (!writer.write(image))
            return;
        last.source = data;
        last.jpeg = buffer.data();
    }
    replaceFile(path, last.jpeg);
}

bool CurrentTrackAction::runScript() const
{
    const QString path = configuration_.scriptPath();
    if (path.isEmpty() || !QFileInfo::exists(path))
        return false;
    return launcher_(path);
}

// Nothing is waited for: a slow or hanging script never holds up the program, and a new run
// may overlap the last one.
bool CurrentTrackAction::launchDetached(const QString &scriptPath)
{
    return QProcess::startDetached(QStringLiteral("/bin/sh"), {scriptPath});
}

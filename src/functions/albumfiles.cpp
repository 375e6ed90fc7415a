#include "functions/albumfiles.h"

#include "additions/fileadditions.h"
#include "additions/filewriting.h"
#include "additions/ovexception.h"
#include "functions/trackrelocation.h"
#include "pool/functionpoolcontroller.h"
#include "pool/functionpoolpreferences.h"

#include <QFile>

QString albumFolderOfTrack(const FunctionPoolController *pool, const ITunesTrack &track)
{
    return pool->subAlbumFolderPath(parentFolder(track.as<ITunesFileTrack>().location()));
}

QStringList imageFilesIn(const FunctionPoolController *pool, const QString &folder)
{
    QStringList names = filesWithSuffixs(pool->myPreferences()->prefFileImageSuffixList(), folder);
    names.removeDuplicates();
    return names;
}

void throwArtworkFailure(const QString &reason)
{
    throw OVException(QStringLiteral("OVArtworkException"), reason);
}

void throwFileFailure(const QString &reason)
{
    throw OVException(QStringLiteral("OVFileException"), reason);
}

QByteArray readWholeFile(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        throwFileFailure(QStringLiteral("cannot read %1: %2").arg(path, file.errorString()));
    return file.readAll();
}

void writeNewFile(const QString &path, const QByteArray &bytes)
{
    if (!writeFileAtomically(path, bytes))
        throwFileFailure(QStringLiteral("cannot write %1; check that its folder exists and may be "
                                        "written to, and that the disk has room")
                             .arg(path));
}

PoolFunctionAnswer askForTargetFolder(FunctionPoolController *pool, const QString &messageKey,
                                      std::function<void(const QString &path)> store)
{
    pool->askForFolder(messageKey, [pool, store = std::move(store)](const QString &path) {
        if (path.isEmpty())
            return;
        store(path);
        pool->poolFunctionPreAfterDelay();
    });
    return PoolStep::Stop;
}

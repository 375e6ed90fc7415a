#pragma once

#include "audiofixtures.h"
#include "pooltestsupport.h"

#include "additions/appcontext.h"
#include "functions/builtinfunctions.h"
#include "player/library/audiofile.h"
#include "player/library/librarybackend.h"
#include "pool/functionpoollog.h"

#include <QBuffer>
#include <QFile>
#include <QImage>
#include <QLinearGradient>
#include <QPainter>
#include <QTemporaryDir>

// The engine with the program's functions over a real library of generated audio files.
class ArtworkLibraryTest : public PoolTest
{
protected:
    void SetUp() override
    {
        PoolTest::SetUp();
        ASSERT_TRUE(dir.isValid());
        appContext()->setPlayerBackend(library);
        registerBuiltInFunctions(functions);
        makePool({});
        QObject::connect(pool->myFunctionPoolLog(), &FunctionPoolLog::logEntryAdded,
                         [this](TrackLogState state, const QString &) { states.append(qint64(state)); });
    }

    QString music(const QString &relative = {}) const
    {
        return dir.filePath(QStringLiteral("music/") + relative);
    }

    // A new track from a generated file "folder/name", selected with the others made so far.
    ITunesFileTrack addTrack(const QString &folder, const QString &name, const QString &album = "Album",
                             const QString &artist = "Artist")
    {
        const ITunesFileTrack track = app.add({makeAudio(music(folder), name)}).value(0).as<ITunesFileTrack>();
        EXPECT_FALSE(track.isNull());
        track.setAlbum(album);
        track.setArtist(artist);
        track.setName(name);
        track.saveTags();
        selected.append(track.persistentID());
        library->setSelection(selected);
        return track;
    }

    // Sets the settings by name, runs the function on the selection; the alert codes. The
    // tracks' change states land in `states`.
    QList<qint64> run(int number, const QVariantMap &settings = {})
    {
        for (auto it = settings.begin(); it != settings.end(); ++it)
            EXPECT_TRUE(pool->myFunction(number)->setProperty(it.key().toLatin1().constData(), it.value()))
                << it.key().toStdString();
        states.clear();
        frontEnd.alerts.clear();
        runFunction(number);
        QList<qint64> codes;
        for (const PoolAlert &alert : frontEnd.alerts)
            codes.append(qint64(alert.code));
        return codes;
    }

    qint64 check(int number, const QVariantMap &settings)
    {
        for (auto it = settings.begin(); it != settings.end(); ++it)
            pool->myFunction(number)->setProperty(it.key().toLatin1().constData(), it.value());
        return pool->myFunction(number)->doMyFunctionCheck().number();
    }

    // What the file itself holds, read afresh, beside what the library says.
    static QList<QSize> fileSizes(const ITunesFileTrack &track)
    {
        QList<QSize> sizes;
        for (const EmbeddedPicture &picture : AudioFile(track.location()).pictures())
            sizes.append(QImage::fromData(picture.data).size());
        return sizes;
    }
    static QList<QSize> librarySizes(const ITunesFileTrack &track)
    {
        QList<QSize> sizes;
        for (const ITunesArtwork &artwork : track.artworks())
            sizes.append(QImage::fromData(artwork.rawData()).size());
        return sizes;
    }

    QTemporaryDir dir;
    std::shared_ptr<LibraryBackend> library = std::make_shared<LibraryBackend>(dir.filePath("db/Library.sqlite"));
    ITunesApplication app = ITunesApplication::withBackend(library);
    QStringList selected;
    QList<qint64> states;
};

// A picture with a gradient (so that scaling has something to smooth), encoded as the format.
inline QByteArray makePicture(QSize size, const char *format, QColor colour = Qt::red)
{
    QImage image(size, QImage::Format_RGB32);
    QPainter painter(&image);
    QLinearGradient gradient(0, 0, size.width(), size.height());
    gradient.setColorAt(0, colour);
    gradient.setColorAt(1, Qt::white);
    painter.fillRect(image.rect(), gradient);
    painter.end();
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    EXPECT_TRUE(image.save(&buffer, format));
    return bytes;
}

inline void writeFile(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly)) << path.toStdString();
    file.write(bytes);
}

inline QByteArray readFile(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

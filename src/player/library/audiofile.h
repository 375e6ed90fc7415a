#pragma once

#include "player/fourcharcode.h"
#include "player/remoteobject.h"

#include <QHash>

#include <memory>

namespace TagLib {
class ByteVectorStream;
class FileRef;
}

// What the library measures of an audio file: the track's kind, time, size and rates.
struct AudioFacts
{
    QString kind; // "MPEG audio file" ...
    double duration = 0; // seconds
    qint64 size = 0;     // bytes
    qint64 bitRate = 0;  // kbps
    qint64 sampleRate = 0;
};

// A picture held in the file's tags.
struct EmbeddedPicture
{
    QByteArray data;
    QString description;
};

// One audio file opened through TagLib: MP3 (ID3v2), MP4/M4A, FLAC, Ogg Vorbis and Opus.
// Reads and writes the track properties kept in tags, the pictures and the store values.
// Changes stay in memory until save(). Not shared between threads.
//
// Reading works on the file itself. The first change loads the whole file into memory, and
// TagLib rewrites that copy; save() then writes the copy beside the original under a hidden
// name and renames it over the original. TagLib on its own shifts the audio inside the file
// when a tag grows and ignores failed writes, so a kill or a full disk in the middle left the
// audio damaged; this way the original stays whole until the rename replaces it at once.
class AudioFile
{
public:
    explicit AudioFile(const QString &path);
    ~AudioFile();
    AudioFile(const AudioFile &) = delete;
    AudioFile &operator=(const AudioFile &) = delete;

    // False for a missing, unsupported, damaged or non-audio file; problem() says why.
    bool isAudio() const { return problem_.isEmpty(); }
    const QString &problem() const { return problem_; }

    AudioFacts facts() const;
    // Every property kept in files (the File columns of trackColumns()), absent tags empty.
    QHash<Prop, QVariant> tags() const;
    void setTags(const QHash<Prop, QVariant> &values);
    QList<EmbeddedPicture> pictures() const;
    void setPictures(const QList<EmbeddedPicture> &pictures);
    // "itsk/apID", "itsk/ownr", "itsk/purd" (text) and "itsk/rtng" (integer) of an MP4 file.
    QVariantMap storeMetadata() const;

    // Writes the changes; false with the reason in *error when the file could not be written,
    // in which case the original is left exactly as it was.
    bool save(QString *error = nullptr);

private:
    bool loadIntoMemory();

    QString path_;
    // The in-memory copy TagLib edits; declared before file_, which reads it, so it outlives it.
    std::unique_ptr<TagLib::ByteVectorStream> memory_;
    std::unique_ptr<TagLib::FileRef> file_;
    QString problem_;
    QString editProblem_;
};

// Replaces path with bytes: a hidden temporary file in the same folder gets every byte (each
// write checked, then the size), the original's permissions and, where allowed, its owner, and
// is renamed over path. A symbolic link is followed, so the link stays and its file changes.
// On failure the original is untouched, the temporary file is gone and *error says why.
bool replaceFileContents(const QString &path, QByteArrayView bytes, QString *error);

// "image/jpeg", "image/png" ... from the first bytes; empty when unknown.
QString pictureMimeType(const QByteArray &data);

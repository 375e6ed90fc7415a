#pragma once

#include "player/fourcharcode.h"
#include "player/remoteobject.h"

#include <QHash>

#include <memory>

namespace TagLib {
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

    bool save();

private:
    QString path_;
    std::unique_ptr<TagLib::FileRef> file_;
    QString problem_;
};

// "image/jpeg", "image/png" ... from the first bytes; empty when unknown.
QString pictureMimeType(const QByteArray &data);

#include "player/library/audiofile.h"

#include "player/library/trackcolumns.h"

#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <taglib/attachedpictureframe.h>
#include <taglib/tbytevectorstream.h>
#include <taglib/fileref.h>
#include <taglib/flacfile.h>
#include <taglib/flacpicture.h>
#include <taglib/id3v2tag.h>
#include <taglib/mp4file.h>
#include <taglib/mpegfile.h>
#include <taglib/opusfile.h>
#include <taglib/tpropertymap.h>
#include <taglib/vorbisfile.h>
#include <taglib/xiphcomment.h>

namespace {

TagLib::String toTagLib(const QString &text)
{
    return TagLib::String(text.toStdString(), TagLib::String::UTF8);
}

QString fromTagLib(const TagLib::String &text)
{
    return QString::fromStdString(text.to8Bit(true));
}

QByteArray fromBytes(const TagLib::ByteVector &bytes)
{
    return QByteArray(bytes.data(), int(bytes.size()));
}

TagLib::ByteVector toBytes(const QByteArray &bytes)
{
    return TagLib::ByteVector(bytes.constData(), unsigned(bytes.size()));
}

// The tag key of each simple property. Numbers in pairs ("3/12") are handled apart.
const QHash<Prop, const char *> &tagKeys()
{
    static const QHash<Prop, const char *> keys = {
        {Prop::name, "TITLE"}, {Prop::album, "ALBUM"}, {Prop::albumArtist, "ALBUMARTIST"},
        {Prop::artist, "ARTIST"}, {Prop::composer, "COMPOSER"}, {Prop::genre, "GENRE"},
        {Prop::grouping, "GROUPING"}, {Prop::comment, "COMMENT"}, {Prop::lyrics, "LYRICS"},
        {Prop::show, "TVSHOW"}, {Prop::episodeID, "TVEPISODEID"},
        {Prop::objectDescription, "DESCRIPTION"}, {Prop::sortName, "TITLESORT"},
        {Prop::sortAlbum, "ALBUMSORT"}, {Prop::sortAlbumArtist, "ALBUMARTISTSORT"},
        {Prop::sortArtist, "ARTISTSORT"}, {Prop::sortComposer, "COMPOSERSORT"},
        {Prop::sortShow, "SHOWSORT"}, {Prop::year, "DATE"}, {Prop::bpm, "BPM"},
        {Prop::episodeNumber, "TVEPISODE"}, {Prop::seasonNumber, "TVSEASON"},
        {Prop::compilation, "COMPILATION"},
    };
    return keys;
}

// MP4 keeps the short description in "desc", which TagLib names PODCASTDESC.
const char *tagKey(Prop property, TagLib::File *file)
{
    if (property == Prop::objectDescription && dynamic_cast<TagLib::MP4::File *>(file))
        return "PODCASTDESC";
    return tagKeys().value(property);
}

struct NumberPair
{
    Prop number;
    Prop count;
    const char *key;
    const char *totalKey; // the separate total of Xiph comments
};

const NumberPair kNumberPairs[] = {
    {Prop::trackNumber, Prop::trackCount, "TRACKNUMBER", "TRACKTOTAL"},
    {Prop::discNumber, Prop::discCount, "DISCNUMBER", "DISCTOTAL"},
};

QString firstValue(const TagLib::PropertyMap &map, const char *key)
{
    auto found = map.find(key);
    return found == map.end() || found->second.isEmpty() ? QString()
                                                         : fromTagLib(found->second.front());
}

// The library shows the first value of a tag; the others (a second artist, genre ...) are not
// its to drop, so a new value replaces the first and keeps the rest. An empty one clears the tag.
void setValue(TagLib::PropertyMap &map, const char *key, const QString &value)
{
    if (value.isEmpty()) {
        map.erase(key);
        return;
    }
    TagLib::StringList values(toTagLib(value));
    auto found = map.find(key);
    if (found != map.end())
        for (auto it = found->second.begin(); it != found->second.end(); ++it)
            if (it != found->second.begin())
                values.append(*it);
    map.replace(key, values);
}

qint64 leadingNumber(const QString &text)
{
    qsizetype end = 0;
    while (end < text.size() && text.at(end).isDigit())
        ++end;
    return text.left(end).toLongLong();
}

QString numberText(qint64 number)
{
    return number > 0 ? QString::number(number) : QString();
}

QString formatKind(TagLib::File *file)
{
    if (dynamic_cast<TagLib::MPEG::File *>(file))
        return QStringLiteral("MPEG audio file");
    if (dynamic_cast<TagLib::MP4::File *>(file))
        return QStringLiteral("AAC audio file");
    if (dynamic_cast<TagLib::FLAC::File *>(file))
        return QStringLiteral("FLAC audio file");
    if (dynamic_cast<TagLib::Ogg::Vorbis::File *>(file))
        return QStringLiteral("Ogg Vorbis audio file");
    if (dynamic_cast<TagLib::Ogg::Opus::File *>(file))
        return QStringLiteral("Opus audio file");
    return {};
}

TagLib::Ogg::XiphComment *xiphComment(TagLib::File *file)
{
    if (auto *vorbis = dynamic_cast<TagLib::Ogg::Vorbis::File *>(file))
        return vorbis->tag();
    if (auto *opus = dynamic_cast<TagLib::Ogg::Opus::File *>(file))
        return opus->tag();
    return nullptr;
}

TagLib::FLAC::Picture *flacPicture(const EmbeddedPicture &picture)
{
    auto *made = new TagLib::FLAC::Picture;
    made->setType(TagLib::FLAC::Picture::FrontCover);
    made->setMimeType(toTagLib(pictureMimeType(picture.data)));
    made->setDescription(toTagLib(picture.description));
    made->setData(toBytes(picture.data));
    return made;
}

QList<EmbeddedPicture> fromFlacPictures(const TagLib::List<TagLib::FLAC::Picture *> &list)
{
    QList<EmbeddedPicture> pictures;
    for (TagLib::FLAC::Picture *picture : list)
        pictures.append({fromBytes(picture->data()), fromTagLib(picture->description())});
    return pictures;
}

TagLib::MP4::CoverArt::Format coverArtFormat(const QByteArray &data)
{
    const QString mime = pictureMimeType(data);
    if (mime == QLatin1String("image/png"))
        return TagLib::MP4::CoverArt::PNG;
    if (mime == QLatin1String("image/gif"))
        return TagLib::MP4::CoverArt::GIF;
    if (mime == QLatin1String("image/bmp"))
        return TagLib::MP4::CoverArt::BMP;
    return TagLib::MP4::CoverArt::JPEG;
}

} // namespace

QString pictureMimeType(const QByteArray &data)
{
    if (data.startsWith("\xFF\xD8"))
        return QStringLiteral("image/jpeg");
    if (data.startsWith("\x89PNG"))
        return QStringLiteral("image/png");
    if (data.startsWith("GIF8"))
        return QStringLiteral("image/gif");
    if (data.startsWith("BM"))
        return QStringLiteral("image/bmp");
    return {};
}

AudioFile::AudioFile(const QString &path) : path_(path)
{
    if (!QFileInfo(path).isFile()) {
        problem_ = QStringLiteral("no such file");
        return;
    }
    file_ = std::make_unique<TagLib::FileRef>(QFile::encodeName(path).constData(), true,
                                              TagLib::AudioProperties::Average);
    TagLib::File *file = file_->file();
    if (!file || formatKind(file).isEmpty())
        problem_ = QStringLiteral("not a supported audio file");
    else if (!file->isValid())
        problem_ = QStringLiteral("damaged or not audio");
    // An MPEG file without a frame is not audio, however its name reads.
    else if (auto *mpeg = dynamic_cast<TagLib::MPEG::File *>(file);
             mpeg && mpeg->firstFrameOffset() < 0)
        problem_ = QStringLiteral("no audio found");
    else if (!file->audioProperties() || file->audioProperties()->sampleRate() <= 0)
        problem_ = QStringLiteral("no audio found");
}

AudioFile::~AudioFile() = default;

AudioFacts AudioFile::facts() const
{
    AudioFacts facts;
    if (!isAudio())
        return facts;
    TagLib::AudioProperties *properties = file_->audioProperties();
    facts.kind = formatKind(file_->file());
    facts.duration = properties->lengthInMilliseconds() / 1000.0;
    facts.bitRate = properties->bitrate();
    facts.sampleRate = properties->sampleRate();
    facts.size = QFileInfo(path_).size();
    return facts;
}

QHash<Prop, QVariant> AudioFile::tags() const
{
    QHash<Prop, QVariant> values;
    const TagLib::PropertyMap map = isAudio() ? file_->file()->properties() : TagLib::PropertyMap();
    for (const TrackColumn &column : trackColumns()) {
        if (column.storage != TrackStorage::File)
            continue;
        const char *key = tagKey(column.property, file_->file());
        const QString text = key ? firstValue(map, key) : QString();
        switch (column.type) {
        case ColumnType::Text: values.insert(column.property, text); break;
        case ColumnType::Boolean: values.insert(column.property, leadingNumber(text) != 0); break;
        default: values.insert(column.property, leadingNumber(text)); break;
        }
    }
    for (const NumberPair &pair : kNumberPairs) {
        const QString text = firstValue(map, pair.key);
        values.insert(pair.number, leadingNumber(text));
        const qsizetype slash = text.indexOf(QLatin1Char('/'));
        values.insert(pair.count, slash >= 0 ? leadingNumber(text.mid(slash + 1))
                                             : leadingNumber(firstValue(map, pair.totalKey)));
    }
    return values;
}

void AudioFile::setTags(const QHash<Prop, QVariant> &values)
{
    if (!isAudio() || values.isEmpty() || !loadIntoMemory())
        return;
    TagLib::File *file = file_->file();
    TagLib::PropertyMap map = file->properties();
    for (auto it = values.begin(); it != values.end(); ++it) {
        const char *key = tagKey(it.key(), file);
        if (!key)
            continue;
        const int index = trackColumnIndex(it.key());
        const ColumnType type = trackColumns().at(index).type;
        setValue(map, key, type == ColumnType::Text ? it.value().toString()
                           : type == ColumnType::Boolean ? (it.value().toBool() ? "1" : "")
                                                         : numberText(it.value().toLongLong()));
    }
    QHash<Prop, QVariant> current;
    for (const NumberPair &pair : kNumberPairs) {
        if (!values.contains(pair.number) && !values.contains(pair.count))
            continue;
        if (current.isEmpty())
            current = tags();
        const qint64 number = values.value(pair.number, current.value(pair.number)).toLongLong();
        const qint64 count = values.value(pair.count, current.value(pair.count)).toLongLong();
        setValue(map, pair.key,
                 count > 0 ? QStringLiteral("%1/%2").arg(number).arg(count) : numberText(number));
        map.erase(pair.totalKey);
    }
    if (auto *mpeg = dynamic_cast<TagLib::MPEG::File *>(file))
        mpeg->ID3v2Tag(true)->setProperties(map);
    else
        file->setProperties(map);
}

QList<EmbeddedPicture> AudioFile::pictures() const
{
    QList<EmbeddedPicture> pictures;
    if (!isAudio())
        return pictures;
    TagLib::File *file = file_->file();
    if (auto *mpeg = dynamic_cast<TagLib::MPEG::File *>(file)) {
        if (TagLib::ID3v2::Tag *tag = mpeg->ID3v2Tag()) {
            for (TagLib::ID3v2::Frame *frame : tag->frameList("APIC")) {
                auto *picture = static_cast<TagLib::ID3v2::AttachedPictureFrame *>(frame);
                pictures.append({fromBytes(picture->picture()), fromTagLib(picture->description())});
            }
        }
    } else if (auto *mp4 = dynamic_cast<TagLib::MP4::File *>(file)) {
        if (mp4->tag() && mp4->tag()->contains("covr"))
            for (const TagLib::MP4::CoverArt &art : mp4->tag()->item("covr").toCoverArtList())
                pictures.append({fromBytes(art.data()), {}});
    } else if (auto *flac = dynamic_cast<TagLib::FLAC::File *>(file)) {
        pictures = fromFlacPictures(flac->pictureList());
    } else if (TagLib::Ogg::XiphComment *comment = xiphComment(file)) {
        pictures = fromFlacPictures(comment->pictureList());
    }
    return pictures;
}

void AudioFile::setPictures(const QList<EmbeddedPicture> &pictures)
{
    if (!isAudio() || !loadIntoMemory())
        return;
    TagLib::File *file = file_->file();
    if (auto *mpeg = dynamic_cast<TagLib::MPEG::File *>(file)) {
        TagLib::ID3v2::Tag *tag = mpeg->ID3v2Tag(true);
        tag->removeFrames("APIC");
        for (const EmbeddedPicture &picture : pictures) {
            auto *frame = new TagLib::ID3v2::AttachedPictureFrame;
            frame->setType(TagLib::ID3v2::AttachedPictureFrame::FrontCover);
            frame->setMimeType(toTagLib(pictureMimeType(picture.data)));
            frame->setDescription(toTagLib(picture.description));
            frame->setPicture(toBytes(picture.data));
            tag->addFrame(frame);
        }
    } else if (auto *mp4 = dynamic_cast<TagLib::MP4::File *>(file)) {
        TagLib::MP4::CoverArtList list;
        for (const EmbeddedPicture &picture : pictures)
            list.append(TagLib::MP4::CoverArt(coverArtFormat(picture.data), toBytes(picture.data)));
        if (list.isEmpty())
            mp4->tag()->removeItem("covr");
        else
            mp4->tag()->setItem("covr", TagLib::MP4::Item(list));
    } else if (auto *flac = dynamic_cast<TagLib::FLAC::File *>(file)) {
        flac->removePictures();
        for (const EmbeddedPicture &picture : pictures)
            flac->addPicture(flacPicture(picture));
    } else if (TagLib::Ogg::XiphComment *comment = xiphComment(file)) {
        comment->removeAllPictures();
        for (const EmbeddedPicture &picture : pictures)
            comment->addPicture(flacPicture(picture));
    }
}

QVariantMap AudioFile::storeMetadata() const
{
    QVariantMap values;
    auto *mp4 = isAudio() ? dynamic_cast<TagLib::MP4::File *>(file_->file()) : nullptr;
    if (!mp4 || !mp4->tag())
        return values;
    const TagLib::MP4::Tag *tag = mp4->tag();
    for (const char *key : {"apID", "ownr", "purd"})
        if (tag->contains(key) && !tag->item(key).toStringList().isEmpty())
            values.insert(QStringLiteral("itsk/") + QLatin1String(key),
                          fromTagLib(tag->item(key).toStringList().front()));
    if (tag->contains("rtng"))
        values.insert(QStringLiteral("itsk/rtng"), qint64(tag->item("rtng").toByte()));
    return values;
}

bool AudioFile::loadIntoMemory()
{
    if (memory_)
        return true;
    if (!editProblem_.isEmpty())
        return false;
    QFile file(path_);
    if (!file.open(QIODevice::ReadOnly)) {
        editProblem_ = QStringLiteral("cannot read %1: %2").arg(path_, file.errorString());
        return false;
    }
    const QByteArray bytes = file.readAll();
    if (file.error() != QFileDevice::NoError || bytes.size() != file.size()) {
        editProblem_ = QStringLiteral("cannot read %1: %2").arg(path_, file.errorString());
        return false;
    }
    auto memory = std::make_unique<TagLib::ByteVectorStream>(toBytes(bytes));
    TagLib::File *current = file_->file();
    TagLib::File *copy = nullptr;
    constexpr auto style = TagLib::AudioProperties::Average;
    if (dynamic_cast<TagLib::MPEG::File *>(current))
        copy = new TagLib::MPEG::File(memory.get(), TagLib::ID3v2::FrameFactory::instance(), true,
                                      style);
    else if (dynamic_cast<TagLib::MP4::File *>(current))
        copy = new TagLib::MP4::File(memory.get(), true, style);
    else if (dynamic_cast<TagLib::FLAC::File *>(current))
        copy = new TagLib::FLAC::File(memory.get(), TagLib::ID3v2::FrameFactory::instance(), true,
                                      style);
    else if (dynamic_cast<TagLib::Ogg::Vorbis::File *>(current))
        copy = new TagLib::Ogg::Vorbis::File(memory.get(), true, style);
    else if (dynamic_cast<TagLib::Ogg::Opus::File *>(current))
        copy = new TagLib::Ogg::Opus::File(memory.get(), true, style);
    if (!copy || !copy->isValid()) {
        delete copy;
        editProblem_ = QStringLiteral("%1 changed while it was being read").arg(path_);
        return false;
    }
    file_ = std::make_unique<TagLib::FileRef>(copy);
    memory_ = std::move(memory);
    return true;
}

namespace {

QString systemError(int number)
{
    return QString::fromLocal8Bit(std::strerror(number));
}

bool writeAll(int fd, const char *data, qint64 size, int *failure)
{
    while (size > 0) {
        const ssize_t written = ::write(fd, data, size_t(std::min<qint64>(size, 1 << 20)));
        if (written < 0) {
            if (errno == EINTR)
                continue;
            *failure = errno;
            return false;
        }
        if (written == 0) {
            *failure = ENOSPC;
            return false;
        }
        data += written;
        size -= written;
    }
    return true;
}

} // namespace

bool replaceFileContents(const QString &path, QByteArrayView bytes, QString *error)
{
    const auto failed = [&](const QString &what) {
        if (error)
            *error = what;
        return false;
    };
    const QFileInfo info(path);
    const QString target = info.isSymLink() ? info.canonicalFilePath() : info.absoluteFilePath();
    if (target.isEmpty())
        return failed(QStringLiteral("%1 leads to no file").arg(path));
    const QByteArray targetName = QFile::encodeName(target);
    struct stat original {};
    if (::stat(targetName.constData(), &original) != 0)
        return failed(QStringLiteral("cannot read %1: %2").arg(target, systemError(errno)));

    // Hidden and in the same folder, so the rename stays on one file system.
    const QFileInfo targetInfo(target);
    QByteArray temporary =
        QFile::encodeName(targetInfo.absolutePath() + QStringLiteral("/.") + targetInfo.fileName()
                          + QStringLiteral(".orvane-XXXXXX"));
    const int fd = ::mkostemp(temporary.data(), O_CLOEXEC);
    if (fd < 0)
        return failed(QStringLiteral("%1 while writing %2; the file was left as it was")
                          .arg(systemError(errno), target));
    int failure = 0;
    if (!writeAll(fd, bytes.data(), bytes.size(), &failure)) {
        // fall through to the cleanup below
    } else {
        struct stat written {};
        if (::fstat(fd, &written) != 0)
            failure = errno;
        else if (written.st_size != bytes.size())
            failure = EIO;
    }
    if (!failure && ::fchmod(fd, original.st_mode & 07777) != 0)
        failure = errno;
    // Another owner can only be kept by a privileged process; an ordinary user owns the copy.
    if (!failure && (original.st_uid != ::geteuid() || original.st_gid != ::getegid()))
        if (::fchown(fd, original.st_uid, original.st_gid) != 0 && errno != EPERM)
            failure = errno;
    if (::close(fd) != 0 && !failure)
        failure = errno;
    if (!failure && ::rename(temporary.constData(), targetName.constData()) != 0)
        failure = errno;
    if (failure) {
        ::unlink(temporary.constData());
        return failed(QStringLiteral("%1 while writing %2; the file was left as it was")
                          .arg(systemError(failure), target));
    }
    return true;
}

bool AudioFile::save(QString *error)
{
    const auto failed = [&](const QString &what) {
        if (error)
            *error = what;
        return false;
    };
    if (!isAudio())
        return failed(problem_);
    if (!loadIntoMemory())
        return failed(editProblem_);
    TagLib::File *file = file_->file();
    const bool saved = [&] {
        if (auto *mpeg = dynamic_cast<TagLib::MPEG::File *>(file))
            return mpeg->save(TagLib::MPEG::File::ID3v2, TagLib::File::StripNone,
                              TagLib::ID3v2::v4, TagLib::File::DoNotDuplicate);
        return file->save();
    }();
    if (!saved)
        return failed(QStringLiteral("the tags of %1 cannot be written in its format").arg(path_));
    const TagLib::ByteVector &bytes = *memory_->data();
    return replaceFileContents(path_, QByteArrayView(bytes.data(), qsizetype(bytes.size())), error);
}

// The floor for the artwork functions: Qt's image classes and TagLib alone, over every MP3 below
// a folder.
//   artwork_floor embed SIZE ROOT  embeds each folder's "_Cover A.jpg" as the first picture,
//                                  scaled to SIZE pixels wide when it is wider (0 keeps it)
//   artwork_floor scale SIZE ROOT  scales the first picture to SIZE pixels wide
// Pictures are encoded as JPEG at quality 100, as the organizer does.
#include <QBuffer>
#include <QFile>
#include <QImage>
#include <QImageWriter>

#include <taglib/attachedpictureframe.h>
#include <taglib/id3v2tag.h>
#include <taglib/mpegfile.h>

#include <chrono>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <vector>

namespace {

QByteArray jpeg(const QImage &image, int width)
{
    const QImage scaled = width > 0 && image.width() > width
                              ? image.scaledToWidth(width, Qt::SmoothTransformation)
                              : image;
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    QImageWriter writer(&buffer, "jpeg");
    writer.setQuality(100);
    writer.write(scaled);
    return bytes;
}

void setFirstPicture(TagLib::ID3v2::Tag *tag, const QByteArray &bytes)
{
    const TagLib::ID3v2::FrameList frames = tag->frameList("APIC");
    if (!frames.isEmpty())
        tag->removeFrame(frames.front());
    auto *frame = new TagLib::ID3v2::AttachedPictureFrame;
    frame->setMimeType("image/jpeg");
    frame->setType(TagLib::ID3v2::AttachedPictureFrame::FrontCover);
    frame->setPicture(TagLib::ByteVector(bytes.constData(), unsigned(bytes.size())));
    tag->addFrame(frame);
}

} // namespace

int main(int argc, char *argv[])
{
    if (argc != 4 || (std::strcmp(argv[1], "embed") != 0 && std::strcmp(argv[1], "scale") != 0)) {
        std::fprintf(stderr, "usage: artwork_floor (embed | scale) SIZE ROOT\n");
        return 2;
    }
    const bool embed = std::strcmp(argv[1], "embed") == 0;
    const int size = std::atoi(argv[2]);
    std::vector<std::filesystem::path> files;
    for (const auto &entry : std::filesystem::recursive_directory_iterator(argv[3]))
        if (entry.path().extension() == ".mp3")
            files.push_back(entry.path());

    const auto start = std::chrono::steady_clock::now();
    for (const auto &path : files) {
        TagLib::MPEG::File file(path.c_str(), false);
        TagLib::ID3v2::Tag *tag = file.ID3v2Tag(true);
        QByteArray source;
        if (embed) {
            QFile cover(QString::fromStdString((path.parent_path() / "_Cover A.jpg").string()));
            cover.open(QIODevice::ReadOnly);
            source = cover.readAll();
        } else {
            const TagLib::ID3v2::FrameList frames = tag->frameList("APIC");
            if (frames.isEmpty())
                continue;
            const TagLib::ByteVector data = static_cast<TagLib::ID3v2::AttachedPictureFrame *>(frames.front())->picture();
            source = QByteArray(data.data(), data.size());
        }
        const QImage image = QImage::fromData(source);
        if (image.isNull() || (!embed && image.width() == size))
            continue;
        setFirstPicture(tag, jpeg(image, size));
        file.save();
    }
    const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    std::printf("floor: QImage + TagLib %-8s %6zu files %8.2f s %9.0f files/s\n", argv[1], files.size(), seconds,
                files.size() / seconds);
    return 0;
}

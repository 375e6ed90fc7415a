#include "functions/imageadvanced.h"

#include <QBuffer>
#include <QImageReader>
#include <QImageWriter>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace {

// libjpeg and libpng fill a picture cut short with grey and report success, so the end of the
// data is looked at before decoding: the last scan of a JPEG must be followed by its end marker
// (an embedded thumbnail's own markers lie before the main picture's scans), and a PNG ends in
// its IEND chunk.
bool isCutShort(const QByteArray &bytes)
{
    if (bytes.startsWith("\xFF\xD8"))
        return bytes.lastIndexOf("\xFF\xD9") < bytes.lastIndexOf("\xFF\xDA");
    if (bytes.startsWith("\x89PNG"))
        return bytes.lastIndexOf("IEND") < 0;
    return false;
}

const char *writerFormat(BitmapImageFileType type)
{
    switch (type) {
    case BitmapImageFileType::TIFF: return "tiff";
    case BitmapImageFileType::BMP: return "bmp";
    case BitmapImageFileType::GIF: return "gif";
    case BitmapImageFileType::JPEG: return "jpeg";
    case BitmapImageFileType::PNG: return "png";
    }
    return "png";
}

void setProblem(QString *problem, const QString &text)
{
    if (problem)
        *problem = text;
}

} // namespace

QImage ov_imageFromData(const QByteArray &bytes, QString *problem)
{
    if (bytes.isEmpty()) {
        setProblem(problem, QStringLiteral("the picture is empty"));
        return {};
    }
    QBuffer buffer;
    buffer.setData(bytes);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer);
    if (!reader.canRead()) {
        setProblem(problem, QStringLiteral("the data is not a picture in a known format"));
        return {};
    }
    const QSize size = reader.size();
    if (size.isValid() && qint64(size.width()) * size.height() > kLargestImagePixels) {
        setProblem(problem, QStringLiteral("the picture is %1 x %2 pixels, more than the %3 million pixels "
                                           "that are read; use a smaller picture")
                                .arg(size.width())
                                .arg(size.height())
                                .arg(kLargestImagePixels / 1000000));
        return {};
    }
    if (isCutShort(bytes)) {
        setProblem(problem, QStringLiteral("the picture is cut short (the file is incomplete)"));
        return {};
    }
    QImage image;
    if (!reader.read(&image) || image.isNull()) {
        setProblem(problem, QStringLiteral("the picture cannot be decoded: %1").arg(reader.errorString()));
        return {};
    }
    return image;
}

QImage ov_imageDrawnInto(const QImage &image, QSize size)
{
    if (image.isNull() || size.isEmpty())
        return {};
    QImage drawn(size, QImage::Format_ARGB32_Premultiplied);
    if (drawn.isNull())
        return {};
    drawn.fill(Qt::transparent);
    {
        QPainter painter(&drawn);
        painter.setRenderHint(QPainter::SmoothPixmapTransform);
        painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
        painter.setOpacity(1.0);
        painter.drawImage(QRect(QPoint(0, 0), size), image);
    }
    // An opaque source stays opaque, so that it can be written as JPEG as it came.
    return image.hasAlphaChannel() ? drawn : drawn.convertToFormat(QImage::Format_RGB32);
}

QImage scaleImage(const QImage &image, double width, double height)
{
    if ((width == 0 && height == 0) || image.isNull())
        return {};
    const double ownWidth = image.width();
    const double ownHeight = image.height();
    if (height == 0)
        height = width / ownWidth * ownHeight;
    else if (width == 0)
        width = height / ownHeight * ownWidth;
    const auto side = [](double length) { return std::max(1, int(std::lround(length))); };
    if (!(width > 0 && height > 0) || width > 1e6 || height > 1e6)
        return {};
    return ov_imageDrawnInto(image, QSize(side(width), side(height)));
}

QImage ov_colorInvertedImage(const QImage &image)
{
    if (image.isNull())
        return {};
    QImage inverted = image.convertToFormat(QImage::Format_ARGB32);
    inverted.invertPixels(QImage::InvertRgb);
    return inverted;
}

QByteArray ov_encodedImage(const QImage &image, BitmapImageFileType type, QString *problem)
{
    if (image.isNull()) {
        setProblem(problem, QStringLiteral("there is no picture to encode"));
        return {};
    }
    if (!QImageWriter::supportedImageFormats().contains(writerFormat(type))) {
        setProblem(problem, QStringLiteral("%1 pictures cannot be written on this system; choose another file type")
                                .arg(QString::fromLatin1(writerFormat(type)).toUpper()));
        return {};
    }
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    QImageWriter writer(&buffer, writerFormat(type));
    writer.setQuality(100);
    // JPEG has no alpha: a transparent picture is laid on white rather than on black.
    QImage source = image;
    if (type == BitmapImageFileType::JPEG && image.hasAlphaChannel()) {
        source = QImage(image.size(), QImage::Format_RGB32);
        source.fill(Qt::white);
        QPainter(&source).drawImage(0, 0, image);
    }
    if (!writer.write(source)) {
        setProblem(problem, QStringLiteral("the picture cannot be encoded as %1: %2")
                                .arg(QString::fromLatin1(writerFormat(type)), writer.errorString()));
        return {};
    }
    return bytes;
}

BitmapImageFileType ov_embeddableImageType(BitmapImageFileType type)
{
    return type == BitmapImageFileType::TIFF || type == BitmapImageFileType::GIF ? BitmapImageFileType::PNG : type;
}

#pragma once

#include "pool/utilities.h"

#include <QByteArray>
#include <QImage>
#include <QString>

// Pictures for the artwork functions and the artwork search: reading tag and file bytes,
// scaling, encoding, and the colour inversion the interface draws with. Safe from any thread.

// The most pixels a picture may have to be read; larger ones are refused rather than
// allocated (a 12000 x 12000 picture would take more than half a gigabyte).
constexpr qint64 kLargestImagePixels = 64LL * 1000 * 1000;

// The picture in the bytes, or a null image with the reason in problem: not a picture, a
// picture cut short (a JPEG without its end marker, a PNG without its last chunk), or one too
// large to read.
QImage ov_imageFromData(const QByteArray &bytes, QString *problem = nullptr);

// The whole image drawn into a new one of the given size, transparent where it does not cover
// (source over, full opacity), with smooth filtering. A null image for an empty size.
QImage ov_imageDrawnInto(const QImage &image, QSize size);

// A new image of the width and height asked for; when one of them is 0 it follows from the
// other by the image's aspect ratio. Both 0 (or a null image) give a null image. Sides are
// rounded to whole pixels, at least 1.
QImage scaleImage(const QImage &image, double width, double height);

// The image with every colour inverted and its alpha kept; a null image for a null one.
QImage ov_colorInvertedImage(const QImage &image);

// The image encoded as the file type at full quality (JPEG quality 100, PNG without loss).
// Empty bytes, with the reason in problem, when it cannot be encoded.
QByteArray ov_encodedImage(const QImage &image, BitmapImageFileType type, QString *problem = nullptr);

// The type a picture of this type is embedded in a track as: tags hold JPEG, PNG, GIF and BMP,
// and GIF cannot be written here, so a TIFF or GIF becomes PNG, without loss.
BitmapImageFileType ov_embeddableImageType(BitmapImageFileType type);

#pragma once

#include <QByteArray>
#include <QString>

// Small stateless helpers of the program: image kinds, keyboard modifier masks, the system's
// version. Safe from any thread.

// The kind of an image by its first byte: "image/jpeg", "image/png", "image/gif",
// "image/tiff", or a null text.
QString contentTypeForImageData(const QByteArray &data);
// The file type to write such an image back with; anything not known is written as PNG.
enum class BitmapImageFileType { TIFF = 0, BMP = 1, GIF = 2, JPEG = 3, PNG = 4 };
BitmapImageFileType contentStorageTypeForImageData(const QByteArray &data);

// Keyboard modifiers: the four modifier bits of a flags word (shift, control, option and
// command at bits 17 to 20), and the same bits in the hotkey registration's own layout.
quint64 cleanModifierMask(quint64 flags);
quint64 carbonModifierMask(quint64 flags);

// The system's version as "major.minor.patch", "0.0.0" when it cannot be told.
QString operatingSystemVersionString();
// "major.minor.patch" from the leading numbers of a version text: "22.04" gives "22.4.0",
// "6.1.0-18-amd64" gives "6.1.0"; a text that does not begin with a number gives "0.0.0".
QString versionTripleFromText(const QString &version);

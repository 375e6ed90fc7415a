#pragma once

#include <QByteArray>
#include <QString>
#include <QVariant>

// Property lists as the program stores its settings: XML, values held as QVariant (maps,
// lists, integers, reals, booleans, text, data, dates). Reading accepts XML and binary.
namespace PropertyList {

// Containers nested deeper than this make the whole file unreadable, whatever its form.
constexpr int kMaxNesting = 512;

// The value in the file, or an invalid QVariant when the file is missing, unreadable, not a
// property list or nested deeper than kMaxNesting.
QVariant read(const QString &path);
QVariant fromData(const QByteArray &data);

// Convenience: the map in the file, empty when it holds anything else.
QVariantMap readMap(const QString &path);

// XML form of a value. Throws OVException ("NSInvalidArgumentException") for a value that a
// property list cannot hold: an invalid QVariant anywhere in it, or an unknown type.
QByteArray toXml(const QVariant &value);

// Writes the XML form atomically: the old file stays whole until the new one is complete.
// Throws as toXml does; returns false when the file cannot be written.
bool write(const QString &path, const QVariant &value);

} // namespace PropertyList

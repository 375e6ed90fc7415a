#pragma once

#include <QList>
#include <QPair>
#include <QString>

// Query texts for web service requests.

// The values are those of the text encodings stored in settings and passed by callers.
enum class TextEncoding : qint64 { ASCII = 1, UTF8 = 4, ISOLatin1 = 5 };

// Parameters in the order they are to appear in the query; keys may repeat.
using OrderedParameters = QList<QPair<QString, QString>>;

// The text's bytes in that encoding, percent-escaped where a byte is not allowed in an address:
// everything outside ASCII, controls, space and " < > \ ^ ` { | } [ ], a "%" not followed by two
// hex digits and every "#" after the first. The characters that separate query parts
// (& = ? / : + ...) stay as they are. Empty for an empty text, a text the encoding cannot hold
// or an unknown encoding.
QString escapeTextWithEncoding(const QString &text, TextEncoding encoding);

// "&key=value" for each parameter in order, values escaped and keys as they stand; then the
// first "&" becomes "?" after the base address, or is dropped when there is no (null) base.
// No parameters throw the OVException "NSRangeException".
QString parameterURL(const QString &baseAddress, const OrderedParameters &parameters,
                     TextEncoding encoding);

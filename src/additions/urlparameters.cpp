#include "additions/urlparameters.h"

#include "additions/textadditions.h"

#include <QStringEncoder>

namespace {

bool isHexDigit(char c)
{
    return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}

bool isAllowedAsItStands(char c)
{
    if (c >= 'a' && c <= 'z')
        return true;
    if (c >= 'A' && c <= 'Z')
        return true;
    if (c >= '0' && c <= '9')
        return true;
    return QByteArrayView("-._~!$&'()*+,;=:@/?").contains(c);
}

// Bytes of the text in that encoding; empty when a character cannot be encoded.
QByteArray encode(const QString &text, TextEncoding encoding)
{
    switch (encoding) {
    case TextEncoding::UTF8:
    case TextEncoding::ISOLatin1: {
        QStringEncoder encoder(encoding == TextEncoding::UTF8 ? QStringConverter::Utf8
                                                              : QStringConverter::Latin1);
        const QByteArray bytes = encoder.encode(text);
        return encoder.hasError() ? QByteArray() : bytes;
    }
    case TextEncoding::ASCII:
        for (QChar c : text) {
            if (c.unicode() > 0x7f)
                return {};
        }
        return text.toLatin1();
    }
    return {};
}

} // namespace

QString escapeTextWithEncoding(const QString &text, TextEncoding encoding)
{
    const QByteArray bytes = encode(text, encoding);
    QByteArray escaped;
    escaped.reserve(bytes.size() * 3);
    bool fragmentStarted = false;
    for (qsizetype i = 0; i < bytes.size(); ++i) {
        const char c = bytes[i];
        bool keep = isAllowedAsItStands(c);
        if (c == '%')
            keep = i + 2 < bytes.size() && isHexDigit(bytes[i + 1]) && isHexDigit(bytes[i + 2]);
        if (c == '#') {
            keep = !fragmentStarted;
            fragmentStarted = true;
        }
        if (keep) {
            escaped.append(c);
        } else {
            escaped.append('%');
            escaped.append(QByteArray::number(uchar(c), 16).rightJustified(2, '0').toUpper());
        }
    }
    return QString::fromLatin1(escaped);
}

QString parameterURL(const QString &baseAddress, const OrderedParameters &parameters,
                     TextEncoding encoding)
{
    QString query;
    for (const auto &[key, value] : parameters)
        query += u'&' + key + u'=' + escapeTextWithEncoding(value, encoding);
    // Throws for an empty query, as deleting a first character that is not there must.
    cutTextFromBeginning(query, 1);
    if (baseAddress.isNull())
        return query;
    return baseAddress + u'?' + query;
}

#include "additions/textadditions.h"

#include "additions/ovexception.h"
#include "additions/textsearch.h"

#include <QCryptographicHash>
#include <QDateTime>
#include <QStringList>

#include <algorithm>

namespace {

[[noreturn]] void throwRangeException(const QString &text, qint64 location, qint64 length)
{
    throw OVException(QStringLiteral("NSRangeException"),
                      QStringLiteral("Range {%1, %2} out of bounds; string length %3")
                          .arg(location).arg(length).arg(text.size()));
}

// n must lie within 0 and the length; anything else is a caller's fault, reported as a range
// exception instead of clamping, so that the caller's missing length check shows up in the log.
qsizetype checkedCount(const QString &text, qint64 n)
{
    if (n < 0 || n > text.size())
        throwRangeException(text, 0, n);
    return qsizetype(n);
}

bool isLineBreak(QChar c)
{
    const char16_t u = c.unicode();
    return (u >= 0x000A && u <= 0x000D) || u == 0x0085 || u == 0x2028 || u == 0x2029;
}

} // namespace

void removeUnnecessarySpaces(QString &text)
{
    // One pass that keeps a space only when the previous kept character is not one: the same
    // result as replacing pairs of spaces until none is left.
    auto end = std::unique(text.begin(), text.end(),
                           [](QChar a, QChar b) { return a == u' ' && b == u' '; });
    text.truncate(end - text.begin());
    if (text.startsWith(u' '))
        text.remove(0, 1);
    if (text.endsWith(u' '))
        text.chop(1);
}

void removeUnnecessaryNewLines(QString &text, bool trimLines)
{
    QStringList lines;
    qsizetype lineStart = 0;
    for (qsizetype i = 0; i <= text.size(); ++i) {
        if (i == text.size() || isLineBreak(text[i])) {
            lines.append(text.sliced(lineStart, i - lineStart));
            lineStart = i + 1;
        }
    }
    if (trimLines) {
        for (QString &line : lines)
            removeUnnecessarySpaces(line);
    }
    text = lines.join(u'\n');
    const QString three = QStringLiteral("\n\n\n");
    const QString two = QStringLiteral("\n\n");
    while (text.contains(three))
        text.replace(three, two);
    if (text.startsWith(u'\n'))
        text.remove(0, 1);
    if (text.endsWith(u'\n'))
        text.chop(1);
}

void removeIllegalCharacters(QString &text)
{
    text.replace(u':', u' ');
    text.replace(u'/', u' ');
    text.replace(u'\\', u' ');
}

void cutTextFromBeginning(QString &text, qint64 n)
{
    text.remove(0, checkedCount(text, n));
}

void cutTextFromEnd(QString &text, qint64 n)
{
    text.chop(checkedCount(text, n));
}

void keepTextFromBeginning(QString &text, qint64 n)
{
    text.truncate(checkedCount(text, n));
}

void keepTextFromEnd(QString &text, qint64 n)
{
    text.remove(0, text.size() - checkedCount(text, n));
}

void removeSpecialItemsForRequest(QString &text)
{
    static const char16_t items[] = {u':', u',', u'?', u'!', u'/', u'\\', u'"', u'§', u'$', u'%',
                                     u'&', u'=', u'#', u'_', u'(', u')', u'[', u']', u'*'};
    for (char16_t item : items)
        text.replace(QChar(item), u' ');
}

void removeSpecialItemPartForRequest(QString &text)
{
    static const char16_t *const items[] = {u" ft", u" vs", u" feat", u" versus", u"(", u"["};
    for (const char16_t *item : items) {
        const TextRange range = rangeOfString(text, QStringView(item), SearchOption::CaseInsensitive);
        if (range.found() && range.location > 0)
            text.truncate(range.location);
    }
}

QString md5(const QString &text)
{
    QByteArray bytes = text.toUtf8();
    const qsizetype zero = bytes.indexOf('\0');
    if (zero >= 0)
        bytes.truncate(zero);
    return QString::fromLatin1(QCryptographicHash::hash(bytes, QCryptographicHash::Md5).toHex());
}

QString currentUTCTimeUnix()
{
    return QString::asprintf("%.0f", double(QDateTime::currentMSecsSinceEpoch()) / 1000.0);
}

QString ov_descriptionFromRatingValue(qint64 rating)
{
    const qint64 value = std::clamp<qint64>(rating, 0, 100);
    const qint64 stars = value / 20;
    QString description;
    if (value >= 20)
        description = QString::number(stars);
    if (value - 20 * stars == 10)
        description += u'½';
    return description.isEmpty() ? QStringLiteral("0") : description;
}

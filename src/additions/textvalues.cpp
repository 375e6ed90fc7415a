#include "additions/textvalues.h"

#include <QByteArray>

#include <charconv>
#include <cmath>
#include <limits>

namespace {

qsizetype skipSpace(QStringView text, qsizetype i = 0)
{
    while (i < text.size() && text[i].isSpace())
        ++i;
    return i;
}

bool isDigit(QStringView text, qsizetype i)
{
    return i < text.size() && text[i] >= u'0' && text[i] <= u'9';
}

} // namespace

qint64 integerValue(QStringView text)
{
    qsizetype i = skipSpace(text);
    bool negative = false;
    if (i < text.size() && (text[i] == u'+' || text[i] == u'-'))
        negative = text[i++] == u'-';
    // Accumulated as a negative number, whose range reaches one further than the positive one.
    constexpr qint64 lowest = std::numeric_limits<qint64>::min();
    qint64 value = 0;
    for (; isDigit(text, i); ++i) {
        const int digit = text[i].unicode() - u'0';
        if (value < (lowest + digit) / 10)
            return negative ? lowest : std::numeric_limits<qint64>::max();
        value = value * 10 - digit;
    }
    if (negative)
        return value;
    return value == lowest ? std::numeric_limits<qint64>::max() : -value;
}

double doubleValue(QStringView text)
{
    const qsizetype start = skipSpace(text);
    qsizetype i = start;
    if (i < text.size() && (text[i] == u'+' || text[i] == u'-'))
        ++i;
    const qsizetype mantissa = i;
    bool wholePart = false;
    for (; isDigit(text, i); ++i)
        wholePart = wholePart || text[i] != u'0';
    if (i < text.size() && text[i] == u'.')
        ++i;
    while (isDigit(text, i))
        ++i;
    if (i - mantissa == 0 || (i - mantissa == 1 && text[mantissa] == u'.'))
        return 0.0;
    bool negativeExponent = false;
    if (i < text.size() && (text[i] == u'e' || text[i] == u'E')) {
        qsizetype exponent = i + 1;
        if (exponent < text.size() && (text[exponent] == u'+' || text[exponent] == u'-'))
            negativeExponent = text[exponent++] == u'-';
        if (isDigit(text, exponent)) {
            i = exponent;
            while (isDigit(text, i))
                ++i;
        }
    }

    // from_chars takes no '+' and ignores the locale, unlike strtod.
    const qsizetype numberStart = text[start] == u'+' ? start + 1 : start;
    const QByteArray number = text.sliced(numberStart, i - numberStart).toLatin1();
    double value = 0.0;
    const auto [end, error] = std::from_chars(number.constData(), number.constData() + number.size(), value);
    Q_UNUSED(end);
    if (error == std::errc::result_out_of_range) {
        // Out of range is too large or too small: an exponent of the wrong sign, or none at all
        // with a whole part of hundreds of digits.
        const bool tooLarge = !negativeExponent && (wholePart || number.contains('e') || number.contains('E'));
        const double magnitude = tooLarge ? HUGE_VAL : 0.0;
        return number.startsWith('-') ? -magnitude : magnitude;
    }
    return value;
}

bool boolValue(QStringView text)
{
    qsizetype i = skipSpace(text);
    while (i < text.size() && text[i] == u'0')
        ++i;
    if (i >= text.size())
        return false;
    const QChar c = text[i];
    return c == u'Y' || c == u'y' || c == u'T' || c == u't' || (c >= u'1' && c <= u'9');
}

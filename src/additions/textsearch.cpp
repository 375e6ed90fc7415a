#include "additions/textsearch.h"

#include <QList>

#include <unicode/uchar.h>
#include <unicode/ustring.h>

namespace {

// The full case folding of a text, with the start of the source character of every folded
// unit, so that a match in the folded text maps back to a range of the original.
struct FoldedText
{
    QString text;
    QList<qsizetype> origin;
};

FoldedText foldCase(QStringView source, bool keepOrigins)
{
    FoldedText result;
    result.text.reserve(source.size());
    if (keepOrigins)
        result.origin.reserve(source.size());
    for (qsizetype i = 0; i < source.size();) {
        const char16_t unit = source[i].unicode();
        const qsizetype length =
            (QChar::isHighSurrogate(unit) && i + 1 < source.size()
             && QChar::isLowSurrogate(source[i + 1].unicode())) ? 2 : 1;
        if (unit < 0x80) {
            result.text.append(QChar(unit >= u'A' && unit <= u'Z' ? unit + 32 : unit));
        } else {
            UChar folded[8];
            UErrorCode status = U_ZERO_ERROR;
            const int32_t foldedLength =
                u_strFoldCase(folded, 8, reinterpret_cast<const UChar *>(source.utf16() + i),
                              int32_t(length), U_FOLD_CASE_DEFAULT, &status);
            if (U_SUCCESS(status) && foldedLength > 0)
                result.text.append(reinterpret_cast<const QChar *>(folded), foldedLength);
            else
                result.text.append(source.mid(i, length));
        }
        if (keepOrigins)
            result.origin.resize(result.text.size(), i);
        i += length;
    }
    return result;
}

// Walks the occurrences of one search text in the chosen direction, without overlaps.
class Matcher
{
public:
    Matcher(QStringView text, QStringView search, SearchOptions options)
        : text_(text), folding_(options.testFlag(SearchOption::CaseInsensitive)),
          backwards_(options.testFlag(SearchOption::Backwards)),
          anchored_(options.testFlag(SearchOption::Anchored))
    {
        if (folding_) {
            folded_ = foldCase(text, true);
            foldedSearch_ = foldCase(search, false).text;
            haystack_ = folded_.text;
            needle_ = foldedSearch_;
        } else {
            haystack_ = text;
            needle_ = search;
        }
        cursor_ = backwards_ ? haystack_.size() : 0;
        done_ = needle_.isEmpty() || needle_.size() > haystack_.size();
    }

    TextRange next()
    {
        while (!done_) {
            const qsizetype n = needle_.size();
            qsizetype position;
            if (anchored_) {
                done_ = true;
                position = backwards_ ? haystack_.size() - n : 0;
                if (haystack_.sliced(position, n) != needle_)
                    break;
            } else if (backwards_) {
                if (cursor_ - n < 0)
                    break;
                position = haystack_.lastIndexOf(needle_, cursor_ - n);
            } else {
                position = haystack_.indexOf(needle_, cursor_);
            }
            if (position < 0)
                break;
            if (isBoundary(position) && isBoundary(position + n)) {
                cursor_ = backwards_ ? position : position + n;
                const qsizetype start = originAt(position);
                return {start, originAt(position + n) - start};
            }
            cursor_ = backwards_ ? position + n - 1 : position + 1;
        }
        done_ = true;
        return {};
    }

private:
    bool isBoundary(qsizetype k) const
    {
        return !folding_ || k == 0 || k == haystack_.size()
            || folded_.origin[k] != folded_.origin[k - 1];
    }

    qsizetype originAt(qsizetype k) const
    {
        if (!folding_)
            return k;
        return k == haystack_.size() ? text_.size() : folded_.origin[k];
    }

    QStringView text_;
    bool folding_;
    bool backwards_;
    bool anchored_;
    FoldedText folded_;
    QString foldedSearch_;
    QStringView haystack_;
    QStringView needle_;
    qsizetype cursor_ = 0;
    bool done_ = false;
};

bool isDigit(QChar c)
{
    return c >= u'0' && c <= u'9';
}

ComparisonResult orderOf(int difference)
{
    return difference < 0 ? ComparisonResult::OrderedAscending
        : difference > 0  ? ComparisonResult::OrderedDescending
                          : ComparisonResult::OrderedSame;
}

// Compares the digit runs starting at i and j by value and moves past them.
int compareDigitRuns(QStringView left, qsizetype &i, QStringView right, qsizetype &j)
{
    auto run = [](QStringView text, qsizetype &k) {
        while (k < text.size() && text[k] == u'0' && k + 1 < text.size() && isDigit(text[k + 1]))
            ++k;
        const qsizetype start = k;
        while (k < text.size() && isDigit(text[k]))
            ++k;
        return text.sliced(start, k - start);
    };
    const QStringView a = run(left, i);
    const QStringView b = run(right, j);
    if (a.size() != b.size())
        return a.size() < b.size() ? -1 : 1;
    return a.compare(b);
}

ComparisonResult compareUnits(QStringView left, QStringView right, bool numeric)
{
    if (!numeric)
        return orderOf(left.compare(right));
    qsizetype i = 0, j = 0;
    while (i < left.size() && j < right.size()) {
        int difference;
        if (isDigit(left[i]) && isDigit(right[j])) {
            difference = compareDigitRuns(left, i, right, j);
        } else {
            difference = int(left[i].unicode()) - int(right[j].unicode());
            ++i;
            ++j;
        }
        if (difference != 0)
            return orderOf(difference);
    }
    return orderOf(int(i < left.size()) - int(j < right.size()));
}

} // namespace

SearchOptions searchOptionsFromValue(qint64 value)
{
    const unsigned known = unsigned(SearchOption::CaseInsensitive) | unsigned(SearchOption::Literal)
        | unsigned(SearchOption::Backwards) | unsigned(SearchOption::Anchored)
        | unsigned(SearchOption::Numeric);
    return SearchOptions::fromInt(unsigned(value) & known);
}

TextRange rangeOfString(QStringView text, QStringView search, SearchOptions options)
{
    return Matcher(text, search, options).next();
}

bool containsString(QStringView text, QStringView search, SearchOptions options)
{
    return rangeOfString(text, search, options).found();
}

qsizetype replaceOccurrencesOfString(QString &text, QStringView search, QStringView replacement,
                                     SearchOptions options)
{
    QList<TextRange> matches;
    {
        Matcher matcher(text, search, options);
        for (TextRange range = matcher.next(); range.found(); range = matcher.next())
            matches.append(range);
    }
    if (matches.isEmpty())
        return 0;
    if (options.testFlag(SearchOption::Backwards))
        std::reverse(matches.begin(), matches.end());

    QString result;
    result.reserve(text.size() + matches.size() * (replacement.size() - search.size()));
    qsizetype copied = 0;
    for (const TextRange &range : matches) {
        result.append(QStringView(text).sliced(copied, range.location - copied));
        result.append(replacement);
        copied = range.location + range.length;
    }
    result.append(QStringView(text).sliced(copied));
    text = result;
    return matches.size();
}

ComparisonResult compareText(QStringView left, QStringView right, SearchOptions options)
{
    const bool numeric = options.testFlag(SearchOption::Numeric);
    if (!options.testFlag(SearchOption::CaseInsensitive))
        return compareUnits(left, right, numeric);
    return compareUnits(foldCase(left, false).text, foldCase(right, false).text, numeric);
}

ComparisonResult caseInsensitiveCompare(QStringView left, QStringView right)
{
    return compareText(left, right, SearchOption::CaseInsensitive);
}

bool isEqualIgnoringCase(QStringView left, QStringView right)
{
    return caseInsensitiveCompare(left, right) == ComparisonResult::OrderedSame;
}

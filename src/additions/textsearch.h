#pragma once

#include <QFlags>
#include <QString>

// Search and comparison of texts with the option bits the callers store as numbers (a search
// set's "Case" bit plus 8 for anchored, 12 for anchored from the end, 0x40 for numeric compare).
// All positions and lengths are UTF-16 code units. Case-insensitive work uses full Unicode case
// folding, so "ß" matches "SS" and "ẞ"; a match never splits a character.

enum class SearchOption : unsigned {
    CaseInsensitive = 1,
    Literal = 2, // every search is literal here; accepted so stored option sums stay valid
    Backwards = 4,
    Anchored = 8,
    Numeric = 0x40,
};
Q_DECLARE_FLAGS(SearchOptions, SearchOption)
Q_DECLARE_OPERATORS_FOR_FLAGS(SearchOptions)

// A stored option sum as flags; unknown bits are dropped.
SearchOptions searchOptionsFromValue(qint64 value);

struct TextRange
{
    qsizetype location = -1; // -1: not found
    qsizetype length = 0;

    bool found() const { return location >= 0; }
    friend bool operator==(const TextRange &, const TextRange &) = default;
};

enum class ComparisonResult { OrderedAscending = -1, OrderedSame = 0, OrderedDescending = 1 };

// The first occurrence (the last one with Backwards); Anchored limits the match to the start
// (to the end with Backwards). An empty search text is never found.
TextRange rangeOfString(QStringView text, QStringView search, SearchOptions options = {});
bool containsString(QStringView text, QStringView search, SearchOptions options = {});

// Replaces every non-overlapping occurrence, scanning from the end with Backwards; at most one
// with Anchored. Answers the number of replacements.
qsizetype replaceOccurrencesOfString(QString &text, QStringView search, QStringView replacement,
                                     SearchOptions options = {});

// Compares by UTF-16 code units; CaseInsensitive compares the folded texts, Numeric compares runs
// of ASCII digits by their value, so "3.10" follows "3.9".
ComparisonResult compareText(QStringView left, QStringView right, SearchOptions options = {});
ComparisonResult caseInsensitiveCompare(QStringView left, QStringView right);
bool isEqualIgnoringCase(QStringView left, QStringView right);

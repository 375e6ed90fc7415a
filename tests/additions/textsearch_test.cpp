#include "qtprinting.h"

#include "additions/textsearch.h"
#include "additions/textvalues.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace {

constexpr SearchOptions kCase = SearchOption::CaseInsensitive;
const SearchOptions kFromEnd = searchOptionsFromValue(13); // case-insensitive, anchored, backwards

} // namespace

TEST(TextSearch, RangesFollowFoldingDirectionAndAnchors)
{
    struct Row
    {
        QString text, search;
        SearchOptions options;
        TextRange expected;
    };
    const Row rows[] = {
        {"Straße", "STRASSE", kCase, {0, 6}}, {"STRASSE", "straße", kCase, {0, 7}},
        {"Straße", "ss", kCase, {4, 1}}, {"Straße", "ẞ", kCase, {4, 1}}, {"Straße", "sse", kCase, {4, 2}},
        // The folded "ss" of ß is one character: a single "s" must not match half of it.
        {"Straße", "s", kCase | SearchOption::Backwards, {0, 1}},
        {"x\U00010400y", "\U00010428", kCase, {1, 2}}, {"x\U00010400y", "\U00010428", {}, {}},
        {"Hello", "hello", {}, {}}, {"Hello", "", kCase, {}},
        {"abcabc", "abc", SearchOption::Backwards, {3, 3}},
        {"Hello World", "hello", kCase | SearchOption::Anchored, {0, 5}},
        {"Hello World", "world", kCase | SearchOption::Anchored, {}},
        {"Hello World", "WORLD", kFromEnd, {6, 5}}, {"Hello World", "hello", kFromEnd, {}},
    };
    for (const Row &row : rows) {
        EXPECT_EQ(rangeOfString(row.text, row.search, row.options), row.expected)
            << row.text.toStdString() << " / " << row.search.toStdString();
    }
}

TEST(TextSearch, ReplaceOccurrencesCountsNonOverlappingMatches)
{
    struct Row
    {
        QString text, search;
        SearchOptions options;
        QString expected;
        qsizetype count;
    };
    const Row rows[] = {
        {"aaa", "aa", {}, "ba", 1}, {"aaa", "aa", SearchOption::Backwards, "ab", 1},
        {"Hello hello HELLO", "hello", kCase, "b b b", 3},
        {"Hello hello HELLO", "hello", {}, "Hello b HELLO", 1},
        {"la la la", "la", SearchOption::Anchored, "b la la", 1},
        {"la la la", "la", SearchOption::Anchored | SearchOption::Backwards, "la la b", 1},
        {"Straße", "SS", kCase, "Strabe", 1}, {"none", "x", kCase, "none", 0},
    };
    for (const Row &row : rows) {
        QString text = row.text;
        EXPECT_EQ(replaceOccurrencesOfString(text, row.search, u"b", row.options), row.count);
        EXPECT_EQ(text, row.expected);
    }
}

TEST(TextSearch, CompareNumericallyAndIgnoringCase)
{
    using enum ComparisonResult;
    constexpr SearchOptions numeric = SearchOption::Numeric;
    struct Row
    {
        QString left, right;
        SearchOptions options;
        ComparisonResult expected;
    };
    const Row rows[] = {
        {"3.9", "3.10", numeric, OrderedAscending}, {"3.10", "3.9", numeric, OrderedDescending},
        {"3.9", "3.10", {}, OrderedDescending}, {"3.10", "3.10", numeric, OrderedSame},
        {"2.0", "2.0.1", numeric, OrderedAscending}, {"007", "7", numeric, OrderedSame},
        {"4.0b2", "4.0b10", numeric, OrderedAscending}, {"a", "B", kCase, OrderedAscending},
        {"a", "B", {}, OrderedDescending}, {"straße", "STRASSE", kCase, OrderedSame},
        {"Beta 10", "BETA 9", kCase | numeric, OrderedDescending},
    };
    for (const Row &row : rows) {
        EXPECT_EQ(compareText(row.left, row.right, row.options), row.expected)
            << row.left.toStdString() << " vs " << row.right.toStdString();
    }
}

TEST(TextValues, NumbersAndTruthFromTheStartOfTheText)
{
    constexpr qint64 max = std::numeric_limits<qint64>::max();
    constexpr qint64 min = std::numeric_limits<qint64>::min();
    const std::pair<QString, qint64> integers[] = {
        {"42", 42}, {"  -17abc", -17}, {"+8", 8}, {"\n\t12", 12}, {"3.9", 3}, {"abc", 0},
        {"", 0}, {"- 5", 0}, {"9223372036854775807", max}, {"99999999999999999999", max},
        {"-9223372036854775808", min}, {"-99999999999999999999", min},
    };
    for (const auto &[text, value] : integers)
        EXPECT_EQ(integerValue(text), value) << text.toStdString();

    const std::pair<QString, double> doubles[] = {
        {"3.25", 3.25}, {" -1.5e2x", -150.0}, {".5", 0.5}, {"5.", 5.0}, {"+2", 2.0}, {"1e", 1.0},
        {"2E+3", 2000.0}, {"abc", 0.0}, {".", 0.0}, {"1e-999", 0.0}, {"1e999", HUGE_VAL},
        {"-1e999", -HUGE_VAL},
    };
    for (const auto &[text, value] : doubles)
        EXPECT_EQ(doubleValue(text), value) << text.toStdString();

    const std::pair<QString, bool> truths[] = {
        {"YES", true}, {" t", true}, {"True", true}, {"007", true}, {"9", true}, {"0y", true},
        {"0", false}, {"000", false}, {"no", false}, {"", false}, {"false", false}, {"0x1", false},
    };
    for (const auto &[text, value] : truths)
        EXPECT_EQ(boolValue(text), value) << text.toStdString();
}

#include "../additions/qtprinting.h"

#include "additions/ovexception.h"
#include "regex/regexreplace.h"

#include <QThread>

#include <gtest/gtest.h>

#include <unicode/utypes.h>

#include <atomic>
#include <memory>
#include <vector>

namespace {

// The exception a replacement throws; fails the test when there is none.
OVException replacementFailure(const QString &pattern, const QString &replacement)
{
    QString text = QStringLiteral("abc");
    try {
        replaceOccurrencesOfRegex(text, pattern, replacement);
    } catch (const OVException &exception) {
        EXPECT_EQ(text, QStringLiteral("abc"));
        return exception;
    }
    ADD_FAILURE() << "no exception for " << pattern.toStdString();
    return OVException({}, {});
}

} // namespace

TEST(RegexReplace, ReplacesEveryMatchWithTheExpandedTemplate)
{
    struct Row
    {
        QString text, pattern, replacement, expected;
        qsizetype count;
    };
    const Row rows[] = {
        {"Hello World", "o", "0", "Hell0 W0rld", 2}, {"ABC abc", "abc", "x", "ABC x", 1},
        {"John Smith", "(\\w+) (\\w+)", "$2, $1 $1", "Smith, John John", 1},
        {"The The", "(\\w+) \\1", "$1", "The", 1}, {"abc", "x", "y", "abc", 0},
        {"aaa", "a*", "-", "--", 2}, {"a.b", "\\.", "\\$", "a$b", 1}, {"", "^$", "e", "e", 1},
        {"\U0001F3B5 \U0001F3B5", "\U0001F3B5", "x", "x x", 2},
        {"\U0001F3B5x", "^.", "[$0]", "[\U0001F3B5]x", 1},
        {QString(1000, u'a'), "a", "bbbbb", QString(5000, u'b'), 1000},
    };
    for (const Row &row : rows) {
        QString text = row.text;
        EXPECT_EQ(replaceOccurrencesOfRegex(text, row.pattern, row.replacement), row.count)
            << row.pattern.toStdString();
        EXPECT_EQ(text, row.expected);
    }
}

TEST(RegexReplace, WordCharactersFollowUnicode)
{
    const std::pair<QString, bool> rows[] = {
        {"a", true}, {"ß", true}, {"é", true}, {"e\u0301", true}, {"_", true}, {"7", true},
        {"Ж", true}, {"\U0001D400", true}, {" ", false}, {"-", false}, {"\t", false},
        {"\U0001F3B5", false},
    };
    for (const auto &[character, isWord] : rows) {
        QString text = character;
        replaceOccurrencesOfRegex(text, "\\w", "");
        EXPECT_EQ(text.isEmpty(), isWord) << "U+" << std::hex << character.toUcs4().first();
    }
}

TEST(RegexReplace, InvalidPatternRaisesICUErrorWithItsPosition)
{
    const OVException exception = replacementFailure("ab(cd", "x");
    EXPECT_EQ(exception.name(), QStringLiteral("RKLICURegexException"));
    EXPECT_EQ(exception.reason(), QStringLiteral("ICU regular expression error #%1, U_REGEX_MISMATCHED_PAREN.")
                                      .arg(int(U_REGEX_MISMATCHED_PAREN)));
    const QVariantMap info = exception.userInfo();
    EXPECT_EQ(info.value("RKLICURegexErrorCode").toInt(), int(U_REGEX_MISMATCHED_PAREN));
    EXPECT_EQ(info.value("RKLICURegexErrorName"), QStringLiteral("U_REGEX_MISMATCHED_PAREN"));
    EXPECT_EQ(info.value("RKLICURegexLine").toInt(), 1);
    EXPECT_EQ(info.value("RKLICURegexOffset").toInt(), 5);
    EXPECT_EQ(info.value("RKLICURegexPreContext"), QStringLiteral("ab(cd"));
    EXPECT_EQ(info.value("RKLICURegexPostContext"), QString());
    EXPECT_EQ(info.value("RKLICURegexRegex"), QStringLiteral("ab(cd"));
    EXPECT_EQ(info.value("RKLICURegexRegexOptions").toInt(), 0);
    EXPECT_EQ(info.value("NSLocalizedDescription"),
              QStringLiteral("There was an error compiling the regular expression."));
    EXPECT_EQ(info.value("NSLocalizedFailureReason"),
              QStringLiteral("The error U_REGEX_MISMATCHED_PAREN occurred at line 1, column 5: ab(cd<<HERE>>"));
}

TEST(RegexReplace, ErrorsRepeatForEveryCallAndLeaveTheCacheUsable)
{
    // The same bad pattern on every track, an empty one, and a group the pattern does not have.
    for (const auto &[pattern, replacement] : {std::pair{"a[b", "x"}, {"a[b", "x"}, {"", "x"}, {"(b)", "$2"}})
        EXPECT_EQ(replacementFailure(pattern, replacement).name(), QStringLiteral("RKLICURegexException"));
    QString text = QStringLiteral("abc");
    EXPECT_EQ(replaceOccurrencesOfRegex(text, "b", "x"), 1);
    EXPECT_EQ(text, QStringLiteral("axc"));
}

// More patterns than the cache has slots, from several threads at once: every answer must be
// that of its own pattern, whichever pattern a slot held before.
TEST(RegexReplace, BacktrackingWithoutEndStopsWithAnErrorButLongTextsDoNot)
{
    // Nested quantifiers over a text that never matches: without the match limit this runs for
    // longer than the universe; with it, the track gets the error and keeps its text.
    QString text = QString(40, QLatin1Char('a'));
    const QString original = text;
    try {
        replaceOccurrencesOfRegex(text, QStringLiteral("(a+)+b"), QStringLiteral("x"));
        ADD_FAILURE() << "no error for a pattern that backtracks without end";
    } catch (const OVException &exception) {
        EXPECT_EQ(exception.name(), QStringLiteral("RKLICURegexException"));
        EXPECT_TRUE(exception.reason().contains(QStringLiteral("U_REGEX_TIME_OUT")))
            << exception.reason().toStdString();
    }
    EXPECT_EQ(text, original);

    // A lyrics-sized text with an ordinary pattern stays far inside the limit.
    QString lyrics = QStringLiteral("feat. someone and ft. another, ").repeated(2000);
    EXPECT_EQ(replaceOccurrencesOfRegex(lyrics, QStringLiteral("\\bft\\.\\s+(\\w+)"), QStringLiteral("feat. $1")), 2000);
}

TEST(RegexReplace, ManyPatternsFromManyThreadsStayApart)
{
    std::atomic<int> wrong{0};
    std::vector<std::unique_ptr<QThread>> threads;
    for (int t = 0; t < 4; ++t) {
        threads.emplace_back(QThread::create([t, &wrong] {
            for (int round = 0; round < 200; ++round) {
                const int n = (round * 7 + t) % 60;
                QString text = QStringLiteral("k%1 k%1x k%2").arg(n).arg(n + 1);
                const qsizetype count =
                    replaceOccurrencesOfRegex(text, QStringLiteral("\\bk%1\\b").arg(n), "<$0>");
                if (count != 1 || text != QStringLiteral("<k%1> k%1x k%2").arg(n).arg(n + 1))
                    ++wrong;
            }
        }));
        threads.back()->start();
    }
    for (auto &thread : threads)
        thread->wait();
    EXPECT_EQ(wrong.load(), 0);
}

#include "qtprinting.h"

#include "additions/ovexception.h"
#include "additions/urlparameters.h"

#include <gtest/gtest.h>

TEST(UrlParameters, EscapingDependsOnTheEncoding)
{
    struct Row
    {
        QString text;
        TextEncoding encoding;
        QString expected;
    };
    const Row rows[] = {
        {"Grüße aus Köln", TextEncoding::UTF8, "Gr%C3%BC%C3%9Fe%20aus%20K%C3%B6ln"},
        {"Grüße", TextEncoding::ISOLatin1, "Gr%FC%DFe"},
        {"Grüße", TextEncoding::ASCII, ""},
        {"€", TextEncoding::ISOLatin1, ""},
        {QString(QChar(0xD83C)), TextEncoding::UTF8, ""},
        {"", TextEncoding::UTF8, ""},
        {"x", TextEncoding(99), ""},
        {"AC/DC & Co?a=b+c", TextEncoding::ASCII, "AC/DC%20&%20Co?a=b+c"},
        {"100% %41", TextEncoding::UTF8, "100%25%20%41"},
        {"a#b#c", TextEncoding::UTF8, "a#b%23c"},
        {"<\"{|}^`\\[]>", TextEncoding::UTF8, "%3C%22%7B%7C%7D%5E%60%5C%5B%5D%3E"},
        {"\U0001F3B5", TextEncoding::UTF8, "%F0%9F%8E%B5"},
    };
    for (const Row &row : rows)
        EXPECT_EQ(escapeTextWithEncoding(row.text, row.encoding), row.expected);
}

TEST(UrlParameters, ParameterUrlKeepsOrderAndEscapesOnlyValues)
{
    EXPECT_EQ(parameterURL(QString(), {{"artist", "Foo Bar"}}, TextEncoding::UTF8),
              QStringLiteral("artist=Foo%20Bar"));
    EXPECT_EQ(parameterURL(QStringLiteral("http://127.0.0.1/2.0/"),
                           {{"method", "track.love"}, {"api key", "k"}, {"artist", "Äffle"}},
                           TextEncoding::UTF8),
              QStringLiteral("http://127.0.0.1/2.0/?method=track.love&api key=k&artist=%C3%84ffle"));
    EXPECT_EQ(parameterURL(QStringLiteral(""), {{"k", ""}}, TextEncoding::UTF8), QStringLiteral("?k="));
}

TEST(UrlParameters, NoParametersThrowRangeException)
{
    for (const QString &base : {QString(), QStringLiteral("http://h/")}) {
        try {
            parameterURL(base, {}, TextEncoding::UTF8);
            ADD_FAILURE() << "no exception";
        } catch (const OVException &exception) {
            EXPECT_EQ(exception.name(), QStringLiteral("NSRangeException"));
        }
    }
}

#include "qtprinting.h"

#include "additions/localizedstrings.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

TEST(LocalizedStrings, KeysFallBackOnThemselves)
{
    EXPECT_EQ(ov_localizedString("0002.0001"), QStringLiteral("OK"));
    EXPECT_FALSE(ov_localizedString("0003.0001").isEmpty());
    EXPECT_NE(ov_localizedString("0003.0001"), QStringLiteral("0003.0001"));
    EXPECT_EQ(ov_localizedString("9999.0001"), QStringLiteral("9999.0001"));
    EXPECT_EQ(ov_localizedString("0002.0001", "NoSuchTable"), QStringLiteral("0002.0001"));
    EXPECT_TRUE(ov_localizedString("").isNull());
}

TEST(LocalizedStrings, TablesFromAnotherFolder)
{
    QTemporaryDir dir;
    QFile table(dir.filePath("Extra.json"));
    ASSERT_TRUE(table.open(QIODevice::WriteOnly));
    table.write(R"({"greeting": "Hello", "blank": ""})");
    table.close();
    EXPECT_EQ(ov_localizedString("greeting", "Extra", dir.path()), QStringLiteral("Hello"));
    EXPECT_TRUE(ov_localizedString("blank", "Extra", dir.path()).isNull());
    EXPECT_EQ(ov_localizedString("0002.0001", "", ""), QStringLiteral("OK"));
}

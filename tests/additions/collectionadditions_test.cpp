#include "qtprinting.h"

#include "additions/collectionadditions.h"

#include <QDateTime>

#include <gtest/gtest.h>

TEST(CollectionAdditions, ObjectForKeyAnswersOnlyValuesOfTheClass)
{
    const QVariantMap map{{"text", QStringLiteral("t")}, {"count", qint64(3)}, {"flag", true},
                          {"list", QStringList{"a"}}, {"map", QVariantMap{{"x", 1}}},
                          {"data", QByteArray("d")}, {"date", QDateTime::currentDateTime()}};
    struct Row
    {
        QString key;
        ValueClass valueClass;
        bool found;
    };
    const Row rows[] = {
        {"text", ValueClass::Text, true}, {"text", ValueClass::Number, false},
        {"count", ValueClass::Number, true}, {"flag", ValueClass::Number, true},
        {"list", ValueClass::List, true}, {"map", ValueClass::Map, true},
        {"data", ValueClass::Data, true}, {"data", ValueClass::Text, false},
        {"date", ValueClass::Date, true}, {"text", ValueClass::None, false},
        {"missing", ValueClass::Text, false}, {"", ValueClass::Text, false},
    };
    for (const Row &row : rows) {
        const QVariant value = ov_objectForKey(map, row.key, row.valueClass);
        EXPECT_EQ(value.isValid(), row.found) << row.key.toStdString();
        if (row.found) {
            EXPECT_EQ(value, map.value(row.key));
        }
    }
    EXPECT_FALSE(ov_objectForKey({}, "text", ValueClass::Text).isValid());
    EXPECT_TRUE(ov_hasObjectForKey(map, "flag"));
    EXPECT_FALSE(ov_hasObjectForKey(map, ""));
}

TEST(CollectionAdditions, SetObjectAnswersWhetherTheMapChanged)
{
    QVariantMap map{{"a", QStringLiteral("x")}, {"n", 1}};
    EXPECT_FALSE(ov_setObject(map, QStringLiteral("x"), "a"));
    EXPECT_FALSE(ov_setObject(map, qint64(1), "n"));
    EXPECT_TRUE(ov_setObject(map, QStringLiteral("y"), "a"));
    EXPECT_EQ(map.value("a"), QStringLiteral("y"));
    EXPECT_FALSE(ov_setObject(map, QStringLiteral("z"), ""));
    EXPECT_TRUE(ov_setObject(map, QString(""), "a"));
    EXPECT_FALSE(map.contains("a"));
    EXPECT_FALSE(ov_setObject(map, QString(""), "a"));
    EXPECT_TRUE(ov_setObject(map, QVariant(), "n"));
    EXPECT_FALSE(ov_setObject(map, QVariant(), "n"));
    EXPECT_TRUE(map.isEmpty());
}

TEST(CollectionAdditions, ListAccessNeverGoesOutOfRange)
{
    const QVariantList list{1, QStringLiteral("two"), QStringLiteral("three")};
    EXPECT_FALSE(ov_objectAtIndex(list, -1).isValid());
    EXPECT_FALSE(ov_objectAtIndex(list, 3).isValid());
    EXPECT_EQ(ov_objectAtIndex(list, 2), QStringLiteral("three"));
    EXPECT_FALSE(ov_objectAtIndex(list, 0, ValueClass::Text).isValid());
    EXPECT_EQ(ov_firstObjectWithClass(list, ValueClass::Text), QStringLiteral("two"));
    EXPECT_FALSE(ov_firstObjectWithClass(list, ValueClass::Map).isValid());
}

#include "additions/ovexception.h"
#include "additions/propertylist.h"

#include <QDateTime>
#include <QTimeZone>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

QString writeText(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    file.open(QIODevice::WriteOnly);
    file.write(bytes);
    return path;
}

} // namespace

TEST(PropertyList, RoundTripKeepsEveryKindOfValue)
{
    QTemporaryDir dir;
    const QString path = dir.filePath("values.plist");
    const QDateTime date = QDateTime::fromSecsSinceEpoch(1700000000, Qt::UTC);
    const QVariantMap original{
        {"flag", true},
        {"negative", qint64(-42)},
        {"big", qint64(1) << 40},
        {"real", 0.6},
        {"text", QStringLiteral("Grüße \U0001F3B5")},
        {"empty", QString()},
        {"bytes", QByteArray("\x00\x01\xff", 3)},
        {"date", date},
        {"list", QVariantList{1, QStringLiteral("two"), QVariantMap{{"three", 3}}}},
    };
    ASSERT_TRUE(PropertyList::write(path, original));

    const QVariantMap read = PropertyList::readMap(path);
    EXPECT_EQ(read.value("flag").toBool(), true);
    EXPECT_EQ(read.value("negative").toLongLong(), -42);
    EXPECT_EQ(read.value("big").toLongLong(), qint64(1) << 40);
    EXPECT_DOUBLE_EQ(read.value("real").toDouble(), 0.6);
    EXPECT_EQ(read.value("text").toString(), QStringLiteral("Grüße \U0001F3B5"));
    EXPECT_EQ(read.value("empty").toString(), QString());
    EXPECT_EQ(read.value("bytes").toByteArray(), QByteArray("\x00\x01\xff", 3));
    EXPECT_EQ(read.value("date").toDateTime(), date);
    const QVariantList list = read.value("list").toList();
    ASSERT_EQ(list.size(), 3);
    EXPECT_EQ(list.at(2).toMap().value("three").toInt(), 3);
}

TEST(PropertyList, PythonsPlistlibReadsWhatWeWrite)
{
    QTemporaryDir dir;
    const QString path = dir.filePath("General.plist");
    ASSERT_TRUE(PropertyList::write(path, QVariantMap{{"UseAutoLoveValue", 70},
                                                      {"LaunchMeOnLogin", true},
                                                      {"Offset", -3}}));
    QProcess python;
    python.start("/usr/bin/python3",
                 {"-c", "import plistlib,sys; d=plistlib.load(open(sys.argv[1],'rb')); "
                        "print(d['UseAutoLoveValue'], d['LaunchMeOnLogin'], d['Offset'])",
                  path});
    ASSERT_TRUE(python.waitForFinished(30000));
    EXPECT_EQ(python.readAllStandardOutput().trimmed(), QByteArray("70 True -3"));
}

TEST(PropertyList, DamagedOrMissingInputReadsAsNothing)
{
    QTemporaryDir dir;
    EXPECT_FALSE(PropertyList::read(dir.filePath("missing.plist")).isValid());
    EXPECT_FALSE(PropertyList::read(writeText(dir.filePath("junk.plist"), "not a plist")).isValid());
    EXPECT_FALSE(PropertyList::read(writeText(dir.filePath("cut.plist"),
                                              "<?xml version=\"1.0\"?><plist><dict><key>a"))
                     .isValid());
    EXPECT_TRUE(PropertyList::readMap(writeText(dir.filePath("list.plist"),
                                                PropertyList::toXml(QVariantList{1, 2})))
                    .isEmpty());
}

TEST(PropertyList, ANullValueThrowsAndLeavesTheFileAsItWas)
{
    QTemporaryDir dir;
    const QString path = dir.filePath("prefs.plist");
    ASSERT_TRUE(PropertyList::write(path, QVariantMap{{"kept", 1}}));
    EXPECT_THROW(PropertyList::write(path, QVariantMap{{"missing", QVariant()}}), OVException);
    EXPECT_EQ(PropertyList::readMap(path).value("kept").toInt(), 1);
}

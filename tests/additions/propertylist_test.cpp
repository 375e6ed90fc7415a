#include "additions/ovexception.h"
#include "additions/propertylist.h"
#include "plistfixtures.h"

#include <QDateTime>
#include <QTimeZone>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <plist/plist.h>

namespace {

QString writeText(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    file.open(QIODevice::WriteOnly);
    file.write(bytes);
    return path;
}

// How many arrays are nested in the value, the outermost included.
int arrayDepth(QVariant value)
{
    int depth = 0;
    while (value.typeId() == QMetaType::QVariantList) {
        ++depth;
        const QVariantList list = value.toList();
        value = list.isEmpty() ? QVariant() : list.first();
    }
    return depth;
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

TEST(PropertyList, NestingBeyondTheLimitInEitherFormReadsAsNothing)
{
    EXPECT_EQ(arrayDepth(PropertyList::fromData(nestedXmlArrays(500))), 500);
    EXPECT_EQ(arrayDepth(PropertyList::fromData(nestedBinaryArrays(500))), 500);
    for (const int depth : {PropertyList::kMaxNesting + 1, 200000}) {
        EXPECT_FALSE(PropertyList::fromData(nestedXmlArrays(depth)).isValid()) << depth;
        EXPECT_FALSE(PropertyList::fromData(nestedBinaryArrays(depth)).isValid()) << depth;
    }
    // Tags in comments and CDATA do not count.
    const QByteArray commented = "<plist><!-- " + QByteArray("<array>").repeated(600)
                                 + " --><string><![CDATA[" + QByteArray("<array>").repeated(600)
                                 + "]]></string></plist>";
    EXPECT_EQ(PropertyList::fromData(commented).toString(), QString(QByteArray("<array>").repeated(600)));

    // An array holding itself, a reference past the objects, and 45 arrays each holding the
    // next twice, which libplist would expand into 2^45 objects.
    EXPECT_FALSE(PropertyList::fromData(binaryArrays(1, [](int) { return QList<quint32>{0}; })).isValid());
    EXPECT_FALSE(PropertyList::fromData(binaryArrays(2, [](int) { return QList<quint32>{5}; })).isValid());
    const QByteArray doubling = binaryArrays(45, [](int i) {
        return i + 1 < 45 ? QList<quint32>{quint32(i + 1), quint32(i + 1)} : QList<quint32>{};
    });
    EXPECT_FALSE(PropertyList::fromData(doubling).isValid());
    // The same sharing a few levels deep is an ordinary file.
    const QByteArray shared = binaryArrays(5, [](int i) {
        return i + 1 < 5 ? QList<quint32>{quint32(i + 1), quint32(i + 1)} : QList<quint32>{};
    });
    EXPECT_EQ(arrayDepth(PropertyList::fromData(shared)), 5);

    // Text holding NUL, which libplist asserts against, in either form.
    const QByteArray trailer = QByteArray(6, '\0') + "\x01\x01" + QByteArray(7, '\0') + "\x01"
                               + QByteArray(8, '\0') + QByteArray(7, '\0') + "\x0c";
    EXPECT_FALSE(PropertyList::fromData(QByteArray("bplist00\x53" "a\0b\x08", 13) + trailer).isValid());
    EXPECT_FALSE(PropertyList::fromData("<plist><string>a&#x0;b</string></plist>").isValid());

    // A binary file as libplist writes it, with a dictionary, text and numbers.
    plist_t root = plist_new_dict();
    plist_t list = plist_new_array();
    plist_array_append_item(list, plist_new_string("two"));
    plist_array_append_item(list, plist_new_uint(3));
    plist_dict_set_item(root, "list", list);
    plist_dict_set_item(root, "flag", plist_new_bool(1));
    char *binary = nullptr;
    uint32_t length = 0;
    plist_to_bin(root, &binary, &length);
    plist_free(root);
    const QVariant read = PropertyList::fromData(QByteArray(binary, qsizetype(length)));
    free(binary);
    EXPECT_EQ(read, (QVariantMap{{"list", QVariantList{"two", qint64(3)}}, {"flag", true}}));
}

#include "additions/ovexception.h"
#include "player/memoryplayer.h"
#include "pool/storemetadata.h"
#include "pool/tagtable.h"

#include <QFile>
#include <QTemporaryDir>
#include <QtEndian>

#include <gtest/gtest.h>

namespace {

QByteArray bigEndian(quint32 number)
{
    QByteArray bytes(4, '\0');
    qToBigEndian(number, bytes.data());
    return bytes;
}

class StoreValuesTest : public ::testing::Test
{
protected:
    QString writeFile(const QByteArray &bytes)
    {
        const QString path = dir.filePath(QStringLiteral("track.m4a"));
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
        file.write(bytes);
        return path;
    }
    ITunesFileTrack trackAt(const QString &path)
    {
        return player->handle<ITunesFileTrack>(player->addFileTrack(QStringLiteral("Song"), path));
    }

    QTemporaryDir dir;
    MemoryPlayerPtr player = MemoryPlayer::create();
};

TEST_F(StoreValuesTest, StoreIdentifierFollowsTheSongAtomInTheFirstKilobyte)
{
    const QByteArray pad8(8, 'x');
    const struct
    {
        QByteArray bytes;
        QString identifier;
    } rows[] = {
        {"songxxxx", {}},
        {"song" + bigEndian(5) + "x", {}},
        {"song" + bigEndian(5) + "xxx", {}}, // 11 bytes: the search leaves the last 8 out
        {"song" + bigEndian(5) + "xxxx", "5"},
        {"song" + bigEndian(123456789) + pad8, "123456789"},
        {"moov....song" + bigEndian(4294967295u) + pad8, "4294967295"},
        {"song" + bigEndian(0) + pad8, {}},
        {"sonG" + bigEndian(5) + pad8, {}},
        {QByteArray(1020, ' ') + "song" + bigEndian(5) + pad8, {}}, // its number lies past byte 1024
    };
    for (const auto &row : rows) {
        const QString identifier = ov_iTunesStoreIdentifierFromTrack(trackAt(writeFile(row.bytes)));
        EXPECT_EQ(identifier, row.identifier) << row.bytes.toHex().constData();
        EXPECT_EQ(pullTrackTag(trackAt(writeFile(row.bytes)), 101), row.identifier);
    }
}

TEST_F(StoreValuesTest, StoreIdentifierOfFilesTooShortEmptyOrMissing)
{
    try {
        ov_iTunesStoreIdentifierFromTrack(trackAt(writeFile("song123")));
        ADD_FAILURE() << "a file of 7 bytes must raise";
    } catch (const OVException &exception) {
        EXPECT_EQ(exception.name(), QStringLiteral("NSRangeException"));
    }
    EXPECT_TRUE(ov_iTunesStoreIdentifierFromTrack(trackAt(writeFile({}))).isNull());
    EXPECT_TRUE(ov_iTunesStoreIdentifierFromTrack(trackAt(dir.filePath("gone.m4a"))).isNull());
    EXPECT_TRUE(ov_iTunesStoreIdentifierFromTrack(ITunesFileTrack()).isNull());
}

TEST_F(StoreValuesTest, StoreTagsAreTheTextsOfTheFileItems)
{
    MemoryObjectPtr object = player->addFileTrack(QStringLiteral("Song"), QStringLiteral("/music/a.m4a"));
    object->setStored(Prop::storeMetadata, QVariantMap{{"itsk/apID", "buyer@example.org"},
                                                       {"itsk/rtng", qint64(4)},
                                                       {"itsk/ownr", QByteArray("raw")}});
    const ITunesFileTrack track = player->handle<ITunesFileTrack>(object);
    EXPECT_EQ(pullTrackTag(track, 102), QStringLiteral("buyer@example.org"));
    EXPECT_EQ(pullTrackTag(track, 105), QStringLiteral("4"));
    EXPECT_FALSE(pullTrackObject(track, 103, true).isValid()); // bytes have no text

    object->setStored(Prop::location, QString());
    EXPECT_FALSE(pullTrackObject(track, 102, true).isValid());
}

TEST(MetadataSearch, NestedListsAndMapsDepthFirst)
{
    const QString k = QStringLiteral("k");
    const QVariantMap hit{{k, 1}};
    const struct
    {
        const char *what;
        QVariantList items;
        QVariant expected;
    } rows[] = {
        {"in a nested list", {QVariantList{QVariantMap{{"a", 0}}, hit}}, 1},
        {"first found wins", {hit, QVariantMap{{k, 2}}}, 1},
        {"empty map skipped", {QVariantMap(), hit}, 1},
        {"other values skipped", {QStringLiteral("k"), 5, hit}, 1},
        {"empty list stops", {QVariantList(), hit}, {}},
        {"empty list stops from inside", {QVariantList{QVariantList()}, hit}, {}},
        {"map value searched further", {QVariantMap{{k, QVariantMap{{k, 3}}}}}, 3},
        {"list value searched further", {QVariantMap{{k, QVariantList{QVariantMap{{k, 4}}}}}}, 4},
        {"empty value list gives nothing there", {QVariantMap{{k, QVariantList()}}, hit}, 1},
        {"missing", {QVariantMap{{"a", 1}}}, {}},
    };
    for (const auto &row : rows)
        EXPECT_EQ(ov_findObjectForKeyInItems(k, row.items), row.expected) << row.what;
}

} // namespace

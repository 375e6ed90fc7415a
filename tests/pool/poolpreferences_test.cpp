#include "pooltestsupport.h"

#include "additions/propertylist.h"
#include "pool/functionpoollog.h"
#include "pool/functionpoolpreferences.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

TEST(FunctionPoolPreferences, TheTemporaryFolderIsEmptiedAtStartAndGoneAfterClose)
{
    FunctionPoolPreferences preferences;
    const QString temporary = preferences.prefAppSupportLocationTmp();
    ASSERT_TRUE(QDir().mkpath(temporary));
    QFile leftover(temporary + "/leftover.jpg");
    ASSERT_TRUE(leftover.open(QIODevice::WriteOnly));
    leftover.close();

    preferences.openFunctionPool();
    EXPECT_TRUE(QDir(temporary).exists());
    EXPECT_TRUE(QDir(temporary).isEmpty());
    preferences.closeFunctionPool();
    EXPECT_FALSE(QFileInfo::exists(temporary));
    EXPECT_TRUE(QFileInfo::exists(preferences.prefUserPrefPlistLocation()));
}

TEST(FunctionPoolPreferences, SheetRefusesContradictingSettingsInOrder)
{
    struct Case
    {
        const char *property;
        QVariant value;
        PoolPreferencesAlert alert;
    };
    using enum PoolPreferencesAlert;
    const QList<Case> cases{
        {"prefArtworkFrontPosition", 0, ContradictorySettings},
        {"prefArtworkBackPosition", -3, ContradictorySettings},
        {"prefArtworkBackPosition", 1, InvalidSettings},
        {"prefArtworkFrontSuffix", "", InvalidSettings},
        {"prefArtworkBackSuffix", "_COVER a", InvalidSettings},
        {"prefAlbumDiscFolderName", "", InvalidSettings},
        {"prefFileAudioSuffixs", "", InvalidSettings},
        {"prefFileImageSuffixs", "", InvalidSettings},
        {"prefArtworkBackPosition", 7, None},
    };
    for (const Case &c : cases) {
        FunctionPoolPreferences preferences;
        preferences.setProperty(c.property, c.value);
        EXPECT_EQ(preferences.closePreferencesPanel(), c.alert) << c.property;
        EXPECT_EQ(QFileInfo::exists(preferences.prefUserPrefPlistLocation()), c.alert == None) << c.property;
        QFile::remove(preferences.prefUserPrefPlistLocation());
    }
    EXPECT_EQ(FunctionPoolPreferences::preferencesAlert(PoolPreferencesAlert::InvalidSettings).informativeKey, "0003.0005");
}

TEST(FunctionPoolPreferences, SuffixesSplitAtCommaAndSpaceOnlyAndABrokenFileHeals)
{
    FunctionPoolPreferences preferences;
    preferences.setPrefFileAudioSuffixs("mp3, flac,ogg");
    EXPECT_EQ(preferences.closePreferencesPanel(), PoolPreferencesAlert::None);
    EXPECT_EQ(preferences.prefFileAudioSuffixList(), (QStringList{"mp3", "flac,ogg"}));

    QFile file(preferences.prefUserPrefPlistLocation());
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("<plist><dict><key>broken");
    file.close();
    FunctionPoolPreferences reread;
    reread.openFunctionPool();
    EXPECT_EQ(reread.prefFileAudioSuffixList().size(), 9);
    EXPECT_TRUE(reread.prefConfirmFunction());
    EXPECT_EQ(PropertyList::readMap(reread.prefUserPrefPlistLocation()).value("AlbumDiscFolderName"), "CD");
}

TEST_F(PoolTest, FileHelpersFollowThePreferences)
{
    // An Organizer file that lacks the disc folder name: the default holds, not an empty name
    // that every folder would start with.
    {
        FunctionPoolPreferences preferences;
        preferences.saveUserPreferences();
        QVariantMap file = PropertyList::readMap(preferences.prefUserPrefPlistLocation());
        ASSERT_EQ(file.remove("AlbumDiscFolderName"), 1);
        ASSERT_TRUE(PropertyList::write(preferences.prefUserPrefPlistLocation(), file));
    }
    makePool();
    EXPECT_EQ(pool->myPreferences()->prefAlbumDiscFolderName(), "CD");
    EXPECT_EQ(pool->subAlbumFolderPath("/m/Album/CD 2"), "/m/Album");
    EXPECT_EQ(pool->subAlbumFolderPath("/m/Album/cd 2"), "/m/Album/cd 2");
    EXPECT_EQ(pool->subAlbumFolderPath("/m/Album"), "/m/Album");
    EXPECT_TRUE(pool->subIsAudioFile("/m/a.MP3"));
    EXPECT_FALSE(pool->subIsAudioFile("/m/a.flac"));
    EXPECT_TRUE(pool->subIsImageFile("/m/cover.Jpeg"));
    EXPECT_FALSE(pool->subIsImageFile("/m/jpg"));
    pool->myPreferences()->closeFunctionPool();
    EXPECT_EQ(PropertyList::readMap(pool->myPreferences()->prefUserPrefPlistLocation()).value("AlbumDiscFolderName"), "CD");
    pool->myPreferences()->setPrefAlbumDiscFolderName("");
    EXPECT_EQ(pool->subAlbumFolderPath("/m/Album"), "/m/Album");
}

TEST_F(PoolTest, LogStatesPickIconsAndFiltersDropOnlyStatesZeroAndOne)
{
    makePool();
    FunctionPoolPreferences *preferences = pool->myPreferences();
    preferences->setPrefLogChangedTracks(false);
    preferences->setPrefLogUnchangedTracks(false);
    FunctionPoolLog *log = pool->myFunctionPoolLog();
    for (qint64 state = -2; state <= 7; ++state)
        log->addLogEntry({}, 0, TrackLogState(state), QString::number(state));
    QStringList lines;
    for (const QVariantMap &entry : log->yourLogEntries())
        lines.append(entry.value("InfoText").toString() + " " + entry.value("Icon").toString());
    EXPECT_EQ(lines, (QStringList{"-2 OVImageStatusLogError", "-1 OVImageStatusLogError",
                                  "2 OVImageStatusLogRemoved", "3 OVImageStatusLogMissing",
                                  "4 OVImageStatusLogChanged", "5 OVImageStatusLogMissing",
                                  "6 OVImageStatusLogAdded", "7 OVImageStatusLogError"}));
    preferences->setPrefLogChangedTracks(true);
    log->addLogEntry({}, 0, TrackLogState::Changed, "changed");
    EXPECT_EQ(log->rowCount(), 9);
}

TEST_F(PoolTest, RevealShowsTheFileOfTheLastSelectedRowIfItExists)
{
    makePool();
    const QString existing = pool->myPreferences()->prefAppSupportLocationTmp();
    FunctionPoolLog *log = pool->myFunctionPoolLog();
    log->addLogEntry({}, 0, TrackLogState::Unchanged, "A - B\n" + existing);
    log->addLogEntry({}, 1, TrackLogState::NoLocation, "A - C\n.../... ?");
    log->addLogEntry({}, 2, TrackLogState::Unchanged, existing);
    log->revealItem({});
    log->revealItem({0, 1});
    EXPECT_TRUE(frontEnd.revealed.isEmpty());
    log->revealItem({1, 0});
    log->revealItem({2});
    EXPECT_EQ(frontEnd.revealed, (QStringList{existing, existing}));
}

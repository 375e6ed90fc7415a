#include "additions/ovapplication.h"
#include "additions/propertylist.h"
#include "application/apppreferences.h"
#include "application/preferencesmigration.h"

#include <QDir>
#include <QFileInfo>

#include <gtest/gtest.h>

namespace {

QString oldFile(const QString &below)
{
    const QString path = PreferencesMigration::deprecatedApplicationSupportDirectoryFor3v5() + "/" + below;
    QDir().mkpath(QFileInfo(path).path());
    return path;
}

void writeOld(const QString &below, const QVariantMap &map)
{
    ASSERT_TRUE(PropertyList::write(oldFile(below), map));
}

QVariantMap newFile(PreferenceLocation location)
{
    return PropertyList::readMap(AppPreferences::locationToPreferences(location));
}

bool oldTreeExists()
{
    return QFileInfo::exists(PreferencesMigration::deprecatedApplicationSupportDirectoryForApp());
}

} // namespace

TEST(PreferencesMigration, NothingToCarryOver)
{
    AppPreferences own;
    AppPreferences *preferences = &own;
    EXPECT_FALSE(preferences->deprecatedPreferencsConvert());
    EXPECT_FALSE(QFileInfo::exists(AppPreferences::locationToPreferences(PreferenceLocation::General)));

    // An old tree is left alone once the current one has general settings.
    writeOld("Preferences/Application.plist", {{"UseLastFM", true}});
    ASSERT_TRUE(PropertyList::write(AppPreferences::locationToPreferences(PreferenceLocation::General), QVariantMap{{"UseLastFM", false}}));
    EXPECT_FALSE(preferences->deprecatedPreferencsConvert());
    EXPECT_TRUE(oldTreeExists());
    EXPECT_FALSE(newFile(PreferenceLocation::General).value("UseLastFM").toBool());
}

TEST(PreferencesMigration, CarriesEveryFileOverOnceAndRewritesItsKeys)
{
    const QVariantMap binding{{"keyCode", 37}, {"modifiers", 768}};
    writeOld("Preferences/Application.plist",
             {{"UseLastFM", true}, {"UseAutoLove", false}, {"UseAutoLoveValue", 20}, {"LaunchMeOnLogin", false}});
    writeOld("Preferences/TrackInfoWindow.plist", {{"Opacity", 0.5}});
    writeOld("Preferences/LastFM.plist", {{"AutoLove", true}, {"AutoLoveValue", 40}, {"UserName", "someone"}});
    writeOld("Preferences/Shortcuts.plist", {{"LastFMLoveCurrentTrack", binding}, {"PlayPause", binding}});
    writeOld("Preferences/RatingNotifier.plist", {{"RatingValue", 3}, {"Other", 1}});
    writeOld("Preferences/Controller.plist",
             {{"DesignRatingBackground", 1}, {"DesignYourTunesControllerBackground", 2}, {"DesignLove", false}});
    writeOld("FunctionPool/SearchSets.plist", {{"Sets", QVariantList{"a"}}});
    writeOld("FunctionPool/Scripts.plist", {{"Scripts", QVariantList{}}});
    // A file of the current tree is never overwritten.
    ASSERT_TRUE(PropertyList::write(AppPreferences::locationToPreferences(PreferenceLocation::LyricsWindow), QVariantMap{{"Mine", true}}));
    writeOld("Preferences/TrackLyricsWindow.plist", {{"Theirs", true}});

    AppPreferences own;
    AppPreferences *preferences = &own;
    ASSERT_TRUE(preferences->deprecatedPreferencsConvert());
    EXPECT_FALSE(oldTreeExists());

    const QVariantMap general = newFile(PreferenceLocation::General);
    EXPECT_TRUE(general.value("UseLastFM").toBool());
    EXPECT_TRUE(general.value("UseAutoLove").toBool());
    EXPECT_EQ(general.value("UseAutoLoveValue").toInt(), 70);
    EXPECT_TRUE(general.value("LaunchMeOnLogin").toBool());
    EXPECT_TRUE(general.value("LaunchYourTunes").toBool());

    EXPECT_EQ(newFile(PreferenceLocation::TrackInfoWindow), (QVariantMap{{"Opacity", 0.5}}));
    EXPECT_EQ(newFile(PreferenceLocation::LyricsWindow), (QVariantMap{{"Mine", true}}));
    EXPECT_EQ(newFile(PreferenceLocation::LastFm), (QVariantMap{{"UserName", "someone"}}));
    EXPECT_EQ(newFile(PreferenceLocation::KeyBindings), (QVariantMap{{"YourTunesLoved", binding}, {"PlayPause", binding}}));
    EXPECT_EQ(newFile(PreferenceLocation::Rating), (QVariantMap{{"NotifyRatingValue", 3}, {"Other", 1}}));
    EXPECT_EQ(newFile(PreferenceLocation::StatusItem), (QVariantMap{{"DesignLove", true}}));
    EXPECT_TRUE(QFileInfo::exists(OVApplication::ov_applicationOrganizerURLForPlistSearchAndReplaceSets()));
    EXPECT_TRUE(QFileInfo::exists(OVApplication::ov_applicationOrganizerURLForPlistScripts()));
    EXPECT_FALSE(QFileInfo::exists(OVApplication::ov_applicationOrganizerURLForPlistPreferences()));

    // The old auto-love value lives in memory only, until the general file is read.
    EXPECT_EQ(preferences->prefUseAutoLoveValue(), 40);
    preferences->readUserPreferences();
    EXPECT_EQ(preferences->prefUseAutoLoveValue(), 70);

    writeOld("Preferences/Application.plist", {{"UseLastFM", false}});
    EXPECT_FALSE(preferences->deprecatedPreferencsConvert());
    EXPECT_TRUE(newFile(PreferenceLocation::General).value("UseLastFM").toBool());
}

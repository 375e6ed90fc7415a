#include "additions/appcontext.h"
#include "additions/exceptionsink.h"
#include "additions/ovapplication.h"
#include "additions/propertylist.h"
#include "application/apppreferences.h"
#include "application/loginitems.h"

#include <QCoreApplication>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>

#include <future>

#include <gtest/gtest.h>

namespace {

const QVariantMap kDefaults{
    {"LaunchMeOnLogin", true},      {"LaunchYourTunes", true},   {"ShowTrackInfoWindowWhenSkippingTrack", true},
    {"UseLastFM", false},           {"UseRatingNotifier", false}, {"UseHotkeyListener", false},
    {"UseAutoLove", true},          {"UseAutoLoveValue", 70},     {"LaunchMode", 1},
    {"LaunchLyricsWindow", false},  {"LaunchFunctionPool", false},
};

QString generalFile()
{
    return AppPreferences::locationToPreferences(PreferenceLocation::General);
}

// Compares numerically, so 1 and 1LL and true and 1 are the same setting.
void expectMapEquals(const QVariantMap &actual, const QVariantMap &expected)
{
    ASSERT_EQ(actual.keys(), expected.keys());
    for (auto it = expected.begin(); it != expected.end(); ++it)
        EXPECT_EQ(actual.value(it.key()).toLongLong(), it.value().toLongLong()) << it.key().toStdString();
}

bool launchesAtLogin()
{
    return SystemEventsApplication().ov_hasLoginItemWithPath(OVApplication::ov_path());
}

} // namespace

TEST(AppPreferences, MainThreadWritesAreSeenFromOtherThreads)
{
    AppPreferences preferences;
    AppPreferences *here = &preferences;
    EXPECT_EQ(here->thread(), QCoreApplication::instance()->thread());
    EXPECT_DOUBLE_EQ(here->prefWindowFadeTimeIn(), 0.08);
    EXPECT_EQ(here->prefAppSupportParentLocation(), OVApplication::ov_applicationSupportDirectoryURLForVersion());
    here->setPrefUseAutoLoveValue(35);
    auto fromThread = std::async(std::launch::async, [here] { return here->prefUseAutoLoveValue(); });
    EXPECT_EQ(fromThread.get(), 35);
}

TEST(AppPreferences, FirstReadWritesDefaultsThatPlistlibReads)
{
    AppPreferences own;
    AppPreferences *preferences = &own;
    preferences->readUserPreferences();

    QProcess python;
    python.start("/usr/bin/python3", {"-c", "import json, plistlib, sys\n"
                                            "print(json.dumps(plistlib.load(open(sys.argv[1], 'rb'))))",
                                      generalFile()});
    ASSERT_TRUE(python.waitForFinished(30000));
    const QVariantMap read = QJsonDocument::fromJson(python.readAllStandardOutput()).object().toVariantMap();
    expectMapEquals(read, kDefaults);
    EXPECT_EQ(read.value("UseAutoLove").typeId(), QMetaType::Bool);
    EXPECT_TRUE(launchesAtLogin());
}

TEST(AppPreferences, DamagedFileGivesDefaultsAndAFreshSave)
{
    const QByteArray damaged[] = {"", "not a property list", "<?xml version=\"1.0\"?><plist><dict><key>",
                                  PropertyList::toXml(QVariantList{1, 2}), PropertyList::toXml(QVariantMap{})};
    AppPreferences own;
    AppPreferences *preferences = &own;
    for (const QByteArray &bytes : damaged) {
        QFile file(generalFile());
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
        file.close();
        preferences->setPrefUseLastFM(true);
        preferences->readUserPreferences();
        EXPECT_FALSE(preferences->prefUseLastFM()) << bytes.constData();
        expectMapEquals(PropertyList::readMap(generalFile()), kDefaults);
    }
}

TEST(AppPreferences, AMissingKeyTakesItsDefaultAndTheSaveWritesItKeepingTheOthers)
{
    QVariantMap stored = kDefaults;
    stored.remove("UseLastFM");
    stored.insert("UseHotkeyListener", true);
    ASSERT_TRUE(PropertyList::write(generalFile(), stored));
    int logged = 0;
    appContext()->setExceptionHandler([&](const OVException &) { ++logged; });

    AppPreferences own;
    AppPreferences *preferences = &own;
    preferences->readUserPreferences();
    EXPECT_FALSE(preferences->isSettingNull("prefUseLastFM"));
    EXPECT_EQ(preferences->property("prefUseLastFM"), kDefaults.value("UseLastFM"));
    EXPECT_TRUE(preferences->prefUseHotkeyListener());

    preferences->saveUserPreferences();
    appContext()->setExceptionHandler({});
    EXPECT_EQ(logged, 0);
    EXPECT_TRUE(preferences->prefUseHotkeyListener());
    QVariantMap healed = kDefaults;
    healed.insert("UseHotkeyListener", true);
    expectMapEquals(PropertyList::readMap(generalFile()), healed);
}

TEST(AppPreferences, LocationsByNumber)
{
    const QString version = OVApplication::ov_applicationSupportDirectoryURLForVersion();
    const std::pair<int, QString> table[] = {
        {1, "/Preferences/Track Info Window.plist"}, {2, "/Preferences/Lyrics Window.plist"},
        {3, "/Preferences/Last.fm.plist"},           {4, "/Preferences/General.plist"},
        {5, "/Info/.orvane"},                        {6, "/Info/log.txt"},
        {7, "/Preferences/Status Item.plist"},       {8, "/Preferences/Rating.plist"},
        {9, "/Preferences/Key Bindings.plist"},      {0, ""},
        {10, ""},                                    {-4, ""},
    };
    for (const auto &[number, below] : table)
        EXPECT_EQ(AppPreferences::locationToPreferences(PreferenceLocation(number)), below.isEmpty() ? QString() : version + below)
            << number;
}

TEST(AppPreferences, NewShortVersionStartsFromAnEmptyTree)
{
    AppPreferences own;
    AppPreferences *preferences = &own;
    preferences->readUserPreferences();
    preferences->setPrefUseAutoLoveValue(30);
    preferences->saveUserPreferences();
    const QString oldFile = generalFile();

    QCoreApplication::setApplicationVersion("9.1");
    const QString newFile = generalFile();
    EXPECT_NE(newFile, oldFile);
    EXPECT_FALSE(QFile::exists(newFile));
    preferences->loadUserPreferencesDefaults();
    preferences->readUserPreferences();
    QCoreApplication::setApplicationVersion({});
    EXPECT_EQ(preferences->prefUseAutoLoveValue(), 70);
    expectMapEquals(PropertyList::readMap(newFile), kDefaults);
    EXPECT_EQ(PropertyList::readMap(oldFile).value("UseAutoLoveValue").toInt(), 30);
}

TEST(AppPreferences, LoginItemFollowsModeAndLaunchSetting)
{
    AppPreferences own;
    AppPreferences *preferences = &own;
    preferences->saveUserPreferences();
    ASSERT_TRUE(launchesAtLogin());

    preferences->setPrefLaunchAppMode(2);
    preferences->saveUserPreferences();
    EXPECT_FALSE(launchesAtLogin());
    EXPECT_TRUE(PropertyList::readMap(generalFile()).value("LaunchMeOnLogin").toBool());

    preferences->setPrefLaunchAppMode(1);
    preferences->saveUserPreferences();
    EXPECT_TRUE(launchesAtLogin());
    preferences->setPrefLaunchMeOnLogin(false);
    preferences->saveUserPreferences();
    EXPECT_FALSE(launchesAtLogin());
}

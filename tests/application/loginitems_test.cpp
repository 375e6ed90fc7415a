#include "additions/ovapplication.h"
#include "application/loginitems.h"

#include <QDir>
#include <QFile>
#include <QStandardPaths>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

void writeEntry(const QString &path, const QByteArray &text)
{
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(text);
}

} // namespace

TEST(LoginItems, AddFindAndRemoveIgnoringCase)
{
    QTemporaryDir dir;
    const SystemEventsApplication events(dir.filePath("autostart"));
    const QString odd = "/opt/My \"Odd\" $App\\%1/bin/run me";

    EXPECT_FALSE(events.ov_addLoginItemWithPath({}, false));
    ASSERT_TRUE(events.ov_addLoginItemWithPath(odd, true));
    ASSERT_TRUE(events.ov_addLoginItemWithPath("/usr/bin/other", false));
    ASSERT_EQ(events.loginItems().size(), 2);
    EXPECT_EQ(events.loginItems().at(1).path(), odd);
    EXPECT_TRUE(events.loginItems().at(1).hidden());
    EXPECT_FALSE(events.loginItems().at(0).hidden());

    EXPECT_TRUE(events.ov_hasLoginItemWithPath(odd.toUpper()));
    EXPECT_FALSE(events.ov_hasLoginItemWithPath({}));
    EXPECT_FALSE(events.ov_hasLoginItemWithPath("/opt/My"));
    EXPECT_FALSE(events.ov_removeLoginItemWithPath({}));
    EXPECT_TRUE(events.ov_removeLoginItemWithPath(odd.toLower()));
    EXPECT_FALSE(events.ov_hasLoginItemWithPath(odd));
    EXPECT_FALSE(events.ov_removeLoginItemWithPath(odd));
    EXPECT_TRUE(events.ov_hasLoginItemWithPath("/usr/bin/other"));
}

TEST(LoginItems, ReadsEntriesOfOtherPrograms)
{
    QTemporaryDir dir;
    const SystemEventsApplication events(dir.path());
    writeEntry(dir.filePath("player.desktop"), "# comment\n[Desktop Entry]\nName=Player\nExec=/opt/player/bin/player %U\n"
                                               "[Desktop Action New]\nExec=/elsewhere\n");
    writeEntry(dir.filePath("off.desktop"), "[Desktop Entry]\nExec=/usr/bin/off\nHidden=true\n");
    writeEntry(dir.filePath("nothing.desktop"), "[Desktop Entry]\nName=Nothing\n");
    writeEntry(QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation)
                   + "/applications/org.example.Player.desktop",
               "[Desktop Entry]\nExec=\"/opt/player/bin/player\" --new\n");

    const QList<SystemEventsLoginItem> items = events.loginItems();
    ASSERT_EQ(items.size(), 1);
    EXPECT_EQ(items.at(0).path(), "/opt/player/bin/player");
    EXPECT_EQ(items.at(0).ov_bundleIdentifier(), "org.example.Player");
    EXPECT_EQ(SystemEventsLoginItem({}, OVApplication::ov_path(), true).ov_bundleIdentifier(),
              OVApplication::ov_bundleIdentifier());
    EXPECT_EQ(SystemEventsLoginItem({}, "/usr/bin/unknown", true).ov_bundleIdentifier(), QString());
}

TEST(LoginItems, LaunchingAtLoginWritesOnlyWhenTheWishDiffers)
{
    QTemporaryDir dir;
    const QString folder = dir.filePath("autostart");
    const SystemEventsApplication events(folder);

    EXPECT_TRUE(OVApplicationLogin::ov_setLaunchingAtLogin(false, events));
    EXPECT_FALSE(QFileInfo::exists(folder));

    ASSERT_TRUE(OVApplicationLogin::ov_setLaunchingAtLogin(true, events));
    EXPECT_TRUE(OVApplicationLogin::ov_isLaunchingAtLogin(events));
    const QStringList files = QDir(folder).entryList(QDir::Files);
    ASSERT_EQ(files.size(), 1);
    // A mark of our own shows whether the entry is written again.
    QFile entry(QDir(folder).filePath(files.first()));
    ASSERT_TRUE(entry.open(QIODevice::Append));
    entry.write("# untouched\n");
    entry.close();

    EXPECT_TRUE(OVApplicationLogin::ov_setLaunchingAtLogin(true, events));
    EXPECT_EQ(QDir(folder).entryList(QDir::Files), files);
    ASSERT_TRUE(entry.open(QIODevice::ReadOnly));
    EXPECT_TRUE(entry.readAll().endsWith("# untouched\n"));
    entry.close();

    EXPECT_TRUE(OVApplicationLogin::ov_setLaunchingAtLogin(false, events));
    EXPECT_FALSE(OVApplicationLogin::ov_isLaunchingAtLogin(events));
    EXPECT_TRUE(QDir(folder).isEmpty());
}

#include "services/hotkeys/globalhotkeylistener.h"
#include "services/hotkeys/gui/oxhotkeybutton.h"
#include "services/hotkeys/keyboardlayout.h"

#include "additions/appcontext.h"
#include "additions/propertylist.h"
#include "player/memoryplayer.h"

#include <QFile>
#include <QTest>
#include <QWidget>

#include <xkbcommon/xkbcommon-keysyms.h>

#include <gtest/gtest.h>

namespace {

constexpr qint64 kShiftControl = kHotkeyShift | kHotkeyControl;

struct FakeGrabber : HotkeyGrabber
{
    bool grabKey(quint32 keyCode, quint64 flags) override
    {
        if (taken.contains(keyCode))
            return false;
        held.append({keyCode, flags});
        return true;
    }
    void ungrabKey(quint32 keyCode, quint64 flags) override { held.removeAll(std::pair{keyCode, flags}); }
    QList<quint32> taken;
    QList<std::pair<quint32, quint64>> held;
};

QVariantMap item(qint64 keyCode, qint64 flags)
{
    return HotkeyListenerPreferences::hotkeyItem(keyCode, flags);
}

TEST(HotkeyPreferences, NamesTagsAndTheFileAsItStands)
{
    EXPECT_EQ(HotkeyListenerPreferences::hotkeyNameTable().size(), 15);
    EXPECT_EQ(HotkeyListenerPreferences::hotkeyNameForTag(8), "YourTunesNextTrack");
    EXPECT_EQ(HotkeyListenerPreferences::tagForHotkeyName("YourTunesRatingRemove"), 15);
    EXPECT_EQ(HotkeyListenerPreferences::tagForHotkeyName("Unknown"), -1);
    EXPECT_EQ(HotkeyListenerPreferences::tagForHotkeyName(""), -1);
    EXPECT_TRUE(HotkeyListenerPreferences::hotkeyNameForTag(0).isEmpty());
    EXPECT_TRUE(HotkeyListenerPreferences::hotkeyNameForTag(16).isEmpty());

    // A fresh installation has none, and an unreadable file is replaced by the empty map.
    const QString path = HotkeyListenerPreferences::preferencesLocation();
    EXPECT_TRUE(HotkeyListenerPreferences().hotkeyItems().isEmpty());
    QFile damaged(path);
    ASSERT_TRUE(damaged.open(QIODevice::WriteOnly));
    damaged.write("<plist><dict><key>broken");
    damaged.close();
    EXPECT_TRUE(HotkeyListenerPreferences().hotkeyItems().isEmpty());
    EXPECT_EQ(PropertyList::read(path).toMap(), QVariantMap());

    HotkeyListenerPreferences preferences;
    preferences.setHotkeyItems({{"YourTunesMute", item(58, kHotkeyOption)}, {"YourTunesPlayPause", item(58, kHotkeyOption)}});
    ASSERT_TRUE(preferences.saveUserPreferences());
    const QVariantMap stored = PropertyList::read(path).toMap(); // the map itself, no wrapper
    EXPECT_EQ(stored.value("YourTunesMute").toMap().value("KeyCode").toLongLong(), 58);
    EXPECT_EQ(HotkeyListenerPreferences().hotkeyItemWithKeyCode(58, kHotkeyOption), "YourTunesMute");
    EXPECT_TRUE(preferences.hotkeyItemWithKeyCode(58, 0).isEmpty());
}

class HotkeyListenerTest : public ::testing::Test
{
protected:
    HotkeyListenerTest()
    {
        player->makeDefault();
        hooks.yourTunes = [this] { return player->application(); };
        hooks.hasTrackInfoWindow = [this] { return infoWindowOpen; };
        hooks.closeTrackInfoWindow = [this] { calls << "close info"; };
        hooks.showTrackInfoWindow = [this] { calls << "show info"; };
        hooks.hasLyricsWindow = [] { return false; };
        hooks.showLyricsWindow = [this] { calls << "show lyrics"; };
        hooks.showFunctionPool = [this] { calls << "pool"; };
        hooks.enableDisableLastFM = [this] { calls << "lastfm"; };
    }
    ~HotkeyListenerTest() override { appContext()->setPlayerBackend(nullptr); }

    qint64 volumeAfter(qint64 volume, HotkeyTag tag)
    {
        player->setApplicationValue(Prop::soundVolume, volume);
        runShortcutActionForHotkeyID(qint64(tag), hooks);
        return player->applicationValue(Prop::soundVolume).toLongLong();
    }
    qint64 ratingAfter(qint64 rating, HotkeyTag tag)
    {
        track->setStored(Prop::rating, rating);
        runShortcutActionForHotkeyID(qint64(tag), hooks);
        return track->stored(Prop::rating).toLongLong();
    }

    MemoryPlayerPtr player = MemoryPlayer::create();
    MemoryObjectPtr track = player->addFileTrack("A", "/music/a.mp3");
    MemoryObjectPtr next = player->addFileTrack("B", "/music/b.mp3");
    HotkeyActionHooks hooks;
    bool infoWindowOpen = false;
    QStringList calls;
};

TEST_F(HotkeyListenerTest, ActionsStayWithinTheirRanges)
{
    player->setCurrentTrack(track);
    EXPECT_EQ(volumeAfter(95, HotkeyTag::YourTunesSoundVolumeUp), 100);
    EXPECT_EQ(volumeAfter(5, HotkeyTag::YourTunesSoundVolumeDown), 0);
    EXPECT_EQ(ratingAfter(90, HotkeyTag::YourTunesRatingStarUp), 100);
    EXPECT_EQ(ratingAfter(10, HotkeyTag::YourTunesRatingStarDown), 0);
    EXPECT_EQ(ratingAfter(80, HotkeyTag::YourTunesRatingRemove), 0);

    runShortcutActionForHotkeyID(qint64(HotkeyTag::YourTunesMute), hooks);
    EXPECT_TRUE(player->applicationValue(Prop::mute).toBool());
    runShortcutActionForHotkeyID(qint64(HotkeyTag::YourTunesMute), hooks);
    EXPECT_FALSE(player->applicationValue(Prop::mute).toBool());
    // Loved is set, never toggled off.
    runShortcutActionForHotkeyID(qint64(HotkeyTag::YourTunesLoved), hooks);
    runShortcutActionForHotkeyID(qint64(HotkeyTag::YourTunesLoved), hooks);
    EXPECT_TRUE(track->stored(Prop::loved).toBool());
    runShortcutActionForHotkeyID(qint64(HotkeyTag::YourTunesNextTrack), hooks);
    EXPECT_EQ(player->currentTrackObject(), next);
    runShortcutActionForHotkeyID(qint64(HotkeyTag::YourTunesRevealCurrentTrack), hooks);
    EXPECT_EQ(player->lastRevealed(), next);

    // Identifiers outside 1 to 15, and player actions without a player, do nothing.
    player->resetWriteCounts();
    for (const qint64 id : {-1, 0, 16})
        runShortcutActionForHotkeyID(id, hooks);
    HotkeyActionHooks withoutPlayer = hooks;
    withoutPlayer.yourTunes = nullptr;
    runShortcutActionForHotkeyID(qint64(HotkeyTag::YourTunesSoundVolumeUp), withoutPlayer);
    EXPECT_EQ(player->totalWriteCount(), 0);
    EXPECT_TRUE(calls.isEmpty());

    runShortcutActionForHotkeyID(qint64(HotkeyTag::ShowTrackInfoWindow), hooks);
    infoWindowOpen = true;
    runShortcutActionForHotkeyID(qint64(HotkeyTag::ShowTrackInfoWindow), hooks);
    runShortcutActionForHotkeyID(qint64(HotkeyTag::ShowLyricsWindow), hooks);
    runShortcutActionForHotkeyID(qint64(HotkeyTag::ShowFunctionPool), hooks);
    runShortcutActionForHotkeyID(qint64(HotkeyTag::LastFMEnableDisable), hooks);
    EXPECT_EQ(calls, QStringList({"show info", "close info", "show lyrics", "pool", "lastfm"}));
}

TEST_F(HotkeyListenerTest, OnlySetKnownItemsTakeSlotsAndPressesActOnlyWhileListening)
{
    // Map order: PlayPause, Unknown, YourTunesMute, YourTunesNextTrack.
    ASSERT_TRUE(PropertyList::write(HotkeyListenerPreferences::preferencesLocation(),
                                    QVariantMap{{"Unknown", item(30, 0)},
                                                {"YourTunesMute", item(-1, -1)},
                                                {"YourTunesNextTrack", item(57, kShiftControl)},
                                                {"YourTunesPlayPause", item(33, kHotkeyCommand)}}));
    auto grabber = std::make_unique<FakeGrabber>();
    FakeGrabber &grabs = *grabber;
    grabs.taken = {33}; // held by another program
    GlobalHotkeyListener listener(hooks, std::move(grabber));
    player->setCurrentTrack(track);
    listener.startListener();

    const auto &grabbed = listener.eventHotKeyRefs();
    EXPECT_TRUE(grabbed[0].valid);
    EXPECT_EQ(grabbed[0].tag, 8);
    EXPECT_FALSE(grabbed[1].valid); // refused, and reported
    EXPECT_EQ(grabbed[1].tag, 6);
    EXPECT_EQ(grabbed[2].tag, 0); // nothing else took a slot
    EXPECT_EQ(grabs.held, (QList<std::pair<quint32, quint64>>{{57, kShiftControl}}));

    grabs.pressed(57, kHotkeyShift); // not the combination
    EXPECT_EQ(player->currentTrackObject(), track);
    grabs.pressed(57, kShiftControl);
    EXPECT_EQ(player->currentTrackObject(), next);

    // While stopped (the preferences window open) a press does nothing.
    listener.stopListener();
    EXPECT_TRUE(grabs.held.isEmpty());
    grabs.pressed(57, kShiftControl);
    EXPECT_EQ(player->currentTrackObject(), next);
    listener.startListener();
    grabs.pressed(57, kShiftControl);
    EXPECT_EQ(player->currentTrackObject(), track);
}

class KeyNamesTest : public ::testing::Test
{
protected:
    quint32 code(quint32 keysym) const { return us->keyCodeForKeysym(keysym); }
    std::shared_ptr<KeyboardLayout> us = KeyboardLayout::fromNames("us");
};

TEST_F(KeyNamesTest, NamesComeFromTheLayoutAndTheTablesOfSpecialKeys)
{
    ASSERT_TRUE(us);
    EXPECT_EQ(us->stringForKeyCode(code(XKB_KEY_a)), "a");
    EXPECT_EQ(us->stringForKeyCode(code(XKB_KEY_F5)), "F5");
    EXPECT_EQ(us->stringForKeyCode(code(XKB_KEY_Return)), "Return");
    EXPECT_EQ(us->stringForKeyCode(code(XKB_KEY_KP_Enter)), "Enter");
    EXPECT_EQ(us->stringForKeyCode(code(XKB_KEY_space)), "Space");
    EXPECT_TRUE(us->stringForKeyCode(code(XKB_KEY_Print)).isNull());
    EXPECT_TRUE(us->stringForKeyCode(-1).isNull());
    EXPECT_TRUE(us->stringForKeyCode(0).isNull());
    // The same key under another layout.
    const auto german = KeyboardLayout::fromNames("de");
    ASSERT_TRUE(german);
    EXPECT_EQ(german->stringForKeyCode(code(XKB_KEY_y)), "z");

    EXPECT_EQ(hotkeyReadableName(code(XKB_KEY_a), kHotkeyCommand | kHotkeyOption | kHotkeyControl | kHotkeyShift, us.get()),
              "⇧ ⌃ ⌥ ⌘ a");
    EXPECT_EQ(hotkeyReadableName(code(XKB_KEY_Next), 0, us.get()), "⇣");
    EXPECT_EQ(hotkeyReadableName(code(XKB_KEY_BackSpace), kHotkeyShift, us.get()), "⇧ ←");
    EXPECT_EQ(hotkeyReadableName(-1, -1, us.get()), "Click to set a shortcut");
    EXPECT_TRUE(hotkeyReadableName(code(XKB_KEY_Print), 0, us.get()).isNull());
}

TEST_F(KeyNamesTest, TheButtonRecordsOneCombinationAtATime)
{
    QWidget pane;
    auto *first = new OXHotkeyButton(int(HotkeyTag::YourTunesNextTrack), us, &pane);
    auto *second = new OXHotkeyButton(int(HotkeyTag::YourTunesMute), us, &pane);
    auto *plain = new OXHotkeyButton(0, us, &pane); // names no hotkey
    first->setGeometry(0, 0, 160, 24);
    second->setGeometry(0, 30, 160, 24);
    pane.show();
    first->setCurrentKeyCode(code(XKB_KEY_n));
    first->setCurrentModifierFlags(kShiftControl | 0x1); // only the modifier bits stay
    EXPECT_EQ(first->currentModifierFlags(), kShiftControl);
    EXPECT_EQ(first->text(), "⇧ ⌃ n");

    QTest::mouseClick(first, Qt::LeftButton, {}, QPoint(20, 12));
    EXPECT_TRUE(first->isRecording());
    EXPECT_EQ(first->text(), "Press the keys...");
    QTest::mouseClick(second, Qt::LeftButton, {}, QPoint(20, 12));
    EXPECT_TRUE(second->isRecording());
    EXPECT_FALSE(first->isRecording()); // ended, keeping its combination
    EXPECT_EQ(first->currentKeyCode(), code(XKB_KEY_n));

    // A plain letter is a hotkey; a modifier alone waits for the key.
    QKeyEvent shift(QEvent::KeyPress, Qt::Key_Shift, Qt::ShiftModifier, code(XKB_KEY_Shift_L), 0, 0);
    QApplication::sendEvent(second, &shift);
    EXPECT_TRUE(second->isRecording());
    QKeyEvent letter(QEvent::KeyPress, Qt::Key_M, Qt::NoModifier, code(XKB_KEY_m), 0, 0, "m");
    QApplication::sendEvent(second, &letter);
    EXPECT_FALSE(second->isRecording());
    EXPECT_EQ(second->currentKeyCode(), code(XKB_KEY_m));
    EXPECT_EQ(second->currentModifierFlags(), 0);
    EXPECT_EQ(second->text(), "m");

    // A key without a name clears the button.
    QTest::mouseClick(second, Qt::LeftButton, {}, QPoint(20, 12));
    QKeyEvent print(QEvent::KeyPress, Qt::Key_Print, Qt::ControlModifier, code(XKB_KEY_Print), 0, 0);
    QApplication::sendEvent(second, &print);
    EXPECT_FALSE(second->isHotkeySet());

    // The delete icon clears a set button and starts no recording.
    const QPoint icon = first->deleteIconRect().center();
    EXPECT_GT(icon.x(), 140);
    QTest::mouseClick(first, Qt::LeftButton, {}, icon);
    EXPECT_FALSE(first->isHotkeySet());
    EXPECT_FALSE(first->isRecording());
    QTest::mouseClick(first, Qt::LeftButton, {}, icon); // unset: a plain click
    EXPECT_TRUE(first->isRecording());
    first->setEnabled(false);
    EXPECT_FALSE(first->isRecording());

    // The stored map lists every button that names a hotkey, set or not, and back.
    HotkeyListenerPreferences preferences;
    second->setCurrentKeyCode(code(XKB_KEY_F5));
    second->setCurrentModifierFlags(kHotkeyOption);
    setNewHotkeysFromSubViews(preferences, &pane);
    EXPECT_EQ(preferences.hotkeyItems(),
              (QVariantMap{{"YourTunesNextTrack", item(-1, -1)}, {"YourTunesMute", item(code(XKB_KEY_F5), kHotkeyOption)}}));
    preferences.setHotkeyItems({{"YourTunesNextTrack", item(code(XKB_KEY_a), 0)}});
    setHotkeyParameterForSubViews(preferences, &pane);
    EXPECT_EQ(first->currentKeyCode(), code(XKB_KEY_a));
    EXPECT_FALSE(second->isHotkeySet()); // no item: reset
    EXPECT_FALSE(plain->isHotkeySet());
}

} // namespace

// The hotkeys on a real X server: a combination from the key bindings file, pressed with
// xdotool, reaches its action; one that another client holds is refused and the rest work.
#include "services/hotkeys/globalhotkeylistener.h"
#include "services/hotkeys/gui/oxhotkeybutton.h"
#include "services/hotkeys/keyboardlayout.h"

#include "additions/propertylist.h"
#include "player/memoryplayer.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QGuiApplication>
#include <QDir>
#include <QLabel>
#include <QProcess>
#include <QTest>
#include <QVBoxLayout>
#include <QWidget>

#include <xcb/xcb.h>
#include <xkbcommon/xkbcommon-keysyms.h>

#include <gtest/gtest.h>

namespace {

bool pressKeys(const QString &keys)
{
    QProcess xdotool;
    xdotool.start(QStringLiteral("xdotool"), {QStringLiteral("key"), keys});
    return xdotool.waitForFinished(60000) && xdotool.exitCode() == 0;
}

template <class Condition>
bool waitFor(Condition condition)
{
    const QDeadlineTimer deadline(60000);
    while (!condition() && !deadline.hasExpired())
        QTest::qWait(10);
    return condition();
}

TEST(HotkeysOnX11, APressedCombinationRunsItsActionAndATakenOneIsRefused)
{
    ASSERT_EQ(QGuiApplication::platformName(), "xcb");
    const auto layout = KeyboardLayout::current();
    ASSERT_TRUE(layout);
    const quint32 n = layout->keyCodeForKeysym(XKB_KEY_n);
    const quint32 m = layout->keyCodeForKeysym(XKB_KEY_m);
    ASSERT_NE(n, 0u);

    // Another client holds ctrl+shift+m first.
    xcb_connection_t *other = xcb_connect(nullptr, nullptr);
    ASSERT_EQ(xcb_connection_has_error(other), 0);
    const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(other)).data->root;
    ASSERT_EQ(xcb_request_check(other, xcb_grab_key_checked(other, 1, root, XCB_MOD_MASK_SHIFT | XCB_MOD_MASK_CONTROL,
                                                            xcb_keycode_t(m), XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC)),
              nullptr);

    const qint64 flags = kHotkeyShift | kHotkeyControl;
    ASSERT_TRUE(PropertyList::write(HotkeyListenerPreferences::preferencesLocation(),
                                    QVariantMap{{"YourTunesNextTrack", HotkeyListenerPreferences::hotkeyItem(n, flags)},
                                                {"YourTunesMute", HotkeyListenerPreferences::hotkeyItem(m, flags)}}));
    auto player = MemoryPlayer::create();
    auto first = player->addFileTrack("A", "/music/a.mp3");
    auto second = player->addFileTrack("B", "/music/b.mp3");
    player->setCurrentTrack(first);
    HotkeyActionHooks hooks;
    hooks.yourTunes = [&player] { return player->application(); };
    GlobalHotkeyListener listener(hooks, createX11HotkeyGrabber());
    listener.startListener();
    const auto &grabbed = listener.eventHotKeyRefs();
    EXPECT_FALSE(grabbed[0].valid); // YourTunesMute comes first in the map
    EXPECT_TRUE(grabbed[1].valid);

    ASSERT_TRUE(pressKeys("ctrl+shift+n"));
    EXPECT_TRUE(waitFor([&] { return player->currentTrackObject() == second; }));
    // Lock on changes nothing about the combination.
    ASSERT_TRUE(pressKeys("Caps_Lock"));
    ASSERT_TRUE(pressKeys("ctrl+shift+n"));
    EXPECT_TRUE(waitFor([&] { return player->currentTrackObject() == first; }));
    ASSERT_TRUE(pressKeys("Caps_Lock"));

    // Stopped, the grab is gone and the press goes to whoever has the focus: one step after
    // the restart, not two.
    listener.stopListener();
    ASSERT_TRUE(pressKeys("ctrl+shift+n"));
    listener.startListener();
    ASSERT_TRUE(pressKeys("ctrl+shift+n"));
    EXPECT_TRUE(waitFor([&] { return player->currentTrackObject() == second; }));
    EXPECT_FALSE(player->applicationValue(Prop::mute).toBool());
    xcb_disconnect(other);
}

// How many pixels of the area differ clearly from its first pixel.
int markedPixels(const QImage &image, const QRect &area)
{
    const QColor first = image.pixelColor(area.topLeft());
    int marked = 0;
    for (int y = area.top(); y <= area.bottom(); ++y)
        for (int x = area.left(); x <= area.right(); ++x) {
            const QColor color = image.pixelColor(x, y);
            marked += std::abs(color.lightness() - first.lightness()) > 40;
        }
    return marked;
}

TEST(HotkeysOnX11, ButtonsShowTheirCombinationAndADeleteIconOnlyWhenSet)
{
    const auto layout = KeyboardLayout::current();
    QWidget pane;
    auto *column = new QVBoxLayout(&pane);
    auto addButton = [&](const QString &label, qint64 keysym, qint64 flags) {
        column->addWidget(new QLabel(label, &pane));
        auto *button = new OXHotkeyButton(1, layout, &pane);
        if (keysym >= 0) {
            button->setCurrentKeyCode(layout->keyCodeForKeysym(quint32(keysym)));
            button->setCurrentModifierFlags(flags);
        }
        column->addWidget(button);
        return button;
    };
    OXHotkeyButton *set = addButton("Next track", XKB_KEY_n, kHotkeyShift | kHotkeyControl);
    OXHotkeyButton *unset = addButton("Mute", -1, -1);
    OXHotkeyButton *arrow = addButton("Volume up", XKB_KEY_Up, kHotkeyOption | kHotkeyCommand);
    OXHotkeyButton *recording = addButton("Play or pause", XKB_KEY_space, 0);
    pane.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&pane));
    QTest::mouseClick(recording, Qt::LeftButton, {}, QPoint(10, recording->height() / 2));

    const QImage shot = pane.grab().toImage();
    if (const QString folder = qEnvironmentVariable("ORVANE_SCREENSHOT_DIR"); !folder.isEmpty()) {
        QDir().mkpath(folder);
        shot.save(folder + "/hotkey_buttons.png");
    }
    const qreal scale = shot.devicePixelRatio();
    auto icon = [&](OXHotkeyButton *button) {
        const QRect area = button->deleteIconRect().translated(button->pos());
        return QRect(area.topLeft() * scale, area.size() * scale);
    };
    EXPECT_EQ(set->text(), "⇧ ⌃ n");
    EXPECT_EQ(arrow->text(), "⌥ ⌘ ⇡");
    EXPECT_GT(markedPixels(shot, icon(set)), 10);
    EXPECT_GT(markedPixels(shot, icon(arrow)), 10);
    EXPECT_EQ(markedPixels(shot, icon(unset)), 0);
    EXPECT_EQ(markedPixels(shot, icon(recording)), 0); // none while recording
}

} // namespace

#include "services/hotkeys/globalhotkeylistener.h"
#include "services/hotkeys/hotkeylistenerpreferences.h"

#include <QAbstractNativeEventFilter>
#include <QDebug>
#include <QGuiApplication>

#include <xcb/xcb.h>

#include <array>
#include <cstdlib>

namespace {

// Lock and NumLock (Mod2 on every usual layout) change nothing about a combination, so each one
// is grabbed with and without them.
constexpr std::array<uint16_t, 4> kIgnoredModifiers{0, XCB_MOD_MASK_LOCK, XCB_MOD_MASK_2,
                                                    XCB_MOD_MASK_LOCK | XCB_MOD_MASK_2};

uint16_t x11Modifiers(quint64 flags)
{
    uint16_t mask = 0;
    if (flags & kHotkeyShift)
        mask |= XCB_MOD_MASK_SHIFT;
    if (flags & kHotkeyControl)
        mask |= XCB_MOD_MASK_CONTROL;
    if (flags & kHotkeyOption)
        mask |= XCB_MOD_MASK_1; // Alt
    if (flags & kHotkeyCommand)
        mask |= XCB_MOD_MASK_4; // Super
    return mask;
}

quint64 hotkeyFlags(uint16_t state)
{
    quint64 flags = 0;
    if (state & XCB_MOD_MASK_SHIFT)
        flags |= kHotkeyShift;
    if (state & XCB_MOD_MASK_CONTROL)
        flags |= kHotkeyControl;
    if (state & XCB_MOD_MASK_1)
        flags |= kHotkeyOption;
    if (state & XCB_MOD_MASK_4)
        flags |= kHotkeyCommand;
    return flags;
}

// Passive grabs on the root window; their presses arrive through Qt's event loop, where the
// filter takes them before Qt sees them.
class X11HotkeyGrabber final : public HotkeyGrabber, public QAbstractNativeEventFilter
{
public:
    X11HotkeyGrabber(xcb_connection_t *connection, xcb_window_t root) : connection_(connection), root_(root)
    {
        qGuiApp->installNativeEventFilter(this);
    }
    ~X11HotkeyGrabber() override
    {
        if (qGuiApp)
            qGuiApp->removeNativeEventFilter(this);
    }

    bool grabKey(quint32 keyCode, quint64 modifierFlags) override
    {
        const uint16_t modifiers = x11Modifiers(modifierFlags);
        std::array<xcb_void_cookie_t, kIgnoredModifiers.size()> cookies{};
        for (std::size_t i = 0; i < kIgnoredModifiers.size(); ++i)
            cookies[i] = xcb_grab_key_checked(connection_, 1, root_, modifiers | kIgnoredModifiers[i],
                                              xcb_keycode_t(keyCode), XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
        bool granted = true;
        for (const xcb_void_cookie_t &cookie : cookies)
            if (xcb_generic_error_t *error = xcb_request_check(connection_, cookie)) {
                granted = false; // BadAccess: another client holds it
                std::free(error);
            }
        if (!granted)
            ungrabKey(keyCode, modifierFlags);
        return granted;
    }

    void ungrabKey(quint32 keyCode, quint64 modifierFlags) override
    {
        const uint16_t modifiers = x11Modifiers(modifierFlags);
        for (const uint16_t ignored : kIgnoredModifiers)
            xcb_ungrab_key(connection_, xcb_keycode_t(keyCode), root_, modifiers | ignored);
        xcb_flush(connection_);
    }

    bool nativeEventFilter(const QByteArray &eventType, void *message, qintptr *) override
    {
        if (eventType != "xcb_generic_event_t")
            return false;
        const auto *event = static_cast<const xcb_generic_event_t *>(message);
        if ((event->response_type & 0x7F) != XCB_KEY_PRESS)
            return false;
        const auto *press = static_cast<const xcb_key_press_event_t *>(message);
        if (press->event != root_)
            return false;
        if (pressed)
            pressed(press->detail, hotkeyFlags(press->state));
        return true;
    }

private:
    xcb_connection_t *connection_;
    xcb_window_t root_;
};

} // namespace

std::unique_ptr<HotkeyGrabber> createX11HotkeyGrabber()
{
    auto *x11 = qGuiApp ? qGuiApp->nativeInterface<QNativeInterface::QX11Application>() : nullptr;
    xcb_connection_t *connection = x11 ? x11->connection() : nullptr;
    const xcb_setup_t *setup = connection ? xcb_get_setup(connection) : nullptr;
    if (!setup) {
        static bool told = false;
        if (!told)
            qWarning().noquote() << "orvane: this session gives no access to an X server (Wayland without "
                                    "X11?), so the hotkeys are off; the rest of the program works as usual.";
        told = true;
        return nullptr;
    }
    // The first screen's root: grabs there see every key of the display.
    const xcb_window_t root = xcb_setup_roots_iterator(setup).data->root;
    return std::make_unique<X11HotkeyGrabber>(connection, root);
}

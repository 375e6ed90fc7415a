#include "services/hotkeys/keyboardlayout.h"

#include "additions/localizedstrings.h"
#include "services/hotkeys/hotkeylistenerpreferences.h"

#include <QGuiApplication>

#include <xkbcommon/xkbcommon-x11.h>
#include <xkbcommon/xkbcommon.h>

#include <array>

namespace {

struct NamedKey
{
    xkb_keysym_t keysym;
    const char *name;
};

// The special keys by name; the keypad's twins are named alike.
constexpr std::array kNamedKeys{
    NamedKey{XKB_KEY_Up, "Up"},          NamedKey{XKB_KEY_KP_Up, "Up"},
    NamedKey{XKB_KEY_Down, "Down"},      NamedKey{XKB_KEY_KP_Down, "Down"},
    NamedKey{XKB_KEY_Left, "Left"},      NamedKey{XKB_KEY_KP_Left, "Left"},
    NamedKey{XKB_KEY_Right, "Right"},    NamedKey{XKB_KEY_KP_Right, "Right"},
    NamedKey{XKB_KEY_Home, "Home"},      NamedKey{XKB_KEY_KP_Home, "Home"},
    NamedKey{XKB_KEY_End, "End"},        NamedKey{XKB_KEY_KP_End, "End"},
    NamedKey{XKB_KEY_Prior, "Page Up"},  NamedKey{XKB_KEY_KP_Prior, "Page Up"},
    NamedKey{XKB_KEY_Next, "Page Down"}, NamedKey{XKB_KEY_KP_Next, "Page Down"},
    NamedKey{XKB_KEY_Return, "Return"},  NamedKey{XKB_KEY_Tab, "Tab"},
    NamedKey{XKB_KEY_ISO_Left_Tab, "Backtab"}, NamedKey{XKB_KEY_KP_Enter, "Enter"},
    NamedKey{XKB_KEY_BackSpace, "Backspace"},  NamedKey{XKB_KEY_Delete, "Delete"},
    NamedKey{XKB_KEY_KP_Delete, "Delete"},     NamedKey{XKB_KEY_Escape, "Escape"},
    NamedKey{XKB_KEY_space, "Space"},
};

} // namespace

KeyboardLayout::KeyboardLayout(xkb_context *context, xkb_keymap *keymap)
    : context_(context), keymap_(keymap), state_(xkb_state_new(keymap))
{
}

KeyboardLayout::~KeyboardLayout()
{
    xkb_state_unref(state_);
    xkb_keymap_unref(keymap_);
    xkb_context_unref(context_);
}

std::shared_ptr<KeyboardLayout> KeyboardLayout::fromX11(xcb_connection_t *connection)
{
    if (!connection
        || !xkb_x11_setup_xkb_extension(connection, XKB_X11_MIN_MAJOR_XKB_VERSION, XKB_X11_MIN_MINOR_XKB_VERSION,
                                        XKB_X11_SETUP_XKB_EXTENSION_NO_FLAGS, nullptr, nullptr, nullptr, nullptr))
        return nullptr;
    const int32_t device = xkb_x11_get_core_keyboard_device_id(connection);
    xkb_context *context = xkb_context_new(XKB_CONTEXT_NO_FLAGS);
    if (!context || device < 0) {
        xkb_context_unref(context);
        return nullptr;
    }
    xkb_keymap *keymap = xkb_x11_keymap_new_from_device(context, connection, device, XKB_KEYMAP_COMPILE_NO_FLAGS);
    if (!keymap) {
        xkb_context_unref(context);
        return nullptr;
    }
    return std::shared_ptr<KeyboardLayout>(new KeyboardLayout(context, keymap));
}

std::shared_ptr<KeyboardLayout> KeyboardLayout::fromNames(const QString &layout, const QString &variant)
{
    xkb_context *context = xkb_context_new(XKB_CONTEXT_NO_ENVIRONMENT_NAMES);
    if (!context)
        return nullptr;
    const QByteArray layoutName = layout.toUtf8();
    const QByteArray variantName = variant.toUtf8();
    xkb_rule_names names{};
    names.layout = layoutName.constData();
    names.variant = variantName.isEmpty() ? nullptr : variantName.constData();
    xkb_keymap *keymap = xkb_keymap_new_from_names(context, &names, XKB_KEYMAP_COMPILE_NO_FLAGS);
    if (!keymap) {
        xkb_context_unref(context);
        return nullptr;
    }
    return std::shared_ptr<KeyboardLayout>(new KeyboardLayout(context, keymap));
}

std::shared_ptr<KeyboardLayout> KeyboardLayout::current()
{
    // The buttons of one pane share a layout; a pane opened later reads the layout afresh.
    static std::weak_ptr<KeyboardLayout> shared;
    if (auto layout = shared.lock())
        return layout;
    std::shared_ptr<KeyboardLayout> layout;
    if (auto *x11 = qGuiApp ? qGuiApp->nativeInterface<QNativeInterface::QX11Application>() : nullptr)
        layout = fromX11(x11->connection());
    if (!layout)
        layout = fromNames(QStringLiteral("us"));
    shared = layout;
    return layout;
}

QString KeyboardLayout::stringForKeyCode(qint64 keyCode, quint64) const
{
    if (keyCode < 0 || !xkb_keycode_is_legal_x11(xkb_keycode_t(keyCode)))
        return {};
    const xkb_keysym_t keysym = xkb_state_key_get_one_sym(state_, xkb_keycode_t(keyCode));
    if (keysym == XKB_KEY_NoSymbol)
        return {};
    if (keysym >= XKB_KEY_F1 && keysym <= XKB_KEY_F35)
        return QStringLiteral("F%1").arg(keysym - XKB_KEY_F1 + 1);
    for (const NamedKey &key : kNamedKeys)
        if (key.keysym == keysym)
            return ov_localizedString(QString::fromLatin1(key.name));
    const char32_t character = xkb_keysym_to_utf32(keysym);
    // Control characters and keys that type nothing have no name to show.
    if (character < 0x20 || character == 0x7F)
        return {};
    return QString::fromUcs4(&character, 1);
}

quint32 KeyboardLayout::keyCodeForKeysym(quint32 keysym) const
{
    for (xkb_keycode_t code = xkb_keymap_min_keycode(keymap_); code <= xkb_keymap_max_keycode(keymap_); ++code)
        if (xkb_state_key_get_one_sym(state_, code) == keysym)
            return code;
    return 0;
}

QString hotkeyReadableName(qint64 keyCode, qint64 modifierFlags, const KeyboardLayout *layout)
{
    if (keyCode < 0 || modifierFlags < 0)
        return ov_localizedString(QStringLiteral("0005.0019"));
    const QString key = layout ? layout->stringForKeyCode(keyCode) : QString();
    if (key.isEmpty())
        return {};
    QStringList parts;
    if (modifierFlags & kHotkeyShift)
        parts << QStringLiteral("⇧");
    if (modifierFlags & kHotkeyControl)
        parts << QStringLiteral("⌃");
    if (modifierFlags & kHotkeyOption)
        parts << QStringLiteral("⌥");
    if (modifierFlags & kHotkeyCommand)
        parts << QStringLiteral("⌘");
    static const QHash<QString, QString> symbols{
        {QStringLiteral("Up"), QStringLiteral("⇡")},        {QStringLiteral("Page Up"), QStringLiteral("⇡")},
        {QStringLiteral("Down"), QStringLiteral("⇣")},      {QStringLiteral("Page Down"), QStringLiteral("⇣")},
        {QStringLiteral("Left"), QStringLiteral("⇠")},      {QStringLiteral("Right"), QStringLiteral("⇢")},
        {QStringLiteral("Return"), QStringLiteral("⏎")},    {QStringLiteral("Enter"), QStringLiteral("⏎")},
        {QStringLiteral("Tab"), QStringLiteral("⇥")},       {QStringLiteral("Escape"), QStringLiteral("⎋")},
        {QStringLiteral("Space"), QStringLiteral("space")}, {QStringLiteral("Delete"), QStringLiteral("←")},
        {QStringLiteral("Backspace"), QStringLiteral("←")},
    };
    parts << symbols.value(key, key);
    return parts.join(QLatin1Char(' '));
}

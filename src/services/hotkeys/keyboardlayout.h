#pragma once

#include <QString>

#include <memory>

struct xkb_context;
struct xkb_keymap;
struct xkb_state;
typedef struct xcb_connection_t xcb_connection_t;

// Key names under a keyboard layout, through xkbcommon: the layout of the X server the program
// runs on, or one named by XKB rules (for tests and for sessions without X). Key codes are X
// key codes. Main thread.
class KeyboardLayout
{
public:
    ~KeyboardLayout();
    KeyboardLayout(const KeyboardLayout &) = delete;
    KeyboardLayout &operator=(const KeyboardLayout &) = delete;

    // The core keyboard's layout of the X connection; null when it has no XKB.
    static std::shared_ptr<KeyboardLayout> fromX11(xcb_connection_t *connection);
    // A layout by its XKB name ("us", "de", ...); null when the XKB data has none.
    static std::shared_ptr<KeyboardLayout> fromNames(const QString &layout, const QString &variant = {});
    // The layout of the program's X server when it has one, otherwise the "us" layout. Main
    // thread; callers at the same time share one.
    static std::shared_ptr<KeyboardLayout> current();

    // The key's name at its base level: the names of the function and special keys ("F5",
    // "Up", "Page Down", "Return", "Space" ...), otherwise the character it types; a null text
    // for a key that has neither. The modifier flags are not used for the lookup.
    QString stringForKeyCode(qint64 keyCode, quint64 modifierFlags = 0) const;
    // The first key code whose base level gives the symbol (an X keysym); 0 for none.
    quint32 keyCodeForKeysym(quint32 keysym) const;

private:
    KeyboardLayout(xkb_context *context, xkb_keymap *keymap);

    xkb_context *context_;
    xkb_keymap *keymap_;
    xkb_state *state_;
};

// What the hotkey button shows for a combination: the modifier symbols "⇧", "⌃", "⌥", "⌘" in
// this order, then the key, with one blank between them; arrows, return, tab, escape and
// backspace shown by their symbols. A null text when the key has no name; the "no hotkey"
// text when either value is negative.
QString hotkeyReadableName(qint64 keyCode, qint64 modifierFlags, const KeyboardLayout *layout);

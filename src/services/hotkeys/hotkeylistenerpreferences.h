#pragma once

#include <QString>
#include <QStringList>
#include <QVariantMap>

// The fifteen hotkeys, by tag (1 to 15: the button's tag in the preferences window and the
// identifier of the grab) and by name (the key in the key bindings file).
enum class HotkeyTag {
    ShowTrackInfoWindow = 1,
    ShowLyricsWindow = 2,
    ShowFunctionPool = 3,
    LastFMEnableDisable = 4,
    YourTunesLoved = 5,
    YourTunesPlayPause = 6,
    YourTunesBackTrack = 7,
    YourTunesNextTrack = 8,
    YourTunesRevealCurrentTrack = 9,
    YourTunesMute = 10,
    YourTunesSoundVolumeUp = 11,
    YourTunesSoundVolumeDown = 12,
    YourTunesRatingStarUp = 13,
    YourTunesRatingStarDown = 14,
    YourTunesRatingRemove = 15,
};

// The modifier bits a hotkey is stored with: shift, control, alt ("option") and super
// ("command").
enum HotkeyModifier : quint64 {
    kHotkeyShift = 0x020000,
    kHotkeyControl = 0x040000,
    kHotkeyOption = 0x080000,
    kHotkeyCommand = 0x100000,
    // What cleanModifierMask keeps, here without pulling pool/utilities into the link.
    kHotkeyModifierMask = kHotkeyShift | kHotkeyControl | kHotkeyOption | kHotkeyCommand,
};

// The stored hotkeys, "Key Bindings".plist: a map from hotkey name to {"KeyCode",
// "ModifierFlags"}, with no wrapper; a key that is not set has both at -1. Key codes are the X
// server's. Empty on a fresh installation. Main thread.
class HotkeyListenerPreferences
{
public:
    // Reads the file; a file that cannot be read leaves the empty map, saved.
    HotkeyListenerPreferences();

    static const QStringList &hotkeyNameTable(); // index 0 is tag 1
    static QString hotkeyNameForTag(qint64 tag); // empty for none
    static qint64 tagForHotkeyName(const QString &name); // -1 for none or an unknown name

    QVariantMap hotkeyItems() const { return hotkeyItems_; }
    void setHotkeyItems(const QVariantMap &items) { hotkeyItems_ = items; }
    static QVariantMap hotkeyItem(qint64 keyCode, qint64 modifierFlags);
    // The name of the first hotkey with exactly these values, in map order; empty for none.
    QString hotkeyItemWithKeyCode(qint64 keyCode, qint64 modifierFlags) const;

    void loadUserPreferencesDefaults() { hotkeyItems_.clear(); }
    void readUserPreferences();
    // Atomically; false when the file could not be written.
    bool saveUserPreferences() const;
    void resetUserPreferences();
    static QString preferencesLocation();

private:
    QVariantMap hotkeyItems_;
};

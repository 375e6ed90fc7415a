#pragma once

#include "application/services.h"
#include "services/hotkeys/hotkeyactions.h"
#include "services/hotkeys/hotkeylistenerpreferences.h"

#include <array>
#include <functional>
#include <memory>

// Holds system-wide key combinations for the listener and tells it of their presses. The X11
// grabber is the one the program uses; tests give their own.
class HotkeyGrabber
{
public:
    virtual ~HotkeyGrabber() = default;
    // False when the combination cannot be had (another program holds it).
    virtual bool grabKey(quint32 keyCode, quint64 modifierFlags) = 0;
    virtual void ungrabKey(quint32 keyCode, quint64 modifierFlags) = 0;
    // Called with the key code and the hotkey modifier bits of every press of a grabbed
    // combination.
    std::function<void(quint32 keyCode, quint64 modifierFlags)> pressed;
};

// Runs one of the fifteen actions when its combination is pressed, whichever program is in
// front. The combinations come from the key bindings file, read when the listener is made.
// Main thread; owned by the application controller while hotkeys are switched on.
class GlobalHotkeyListener : public HotkeyListener
{
public:
    struct Slot
    {
        bool valid = false;
        qint64 tag = 0;
        quint32 keyCode = 0;
        quint64 modifierFlags = 0;
    };

    // Without a grabber no hotkey is held, and the listener says so in the log.
    GlobalHotkeyListener(HotkeyActionHooks hooks, std::unique_ptr<HotkeyGrabber> grabber);
    ~GlobalHotkeyListener() override;

    HotkeyListenerPreferences &yourPreferences() { return yourPreferences_; }

    // Lets go of every combination, then grabs each set item of the file in map order, one slot
    // each; a combination another program holds is logged and left inactive.
    void startListener() override;
    // No action runs until the next start; the slots keep their marks.
    void stopListener() override;

    const std::array<Slot, 15> &eventHotKeyRefs() const { return slots_; }
    bool doListening() const { return doListening_; }

    // A press of a grabbed combination.
    void hotkeyPressed(quint32 keyCode, quint64 modifierFlags);

private:
    HotkeyActionHooks hooks_;
    std::unique_ptr<HotkeyGrabber> grabber_;
    HotkeyListenerPreferences yourPreferences_;
    std::array<Slot, 15> slots_{};
    bool doListening_ = false;
};

// The grabber of the program's X server, or null (with one line in the log) when the program
// does not run on X11, as on a Wayland session without X access.
std::unique_ptr<HotkeyGrabber> createX11HotkeyGrabber();

#include "services/hotkeys/globalhotkeylistener.h"


#include <QDebug>

GlobalHotkeyListener::GlobalHotkeyListener(HotkeyActionHooks hooks, std::unique_ptr<HotkeyGrabber> grabber)
    : hooks_(std::move(hooks)), grabber_(std::move(grabber))
{
    if (grabber_)
        grabber_->pressed = [this](quint32 keyCode, quint64 modifierFlags) { hotkeyPressed(keyCode, modifierFlags); };
}

GlobalHotkeyListener::~GlobalHotkeyListener()
{
    stopListener();
    if (grabber_)
        grabber_->pressed = nullptr;
}

void GlobalHotkeyListener::startListener()
{
    stopListener();
    // The old marks would match combinations no longer held.
    slots_ = {};
    doListening_ = true;
    if (!grabber_)
        return;
    const QVariantMap items = yourPreferences_.hotkeyItems();
    std::size_t index = 0;
    for (auto it = items.cbegin(); it != items.cend() && index < slots_.size(); ++it) {
        const QVariantMap item = it.value().toMap();
        const qint64 keyCode = item.value(QStringLiteral("KeyCode"), -1).toLongLong();
        const qint64 flags = item.value(QStringLiteral("ModifierFlags"), -1).toLongLong();
        const qint64 tag = HotkeyListenerPreferences::tagForHotkeyName(it.key());
        if (keyCode < 0 || flags < 0 || tag <= 0)
            continue; // unset or unknown: no slot
        Slot &slot = slots_[index++];
        slot = {false, tag, quint32(keyCode), (quint64(flags) & kHotkeyModifierMask)};
        slot.valid = grabber_->grabKey(slot.keyCode, slot.modifierFlags);
        if (!slot.valid)
            qWarning().noquote() << QStringLiteral(
                                        "orvane: the hotkey \"%1\" (key %2) is already taken by another program and "
                                        "stays inactive; choose another combination in the preferences.")
                                        .arg(it.key())
                                        .arg(keyCode);
    }
}

void GlobalHotkeyListener::stopListener()
{
    doListening_ = false;
    if (!grabber_)
        return;
    for (const Slot &slot : slots_)
        if (slot.valid)
            grabber_->ungrabKey(slot.keyCode, slot.modifierFlags);
}

void GlobalHotkeyListener::hotkeyPressed(quint32 keyCode, quint64 modifierFlags)
{
    if (!doListening_)
        return;
    for (const Slot &slot : slots_)
        if (slot.valid && slot.keyCode == keyCode && slot.modifierFlags == (modifierFlags & kHotkeyModifierMask)) {
            runShortcutActionForHotkeyID(slot.tag, hooks_);
            return;
        }
}

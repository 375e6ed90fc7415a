#include "services/hotkeys/hotkeylistenerpreferences.h"

#include "additions/exceptionsink.h"
#include "additions/propertylist.h"
#include "application/apppreferences.h"

#include <QFileInfo>

HotkeyListenerPreferences::HotkeyListenerPreferences()
{
    loadUserPreferencesDefaults();
    readUserPreferences();
}

const QStringList &HotkeyListenerPreferences::hotkeyNameTable()
{
    static const QStringList names = {
        QStringLiteral("ShowTrackInfoWindow"),         QStringLiteral("ShowLyricsWindow"),
        QStringLiteral("ShowFunctionPool"),            QStringLiteral("LastFMEnableDisable"),
        QStringLiteral("YourTunesLoved"),              QStringLiteral("YourTunesPlayPause"),
        QStringLiteral("YourTunesBackTrack"),          QStringLiteral("YourTunesNextTrack"),
        QStringLiteral("YourTunesRevealCurrentTrack"), QStringLiteral("YourTunesMute"),
        QStringLiteral("YourTunesSoundVolumeUp"),      QStringLiteral("YourTunesSoundVolumeDown"),
        QStringLiteral("YourTunesRatingStarUp"),       QStringLiteral("YourTunesRatingStarDown"),
        QStringLiteral("YourTunesRatingRemove"),
    };
    return names;
}

QString HotkeyListenerPreferences::hotkeyNameForTag(qint64 tag)
{
    return tag >= 1 && tag <= hotkeyNameTable().size() ? hotkeyNameTable().at(tag - 1) : QString();
}

qint64 HotkeyListenerPreferences::tagForHotkeyName(const QString &name)
{
    const qsizetype index = name.isEmpty() ? -1 : hotkeyNameTable().indexOf(name);
    return index < 0 ? -1 : index + 1;
}

QVariantMap HotkeyListenerPreferences::hotkeyItem(qint64 keyCode, qint64 modifierFlags)
{
    return {{QStringLiteral("KeyCode"), keyCode}, {QStringLiteral("ModifierFlags"), modifierFlags}};
}

QString HotkeyListenerPreferences::hotkeyItemWithKeyCode(qint64 keyCode, qint64 modifierFlags) const
{
    for (auto it = hotkeyItems_.cbegin(); it != hotkeyItems_.cend(); ++it) {
        const QVariantMap item = it.value().toMap();
        if (item.value(QStringLiteral("KeyCode")).toLongLong() == keyCode
            && item.value(QStringLiteral("ModifierFlags")).toLongLong() == modifierFlags)
            return it.key();
    }
    return {};
}

QString HotkeyListenerPreferences::preferencesLocation()
{
    return AppPreferences::locationToPreferences(PreferenceLocation::KeyBindings);
}

void HotkeyListenerPreferences::readUserPreferences()
{
    const QString path = preferencesLocation();
    const QVariant stored = PropertyList::read(path);
    if (stored.metaType().id() != QMetaType::QVariantMap) {
        if (QFileInfo::exists(path))
            ExceptionSink::logException(OVException(
                QStringLiteral("NSInvalidArgumentException"),
                QStringLiteral("The key bindings in %1 cannot be read; the hotkeys start again unset.").arg(path)));
        resetUserPreferences();
        return;
    }
    hotkeyItems_ = stored.toMap();
}

bool HotkeyListenerPreferences::saveUserPreferences() const
{
    try {
        return PropertyList::write(preferencesLocation(), hotkeyItems_);
    } catch (const std::exception &exception) {
        ExceptionSink::logException(exception);
        return false;
    }
}

void HotkeyListenerPreferences::resetUserPreferences()
{
    loadUserPreferencesDefaults();
    saveUserPreferences();
}

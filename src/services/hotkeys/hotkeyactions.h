#pragma once

#include "player/itunes.h"

#include <functional>

// What the hotkeys reach outside the player: the application controller's windows and menus.
// Unset hooks are skipped.
struct HotkeyActionHooks
{
    // With a track info window: closes it; without: shows it as a track change does.
    std::function<bool()> hasTrackInfoWindow;
    std::function<void()> closeTrackInfoWindow;
    std::function<void()> showTrackInfoWindow;
    std::function<bool()> hasLyricsWindow;
    std::function<void()> closeTrackLyricsWindow;
    std::function<void()> showLyricsWindow;
    std::function<void()> showFunctionPool;
    std::function<void()> enableDisableLastFM;
    // The player connection of the controller; actions 6 to 15 do nothing without it.
    std::function<ITunesApplication()> yourTunes;
};

// Carries out the action of a hotkey by its tag (1 to 15); any other identifier does nothing.
// The ratings are written straight to the player: they do not pass the auto-love rules or
// Last.fm, and the rest of the program hears of them through the player's notification.
void runShortcutActionForHotkeyID(qint64 hotkeyID, const HotkeyActionHooks &hooks);

#pragma once

// Flashes every screen white for a moment, the cue of a reminder. Headless code that may cue
// one is handed an implementation by the program's composition root (ScreenFlash of
// widgets/screenflash.h in the desktop program); orvane-cli, which has no screens, none.
class DisplayFlash
{
public:
    virtual ~DisplayFlash() = default;
    // Returns after the flash, about a fifth of a second, with the event loop turning meanwhile.
    // Main thread only.
    virtual void flashDisplays() = 0;
};

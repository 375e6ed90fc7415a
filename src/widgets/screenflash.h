#pragma once

#include "pool/displayflash.h"

// The display flash of the desktop program: a white pane over each screen, faded in and out.
// Lives on the main thread, owned by whoever cues the flash; holds nothing between flashes.
class ScreenFlash final : public DisplayFlash
{
public:
    // Does nothing without a graphical application or off its thread.
    void flashDisplays() override;
};

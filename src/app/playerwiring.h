#pragma once

#include "player/compositeplayer.h"

class LibraryBackend;

// The player the program follows, made once at start on the main thread: the library joined
// with the first (or the configured) MPRIS player on the session bus. A library that cannot be
// opened, or no player on the bus, leaves the reads of that side empty.
struct ProgramPlayer
{
    std::shared_ptr<LibraryBackend> library;
    std::shared_ptr<CompositePlayer> player;
};
ProgramPlayer createPlayerBackend();

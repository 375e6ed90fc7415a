#pragma once

#include "player/playerbackend.h"

// The player the program follows, made once at start on the main thread. Null when there is
// none: the program then runs and every read from the player is empty.
PlayerBackendPtr createPlayerBackend();

#include "playerwiring.h"

#include "player/mpris/mprisplayer.h"

PlayerBackendPtr createPlayerBackend()
{
    // Follows the first MPRIS player on the session bus, whichever starts first.
    return std::make_shared<MprisPlayer>();
}

#include "player/playerbackend.h"

#include "additions/appcontext.h"

PlayerBackendPtr contextPlayerBackend()
{
    const AppContext *context = appContext();
    return context ? context->playerBackend() : nullptr;
}

PlayerBackendPtr contextLibraryBackend()
{
    const AppContext *context = appContext();
    return context ? context->libraryBackend() : nullptr;
}

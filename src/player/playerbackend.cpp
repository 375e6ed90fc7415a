#include "player/playerbackend.h"

#include <mutex>

namespace {
std::mutex defaultBackendMutex;
PlayerBackendPtr defaultBackendInstance;
PlayerBackendPtr libraryBackendInstance;
} // namespace

namespace PlayerBackends {

void setDefaultBackend(PlayerBackendPtr backend)
{
    std::lock_guard lock(defaultBackendMutex);
    defaultBackendInstance = std::move(backend);
}

PlayerBackendPtr defaultBackend()
{
    std::lock_guard lock(defaultBackendMutex);
    return defaultBackendInstance;
}

void setLibraryBackend(PlayerBackendPtr backend)
{
    std::lock_guard lock(defaultBackendMutex);
    libraryBackendInstance = std::move(backend);
}

PlayerBackendPtr libraryBackend()
{
    std::lock_guard lock(defaultBackendMutex);
    return libraryBackendInstance ? libraryBackendInstance : defaultBackendInstance;
}

} // namespace PlayerBackends

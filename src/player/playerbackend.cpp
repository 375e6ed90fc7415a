#include "player/playerbackend.h"

#include <mutex>

namespace {
std::mutex defaultBackendMutex;
PlayerBackendPtr defaultBackendInstance;
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

} // namespace PlayerBackends

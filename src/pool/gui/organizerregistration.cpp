#include "application/services.h"
#include "pool/gui/organizerwindowcontroller.h"

// Linked into every program that links the organizer window (see CMakeLists.txt), so that the
// program's service factory can make it.
namespace {

const bool installed = [] {
    ProgramServiceFactory::setFunctionPoolWindowMaker([](const FunctionPoolWindowHooks &hooks) {
        return std::make_shared<OrganizerWindowController>(hooks);
    });
    return true;
}();

} // namespace

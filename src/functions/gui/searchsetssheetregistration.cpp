#include "functions/function0001.h"
#include "functions/gui/searchsetssheet.h"
#include "pool/gui/functionsheetregistry.h"

// Linked into every program that links this module (see CMakeLists.txt): the organizer window
// then gives function 1 the sheet of its saved search sets.
namespace {

const bool registered = [] {
    FunctionSheetRegistry::registerSheet(1, [](PoolFunction *function, QWidget *window) {
        if (auto *searchReplace = qobject_cast<Function0001 *>(function))
            new SearchSetsSheet(searchReplace, window);
    });
    return true;
}();

} // namespace

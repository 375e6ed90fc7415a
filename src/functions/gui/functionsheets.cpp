#include "functions/gui/functionsheets.h"

#include "functions/function0001.h"
#include "functions/gui/searchsetssheet.h"
#include "pool/gui/functionsheetregistry.h"

void registerFunctionSheets(FunctionSheetRegistry &registry)
{
    registry.registerSheet(1, [](PoolFunction *function, QWidget *window) {
        if (auto *searchReplace = qobject_cast<Function0001 *>(function))
            new SearchSetsSheet(searchReplace, window);
    });
}

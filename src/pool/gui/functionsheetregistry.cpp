#include "pool/gui/functionsheetregistry.h"

#include <QMultiMap>

namespace {

// A function-local static: registrations run during static initialisation in any order.
QMultiMap<qint64, FunctionSheetRegistry::Attach> &attachments()
{
    static QMultiMap<qint64, FunctionSheetRegistry::Attach> map;
    return map;
}

} // namespace

void FunctionSheetRegistry::registerSheet(qint64 number, Attach attach)
{
    attachments().insert(number, std::move(attach));
}

void FunctionSheetRegistry::attachSheets(qint64 number, PoolFunction *function, QWidget *window)
{
    const auto range = attachments().equal_range(number);
    for (auto it = range.first; it != range.second; ++it)
        (*it)(function, window);
}

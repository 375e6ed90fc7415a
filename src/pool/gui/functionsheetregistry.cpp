#include "pool/gui/functionsheetregistry.h"

void FunctionSheetRegistry::registerSheet(qint64 number, Attach attach)
{
    if (attach)
        attachments_.insert(number, std::move(attach));
}

void FunctionSheetRegistry::attachSheets(qint64 number, PoolFunction *function, QWidget *window) const
{
    const auto range = attachments_.equal_range(number);
    for (auto it = range.first; it != range.second; ++it)
        (*it)(function, window);
}

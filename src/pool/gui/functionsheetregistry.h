#pragma once

#include <QMultiMap>
#include <QtGlobal>

#include <functional>

class PoolFunction;
class QWidget;

// Sheets that belong to one function (such as the editor of function 1's saved search sets)
// live in modules that know that function. The composition root makes one registry, lets each
// such module add how to attach its sheets (registerFunctionSheets in the functions' GUI
// module) and hands it to the organizer window, which attaches them while it builds the
// functions' panels; the function opens and closes the sheet through its own signals. Owned by
// the composition root; main thread.
class FunctionSheetRegistry
{
public:
    // Makes the sheet as a child of `window` and connects it to `function`.
    using Attach = std::function<void(PoolFunction *function, QWidget *window)>;

    void registerSheet(qint64 number, Attach attach);
    void attachSheets(qint64 number, PoolFunction *function, QWidget *window) const;

private:
    QMultiMap<qint64, Attach> attachments_;
};

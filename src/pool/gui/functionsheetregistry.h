#pragma once

#include <QtGlobal>

#include <functional>

class PoolFunction;
class QWidget;

// Sheets that belong to one function (such as the editor of function 1's saved search sets)
// live in modules that know that function. Each such module registers, from a static object,
// how to attach its sheet to the organizer window; the window attaches them while it builds
// the functions' panels, and the function opens and closes the sheet through its own signals.
// Main thread.
class FunctionSheetRegistry
{
public:
    // Makes the sheet as a child of `window` and connects it to `function`.
    using Attach = std::function<void(PoolFunction *function, QWidget *window)>;

    static void registerSheet(qint64 number, Attach attach);
    static void attachSheets(qint64 number, PoolFunction *function, QWidget *window);
};

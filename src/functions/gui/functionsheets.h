#pragma once

class FunctionSheetRegistry;

// Adds the sheets of this module's functions (function 1's saved search sets) to a program's
// registry, for the organizer window to attach.
void registerFunctionSheets(FunctionSheetRegistry &registry);

#pragma once

class PoolFunctionRegistry;

// Adds every function of this module, under its number and title, to a program's registry.
void registerBuiltInFunctions(PoolFunctionRegistry &registry);

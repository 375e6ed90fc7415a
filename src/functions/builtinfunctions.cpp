#include "functions/builtinfunctions.h"

#include "functions/function0001.h"
#include "functions/function0002.h"
#include "functions/function0003.h"
#include "functions/function0004.h"
#include "functions/function0005.h"
#include "functions/function0006.h"
#include "functions/function0007.h"
#include "functions/function0009.h"
#include "functions/function0010.h"
#include "functions/function0011.h"
#include "functions/function0017.h"
#include "functions/function0018.h"
#include "pool/poolfunctionregistry.h"

namespace {

template <class Function>
void add(PoolFunctionRegistry &registry, int number, const QString &title)
{
    registry.registerFunction(number, title, [](FunctionPoolController *pool) { return new Function(pool); });
}

} // namespace

void registerBuiltInFunctions(PoolFunctionRegistry &registry)
{
    add<Function0001>(registry, 1, QStringLiteral("Search and replace"));
    add<Function0002>(registry, 2, QStringLiteral("Change case"));
    add<Function0003>(registry, 3, QStringLiteral("Copy or swap tags"));
    add<Function0004>(registry, 4, QStringLiteral("Cut tags"));
    add<Function0005>(registry, 5, QStringLiteral("Add to tags"));
    add<Function0006>(registry, 6, QStringLiteral("File names from tags"));
    add<Function0007>(registry, 7, QStringLiteral("Tags from the file name"));
    add<Function0009>(registry, 9, QStringLiteral("Tags from the album folder"));
    add<Function0010>(registry, 10, QStringLiteral("Album folder names from tags"));
    add<Function0011>(registry, 11, QStringLiteral("Track and disc numbers from the folders"));
    add<Function0017>(registry, 17, QStringLiteral("Tag tools"));
    add<Function0018>(registry, 18, QStringLiteral("Playlists from tags"));
}

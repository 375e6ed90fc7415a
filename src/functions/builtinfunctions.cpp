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
#include "functions/function0013.h"
#include "functions/function0016.h"
#include "functions/function0017.h"
#include "functions/function0018.h"
#include "functions/function0019.h"
#include "functions/function0020.h"
#include "functions/function0022.h"
#include "functions/function0023.h"
#include "functions/function0024.h"
#include "functions/function0025.h"
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
    add<Function0013>(registry, 13, QStringLiteral("Copy or swap artworks"));
    add<Function0016>(registry, 16, QStringLiteral("Embed downloaded artwork"));
    add<Function0017>(registry, 17, QStringLiteral("Tag tools"));
    add<Function0018>(registry, 18, QStringLiteral("Playlists from tags"));
    add<Function0019>(registry, 19, QStringLiteral("Artwork to image files"));
    add<Function0020>(registry, 20, QStringLiteral("Lyrics to text files"));
    add<Function0022>(registry, 22, QStringLiteral("Scale artwork"));
    add<Function0023>(registry, 23, QStringLiteral("Rename image files"));
    add<Function0024>(registry, 24, QStringLiteral("Move image files"));
    add<Function0025>(registry, 25, QStringLiteral("Embed artwork from the album folder"));
}

#include "functions/builtinfunctions.h"
#include "pool/poolfunction.h"
#include "pool/poolfunctionregistry.h"

#include <gtest/gtest.h>

#include <memory>

namespace {

// The numbers and classes sit in one list apart from the classes, so a slip there would run
// the wrong function under a number.
TEST(BuiltInFunctions, EachNumberMakesTheFunctionOfThatNumberUnderATitleOfItsOwn)
{
    PoolFunctionRegistry registry;
    registerBuiltInFunctions(registry);
    const QList<PoolFunctionRegistry::Entry> entries = registry.entries();
    ASSERT_FALSE(entries.isEmpty());
    QSet<QString> titles;
    for (const PoolFunctionRegistry::Entry &entry : entries) {
        const std::unique_ptr<PoolFunction> function(entry.factory(nullptr));
        ASSERT_TRUE(function) << entry.number;
        EXPECT_EQ(std::string(function->metaObject()->className()),
                  PoolFunctionRegistry::className(entry.number).toStdString());
        EXPECT_FALSE(entry.title.isEmpty()) << entry.number;
        titles.insert(entry.title);
    }
    EXPECT_EQ(titles.size(), entries.size());
}

} // namespace

#include "pooltestsupport.h"

#include "pool/poolfunctionregistry.h"

namespace {

PoolFunctionRegistry::Factory countingTo(qint64 count)
{
    return [count](FunctionPoolController *pool) {
        auto *function = new TestFunction(pool);
        function->yourCount = count;
        return function;
    };
}

QList<int> numbers(const PoolFunctionRegistry &registry)
{
    QList<int> result;
    for (const PoolFunctionRegistry::Entry &entry : registry.entries())
        result.append(entry.number);
    return result;
}

TEST(PoolFunctionRegistry, KeepsTheLastFactoryPerNumberInOrderAndIgnoresWhatNoEngineCanRun)
{
    PoolFunctionRegistry registry;
    registry.registerFunction(5, QStringLiteral("Five"), countingTo(1));
    registry.registerFunction(2, QStringLiteral("Two"), countingTo(2));
    registry.registerFunction(0, QStringLiteral("Zero"), countingTo(0));
    registry.registerFunction(27, QStringLiteral("Twenty-seven"), countingTo(27));
    registry.registerFunction(4, QStringLiteral("Four"), {});
    registry.registerFunction(5, QStringLiteral("Five again"), countingTo(5));

    EXPECT_EQ(numbers(registry), QList<int>({2, 5}));
    EXPECT_FALSE(registry.isRegistered(4));
    const PoolFunctionRegistry::Entry five = registry.entries().at(1);
    EXPECT_EQ(five.title, "Five again");
    const std::unique_ptr<PoolFunction> made(five.factory(nullptr));
    EXPECT_EQ(static_cast<TestFunction *>(made.get())->yourCount, 5);

    // Registries are the program's or the test's own: another one starts empty.
    EXPECT_TRUE(PoolFunctionRegistry().entries().isEmpty());

    registry.unregisterFunction(2);
    EXPECT_EQ(numbers(registry), QList<int>({5}));
    EXPECT_EQ(PoolFunctionRegistry::className(7), "Function0007");
    EXPECT_EQ(PoolFunctionRegistry::className(18), "Function0018");
}

} // namespace

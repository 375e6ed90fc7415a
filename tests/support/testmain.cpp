// The main of every headless test executable: a private home for the process, then a Qt
// application object, then GoogleTest.
#include "testenvironment.h"

#include <QCoreApplication>

#include <gtest/gtest.h>

int main(int argc, char *argv[])
{
    TestEnvironment environment;
    QCoreApplication application(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    useFreshEnvironmentPerTest();
    return RUN_ALL_TESTS();
}

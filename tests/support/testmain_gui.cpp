// The main of test executables that need widgets: as the headless one, with a QApplication.
#include "testenvironment.h"

#include <QApplication>

#include <gtest/gtest.h>

int main(int argc, char *argv[])
{
    TestEnvironment environment;
    // CTest lists the cases without the tests' environment, where there may be no display.
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    useFreshEnvironmentPerTest();
    return RUN_ALL_TESTS();
}

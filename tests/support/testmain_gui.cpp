// The main of test executables that need widgets: as the headless one, with a QApplication.
#include "testenvironment.h"

#include <QApplication>

#include <gtest/gtest.h>

int main(int argc, char *argv[])
{
    TestEnvironment environment;
    QApplication application(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}

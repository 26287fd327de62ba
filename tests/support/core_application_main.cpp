#include <QCoreApplication>

#include <gtest/gtest.h>

// For tests of objects that need an event loop but no window.
int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}

#include <QApplication>
#include <gtest/gtest.h>

/// The main function of test programs whose subject needs Qt's application object.
int main(int argc, char** argv)
{
    ::testing::InitGoogleTest(&argc, argv);
    if (GTEST_FLAG_GET(list_tests)) // The build asks for the names, where there is no screen.
        return RUN_ALL_TESTS();
    const QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    return RUN_ALL_TESTS();
}

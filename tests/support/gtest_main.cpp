// Runs the GoogleTest cases inside a QCoreApplication: the logic under test looks for
// its files beside the executable and follows the regional settings.
#include <QCoreApplication>
#include <gtest/gtest.h>

int main(int argc, char **argv) {
    QCoreApplication app(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}

#include <QCoreApplication>

#include <gtest/gtest.h>

#include <clocale>

/// The adapters want Qt's application object, and the C library the user's language, as in the helper.
int main(int argc, char **argv) {
    ::testing::InitGoogleTest(&argc, argv);
    const QCoreApplication application(argc, argv);
    std::setlocale(LC_ALL, "");
    return RUN_ALL_TESTS();
}

#include <QCoreApplication>

#include <gtest/gtest.h>

#include <clocale>
#include <cstdio>
#include <cstdlib>

/// The file manager of ORVANE_TEST_FILEMANAGER, which is installed.
int main(int argc, char **argv) {
    ::testing::InitGoogleTest(&argc, argv);
    const QCoreApplication application(argc, argv);
    std::setlocale(LC_ALL, "");
    const char *name = std::getenv("ORVANE_TEST_FILEMANAGER");
    if (name == nullptr) {
        std::fputs("ORVANE_TEST_FILEMANAGER names no file manager\n", stderr);
        return 1;
    }
    return RUN_ALL_TESTS();
}

#include "FileManagerProgram.h"

#include <QCoreApplication>

#include <gtest/gtest.h>

#include <clocale>
#include <cstdio>
#include <cstdlib>

#include <unistd.h>

/// The file manager of ORVANE_TEST_FILEMANAGER. Where it cannot run here, the status is 77, and CTest reports the test as not run.
int main(int argc, char **argv) {
    constexpr int cannotRunHere = 77;
    ::testing::InitGoogleTest(&argc, argv);
    const QCoreApplication application(argc, argv);
    std::setlocale(LC_ALL, "");
    const char *name = std::getenv("ORVANE_TEST_FILEMANAGER");
    if (name == nullptr) {
        std::fputs("ORVANE_TEST_FILEMANAGER names no file manager\n", stderr);
        return 1;
    }
    if (orvane::testing::outputOf(QStringLiteral("which"), {QString::fromUtf8(name)}).empty()) {
        std::printf("NOT RUN: %s is not installed\n", name);
        return cannotRunHere;
    }
    if (std::string(name) == "dolphin" && ::getuid() == 0) {
        std::puts("NOT RUN: dolphin refuses to run as root");
        return cannotRunHere;
    }
    return RUN_ALL_TESTS();
}

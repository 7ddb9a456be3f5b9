#include "Permissions.h"

#include <gtest/gtest.h>

namespace orvane {
namespace {

TEST(Permissions, TakeExactlyThreeOctalDigits) {
    EXPECT_EQ(modeOfOctalText("755"), 0755U);
    EXPECT_EQ(modeOfOctalText("000"), 0U);
    for (const char *text : {"", "75", "0755", "75a", "789", "-75", " 75", "7 5"}) {
        EXPECT_EQ(modeOfOctalText(text), std::nullopt) << text;
    }
}

TEST(Permissions, BoxesAreReadWriteExecuteOfOwnerGroupAndOthers) {
    const PermissionBoxes expected{true, true, false, true, false, false, false, false, true};
    EXPECT_EQ(boxesOfMode(0641), expected);
}

TEST(Permissions, EveryModeComesBackFromItsBoxesAndFromItsText) {
    for (unsigned mode = 0; mode <= 0777; ++mode) {
        EXPECT_EQ(modeOfBoxes(boxesOfMode(mode)), mode);
        EXPECT_EQ(modeOfOctalText(octalTextOfMode(mode)), mode);
    }
}

} // namespace
} // namespace orvane

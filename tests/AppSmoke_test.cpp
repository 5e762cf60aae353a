#include <gtest/gtest.h>
#include "AppHarness.h"
TEST(AppSmoke, AddThenNow) {
    AppHarness app;
    auto added = app.vesk({"call", "the", "dentist", "at", "11"});
    EXPECT_EQ(added.status, 0) << added.err;
    EXPECT_NE(added.out.find("Saved as #1"), std::string::npos) << added.out;
    auto later = app.vesk({"later"});
    EXPECT_EQ(later.out, "1  call the dentist\n   Wed, Nov 18 at 11:00 AM \u00b7 repeat until done\n") << later.err;
    auto second = app.app({});
    EXPECT_EQ(second.status, 1) << second.err;
}

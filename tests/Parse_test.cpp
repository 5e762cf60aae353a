// `vesk parse`: the offline reading, in words and as JSON, at Wednesday 18 November 2026 10:00.
// The readings themselves are checked in VeskParse's tests, the lines in Summary_test, where
// words and options may stand in ArgumentParser/Parser_test.
#include <gtest/gtest.h>

#include "Process.h"

namespace {

TEST(Parse, WordsBecomeOneSentence) {
    const struct {
        std::vector<std::string> arguments;
        std::string out;
    } cases[] = {
        // The words are joined into one sentence, tokens and quotes included.
        {{"parse", "pay", "bill", "due:2026-12-01@14:30", "style:alarm", "list:\"Home stuff\""},
         "what   pay bill\nwhen   Tue, Dec 1 at 2:30 PM\nhow    alarm\nlist   Home stuff\n"},
        {{"parse", "call", "mom", "--json"},
         "{\n"
         "  \"parse\" : {\n"
         "    \"needsModel\" : false,\n"
         "    \"readByModel\" : false,\n"
         "    \"style\" : \"repeat\",\n"
         "    \"title\" : \"call mom\",\n"
         "    \"unresolved\" : [\n"
         "\n"
         "    ]\n"
         "  },\n"
         "  \"schema\" : 1\n"
         "}\n"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::PrintToString(c.arguments));
        auto result = runVesk(c.arguments);
        EXPECT_EQ(result.status, 0);
        EXPECT_EQ(result.err, "");
        EXPECT_EQ(result.out, c.out);
    }
}

}  // namespace

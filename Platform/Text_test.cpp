#include "Platform/Text.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

TEST(Text, Trimming) {
    EXPECT_EQ(Text::trimBlanks(" \t\u00a0 15 m\u3000 "), "15 m");
    EXPECT_EQ(Text::trimBlanks("\n15\n"), "\n15\n") << "line feeds are not blanks";
    EXPECT_EQ(Text::trimWhitespaceAndNewlines(" \n\r\u2028 the office\u0085\t"), "the office");
    EXPECT_EQ(Text::trimBlanks("   "), "");
    EXPECT_EQ(Text::trimBlanks("\xff "), "\xff") << "invalid bytes stay";
}

TEST(Text, CaseMapping) {
    EXPECT_EQ(Text::lowercased("The OFFICE"), "the office");
    EXPECT_EQ(Text::lowercased("ÉTÉ İ"), "été i̇");
    EXPECT_TRUE(Text::equalsIgnoringCase("Straße", "STRASSE"));
    EXPECT_TRUE(Text::equalsIgnoringCase("Call", "cALL"));
    EXPECT_FALSE(Text::equalsIgnoringCase("Call", "Call mum"));
    EXPECT_TRUE(Text::containsIgnoringCase("Call Mum", "ALL m"));
    EXPECT_FALSE(Text::containsIgnoringCase("Call", "mum"));
}

TEST(Text, NumbersAsPrintfPadsThem) {
    for (int64_t value : {int64_t{0}, int64_t{7}, int64_t{-5}, int64_t{2026}, int64_t{123456}, int64_t{-12345},
                          std::numeric_limits<int64_t>::min(), std::numeric_limits<int64_t>::max()}) {
        for (int width : {0, 2, 4}) {
            std::string text = "x";
            Text::appendNumber(text, value, width);
            EXPECT_EQ(text, "x" + Text::format("%0*lld", width, static_cast<long long>(value)));
        }
    }
}

TEST(Text, StrictIntegers) {
    struct Case { const char* text; std::optional<int64_t> value; } cases[] = {
        {"15", 15}, {"+7", 7}, {"-1", -1}, {"007", 7}, {"9223372036854775807", std::numeric_limits<int64_t>::max()},
        {"-9223372036854775808", std::numeric_limits<int64_t>::min()}, {"9223372036854775808", {}}, {"", {}}, {"+", {}},
        {" 5", {}}, {"5 ", {}}, {"1.5", {}}, {"15m", {}}, {"٣", {}},
    };
    for (const auto& c : cases) EXPECT_EQ(Text::parseInt64(c.text), c.value) << c.text;
}

TEST(Text, Utf8Repair) {
    EXPECT_EQ(Text::repairUtf8("ok \xff\xfe ü"), "ok \uFFFD\uFFFD ü");
    EXPECT_EQ(Text::characterCount("héllo😀"), 6u);
    EXPECT_EQ(Text::format("%04d-%02d", 7, 3), "0007-03");
}

}  // namespace

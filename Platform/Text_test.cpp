#include "Platform/Text.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

constexpr int64_t lowest = std::numeric_limits<int64_t>::min(), highest = std::numeric_limits<int64_t>::max();

TEST(Text, Trimming) {
    EXPECT_EQ(Text::trimBlanks(" \t\u00a0 15 m\u3000 "), "15 m");
    EXPECT_EQ(Text::trimBlanks("\n15\n"), "\n15\n") << "line feeds are not blanks";
    EXPECT_EQ(Text::trimWhitespaceAndNewlines(" \n\r\u2028 the office\u0085\t"), "the office");
    EXPECT_EQ(Text::trimBlanks("\xff "), "\xff") << "invalid bytes stay";
}

TEST(Text, CaseMapping) {
    EXPECT_EQ(Text::lowercased("The OFFICE ÉTÉ İ"), "the office été i̇");
    EXPECT_TRUE(Text::equalsIgnoringCase("Straße", "STRASSE"));
    EXPECT_FALSE(Text::equalsIgnoringCase("Call", "Call mum"));
    EXPECT_TRUE(Text::containsIgnoringCase("Call Mum", "ALL m"));
    EXPECT_FALSE(Text::containsIgnoringCase("Call", "mum"));
}

TEST(Text, NumbersAsPrintfPadsThem) {
    for (int64_t value : {int64_t{0}, int64_t{7}, int64_t{-5}, int64_t{123456}, int64_t{-12345}, lowest, highest}) {
        for (int width : {0, 2, 4}) {
            std::string text = "x";
            Text::appendNumber(text, value, width);
            EXPECT_EQ(text, "x" + Text::format("%0*lld", width, static_cast<long long>(value)));
        }
    }
}

TEST(Text, StrictIntegers) {
    const std::pair<const char*, int64_t> valid[] = {
        {"+7", 7}, {"-1", -1}, {"9223372036854775807", highest}, {"-9223372036854775808", lowest}};
    for (auto [text, value] : valid) EXPECT_EQ(Text::parseInt64(text), value) << text;
    for (const char* bad : {"9223372036854775808", "", "+", " 5", "5 ", "1.5", "15m", "٣"})
        EXPECT_EQ(Text::parseInt64(bad), std::nullopt) << bad;
}

TEST(Text, Utf8Repair) {
    EXPECT_EQ(Text::repairUtf8("ok \xff\xfe ü"), "ok \uFFFD\uFFFD ü");
    EXPECT_EQ(Text::characterCount("héllo😀"), 6u);
}

}  // namespace

#include "Platform/JsonDocument.h"

#include <gtest/gtest.h>

#include <functional>

#include "Platform/JsonDecoder.h"

namespace {

TEST(JsonDocument, RefusesBadTextWithoutThrowing) {
    for (const char* bad : {"", "{", "{\"a\":}", "[1,]", "\"\xff\"", "nul", "{\"a\":1}x", "[1]]"})
        EXPECT_FALSE(JsonDocument::parse(bad).has_value()) << bad;

    // Deep nesting overflows no stack, neither reading nor decoding.
    std::string deep(200000, '[');
    deep += std::string(200000, ']');
    auto document = JsonDocument::parse(deep);
    ASSERT_TRUE(document.has_value());
    EXPECT_EQ(JsonDecoder(*document).elements().size(), 1u);
}

TEST(JsonDecoder, ReadsNestedValuesAndNamesWhereItFails) {
    auto document = JsonDocument::parse(
        R"({"a":[1,{"b":"x\u00fc","c":null}],"n":-2,"u":18446744073709551615,"f":2.5,"g":3.0,"t":true,)"
        R"("d":1,"d":2})");
    ASSERT_TRUE(document.has_value());
    JsonDecoder root(*document);
    auto a = root["a"].elements();
    ASSERT_EQ(a.size(), 2u);
    EXPECT_EQ(a[0].integer(), 1);
    EXPECT_EQ(a[1]["b"].string(), "x\xc3\xbc");
    EXPECT_TRUE(a[1]["c"].isNull());
    EXPECT_FALSE(a[1].optional("c").has_value());
    EXPECT_TRUE(a[1].contains("c"));
    EXPECT_EQ(root["n"].integer(), -2);
    EXPECT_EQ(root["f"].number(), 2.5);
    EXPECT_EQ(root["g"].integer(), 3);
    EXPECT_TRUE(root["t"].boolean());
    EXPECT_EQ(root["d"].integer(), 2);  // the last of a repeated key

    // Where each failing read names its failure.
    auto failedAt = [](const std::function<void()>& decode) -> std::string {
        try {
            decode();
        } catch (const DecodeError& error) {
            return error.codingPath;
        }
        return "(decoded)";
    };
    EXPECT_EQ(failedAt([&] { a[1]["b"].integer(); }), "a[1].b");
    EXPECT_EQ(failedAt([&] { a[1]["missing"]; }), "a[1].missing");
    EXPECT_EQ(failedAt([&] { root["u"].integer(); }), "u");
    EXPECT_EQ(failedAt([&] { root["f"].integer(); }), "f");
    EXPECT_EQ(failedAt([&] { a[0].string(); }), "a[0]");
    EXPECT_EQ(failedAt([&] { root.elements(); }), "");
}

}  // namespace

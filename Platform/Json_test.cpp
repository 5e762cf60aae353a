#include "Platform/Json.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <cmath>

namespace {

// The layout the command line prints: sorted keys, " : ", two-space indents, blank empty containers.
TEST(JsonText, PrettyLayout) {
    Json document = {{"b", Json::array()}, {"a", Json::object()}, {"c", {1, "x/y", {{"z", 1}, {"y", "été"}}}}};
    EXPECT_EQ(*JsonText::pretty(document),
              "{\n"
              "  \"a\" : {\n"
              "\n"
              "  },\n"
              "  \"b\" : [\n"
              "\n"
              "  ],\n"
              "  \"c\" : [\n"
              "    1,\n"
              "    \"x/y\",\n"
              "    {\n"
              "      \"y\" : \"été\",\n"
              "      \"z\" : 1\n"
              "    }\n"
              "  ]\n"
              "}");
    EXPECT_EQ(*JsonText::pretty(Json::object()), "{\n\n}");
}

TEST(JsonText, Scalars) {
    // Integral doubles print without a fraction, others in their shortest form.
    EXPECT_EQ(*JsonText::compact(
                  {900.0, -3.0, 0.1, 89.9, 1e-7, int64_t{-42}, uint64_t{18446744073709551615u}, true, nullptr}),
              "[900,-3,0.1,89.9,1e-07,-42,18446744073709551615,true,null]");
    EXPECT_EQ(*JsonText::compact("quote \" backslash \\ tab \t line\n bell \x07"),
              R"("quote \" backslash \\ tab \t line\n bell \u0007")");
    EXPECT_EQ(*JsonText::compact("a/b ü 😀"), "\"a/b ü 😀\"");
    EXPECT_EQ(*JsonText::compact(Json{{"z", 1}, {"a", {{"y", Json::array()}}}}), R"({"a":{"y":[]},"z":1})");
    EXPECT_FALSE(JsonText::compact(Json{{"x", std::nan("")}}).has_value());
    EXPECT_FALSE(JsonText::pretty(Json::array({INFINITY})).has_value());
}

}  // namespace

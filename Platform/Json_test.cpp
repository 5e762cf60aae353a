#include "Platform/Json.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <cmath>

namespace {

// The layout the command line prints: sorted keys, " : ", two-space indents, blank empty containers.
TEST(JsonText, PrettyLayout) {
    Json document = {{"schema", 1}, {"b", Json::array()}, {"a", Json::object()}, {"c", {1, "x/y", "été"}},
                     {"error", {{"code", "unreachable"}, {"message", "Couldn't reach the app."}}}};
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
              "    \"été\"\n"
              "  ],\n"
              "  \"error\" : {\n"
              "    \"code\" : \"unreachable\",\n"
              "    \"message\" : \"Couldn't reach the app.\"\n"
              "  },\n"
              "  \"schema\" : 1\n"
              "}");
    EXPECT_EQ(*JsonText::pretty(Json::object()), "{\n\n}");
}

TEST(JsonText, Scalars) {
    struct Case { Json value; const char* text; } cases[] = {
        {900.0, "900"}, {-3.0, "-3"}, {0.1, "0.1"}, {89.9, "89.9"}, {1e-7, "1e-07"}, {int64_t{-42}, "-42"},
        {uint64_t{18446744073709551615u}, "18446744073709551615"}, {true, "true"}, {nullptr, "null"},
        {"quote \" backslash \\ tab \t line\n bell \x07", R"("quote \" backslash \\ tab \t line\n bell \u0007")"},
        {"a/b ü 😀", "\"a/b ü 😀\""},
    };
    for (const auto& c : cases) EXPECT_EQ(*JsonText::compact(c.value), c.text);
    EXPECT_EQ(*JsonText::compact(Json{{"z", 1}, {"a", {{"y", Json::array()}}}}), R"({"a":{"y":[]},"z":1})");
    EXPECT_FALSE(JsonText::compact(Json{{"x", std::nan("")}}).has_value());
    EXPECT_FALSE(JsonText::pretty(Json::array({INFINITY})).has_value());
}

}  // namespace

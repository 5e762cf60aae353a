#include "VeskIPC/ParseOutput.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "Platform/Json.h"

namespace {

std::string text(const ParseOutput& output) { return JsonText::compact(output.toJson()).value(); }

ParseOutput decoded(std::string_view document) {
    return ParseOutput::fromJson(JsonDecoder(JsonDocument::parse(document).value()));
}

ParseOutput output(Capture capture, std::vector<std::string> unresolved = {}, bool readByModel = false) {
    return ParseOutput(ParseResult{std::move(capture), std::move(unresolved), readByModel});
}

Capture titled(std::string title) {
    Capture capture;
    capture.title = std::move(title);
    capture.style = Style::once();
    return capture;
}

// The five keys every output has, to which a case adds its own.
const std::string base = R"({"title":"x","style":"once","unresolved":[],"needsModel":false,"readByModel":false)";

}  // namespace

TEST(ParseOutputJson, BareAndFullCaptures) {
    EXPECT_EQ(text(output(titled("x"))),
              R"({"needsModel":false,"readByModel":false,"style":"once","title":"x","unresolved":[]})");
    const Capture capture("call mom", DateComponents{2026, 3, 14, 9, 5}, Style::repeatUntilDone(900),
                          PlaceTrigger{PlaceTrigger::Edge::arrive, "home", 600.9}, "office", DeviceGate::phone(),
                          Recurrence{Recurrence::Frequency::weekly, 1, {2}, false}, StartReminding::beforeDue(86400), 2,
                          "Family");
    const ParseOutput full = output(capture, {"asap"}, true);
    EXPECT_EQ(text(full),
              R"({"device":"phone","due":"2026-03-14T09:05","gate":"office","hideDaysBefore":2,"list":"Family",)"
              R"("needsModel":true,"readByModel":true,"recurrence":{"frequency":"weekly","fromCompletion":false,)"
              R"("interval":1,"weekdays":[2]},"repeatIntervalSeconds":900,"startReminding":"-86400","style":"repeat",)"
              R"("title":"call mom","trigger":{"delaySeconds":600,"edge":"arrive","place":"home"},)"
              R"("unresolved":["asap"]})");
    EXPECT_EQ(decoded(text(full)), full);
    EXPECT_EQ(decoded(base + R"(,"due":null,"repeatIntervalSeconds":null,"trigger":null,"gate":null,)"
                             R"("device":null,"recurrence":null,"startReminding":null,"hideDaysBefore":null,)"
                             R"("list":null,"colour":"red"})"),
              output(titled("x")));
}

// Weekdays are absent rather than empty; a start on a date without day is written empty.
TEST(ParseOutputJson, EmptyWeekdaysAreLeftOutAndStartRemindingIsWritten) {
    Capture capture = titled("bins");
    capture.recurrence = Recurrence{Recurrence::Frequency::daily, 2, {}, true};
    const ParseOutput bins = output(capture);
    EXPECT_NE(text(bins).find(R"("recurrence":{"frequency":"daily","fromCompletion":true,"interval":2})"),
              std::string::npos);
    EXPECT_EQ(decoded(text(bins)), bins);
    for (const char* weekdays : {"", R"("weekdays":null,)", R"("weekdays":[],)"}) {
        const auto read = decoded(base + R"(,"recurrence":{)" + weekdays +
                                  R"("frequency":"daily","interval":1,"fromCompletion":false}})");
        EXPECT_EQ(read.recurrence->weekdays, std::nullopt) << weekdays;
    }
    capture.startReminding = StartReminding::on({2026, 3, {}, {}, {}});
    EXPECT_EQ(output(capture).startReminding, "");
    EXPECT_NE(text(output(capture)).find(R"("startReminding":"")"), std::string::npos);
    capture.startReminding = StartReminding::on({2026, 3, 1, {}, {}});
    EXPECT_EQ(output(capture).startReminding, "2026-03-01");
    capture.startReminding = StartReminding::beforeDue(90.7);
    EXPECT_EQ(output(capture).startReminding, "-90");
}

TEST(ParseOutputJson, RefusesWrongShapes) {
    for (const char* key : {"title", "style", "unresolved", "needsModel", "readByModel"}) {
        Json missing = Json::parse(base + "}");
        missing.erase(key);
        EXPECT_THROW(decoded(missing.dump()), DecodeError) << key;
    }
    const std::string documents[] = {
        R"({"title":"x","style":"once","unresolved":[1],"needsModel":false,"readByModel":false})",
        base + R"(,"repeatIntervalSeconds":89.9})",
        base + R"(,"repeatIntervalSeconds":1e19})",
        base + R"(,"trigger":{"edge":"arrive","place":"home"}})",
        base + R"(,"trigger":{"edge":"arrive","place":"home","delaySeconds":1e300}})",
        base + R"(,"recurrence":{"frequency":"daily","fromCompletion":false}})",
        base + R"(,"recurrence":{"frequency":"daily","interval":1,"fromCompletion":false,"weekdays":[1.5]}})",
        base + R"(,"due":{"year":2026}})",
        base + R"(,"hideDaysBefore":"2"})",
    };
    for (const auto& document : documents) EXPECT_THROW(decoded(document), DecodeError) << document;
}

TEST(ParseOutputOperations, Format) {
    const std::pair<std::optional<DateComponents>, std::optional<std::string>> cases[] = {
        {DateComponents{2026, 3, 14, {}, {}}, "2026-03-14"}, {DateComponents{2026, 3, 14, 9, {}}, "2026-03-14T09:00"},
        {DateComponents{2026, 3, 14, {}, 30}, "2026-03-14"}, {DateComponents{33, 1, 2, 0, 0}, "0033-01-02T00:00"},
        {DateComponents{{}, {}, {}, 9, 5}, std::nullopt},    {DateComponents{2026, {}, 14, 9, 5}, std::nullopt},
        {DateComponents{2026, 3, {}, {}, {}}, std::nullopt}, {std::nullopt, std::nullopt},
    };
    for (const auto& [components, text] : cases) EXPECT_EQ(ParseOutput::format(components), text) << text.value_or("-");
}

// deviceOf is checked through the rows of Listing_test.
TEST(ParseOutputOperations, StylesInWords) {
    using Pair = std::pair<std::string, std::optional<int64_t>>;
    const std::tuple<Style, Pair, const char*> cases[] = {
        // clang-format off
        {Style::once(), {"once", {}}, "once"}, {Style::alarm(), {"alarm", {}}, "alarm"},
        {Style::escalate(), {"escalate", {}}, "escalate"},
        {Style::repeatUntilDone(), {"repeat", {}}, "repeat until done"},
        {Style::repeatUntilDone(900), {"repeat", 900}, "repeat every 15 min until done"},
        {Style::repeatUntilDone(89.9), {"repeat", 89}, "repeat every 1 min until done"},
        // clang-format on
    };
    for (const auto& [style, pair, words] : cases) {
        EXPECT_EQ(ParseOutput::styleOf(style), pair) << words;
        EXPECT_EQ(ParseOutput::describe(pair.first, pair.second), words);
    }
    // Only a repeat tells its interval; a style a newer peer sends reads as its name.
    EXPECT_EQ(ParseOutput::describe("escalate", 900), "escalate");
    EXPECT_EQ(ParseOutput::describe("anything", {}), "anything");
}

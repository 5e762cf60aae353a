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

// The bare layout is pinned by WireResponse, which carries one; absent and null read as absent.
TEST(ParseOutputJson, FullCaptureAndNullsReadAsAbsent) {
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
TEST(ParseOutputJson, EmptyWeekdaysAreLeftOutAndAStartWithoutDayIsEmpty) {
    Capture capture = titled("bins");
    capture.recurrence = Recurrence{Recurrence::Frequency::daily, 2, {}, true};
    capture.startReminding = StartReminding::on({2026, 3, {}, {}, {}});
    const ParseOutput bins = output(capture);
    EXPECT_EQ(text(bins),
              R"({"needsModel":false,"readByModel":false,"recurrence":{"frequency":"daily","fromCompletion":true,)"
              R"("interval":2},"startReminding":"","style":"once","title":"bins","unresolved":[]})");
    EXPECT_EQ(decoded(text(bins)), bins);
    const auto read = decoded(base + R"(,"recurrence":{"weekdays":[],"frequency":"daily","interval":1,)"
                                     R"("fromCompletion":false}})");
    EXPECT_EQ(read.recurrence->weekdays, std::nullopt);
}

// A required member missing, a number beyond 64 bits, a trigger or repeat without one of its members.
TEST(ParseOutputJson, RefusesWrongShapes) {
    for (const std::string& document :
         {std::string(R"({"title":"x","style":"once","unresolved":[],"needsModel":false})"),
          base + R"(,"repeatIntervalSeconds":1e19})", base + R"(,"trigger":{"edge":"arrive","place":"home"}})",
          base + R"(,"recurrence":{"frequency":"daily","fromCompletion":false}})"})
        EXPECT_THROW(decoded(document), DecodeError) << document;
}

TEST(ParseOutputOperations, Format) {
    // clang-format off
    const std::pair<std::optional<DateComponents>, std::optional<std::string>> cases[] = {
        {DateComponents{2026, 3, 14, 9, {}}, "2026-03-14T09:00"}, {DateComponents{2026, 3, 14, {}, 30}, "2026-03-14"},
        {DateComponents{33, 1, 2, 0, 0}, "0033-01-02T00:00"},     {DateComponents{{}, {}, {}, 9, 5}, std::nullopt},
        {DateComponents{2026, {}, 14, 9, 5}, std::nullopt},       {DateComponents{2026, 3, {}, {}, {}}, std::nullopt},
        {std::nullopt, std::nullopt},
    };
    // clang-format on
    for (const auto& [components, text] : cases) EXPECT_EQ(ParseOutput::format(components), text) << text.value_or("-");
}

// Once, alarm and escalate are read through the rows of Listing_test, and deviceOf too.
TEST(ParseOutputOperations, StylesInWords) {
    using StyleOf = std::pair<std::string, std::optional<int64_t>>;
    EXPECT_EQ(ParseOutput::styleOf(Style::repeatUntilDone()), (StyleOf{"repeat", {}}));
    EXPECT_EQ(ParseOutput::describe("repeat", {}), "repeat until done");
    EXPECT_EQ(ParseOutput::styleOf(Style::repeatUntilDone(89.9)), (StyleOf{"repeat", 89}));
    EXPECT_EQ(ParseOutput::describe("repeat", 89), "repeat every 1 min until done");
    // Only a repeat tells its interval.
    EXPECT_EQ(ParseOutput::describe("escalate", 900), "escalate");
}

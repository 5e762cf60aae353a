#include "VeskIPC/ParseOutput.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "Platform/Json.h"

namespace {

std::string text(const ParseOutput& output) { return JsonText::compact(output.toJson()).value(); }

ParseOutput decoded(std::string_view document) {
    const Json json = JsonText::parse(document).value();
    return ParseOutput::fromJson(JsonDecoder(json));
}

ParseResult result(Capture capture, std::vector<std::string> unresolved = {}, bool readByModel = false) {
    return ParseResult{std::move(capture), std::move(unresolved), readByModel};
}

Capture titled(std::string title, Style style = Style::once()) {
    Capture capture;
    capture.title = std::move(title);
    capture.style = style;
    return capture;
}

}  // namespace

TEST(ParseOutputJson, BareCaptureHasFiveKeys) {
    EXPECT_EQ(text(ParseOutput(result(titled("x")))),
              R"({"needsModel":false,"readByModel":false,"style":"once","title":"x","unresolved":[]})");
}

TEST(ParseOutputJson, FullCaptureIsWrittenAsPlainValues) {
    const Capture capture{"call mom",
                          DateComponents{2026, 3, 14, 9, 5},
                          Style::repeatUntilDone(900),
                          PlaceTrigger{PlaceTrigger::Edge::arrive, "home", 600.9},
                          "office",
                          DeviceGate::phone(),
                          Recurrence{Recurrence::Frequency::weekly, 1, {2}, false},
                          StartReminding::beforeDue(86400),
                          2,
                          "Family"};
    const ParseOutput output(result(capture, {"asap"}, true));
    const std::string encoded = text(output);
    EXPECT_EQ(encoded,
              R"({"device":"phone","due":"2026-03-14T09:05","gate":"office","hideDaysBefore":2,"list":"Family",)"
              R"("needsModel":true,"readByModel":true,"recurrence":{"frequency":"weekly","fromCompletion":false,)"
              R"("interval":1,"weekdays":[2]},"repeatIntervalSeconds":900,"startReminding":"-86400","style":"repeat",)"
              R"("title":"call mom","trigger":{"delaySeconds":600,"edge":"arrive","place":"home"},)"
              R"("unresolved":["asap"]})");
    EXPECT_EQ(decoded(encoded), output);
}

TEST(ParseOutputJson, EmptyWeekdaysAreLeftOut) {
    Capture capture = titled("bins");
    capture.recurrence = Recurrence{Recurrence::Frequency::daily, 2, {}, true};
    const ParseOutput output(result(capture));
    EXPECT_FALSE(output.recurrence->weekdays.has_value());
    const std::string encoded = text(output);
    EXPECT_NE(encoded.find(R"("recurrence":{"frequency":"daily","fromCompletion":true,"interval":2})"),
              std::string::npos);
    EXPECT_EQ(decoded(encoded), output);

    const std::string base = R"({"title":"x","style":"once","unresolved":[],"needsModel":false,"readByModel":false,)";
    for (const char* weekdays : {"", R"("weekdays":null,)", R"("weekdays":[],)"}) {
        const auto read = decoded(base + R"("recurrence":{)" + weekdays +
                                  R"("frequency":"daily","interval":1,"fromCompletion":false}})");
        EXPECT_EQ(read.recurrence->weekdays, std::nullopt) << weekdays;
    }
}

TEST(ParseOutputJson, StartRemindingOnADateWithoutDayIsEmptyButWritten) {
    Capture capture = titled("x");
    capture.startReminding = StartReminding::on({2026, 3, {}, {}, {}});
    const ParseOutput output(result(capture));
    EXPECT_EQ(output.startReminding, "");
    EXPECT_NE(text(output).find(R"("startReminding":"")"), std::string::npos);

    capture.startReminding = StartReminding::on({2026, 3, 1, {}, {}});
    EXPECT_EQ(ParseOutput(result(capture)).startReminding, "2026-03-01");
    capture.startReminding = StartReminding::beforeDue(90.7);
    EXPECT_EQ(ParseOutput(result(capture)).startReminding, "-90");
}

TEST(ParseOutputJson, NullsReadAsAbsent) {
    const auto read = decoded(
        R"({"title":"x","style":"once","unresolved":[],"needsModel":false,"readByModel":false,"due":null,)"
        R"("repeatIntervalSeconds":null,"trigger":null,"gate":null,"device":null,"recurrence":null,)"
        R"("startReminding":null,"hideDaysBefore":null,"list":null,"colour":"red"})");
    EXPECT_EQ(read, ParseOutput(result(titled("x"))));
}

TEST(ParseOutputJson, RefusesWrongShapes) {
    const std::string base = R"("title":"x","style":"once","unresolved":[],"needsModel":false,"readByModel":false)";
    const std::string documents[] = {
        R"({"style":"once","unresolved":[],"needsModel":false,"readByModel":false})",
        R"({"title":"x","unresolved":[],"needsModel":false,"readByModel":false})",
        R"({"title":"x","style":"once","needsModel":false,"readByModel":false})",
        R"({"title":"x","style":"once","unresolved":[],"readByModel":false})",
        R"({"title":"x","style":"once","unresolved":[],"needsModel":false})",
        R"({"title":"x","style":"once","unresolved":[1],"needsModel":false,"readByModel":false})",
        "{" + base + R"(,"repeatIntervalSeconds":89.9})",
        "{" + base + R"(,"repeatIntervalSeconds":1e19})",
        "{" + base + R"(,"trigger":{"edge":"arrive","place":"home"}})",
        "{" + base + R"(,"trigger":{"edge":"arrive","place":"home","delaySeconds":1e300}})",
        "{" + base + R"(,"recurrence":{"frequency":"daily","fromCompletion":false}})",
        "{" + base + R"(,"recurrence":{"frequency":"daily","interval":1,"fromCompletion":false,"weekdays":[1.5]}})",
        "{" + base + R"(,"due":{"year":2026}})",
        "{" + base + R"(,"hideDaysBefore":"2"})",
    };
    for (const auto& document : documents) EXPECT_THROW(decoded(document), DecodeError) << document;
}

TEST(ParseOutputOperations, Format) {
    struct Case { std::optional<DateComponents> components; std::optional<std::string> text; };
    const Case cases[] = {
        {DateComponents{2026, 3, 14, {}, {}}, "2026-03-14"},
        {DateComponents{2026, 3, 14, 9, {}}, "2026-03-14T09:00"},
        {DateComponents{2026, 3, 14, 9, 5}, "2026-03-14T09:05"},
        {DateComponents{2026, 3, 14, {}, 30}, "2026-03-14"},
        {DateComponents{{}, {}, {}, 9, 5}, std::nullopt},
        {DateComponents{2026, {}, 14, 9, 5}, std::nullopt},
        {DateComponents{2026, 3, {}, {}, {}}, std::nullopt},
        {std::nullopt, std::nullopt},
        {DateComponents{33, 1, 2, 0, 0}, "0033-01-02T00:00"},
    };
    for (const auto& c : cases) EXPECT_EQ(ParseOutput::format(c.components), c.text);
}

TEST(ParseOutputOperations, StyleDescribeAndDevice) {
    using Pair = std::pair<std::string, std::optional<int64_t>>;
    EXPECT_EQ(ParseOutput::styleOf(Style::once()), (Pair{"once", {}}));
    EXPECT_EQ(ParseOutput::styleOf(Style::repeatUntilDone()), (Pair{"repeat", {}}));
    EXPECT_EQ(ParseOutput::styleOf(Style::repeatUntilDone(900)), (Pair{"repeat", 900}));
    EXPECT_EQ(ParseOutput::styleOf(Style::repeatUntilDone(89.9)), (Pair{"repeat", 89}));
    EXPECT_EQ(ParseOutput::styleOf(Style::alarm()), (Pair{"alarm", {}}));
    EXPECT_EQ(ParseOutput::styleOf(Style::escalate()), (Pair{"escalate", {}}));

    struct Case { std::string style; std::optional<int64_t> seconds; std::string words; };
    const Case cases[] = {
        {"repeat", {}, "repeat until done"},
        {"repeat", 900, "repeat every 15 min until done"},
        {"repeat", 90, "repeat every 1 min until done"},
        {"repeat", 89, "repeat every 1 min until done"},
        {"once", {}, "once"},
        {"escalate", 900, "escalate"},
        {"anything", {}, "anything"},
    };
    for (const auto& c : cases) EXPECT_EQ(ParseOutput::describe(c.style, c.seconds), c.words);

    EXPECT_EQ(ParseOutput::deviceOf(DeviceGate::anyMac()), "mac");
    EXPECT_EQ(ParseOutput::deviceOf(DeviceGate::phone()), "phone");
    EXPECT_EQ(ParseOutput::deviceOf(DeviceGate::named("Studio")), "Studio");
}

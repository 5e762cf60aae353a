#include "VeskModel/Capture.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "Platform/Json.h"

namespace {

std::string text(const Json& json) { return JsonText::compact(json).value(); }

template <class T>
T decoded(std::string_view document) {
    return T::fromJson(JsonDecoder(JsonDocument::parse(document).value()));
}

// The error a document fails with, or nothing when it decodes.
template <class T>
std::optional<DecodeError> failure(std::string_view document) {
    try {
        decoded<T>(document);
    } catch (const DecodeError& error) {
        return error;
    }
    return std::nullopt;
}

template <class T>
void refused(std::initializer_list<std::string> documents) {
    for (const auto& document : documents) EXPECT_TRUE(failure<T>(document)) << document;
}

}  // namespace

// The variants that neither the full capture here nor the full record in ReminderMeta_test shows,
// then the full capture, which also reads back whole.
TEST(CaptureJson, ExactShapesAndRoundTrip) {
    const std::pair<Json, std::string> cases[] = {
        {Style::alarm().toJson(), R"({"alarm":{}})"},
        {DeviceGate::anyMac().toJson(), R"({"anyMac":{}})"},
        {Recurrence{Recurrence::Frequency::weekly, 2, {2, 4}, false}.toJson(),
         R"({"frequency":"weekly","fromCompletion":false,"interval":2,"weekdays":[2,4]})"},
        {Recurrence{Recurrence::Frequency::yearly, 1, {}, true}.toJson(),
         R"({"frequency":"yearly","fromCompletion":true,"interval":1,"weekdays":[]})"},
    };
    for (const auto& [json, expected] : cases) EXPECT_EQ(text(json), expected);

    const Capture capture("call mom", DateComponents{2026, 3, 14, 9, 30}, Style::repeatUntilDone(900),
                          PlaceTrigger{PlaceTrigger::Edge::leave, "office", 300}, "home", DeviceGate::named("Studio"),
                          Recurrence{Recurrence::Frequency::monthly, 1, {}, true}, StartReminding::beforeDue(86400), 3,
                          "Family");
    const std::string encoded = text(capture.toJson());
    EXPECT_EQ(encoded,
              R"({"deviceGate":{"named":{"_0":"Studio"}},"due":{"day":14,"hour":9,"minute":30,"month":3,"year":2026},)"
              R"("gate":"home","hideDaysBefore":3,"list":"Family","recurrence":{"frequency":"monthly",)"
              R"("fromCompletion":true,"interval":1,"weekdays":[]},"startReminding":{"beforeDue":{"_0":86400}},)"
              R"("style":{"repeatUntilDone":{"interval":900}},"title":"call mom","trigger":{"delay":300,)"
              R"("edge":"leave","place":"office"}})");
    EXPECT_EQ(decoded<Capture>(encoded), capture);
}

TEST(CaptureJson, ReadsNullsAndUnknownKeysAsAbsent) {
    const Capture capture = decoded<Capture>(
        R"({"title":"x","style":{"once":{},"bogus":1},"due":null,"gate":null,"trigger":null,"deviceGate":null,)"
        R"("recurrence":null,"startReminding":null,"hideDaysBefore":null,"list":null,"color":"red"})");
    EXPECT_EQ(text(capture.toJson()), R"({"style":{"once":{}},"title":"x"})");
    EXPECT_EQ(text(decoded<Style>(R"({"repeatUntilDone":{"interval":null}})").toJson()), R"({"repeatUntilDone":{}})");
}

TEST(CaptureJson, DateComponentsKeepWhatIsSetAndIgnoreThePlatformsOtherKeys) {
    const auto components =
        decoded<Capture>(R"({"title":"x","style":{"once":{}},"due":{"year":2026,"month":3,)"
                         R"("day":14,"calendar":{"identifier":"gregorian"},"second":5,)"
                         R"("timeZone":{"identifier":"Europe/Amsterdam"},"weekday":7,"hour":null}})")
            .due.value();
    EXPECT_EQ(components, (DateComponents{2026, 3, 14, {}, {}}));
    EXPECT_EQ(text(toJson(components)), R"({"day":14,"month":3,"year":2026})");
}

TEST(CaptureJson, RefusesWrongShapesNamingWhere) {
    const std::string keys = "Invalid number of keys found, expected one.";
    const std::string dictionary = "Expected to decode a dictionary but found something else.";
    auto styleFailure = [](const std::string& document) { return failure<Style>(document).value().description; };
    for (const char* document : {R"({})", R"({"bogus":{}})", R"({"once":{},"alarm":{}})"})
        EXPECT_EQ(styleFailure(document), keys) << document;
    for (const char* document : {R"({"once":null})", R"({"once":1})", R"("once")"})
        EXPECT_EQ(styleFailure(document), dictionary) << document;
    EXPECT_EQ(styleFailure(R"({"repeatUntilDone":{"interval":"15"}})"),
              "Expected to decode a number but found something else.");
    EXPECT_EQ(styleFailure(R"({"repeatUntilDone":{"interval":1e19}})"),
              "Seconds must be finite and fit a 64-bit integer.");

    refused<PlaceTrigger>({R"({"edge":"enter","place":"home","delay":0})", R"({"edge":"arrive","place":"home"})",
                           R"({"edge":"arrive","place":"home","delay":-1e300})"});
    refused<DeviceGate>({R"({"named":{}})"});
    const std::string weekly = R"({"frequency":"weekly","interval":1,)";
    refused<Recurrence>({weekly + R"("fromCompletion":false})", weekly + R"("weekdays":[2.5],"fromCompletion":false})",
                         R"({"frequency":"hourly","interval":1,"weekdays":[],"fromCompletion":false})"});
    refused<StartReminding>({R"({"on":{}})", R"({"beforeDue":{"_0":"1h"}})", R"({"beforeDue":{"_0":1e300}})"});
    // One bad field fails the whole capture, also an optional one, and the error names where.
    const std::string base = R"({"title":"x","style":{"once":{}},)";
    refused<Capture>({R"({"style":{"once":{}}})", R"({"title":"x"})", base + R"("hideDaysBefore":1.5})"});
    const auto style = failure<Capture>(R"({"title":"x","style":{},"startReminding":{"on":{}}})").value();
    EXPECT_EQ(style.description, keys);
    EXPECT_EQ(style.codingPath, "style");
    EXPECT_EQ(failure<Capture>(base + R"("startReminding":{"on":{"_0":{"day":"1"}}}})").value().codingPath,
              "startReminding.on._0.day");
}

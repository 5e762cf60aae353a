#include "VeskModel/Capture.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "Platform/Json.h"

namespace {

std::string text(const Json& json) { return JsonText::compact(json).value(); }

template <class T>
T decoded(std::string_view document) {
    const Json json = JsonText::parse(document).value();
    return T::fromJson(JsonDecoder(json));
}

// The description of the failure, or "" when the document decodes.
template <class T>
std::string failure(std::string_view document) {
    try {
        decoded<T>(document);
        return "";
    } catch (const DecodeError& error) {
        return error.description;
    }
}

Capture titled(std::string title, Style style) {
    Capture capture;
    capture.title = std::move(title);
    capture.style = style;
    return capture;
}

}  // namespace

TEST(CaptureJson, VariantsAndRecordsHaveTheirExactShapes) {
    struct Case { Json json; std::string expected; };
    const Case cases[] = {
        {Style::once().toJson(), R"({"once":{}})"},
        {Style::repeatUntilDone(900).toJson(), R"({"repeatUntilDone":{"interval":900}})"},
        {Style::repeatUntilDone(89.5).toJson(), R"({"repeatUntilDone":{"interval":89.5}})"},
        {Style::repeatUntilDone().toJson(), R"({"repeatUntilDone":{}})"},
        {Style::alarm().toJson(), R"({"alarm":{}})"},
        {Style::escalate().toJson(), R"({"escalate":{}})"},
        {PlaceTrigger{PlaceTrigger::Edge::arrive, "home", 600}.toJson(),
         R"({"delay":600,"edge":"arrive","place":"home"})"},
        {PlaceTrigger{PlaceTrigger::Edge::leave, "work", 0}.toJson(), R"({"delay":0,"edge":"leave","place":"work"})"},
        {DeviceGate::anyMac().toJson(), R"({"anyMac":{}})"},
        {DeviceGate::phone().toJson(), R"({"phone":{}})"},
        {DeviceGate::named("Studio").toJson(), R"({"named":{"_0":"Studio"}})"},
        {Recurrence{Recurrence::Frequency::weekly, 2, {2, 4}, false}.toJson(),
         R"({"frequency":"weekly","fromCompletion":false,"interval":2,"weekdays":[2,4]})"},
        {Recurrence{Recurrence::Frequency::yearly, 1, {}, true}.toJson(),
         R"({"frequency":"yearly","fromCompletion":true,"interval":1,"weekdays":[]})"},
        {StartReminding::on({2026, 3, 14, {}, {}}).toJson(), R"({"on":{"_0":{"day":14,"month":3,"year":2026}}})"},
        {StartReminding::beforeDue(3600).toJson(), R"({"beforeDue":{"_0":3600}})"},
        {toJson(DateComponents{{}, {}, {}, 9, 5}), R"({"hour":9,"minute":5})"},
        {titled("x", Style::once()).toJson(), R"({"style":{"once":{}},"title":"x"})"},
    };
    for (const auto& c : cases) EXPECT_EQ(text(c.json), c.expected);
}

TEST(CaptureJson, FullCaptureRoundTrips) {
    Capture capture{"call mom",
                    DateComponents{2026, 3, 14, 9, 30},
                    Style::repeatUntilDone(900),
                    PlaceTrigger{PlaceTrigger::Edge::leave, "office", 300},
                    "home",
                    DeviceGate::named("Studio"),
                    Recurrence{Recurrence::Frequency::monthly, 1, {}, true},
                    StartReminding::beforeDue(86400),
                    3,
                    "Family"};
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
    EXPECT_EQ(capture, titled("x", Style::once()));
    EXPECT_EQ(text(capture.toJson()), R"({"style":{"once":{}},"title":"x"})");

    const Style style = decoded<Style>(R"({"repeatUntilDone":{"interval":null}})");
    EXPECT_EQ(style, Style::repeatUntilDone());
    EXPECT_EQ(text(style.toJson()), R"({"repeatUntilDone":{}})");
    EXPECT_NE(Style::repeatUntilDone(), Style::repeatUntilDone(3600));

    // An integral float is written back without its fraction.
    EXPECT_EQ(text(decoded<Style>(R"({"repeatUntilDone":{"interval":900.0}})").toJson()),
              R"({"repeatUntilDone":{"interval":900}})");
}

TEST(CaptureJson, DateComponentsKeepWhatIsSetAndIgnoreThePlatformsOtherKeys) {
    const auto components = decoded<Capture>(
        R"({"title":"x","style":{"once":{}},"due":{"year":2026,"month":3,"day":14,"calendar":{"identifier":"gregorian"},)"
        R"("timeZone":{"identifier":"Europe/Amsterdam"},"second":5,"weekday":7,"hour":null}})").due;
    ASSERT_TRUE(components.has_value());
    EXPECT_EQ(*components, (DateComponents{2026, 3, 14, {}, {}}));
    EXPECT_EQ(text(toJson(*components)), R"({"day":14,"month":3,"year":2026})");
}

TEST(CaptureJson, RefusesWrongShapes) {
    const std::string keys = "Invalid number of keys found, expected one.";
    struct Case { std::string document; std::string description; };
    const Case styles[] = {
        {R"({})", keys},
        {R"({"bogus":{}})", keys},
        {R"({"once":{},"alarm":{}})", keys},
        {R"({"once":null})", "Expected to decode a dictionary but found something else."},
        {R"({"once":1})", "Expected to decode a dictionary but found something else."},
        {R"({"repeatUntilDone":{"interval":"15"}})", "Expected to decode a number but found something else."},
        {R"({"repeatUntilDone":{"interval":1e19}})", "Seconds must be finite and fit a 64-bit integer."},
        {R"("once")", "Expected to decode a dictionary but found something else."},
    };
    for (const auto& c : styles) EXPECT_EQ(failure<Style>(c.document), c.description) << c.document;

    const char* triggers[] = {
        R"({"edge":"enter","place":"home","delay":0})", R"({"edge":"arrive","place":"home"})",
        R"({"edge":"arrive","place":1,"delay":0})",     R"({"edge":"arrive","place":"home","delay":-1e300})",
    };
    for (const char* document : triggers) EXPECT_NE(failure<PlaceTrigger>(document), "") << document;

    const char* gates[] = {R"({"named":{}})", R"({"named":{"_0":1}})", R"({"phone":[]})", R"({"anyMac":{},"phone":{}})"};
    for (const char* document : gates) EXPECT_NE(failure<DeviceGate>(document), "") << document;

    const char* recurrences[] = {
        R"({"frequency":"weekly","interval":1,"fromCompletion":false})",
        R"({"frequency":"hourly","interval":1,"weekdays":[],"fromCompletion":false})",
        R"({"frequency":"weekly","interval":1.5,"weekdays":[],"fromCompletion":false})",
        R"({"frequency":"weekly","interval":1,"weekdays":[2.5],"fromCompletion":false})",
        R"({"frequency":"weekly","interval":1,"weekdays":null,"fromCompletion":false})",
        R"({"frequency":"weekly","interval":1,"weekdays":[],"fromCompletion":0})",
    };
    for (const char* document : recurrences) EXPECT_NE(failure<Recurrence>(document), "") << document;

    const char* starts[] = {R"({"on":{}})", R"({"beforeDue":{"_0":"1h"}})", R"({"on":{"_0":{"year":"2026"}}})",
                            R"({"beforeDue":{"_0":1e300}})", R"({"on":{"_0":null}})", R"({"later":{"_0":1}})"};
    for (const char* document : starts) EXPECT_NE(failure<StartReminding>(document), "") << document;

    // One bad field fails the whole capture, also an optional one.
    const char* captures[] = {
        R"({"style":{"once":{}}})",
        R"({"title":"x"})",
        R"({"title":"x","style":{"once":{}},"gate":5})",
        R"({"title":"x","style":{"once":{}},"hideDaysBefore":1.5})",
        R"({"title":"x","style":{"once":{}},"due":"tomorrow"})",
        R"({"title":"x","style":{"once":{}},"due":{"hour":9.5}})",
        R"({"title":"x","style":{"once":{}},"trigger":{}})",
        R"({"title":"x","style":{"once":{}},"list":["a"]})",
        R"([])",
    };
    for (const char* document : captures) EXPECT_NE(failure<Capture>(document), "") << document;
}

TEST(CaptureJson, AFailureCarriesItsCodingPath) {
    try {
        decoded<Capture>(R"({"title":"x","style":{},"startReminding":{"on":{}}})");
        FAIL();
    } catch (const DecodeError& error) {
        EXPECT_EQ(error.description, "Invalid number of keys found, expected one.");
        EXPECT_EQ(error.codingPath, "style");
    }
    try {
        decoded<Capture>(R"({"title":"x","style":{"once":{}},"startReminding":{"on":{"_0":{"day":"1"}}}})");
        FAIL();
    } catch (const DecodeError& error) {
        EXPECT_EQ(error.codingPath, "startReminding.on._0.day");
    }
}

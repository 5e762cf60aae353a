#include "VeskModel/ReminderMeta.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "Platform/Json.h"

namespace {

std::string text(const Json& json) { return JsonText::compact(json).value(); }

template <class T>
T decoded(std::string_view document) {
    return T::fromJson(JsonDecoder(JsonDocument::parse(document).value()));
}

}  // namespace

TEST(ReminderMetaJson, SmallestAndFullRecordsRoundTrip) {
    const std::string smallest = R"({"firstSeen":0,"fromCompletion":false,"style":{"once":{}}})";
    EXPECT_EQ(decoded<ReminderMeta>(smallest), ReminderMeta(Style::once(), false, Date{0}));
    EXPECT_EQ(text(decoded<ReminderMeta>(smallest).toJson()), smallest);

    const ReminderMeta meta(Style::escalate(), PlaceTrigger{PlaceTrigger::Edge::arrive, "gym", 60}, Date{12.5}, "home",
                            DeviceGate::phone(), StartReminding::on({2026, 3, 1, {}, {}}), 2, true,
                            Snooze{Date{100}, DateComponents{2026, 3, 14, 9, 0}, DateComponents{2026, 3, 13, {}, {}}},
                            Date{-3.25}, Source::cli, CapturePlace{"Café", 52.37, 4.89});
    const std::string encoded = text(meta.toJson());
    EXPECT_EQ(encoded,
              R"({"capturedAt":{"latitude":52.37,"longitude":4.89,"name":"Café"},"deviceGate":{"phone":{}},)"
              R"("firstSeen":-3.25,"fromCompletion":true,"gate":"home","hideDaysBefore":2,"snooze":{"dueWhenSnoozed":)"
              R"({"day":14,"hour":9,"minute":0,"month":3,"year":2026},"originalDue":{"day":13,"month":3,"year":2026},)"
              R"("until":100},"source":"cli","startReminding":{"on":{"_0":{"day":1,"month":3,"year":2026}}},)"
              R"("style":{"escalate":{}},"trigger":{"delay":60,"edge":"arrive","place":"gym"},"triggeredAt":12.5})");
    EXPECT_EQ(decoded<ReminderMeta>(encoded), meta);
}

TEST(ReminderMetaJson, NullsReadAsAbsent) {
    EXPECT_EQ(decoded<ReminderMeta>(
                  R"({"style":{"alarm":{}},"fromCompletion":true,"firstSeen":5,"trigger":null,"triggeredAt":null,)"
                  R"("gate":null,"deviceGate":null,"startReminding":null,"hideDaysBefore":null,"snooze":null,)"
                  R"("source":null,"capturedAt":null,"unknown":{}})"),
              ReminderMeta(Style::alarm(), true, Date{5}));
    EXPECT_EQ(decoded<Snooze>(R"({"until":1,"dueWhenSnoozed":null,"originalDue":null})"), (Snooze{Date{1}, {}, {}}));
    EXPECT_EQ(decoded<CapturePlace>(R"({"latitude":1,"longitude":2,"name":null})"), (CapturePlace{{}, 1, 2}));
    EXPECT_EQ(text(CapturePlace{{}, 1, 2}.toJson()), R"({"latitude":1,"longitude":2})");
}

TEST(ReminderMetaJson, RefusesWrongShapes) {
    for (const char* document :
         {R"({"style":{"once":{}},"firstSeen":0})", R"({"style":{"once":{}},"fromCompletion":false})",
          R"({"fromCompletion":false,"firstSeen":0})"})
        EXPECT_THROW(decoded<ReminderMeta>(document), DecodeError) << document;
    // One bad optional field fails the whole record.
    const std::string base = R"({"style":{"once":{}},"fromCompletion":false,"firstSeen":0,)";
    for (const char* field :
         {R"("source":"CLI")", R"("snooze":{})", R"("capturedAt":{"latitude":1})", R"("triggeredAt":"now")"})
        EXPECT_THROW(decoded<ReminderMeta>(base + field + "}"), DecodeError) << field;

    for (const char* document : {R"({"id":"1","name":"Home","latitude":1,"longitude":2})",
                                 R"({"id":"1","name":"Home","latitude":1,"longitude":2,"radius":100,"address":7})"})
        EXPECT_THROW(decoded<Place>(document), DecodeError) << document;
}

TEST(ReminderMetaFromCapture, CopiesWhatTheStoreDoesNotHold) {
    Capture capture("pay rent", DateComponents{2026, 4, 1, {}, {}}, Style::alarm(),
                    PlaceTrigger{PlaceTrigger::Edge::leave, "work", 0}, "home", DeviceGate::anyMac(),
                    Recurrence{Recurrence::Frequency::monthly, 1, {}, true}, StartReminding::beforeDue(3600), 5,
                    "Bills");
    EXPECT_EQ(
        ReminderMeta(capture, Date{42}, Source::intent),
        ReminderMeta(Style::alarm(), capture.trigger, std::nullopt, "home", DeviceGate::anyMac(),
                     StartReminding::beforeDue(3600), 5, true, std::nullopt, Date{42}, Source::intent, std::nullopt));
    capture.recurrence->fromCompletion = false;
    EXPECT_FALSE(ReminderMeta(capture, Date{42}, Source::app).fromCompletion);
    capture.recurrence.reset();
    EXPECT_FALSE(ReminderMeta(capture, Date{42}, Source::app).fromCompletion);
}

TEST(PlaceKey, TrimsLowersAndDropsOneLeadingThe) {
    const std::pair<const char*, const char*> cases[] = {
        {"The Office", "office"}, {" the office\n", "office"},  {"the  office", " office"}, {"theatre", "theatre"},
        {"the", "the"},           {"the the park", "the park"}, {"ÉCOLE", "école"}};
    for (const auto& [name, key] : cases) EXPECT_EQ(Place::key(name), key) << name;
}

TEST(PlaceJson, RoundTripsWithOptionalAddress) {
    Place place{"p1", "Home", 52.5, 4.25, Place::defaultRadius, std::nullopt};
    EXPECT_EQ(text(place.toJson()), R"({"id":"p1","latitude":52.5,"longitude":4.25,"name":"Home","radius":100})");
    EXPECT_EQ(
        decoded<Place>(R"({"id":"p1","name":"Home","latitude":52.5,"longitude":4.25,"radius":100,"address":null})"),
        place);
    place.address = "1 Main St";
    EXPECT_EQ(decoded<Place>(text(place.toJson())), place);
}

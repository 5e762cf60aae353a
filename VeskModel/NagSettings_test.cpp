#include "VeskModel/NagSettings.h"

#include <limits>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "Platform/Json.h"

namespace {

std::string text(const Json& json) { return JsonText::compact(json).value(); }

NagSettings decoded(std::string_view document) {
    return NagSettings::fromJson(JsonDecoder(JsonDocument::parse(document).value()));
}

const NightWindow defaultNight{{22, 0}, {7, 0}};

// What setting `key` to `value` does to the defaults: the keys of the JSON it changes, or the
// sentence it refuses with when it changes nothing.
std::string afterSetting(std::string_view key, std::string_view value) {
    NagSettings settings;
    if (auto refusal = settings.set(key, value)) return settings == NagSettings{} ? refusal->message : "changed";
    const Json changed = settings.toJson(), defaults = NagSettings{}.toJson();
    std::string keys;
    for (const auto& item : changed.items())
        if (item.value() != defaults.at(item.key()))
            keys += (keys.empty() ? "" : " ") + item.key() + "=" + text(item.value());
    return keys;
}

}  // namespace

TEST(NagSettingsJson, WritesEveryKeyAndReadsMissingOrNullAsDefaults) {
    EXPECT_EQ(text(NagSettings{}.toJson()),
              R"({"alarmRepeat":540,"dateOnlyHour":9,"defaultRepeat":3600,"escalation":{"alarmAfter":1800,)"
              R"("alarmRepeat":900,"timeSensitiveAfter":900},"nagInterval":900,"nightWindow":{"end":{"hour":7,)"
              R"("minute":0},"start":{"hour":22,"minute":0}},"stagger":600})");
    EXPECT_EQ(decoded(R"({"escalation":null,"stagger":null,"other":[1]})"), NagSettings{});
    // Only a null night is no night, and it is written as null to stay so.
    NagSettings full{60, 120, 0, NightWindow{{1, 0}, {5, 30}}, EscalationLadder{1, 2, 3}, 7, 300}, noNight;
    noNight.nightWindow.reset();
    EXPECT_EQ(decoded(R"({"nightWindow":null})"), noNight);
    EXPECT_NE(text(noNight.toJson()).find(R"("nightWindow":null)"), std::string::npos);
    for (const auto& settings : {full, noNight}) EXPECT_EQ(decoded(text(settings.toJson())), settings);
}

TEST(NagSettingsJson, RefusesWrongShapes) {
    for (const char* document : {R"([])", R"({"defaultRepeat":"60"})", R"({"dateOnlyHour":9.5})",
                                 R"({"escalation":{"alarmAfter":1800}})", R"({"nightWindow":{"start":{"hour":22}}})"})
        EXPECT_THROW(decoded(document), DecodeError) << document;
}

TEST(NagSettingsSet, StoresSecondsOrRefusesWithItsSentence) {
    auto unknown = [](const std::string& key) {
        return "No setting called \u201c" + key +
               "\u201d. The settings are repeat, nag, stagger, alarm-repeat, date-only-hour, night.";
    };
    // clang-format off
    const std::tuple<std::string, std::string, std::string> cases[] = {
        {"night", " OFF ", "nightWindow=null"},
        {"night", "\t1:0-5:30", R"(nightWindow={"end":{"hour":5,"minute":30},"start":{"hour":1,"minute":0}})"},
        {"repeat", "5", "defaultRepeat=300"},            {"repeat", "240", "defaultRepeat=14400"},
        {"repeat", " \t30\t ", "defaultRepeat=1800"},    {"nag", "120", "nagInterval=7200"},
        {"stagger", "0", "stagger=0"},                   {"date-only-hour", "+7", "dateOnlyHour=7"},
        {"date-only-hour", "0", "dateOnlyHour=0"},
        {"alarm-repeat", "30", "alarmRepeat=1800"},  // the escalation's own repeat stays
        {"Night", "off", unknown("Night")},              {" repeat", "30", unknown(" repeat")},
        {"night", "22:00-07:00-09:00", "Give night as a start and end, like 22:00-07:00, or off."},
        {"nag", "0", "nag takes whole minutes from 1 to 120."},
        {"stagger", "61", "stagger takes whole minutes from 0 to 60."},
        {"alarm-repeat", "0", "alarm-repeat takes whole minutes from 1 to 60."},
        {"date-only-hour", "24", "date-only-hour takes an hour from 0 to 23."},
    };
    // clang-format on
    for (const auto& [key, value, outcome] : cases) EXPECT_EQ(afterSetting(key, value), outcome) << key << " " << value;
    for (const char* value : {"4", "241", "15m", "30\n"})
        EXPECT_EQ(afterSetting("repeat", value), "repeat takes whole minutes from 5 to 240.") << value;
}

// A hand-made document may hold any duration: it reads in minutes toward zero, clamped to 64 bits.
TEST(NagSettingsFields, ReadInUserUnits) {
    NagSettings settings;
    settings.defaultRepeat = 90;
    settings.nagInterval = -90;
    settings.alarmRepeat = 1e300;
    EXPECT_EQ(settings.get(NagSettings::Field::repeat), 1);
    EXPECT_EQ(settings.get(NagSettings::Field::nag), -1);
    EXPECT_EQ(settings.get(NagSettings::Field::alarmRepeat), std::numeric_limits<int64_t>::max());
}

TEST(TimeOfDayText, ReadsOnlyHoursAndMinutes) {
    EXPECT_EQ(defaultNight.text(), "22:00-07:00");
    EXPECT_EQ(TimeOfDay::fromText("7:5"), (TimeOfDay{7, 5}));
    EXPECT_EQ(TimeOfDay::fromText(" 23:59\t"), (TimeOfDay{23, 59}));
    for (const char* bad : {"24:00", "07:60", "-1:00", "7", "07:00:00", "7 :00"})
        EXPECT_EQ(TimeOfDay::fromText(bad), std::nullopt) << bad;
    EXPECT_EQ(NightWindow::fromText("22:00 - 07:00"), defaultNight);
    for (const char* bad : {"22:00-07:00-09:00", "22:00", "22:00-7"})
        EXPECT_EQ(NightWindow::fromText(bad), std::nullopt) << bad;
    EXPECT_GT((TimeOfDay{6, 62}), (TimeOfDay{7, 1}));  // by minute count, not hour first
}

// Start inside, end outside; the same start and end is all day.
TEST(NightWindowContains, StartInsideEndOutside) {
    const NightWindow night = defaultNight, early{{1, 0}, {5, 0}}, allDay{{8, 0}, {8, 0}};
    // clang-format off
    const std::tuple<NightWindow, TimeOfDay, bool> cases[] = {
        {night, {22, 0}, true}, {night, {6, 59}, true}, {night, {7, 0}, false}, {night, {21, 59}, false},
        {early, {1, 0}, true},  {early, {5, 0}, false}, {early, {0, 59}, false},
        {allDay, {8, 0}, true}, {allDay, {7, 59}, true}};
    // clang-format on
    for (const auto& [window, time, inside] : cases) EXPECT_EQ(window.contains(time), inside) << time.text();

    const Calendar amsterdam("Europe/Amsterdam", "en_US"), utc("UTC", "en_US");
    const Date lateEvening = amsterdam.date(DateComponents{2026, 1, 15, 22, 30}).value();  // 21:30 UTC
    EXPECT_TRUE(defaultNight.contains(lateEvening, amsterdam));
    EXPECT_FALSE(defaultNight.contains(lateEvening, utc));
}

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

}  // namespace

TEST(NagSettingsJson, WritesEveryKeyAndReadsMissingOrNullAsDefaults) {
    EXPECT_EQ(text(NagSettings{}.toJson()),
              R"({"alarmRepeat":540,"dateOnlyHour":9,"defaultRepeat":3600,"escalation":{"alarmAfter":1800,)"
              R"("alarmRepeat":900,"timeSensitiveAfter":900},"nagInterval":900,"nightWindow":{"end":{"hour":7,)"
              R"("minute":0},"start":{"hour":22,"minute":0}},"stagger":600})");
    EXPECT_EQ(decoded("{}"), NagSettings{});
    EXPECT_EQ(decoded(R"({"escalation":null,"stagger":null,"other":[1]})"), NagSettings{});
    NagSettings full{60, 120, 0, NightWindow{{1, 0}, {5, 30}}, EscalationLadder{1, 2, 3}, 7, 300};
    EXPECT_EQ(decoded(text(full.toJson())), full);
}

TEST(NagSettingsJson, NullNightWindowMeansNoNightAndStaysSo) {
    const NagSettings settings = decoded(R"({"nightWindow":null})");
    EXPECT_FALSE(settings.nightWindow.has_value());
    const std::string written = text(settings.toJson());
    EXPECT_NE(written.find(R"("nightWindow":null)"), std::string::npos);
    EXPECT_FALSE(decoded(written).nightWindow.has_value());
}

TEST(NagSettingsJson, RefusesWrongShapes) {
    for (const char* document : {R"([])", R"({"defaultRepeat":"60"})", R"({"dateOnlyHour":9.5})",
                                 R"({"escalation":{"alarmAfter":1800}})", R"({"nightWindow":{}})",
                                 R"({"nightWindow":{"start":{"hour":22},"end":{"hour":7,"minute":0}}})",
                                 R"({"nightWindow":"22:00-07:00"})"})
        EXPECT_THROW(decoded(document), DecodeError) << document;
}

TEST(NagSettingsSet, AcceptsAndStores) {
    struct Case { std::string key, value; std::function<bool(const NagSettings&)> check; };
    const Case cases[] = {
        {"night", " OFF ", [](auto& s) { return !s.nightWindow; }},
        {"night", "\t1:0-5:30", [](auto& s) { return s.nightWindow == NightWindow{{1, 0}, {5, 30}}; }},
        {"repeat", "5", [](auto& s) { return s.defaultRepeat == 300; }},
        {"repeat", "240", [](auto& s) { return s.defaultRepeat == 14400; }},
        {"repeat", " \t30\t ", [](auto& s) { return s.defaultRepeat == 1800; }},
        {"nag", "120", [](auto& s) { return s.nagInterval == 7200; }},
        {"stagger", "0", [](auto& s) { return s.stagger == 0; }},
        {"alarm-repeat", "30", [](auto& s) { return s.alarmRepeat == 1800 && s.escalation.alarmRepeat == 900; }},
        {"date-only-hour", "+7", [](auto& s) { return s.dateOnlyHour == 7; }},
        {"date-only-hour", "0", [](auto& s) { return s.dateOnlyHour == 0; }},
    };
    for (const auto& c : cases) {
        NagSettings settings;
        EXPECT_EQ(settings.set(c.key, c.value), std::nullopt) << c.key << " " << c.value;
        EXPECT_TRUE(c.check(settings)) << c.key << " " << c.value;
    }
}

TEST(NagSettingsSet, RefusesWithItsSentenceAndChangesNothing) {
    const std::string unknown = "\u201d. The settings are repeat, nag, stagger, alarm-repeat, date-only-hour, night.";
    const std::string night = "Give night as a start and end, like 22:00-07:00, or off.";
    const std::string repeat = "repeat takes whole minutes from 5 to 240.";
    const std::string hour = "date-only-hour takes an hour from 0 to 23.";
    struct Case { std::string key, value, message; };
    const Case cases[] = {
        {"foo", "1", "No setting called \u201cfoo" + unknown},
        {"Night", "off", "No setting called \u201cNight" + unknown},
        {" repeat", "30", "No setting called \u201c repeat" + unknown},
        {"night", "", night}, {"night", "22:00-07:00-09:00", night}, {"repeat", "4", repeat}, {"repeat", "241", repeat},
        {"repeat", "  ", repeat}, {"repeat", "15m", repeat}, {"repeat", "30\n", repeat},
        {"repeat", "99999999999999999999", repeat}, {"nag", "0", "nag takes whole minutes from 1 to 120."},
        {"stagger", "61", "stagger takes whole minutes from 0 to 60."},
        {"alarm-repeat", "0", "alarm-repeat takes whole minutes from 1 to 60."},
        {"date-only-hour", "24", hour}, {"date-only-hour", "-1", hour},
    };
    for (const auto& c : cases) {
        NagSettings settings;
        EXPECT_EQ(settings.set(c.key, c.value), NagSettings::SettingError{c.message}) << c.key << " " << c.value;
        EXPECT_EQ(settings, NagSettings{}) << c.key << " " << c.value;
    }
}

TEST(NagSettingsFields, ReadInUserUnitsAndClampOnWrite) {
    NagSettings settings;
    settings.put(NagSettings::Field::repeat, 1000);
    EXPECT_EQ(settings.defaultRepeat, 14400);
    EXPECT_EQ(settings.get(NagSettings::Field::repeat), 240);
    settings.put(NagSettings::Field::stagger, -5);
    EXPECT_EQ(settings.stagger, 0);
    settings.put(NagSettings::Field::dateOnlyHour, 30);
    EXPECT_EQ(settings.dateOnlyHour, 23);

    settings.defaultRepeat = 90;
    EXPECT_EQ(settings.get(NagSettings::Field::repeat), 1);
    settings.nagInterval = -90;
    EXPECT_EQ(settings.get(NagSettings::Field::nag), -1);
    settings.alarmRepeat = 1e300;
    EXPECT_EQ(settings.get(NagSettings::Field::alarmRepeat), std::numeric_limits<int64_t>::max());
}

TEST(TimeOfDayText, ReadsOnlyHoursAndMinutes) {
    EXPECT_EQ((TimeOfDay{7, 5}.text()), "07:05");
    EXPECT_EQ(defaultNight.text(), "22:00-07:00");
    struct Case { std::string text; std::optional<TimeOfDay> expected; };
    const Case cases[] = {
        {"7:5", TimeOfDay{7, 5}}, {" 23:59\t", TimeOfDay{23, 59}}, {"00:00", TimeOfDay{0, 0}}, {"24:00", {}},
        {"07:60", {}}, {"7", {}}, {"07:00:00", {}}, {"-1:00", {}}, {"7 :00", {}}, {"7pm", {}}, {"", {}},
    };
    for (const auto& c : cases) EXPECT_EQ(TimeOfDay::fromText(c.text), c.expected) << c.text;
    EXPECT_EQ(NightWindow::fromText("22:00 - 07:00"), defaultNight);
    for (const char* bad : {"22:00-07:00-09:00", "22:00", "22:00-7"})
        EXPECT_EQ(NightWindow::fromText(bad), std::nullopt) << bad;
    EXPECT_GT((TimeOfDay{6, 62}), (TimeOfDay{7, 1}));  // by minute count, not hour first
}

TEST(NightWindowContains, StartInsideEndOutside) {
    struct Case { NightWindow window; TimeOfDay time; bool inside; };
    const NightWindow night = defaultNight, early{{1, 0}, {5, 0}}, allDay{{8, 0}, {8, 0}};
    const Case cases[] = {
        {night, {22, 0}, true}, {night, {0, 0}, true}, {night, {6, 59}, true}, {night, {7, 0}, false},
        {night, {21, 59}, false}, {early, {1, 0}, true}, {early, {5, 0}, false}, {early, {0, 59}, false},
        // The same start and end: all day.
        {allDay, {8, 0}, true}, {allDay, {7, 59}, true},
    };
    for (const auto& c : cases) EXPECT_EQ(c.window.contains(c.time), c.inside) << c.time.text();
}

TEST(NightWindowContains, ReadsTheWallClockOfTheCalendar) {
    const Calendar amsterdam("Europe/Amsterdam", "en_US"), utc("UTC", "en_US");
    const Date lateEvening = amsterdam.date(DateComponents{2026, 1, 15, 22, 30}).value();  // 21:30 UTC
    EXPECT_TRUE(defaultNight.contains(lateEvening, amsterdam));
    EXPECT_FALSE(defaultNight.contains(lateEvening, utc));
}

TEST(AlertLevelRaw, NamesOnlyTheThreeLevels) {
    EXPECT_EQ(alertLevelFromRaw(2), AlertLevel::alarm);
    EXPECT_EQ(alertLevelFromRaw(3), std::nullopt);
    EXPECT_EQ(alertLevelFromRaw(-1), std::nullopt);
}

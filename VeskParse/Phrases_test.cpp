#include <functional>
#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "Platform/Calendar.h"
#include "Platform/Regex.h"
#include "VeskParse/Parser.h"

namespace {

Calendar amsterdam() { return Calendar("Europe/Amsterdam", "en_US"); }

DateComponents day(int64_t year, int64_t month, int64_t dayOfMonth) {
    return DateComponents{year, month, dayOfMonth, std::nullopt, std::nullopt};
}

DateComponents moment(int64_t year, int64_t month, int64_t dayOfMonth, int64_t hour, int64_t minute) {
    return DateComponents{year, month, dayOfMonth, hour, minute};
}

// Wednesday 18 November 2026, 10:00 in Amsterdam.
Date wednesday() { return *amsterdam().date(moment(2026, 11, 18, 10, 0)); }

Parser parser(std::vector<std::string> places = {"gym", "The Office"}) {
    NagSettings settings;
    settings.nagInterval = 900;
    return Parser{amsterdam(), std::move(places), settings};
}

// What a pass left of the text, with blanks collapsed and the ends trimmed.
std::string rest(const Work& work) {
    static const auto blanks = Regex::compile(R"(\s+)");
    std::string text = blanks->replaceAll(work.text, " ");
    if (!text.empty() && text.front() == ' ') text.erase(0, 1);
    if (!text.empty() && text.back() == ' ') text.pop_back();
    return text;
}

using Pass = std::function<void(Work&, Parser::State&)>;

struct Run {
    Parser::State state;
    std::string rest;
};

Run run(const Pass& pass, const std::string& sentence, Parser::State state = {}) {
    Work work{" " + sentence + " "};
    pass(work, state);
    return Run{state, rest(work)};
}

const DateResolver resolver{amsterdam(), wednesday()};

Pass styles(const Parser& p) {
    return [&p](Work& w, Parser::State& s) { p.takeStyle(w, s); };
}
const Pass start = [](Work& w, Parser::State& s) { Parser::takeStart(w, s, resolver); };
const Pass hide = [](Work& w, Parser::State& s) { Parser::takeHide(w, s); };
const Pass recurrence = [](Work& w, Parser::State& s) { Parser::takeRecurrence(w, s, resolver); };
const Pass device = [](Work& w, Parser::State& s) { Parser::takeDeviceGate(w, s); };
Pass places(const Parser& p) {
    return [&p](Work& w, Parser::State& s) { p.takePlaces(w, s); };
}

Recurrence rule(Recurrence::Frequency frequency, int64_t interval, std::vector<int64_t> weekdays = {}, bool fromCompletion = false) {
    return Recurrence{frequency, interval, std::move(weekdays), fromCompletion};
}

using F = Recurrence::Frequency;

}  // namespace

TEST(Style, ReadsIntervalsAndStyleWords) {
    struct Case {
        std::string text;
        Style style;
        bool morning;
        std::string rest;
    };
    const std::vector<Case> cases = {
        {"nag me every 15 minutes", Style::repeatUntilDone(900), false, ""},
        {"remind me every 2 hours to stretch", Style::repeatUntilDone(7200), false, "to stretch"},
        {"nag me every hour", Style::repeatUntilDone(3600), false, ""},
        {"Ping Me Every ten mins", Style::repeatUntilDone(600), false, ""},
        {"bug me every 5m", Style::repeatUntilDone(300), false, ""},
        {"bug me until it's done pay rent", Style::repeatUntilDone(900), false, "pay rent"},
        {"nag me until I’m done", Style::repeatUntilDone(900), false, ""},
        {"nag me every day", Style::repeatUntilDone(900), false, "every day"},
        {"nag me just once", Style::once(), false, ""},
        {"call the bank don't let me forget it", Style::escalate(), false, "call the bank"},
        {"don’t let me skip this", Style::escalate(), false, ""},
        {"escalate the invoice", Style::escalate(), false, "the invoice"},
        {"pay rent, alarm", Style::alarm(), false, "pay rent"},
        {"sound an alarm at 7am", Style::alarm(), false, "at 7am"},
        {"use an ALARM", Style::alarm(), false, ""},
        {"wake me up at 6", Style::alarm(), true, "at 6"},
        // The style words run in a fixed order and the last one that matches decides.
        {"just once escalate", Style::once(), false, ""},
        {"wake me just once", Style::alarm(), true, ""},
        {"nag me every 15 minutes, wake me", Style::alarm(), true, ","},
        // Not style phrases.
        {"remind me to call", Style::repeatUntilDone(), false, "remind me to call"},
        {"nagging me", Style::repeatUntilDone(), false, "nagging me"},
        {"buy an alarm clock", Style::repeatUntilDone(), false, "buy an alarm clock"},
        // An amount that can't be read loses the phrase, and "nag me" went with it.
        {"nag me every 99999999999999999999 minutes", Style::repeatUntilDone(), false, ""},
        {"nag me every 153722867280912931 minutes", Style::repeatUntilDone(), false, ""},
    };
    const Parser p = parser();
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        auto result = run(styles(p), c.text);
        EXPECT_EQ(result.state.capture.style, c.style);
        EXPECT_EQ(result.state.morning, c.morning);
        EXPECT_EQ(result.rest, c.rest);
    }
}

TEST(Style, NagMeUsesTheSettingsInterval) {
    Parser p = parser();
    p.settings.nagInterval = 1200;
    EXPECT_EQ(run(styles(p), "bug me").state.capture.style, Style::repeatUntilDone(1200));
}

TEST(Start, ReadsMonthsAndLeadTimes) {
    struct Case {
        std::string text;
        std::optional<StartReminding> start;
        std::string rest;
    };
    const std::vector<Case> cases = {
        {"start pinging me a week early for passport on the 20th", StartReminding::beforeDue(604800), "for passport on the 20th"},
        {"start nagging me from march pay tax", StartReminding::on(day(2027, 3, 1)), "pay tax"},
        {"start bugging me on December", StartReminding::on(day(2026, 12, 1)), ""},
        {"start reminding me in nov", StartReminding::on(day(2027, 11, 1)), ""},
        {"start reminding me 3 days before", StartReminding::beforeDue(259200), ""},
        {"start nagging me 2 weeks ahead", StartReminding::beforeDue(1209600), ""},
        {"start reminding me 99999999999999999999 days ahead", StartReminding::beforeDue(86400), ""},
        {"start reminding me two days before", std::nullopt, "start reminding me two days before"},
        {"start nagging me in march start nagging me 2 days early", StartReminding::on(day(2027, 3, 1)),
         "start nagging me 2 days early"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        auto result = run(start, c.text);
        EXPECT_EQ(result.state.capture.startReminding, c.start);
        EXPECT_EQ(result.rest, c.rest);
    }
}

TEST(Hide, ReadsDaysBeforeDue) {
    struct Case {
        std::string text;
        std::optional<int64_t> days;
        std::string rest;
    };
    const std::vector<Case> cases = {
        {"hide it until 3 days before it's due dentist on the 20th", 3, "dentist on the 20th"},
        {"don't show it until the week before it's due", 7, ""},
        {"hide until the day ahead", 1, ""},
        {"hide this until 2 weeks before", 14, ""},
        {"don’t show me until a week ahead it is due", 7, ""},
        {"hide it until 2000000000000000000 weeks before", std::nullopt, ""},
        {"hide it until 3 days before due hide it until the week before", 3, "hide it until the week before"},
        {"hide it until friday", std::nullopt, "hide it until friday"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        auto result = run(hide, c.text);
        EXPECT_EQ(result.state.capture.hideDaysBefore, c.days);
        EXPECT_EQ(result.rest, c.rest);
    }
}

TEST(Recurrence, UnitPrefixDecidesTheFrequency) {
    EXPECT_EQ(Parser::recurrence(3, "Days", true), rule(F::daily, 3, {}, true));
    EXPECT_EQ(Parser::recurrence(1, "w", false), rule(F::weekly, 1));
    EXPECT_EQ(Parser::recurrence(2, "months", false), rule(F::monthly, 2));
    EXPECT_EQ(Parser::recurrence(2, "minutes", false), rule(F::monthly, 2));
    EXPECT_EQ(Parser::recurrence(1, "years", false), rule(F::yearly, 1));
    EXPECT_EQ(Parser::recurrence(1, "", false), rule(F::yearly, 1));
}

TEST(Recurrence, ReadsRules) {
    struct Case {
        std::string text;
        std::optional<Recurrence> recurrence;
        std::optional<DateComponents> day;
        std::string rest;
    };
    const std::vector<Case> cases = {
        {"pay rent every 1st of the month", rule(F::monthly, 1), day(2026, 12, 1), "pay rent"},
        {"every the 18th", rule(F::monthly, 1), day(2026, 11, 18), ""},
        {"every 31st of each month", rule(F::monthly, 1), day(2026, 12, 31), ""},
        {"every 40th floss", std::nullopt, std::nullopt, "floss"},
        {"every 40th floss every day", rule(F::daily, 1), std::nullopt, "floss"},
        // The day of the month is tried first, so "2nd" here is a date, not "every second".
        {"every 2nd monday", rule(F::monthly, 1), day(2026, 12, 2), "monday"},
        {"take out the bins every monday and thursday at 7", rule(F::weekly, 1, {2, 5}), std::nullopt, "take out the bins at 7"},
        {"every friday, Monday & friday", rule(F::weekly, 1, {2, 6}), std::nullopt, ""},
        {"every second friday pay sitter", rule(F::weekly, 2, {6}), std::nullopt, "pay sitter"},
        {"every other Tuesday", rule(F::weekly, 2, {3}), std::nullopt, ""},
        {"standup every weekday at 9:30", rule(F::weekly, 1, {2, 3, 4, 5, 6}), std::nullopt, "standup at 9:30"},
        {"every weekdays", rule(F::weekly, 1, {2, 3, 4, 5, 6}), std::nullopt, ""},
        {"get haircut every 6 weeks from when I last did it", rule(F::weekly, 6, {}, true), std::nullopt, "get haircut"},
        {"descale the kettle 3 months after I last did it", rule(F::monthly, 3, {}, true), std::nullopt, "descale the kettle"},
        {"a week after I finished it", rule(F::weekly, 1, {}, true), std::nullopt, ""},
        {"every day after I finish it", rule(F::daily, 1, {}, true), std::nullopt, ""},
        {"water lawn every 2 weeks after I did it", rule(F::weekly, 2, {}, true), std::nullopt, "water lawn every"},
        {"call bob every monday and every friday", rule(F::weekly, 1, {2}), std::nullopt, "call bob and every friday"},
        {"water plants every other day", rule(F::daily, 2), std::nullopt, "water plants"},
        {"water lawn every two weeks", rule(F::weekly, 2), std::nullopt, "water lawn"},
        {"every 3 months", rule(F::monthly, 3), std::nullopt, ""},
        {"every year", rule(F::yearly, 1), std::nullopt, ""},
        {"every week i guess", rule(F::weekly, 1), std::nullopt, "i guess"},
        {"every 99999999999999999999 days", rule(F::daily, 1), std::nullopt, ""},
        {"vitamins every morning", rule(F::daily, 1), std::nullopt, "vitamins"},
        {"stretch daily at 8", rule(F::daily, 1), std::nullopt, "stretch at 8"},
        {"pay the bill Monthly", rule(F::monthly, 1), std::nullopt, "pay the bill"},
        {"everyday things", std::nullopt, std::nullopt, "everyday things"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        auto result = run(recurrence, c.text);
        EXPECT_EQ(result.state.capture.recurrence, c.recurrence);
        EXPECT_EQ(result.state.day, c.day);
        EXPECT_EQ(result.rest, c.rest);
    }
}

TEST(DeviceGate, ReadsMacAndPhone) {
    struct Case {
        std::string text;
        std::optional<DeviceGate> gate;
        std::string rest;
    };
    const std::vector<Case> cases = {
        {"reply to ann on my mac", DeviceGate::anyMac(), "reply to ann"},
        {"check phone when i'm on my phone", DeviceGate::phone(), "check phone"},
        {"next time I’m at my desk", DeviceGate::anyMac(), ""},
        {"whenever im on a laptop", DeviceGate::anyMac(), ""},
        {"on my computer when I'm on my phone", DeviceGate::anyMac(), "when I'm on my phone"},
        {"on my phone", std::nullopt, "on my phone"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        auto result = run(device, c.text);
        EXPECT_EQ(result.state.capture.deviceGate, c.gate);
        EXPECT_EQ(result.rest, c.rest);
    }
}

TEST(Places, ReadsTriggersGatesAndDelays) {
    using E = PlaceTrigger::Edge;
    struct Case {
        std::string text;
        std::optional<PlaceTrigger> trigger;
        std::optional<std::string> gate;
        std::string rest;
    };
    const std::vector<Case> cases = {
        {"pick up parcel when I get to the gym", PlaceTrigger{E::arrive, "gym", 0}, std::nullopt, "pick up parcel"},
        {"when I get to gym", PlaceTrigger{E::arrive, "gym", 0}, std::nullopt, ""},
        {"when I get to the library", PlaceTrigger{E::arrive, "library", 0}, std::nullopt, ""},
        {"when I get to the gymnasium", PlaceTrigger{E::arrive, "gymnasium", 0}, std::nullopt, ""},
        {"buy stamps when I get home", PlaceTrigger{E::arrive, "home", 0}, std::nullopt, "buy stamps"},
        {"as soon as i am back at Work", PlaceTrigger{E::arrive, "work", 0}, std::nullopt, ""},
        {"when I arrive at THE OFFICE", PlaceTrigger{E::arrive, "office", 0}, std::nullopt, ""},
        {"pick up keys 2 hours after I get to The Office", PlaceTrigger{E::arrive, "office", 7200}, std::nullopt, "pick up keys"},
        {"feed cat 10 minutes after I get home", PlaceTrigger{E::arrive, "home", 600}, std::nullopt, "feed cat"},
        {"lock door when I leave work and give me 5 minutes", PlaceTrigger{E::leave, "work", 300}, std::nullopt, "lock door"},
        {"before I leave home", PlaceTrigger{E::leave, "home", 0}, std::nullopt, ""},
        {"5 minutes after I get home and give me 10 minutes", PlaceTrigger{E::arrive, "home", 600}, std::nullopt, ""},
        // Digits too long for an integer lose the phrase; the shorter form had been in it.
        {"99999999999999999999 minutes after I get home", std::nullopt, std::nullopt, ""},
        {"pick up keys when I get to bob's", std::nullopt, std::nullopt, "pick up keys when I get to bob's"},
        {"buy stamps when i'm at home", std::nullopt, std::nullopt, "buy stamps when i'm at home"},
        {"call dad but only if i'm at home", std::nullopt, "home", "call dad"},
        {"call dad only in the gym", std::nullopt, "gym", "call dad"},
        {"when I get home but only when I’m at The Office", PlaceTrigger{E::arrive, "home", 0}, "office", ""},
        {"give me 5 minutes to breathe", std::nullopt, std::nullopt, "give me 5 minutes to breathe"},
    };
    const Parser p = parser();
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        auto result = run(places(p), c.text);
        EXPECT_EQ(result.state.capture.trigger, c.trigger);
        EXPECT_EQ(result.state.capture.gate, c.gate);
        EXPECT_EQ(result.rest, c.rest);
    }
}

TEST(Places, DelayAppliesToATriggerFromAToken) {
    Parser::State state;
    state.capture.trigger = PlaceTrigger{PlaceTrigger::Edge::arrive, "home", 0};
    auto result = run(places(parser()), "give me 5 minutes", state);
    EXPECT_EQ(result.state.capture.trigger, (PlaceTrigger{PlaceTrigger::Edge::arrive, "home", 300}));
    EXPECT_EQ(result.rest, "");
}

TEST(Places, NamesMatchLiterally) {
    using E = PlaceTrigger::Edge;
    const Parser p = parser({"st. mary's", "x\\E|y", "a(b", "Café", "[z"});
    struct Case {
        std::string text;
        std::optional<PlaceTrigger> trigger;
    };
    const std::vector<Case> cases = {
        {"when I get to St. Mary's", PlaceTrigger{E::arrive, "st. mary's", 0}},
        {"when I get to stX mary's", std::nullopt},
        {"when I get to x\\E|y", PlaceTrigger{E::arrive, "x\\e|y", 0}},
        {"when I get to y", std::nullopt},
        {"when I leave a(b", PlaceTrigger{E::leave, "a(b", 0}},
        {"when I get to CAFÉ", PlaceTrigger{E::arrive, "café", 0}},
        {"when I get to [z", PlaceTrigger{E::arrive, "[z", 0}},
        {"when I get home", PlaceTrigger{E::arrive, "home", 0}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        EXPECT_EQ(run(places(p), c.text).state.capture.trigger, c.trigger);
    }
}

// Whole sentences through every pass: what one pass takes, a later one can't read,
// and a later assignment overwrites an earlier one.
TEST(Phrases, PassesInterplayInWholeSentences) {
    using E = PlaceTrigger::Edge;
    struct Case {
        std::string text;
        std::string title;
        std::optional<DateComponents> due;
        Style style = Style::repeatUntilDone();
        std::optional<Recurrence> recurrence = std::nullopt;
        std::function<void(const Capture&)> more = nullptr;
    };
    const std::vector<Case> cases = {
        {"call the dentist at 9, nag me every 15 minutes", "call the dentist", moment(2026, 11, 18, 21, 0), Style::repeatUntilDone(900)},
        {"at 9", "", moment(2026, 11, 18, 21, 0)},
        {"friday at 9", "", moment(2026, 11, 20, 9, 0)},
        // A recurrence takes "at 9" as written: no choosing between the two halves of the day.
        {"every wednesday at 9", "", moment(2026, 11, 25, 9, 0), Style::repeatUntilDone(), rule(F::weekly, 1, {4})},
        {"every wednesday at 11", "", moment(2026, 11, 18, 11, 0), Style::repeatUntilDone(), rule(F::weekly, 1, {4})},
        {"every wednesday", "", day(2026, 11, 18), Style::repeatUntilDone(), rule(F::weekly, 1, {4})},
        {"every friday", "", day(2026, 11, 20), Style::repeatUntilDone(), rule(F::weekly, 1, {6})},
        {"wake me at 6", "", moment(2026, 11, 19, 6, 0), Style::alarm()},
        {"sound an alarm at 7am", "", moment(2026, 11, 19, 7, 0), Style::alarm()},
        {"nag me every day", "", std::nullopt, Style::repeatUntilDone(900), rule(F::daily, 1)},
        {"bug me until it's done pay rent", "pay rent", std::nullopt, Style::repeatUntilDone(900)},
        {"remind me every 2 hours to stretch", "stretch", std::nullopt, Style::repeatUntilDone(7200)},
        {"call the bank don't let me forget it", "call the bank", std::nullopt, Style::escalate()},
        {"pay rent, alarm", "pay rent", std::nullopt, Style::alarm()},
        {"pay rent every 1st of the month", "pay rent", day(2026, 12, 1), Style::repeatUntilDone(), rule(F::monthly, 1)},
        {"every 40th floss", "floss", std::nullopt},
        {"take out the bins every monday and thursday at 7", "take out the bins", moment(2026, 11, 19, 7, 0),
         Style::repeatUntilDone(), rule(F::weekly, 1, {2, 5})},
        {"standup every weekday at 9:30", "standup", moment(2026, 11, 19, 9, 30), Style::repeatUntilDone(),
         rule(F::weekly, 1, {2, 3, 4, 5, 6})},
        {"every weekdays", "", day(2026, 11, 18), Style::repeatUntilDone(), rule(F::weekly, 1, {2, 3, 4, 5, 6})},
        {"every second friday pay sitter", "pay sitter", day(2026, 11, 20), Style::repeatUntilDone(), rule(F::weekly, 2, {6})},
        {"water plants every other day", "water plants", std::nullopt, Style::repeatUntilDone(), rule(F::daily, 2)},
        {"water lawn every two weeks", "water lawn", std::nullopt, Style::repeatUntilDone(), rule(F::weekly, 2)},
        {"get haircut every 6 weeks from when I last did it", "get haircut", std::nullopt, Style::repeatUntilDone(),
         rule(F::weekly, 6, {}, true)},
        {"descale the kettle 3 months after I last did it", "descale the kettle", std::nullopt, Style::repeatUntilDone(),
         rule(F::monthly, 3, {}, true)},
        {"water lawn every 2 weeks after I did it", "water lawn every", std::nullopt, Style::repeatUntilDone(),
         rule(F::weekly, 2, {}, true)},
        {"call bob every monday and every friday", "call bob and every", day(2026, 11, 20), Style::repeatUntilDone(),
         rule(F::weekly, 1, {2})},
        {"vitamins every morning", "vitamins", std::nullopt, Style::repeatUntilDone(), rule(F::daily, 1)},
        {"stretch daily at 8", "stretch", moment(2026, 11, 19, 8, 0), Style::repeatUntilDone(), rule(F::daily, 1)},
        {"start pinging me a week early for passport on the 20th", "passport", day(2026, 11, 20), Style::repeatUntilDone(),
         std::nullopt, [](const Capture& c) { EXPECT_EQ(c.startReminding, StartReminding::beforeDue(604800)); }},
        {"start nagging me from march pay tax", "pay tax", std::nullopt, Style::repeatUntilDone(), std::nullopt,
         [](const Capture& c) { EXPECT_EQ(c.startReminding, StartReminding::on(day(2027, 3, 1))); }},
        {"hide it until 3 days before it's due dentist on the 20th", "dentist", day(2026, 11, 20), Style::repeatUntilDone(),
         std::nullopt, [](const Capture& c) { EXPECT_EQ(c.hideDaysBefore, 3); }},
        {"don't show it until the week before it's due", "", std::nullopt, Style::repeatUntilDone(), std::nullopt,
         [](const Capture& c) { EXPECT_EQ(c.hideDaysBefore, 7); }},
        {"reply to ann on my mac", "reply to ann", std::nullopt, Style::repeatUntilDone(), std::nullopt,
         [](const Capture& c) { EXPECT_EQ(c.deviceGate, DeviceGate::anyMac()); }},
        {"check phone when i'm on my phone", "check phone", std::nullopt, Style::repeatUntilDone(), std::nullopt,
         [](const Capture& c) { EXPECT_EQ(c.deviceGate, DeviceGate::phone()); }},
        // The amount belongs to the trigger, so no due moment is read from it.
        {"in 10 minutes after I get home", "in", std::nullopt, Style::repeatUntilDone(), std::nullopt,
         [](const Capture& c) { EXPECT_EQ(c.trigger, (PlaceTrigger{E::arrive, "home", 600})); }},
        {"pick up keys 2 hours after I get to The Office", "pick up keys", std::nullopt, Style::repeatUntilDone(), std::nullopt,
         [](const Capture& c) { EXPECT_EQ(c.trigger, (PlaceTrigger{E::arrive, "office", 7200})); }},
        {"call dad but only if i'm at home", "call dad", std::nullopt, Style::repeatUntilDone(), std::nullopt,
         [](const Capture& c) { EXPECT_EQ(c.gate, "home"); }},
        {"give me 5 minutes to breathe", "give me 5 minutes to breathe", std::nullopt},
        {"pick up keys when I get to bob's", "pick up keys when I get to bob's", std::nullopt},
        {"buy stamps when i'm at home", "buy stamps when i'm at home", std::nullopt},
        // A phrase overwrites what a token set.
        {"style:once nag me", "", std::nullopt, Style::repeatUntilDone(900)},
        {"nag:5m bug me", "", std::nullopt, Style::repeatUntilDone(900)},
        {"style:alarm just once", "", std::nullopt, Style::once()},
        {"every:daily every friday", "", day(2026, 11, 20), Style::repeatUntilDone(), rule(F::weekly, 1, {6})},
        {"arrive:home give me 5 minutes", "", std::nullopt, Style::repeatUntilDone(), std::nullopt,
         [](const Capture& c) { EXPECT_EQ(c.trigger, (PlaceTrigger{E::arrive, "home", 300})); }},
    };
    const Parser p = parser();
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        auto result = p.parse(c.text, wednesday());
        EXPECT_EQ(result.capture.title, c.title);
        EXPECT_EQ(result.capture.due, c.due);
        EXPECT_EQ(result.capture.style, c.style);
        EXPECT_EQ(result.capture.recurrence, c.recurrence);
        if (c.more) c.more(result.capture);
    }
}

TEST(Phrases, LeftoverWordsAreUnresolved) {
    const Parser p = parser();
    EXPECT_EQ(p.parse("water lawn every 2 weeks after I did it", wednesday()).unresolved, std::vector<std::string>{"every"});
    EXPECT_EQ(p.parse("call bob every monday and every friday", wednesday()).unresolved, std::vector<std::string>{"every"});
    EXPECT_EQ(p.parse("give me 5 minutes to breathe", wednesday()).unresolved, (std::vector<std::string>{"5", "minutes"}));
    EXPECT_FALSE(p.parse("pick up parcel when I get to the gym", wednesday()).needsModel());
}

// Dates that a recurrence names lie on the wall clock, so a clock change between now and
// the due date moves nothing.
TEST(Phrases, RecurrenceDatesAcrossClockChanges) {
    const Parser p = parser();
    const Calendar calendar = amsterdam();
    struct Case {
        DateComponents now;
        std::string text;
        DateComponents due;
    };
    const std::vector<Case> cases = {
        // Saturday before the spring change; Sunday 29 March has a 23-hour day.
        {moment(2026, 3, 28, 10, 0), "stretch every day at 9", moment(2026, 3, 29, 9, 0)},
        {moment(2026, 3, 28, 10, 0), "every sunday at 2:30am", moment(2026, 3, 29, 2, 30)},
        {moment(2026, 3, 28, 10, 0), "every 29th", day(2026, 3, 29)},
        // Saturday before the autumn change; Sunday 25 October has a 25-hour day.
        {moment(2026, 10, 24, 10, 0), "every sunday and monday at 7", moment(2026, 10, 25, 7, 0)},
        {moment(2026, 10, 24, 23, 30), "every weekday", day(2026, 10, 26)},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        EXPECT_EQ(p.parse(c.text, *calendar.date(c.now)).capture.due, c.due);
    }
}

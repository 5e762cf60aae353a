#include <optional>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "VeskParse/ParseTesting.h"

using namespace ParseTesting;

// Captures are written with designated initializers; the fields left out keep their defaults.
#pragma GCC diagnostic ignored "-Wmissing-field-initializers"

namespace {

using Pass = void (*)(Work&, Parser::State&);

const Parser p = parser();
const Parser slowNag = parser({}, 1200);
const Parser odd = parser({"st. mary's", "x\\E|y", "a(b", "Café", "[z"});
const DateResolver r = resolver();

const Pass style = [](Work& w, Parser::State& s) { p.takeStyle(w, s); };
const Pass style1200 = [](Work& w, Parser::State& s) { slowNag.takeStyle(w, s); };
const Pass start = [](Work& w, Parser::State& s) { Parser::takeStart(w, s, r); };
const Pass hide = [](Work& w, Parser::State& s) { Parser::takeHide(w, s); };
const Pass every = [](Work& w, Parser::State& s) { Parser::takeRecurrence(w, s, r); };
const Pass device = [](Work& w, Parser::State& s) { Parser::takeDeviceGate(w, s); };
const Pass places = [](Work& w, Parser::State& s) { p.takePlaces(w, s); };
const Pass oddPlaces = [](Work& w, Parser::State& s) { odd.takePlaces(w, s); };

// What a pass left of the text, with blanks collapsed and the ends trimmed.
std::string rest(const Work& work) {
    std::istringstream words(work.text);
    std::string word, text;
    while (words >> word) text += (text.empty() ? "" : " ") + word;
    return text;
}

}  // namespace

// One pass at a time: what it sets and what it leaves of the sentence.
TEST(Phrases, EachPassReadsItsPhrases) {
    struct Case {
        Pass pass;
        std::string text;
        Capture capture;
        std::string rest;
        std::optional<DateComponents> day = std::nullopt;
        bool morning = false;
    };
    const Case cases[] = {
        {style, "nag me every hour", {.style = Style::repeatUntilDone(3600)}, ""},
        {style, "Ping Me Every ten mins", {.style = Style::repeatUntilDone(600)}, ""},
        // Without an interval, the settings' one.
        {style1200, "bug me until I’m done pay rent", {.style = Style::repeatUntilDone(1200)}, "pay rent"},
        {style, "call the bank don’t let me skip this", {.style = Style::escalate()}, "call the bank"},
        {style, "escalate the invoice", {.style = Style::escalate()}, "the invoice"},
        {style, "pay rent, alarm", {.style = Style::alarm()}, "pay rent"},
        {style, "sound an alarm at 7am", {.style = Style::alarm()}, "at 7am"},
        {style, "wake me up at 6", {.style = Style::alarm()}, "at 6", std::nullopt, true},
        // The style words run in a fixed order and the last one that matches decides.
        {style, "just once escalate", {.style = Style::once()}, ""},
        {style, "nag me every 15 minutes, wake me", {.style = Style::alarm()}, ",", std::nullopt, true},
        {style, "remind me to call", {}, "remind me to call"}, {style, "nagging me", {}, "nagging me"},
        {style, "buy an alarm clock", {}, "buy an alarm clock"},
        // An amount that can't be read loses the phrase, and "nag me" went with it.
        {style, "nag me every 99999999999999999999 minutes", {}, ""},
        {style, "nag me every 153722867280912931 minutes", {}, ""},

        {start, "start nagging me from march pay tax", {.startReminding = StartReminding::on(onDay(2027, 3, 1))},
         "pay tax"},
        {start, "start reminding me in nov", {.startReminding = StartReminding::on(onDay(2027, 11, 1))}, ""},
        {start, "start reminding me 3 days before", {.startReminding = StartReminding::beforeDue(259200)}, ""},
        {start, "start reminding me 99999999999999999999 days ahead",
         {.startReminding = StartReminding::beforeDue(86400)}, ""},
        {start, "start reminding me two days before", {}, "start reminding me two days before"},
        {start, "start nagging me in march start nagging me 2 days early",
         {.startReminding = StartReminding::on(onDay(2027, 3, 1))}, "start nagging me 2 days early"},

        {hide, "don't show it until the week before it's due", {.hideDaysBefore = 7}, ""},
        {hide, "hide until the day ahead", {.hideDaysBefore = 1}, ""},
        {hide, "don’t show me until a week ahead it is due", {.hideDaysBefore = 7}, ""},
        {hide, "hide it until 2000000000000000000 weeks before", {}, ""},
        {hide, "hide it until 3 days before due hide it until the week before", {.hideDaysBefore = 3},
         "hide it until the week before"},
        {hide, "hide it until friday", {}, "hide it until friday"},

        {every, "pay rent every 1st of the month", {.recurrence = rule(F::monthly, 1)}, "pay rent", onDay(2026, 12, 1)},
        {every, "every 31st of each month", {.recurrence = rule(F::monthly, 1)}, "", onDay(2026, 12, 31)},
        {every, "every 40th floss every day", {.recurrence = rule(F::daily, 1)}, "floss"},
        // The day of the month is tried first, so "2nd" here is a date, not "every second".
        {every, "every 2nd monday", {.recurrence = rule(F::monthly, 1)}, "monday", onDay(2026, 12, 2)},
        {every, "every friday, Monday & friday", {.recurrence = rule(F::weekly, 1, {2, 6})}, ""},
        {every, "every other Tuesday", {.recurrence = rule(F::weekly, 2, {3})}, ""},
        {every, "get haircut every 6 weeks from when I last did it", {.recurrence = rule(F::weekly, 6, {}, true)},
         "get haircut"},
        {every, "descale the kettle 3 months after I last did it", {.recurrence = rule(F::monthly, 3, {}, true)},
         "descale the kettle"},
        {every, "water lawn every two weeks", {.recurrence = rule(F::weekly, 2)}, "water lawn"},
        {every, "every year", {.recurrence = rule(F::yearly, 1)}, ""},
        {every, "every 99999999999999999999 days", {.recurrence = rule(F::daily, 1)}, ""},
        {every, "pay the bill Monthly", {.recurrence = rule(F::monthly, 1)}, "pay the bill"},
        {every, "everyday things", {}, "everyday things"},

        {device, "reply to ann on my mac", {.deviceGate = DeviceGate::anyMac()}, "reply to ann"},
        {device, "check phone when i'm on my phone", {.deviceGate = DeviceGate::phone()}, "check phone"},
        {device, "next time I’m at my desk", {.deviceGate = DeviceGate::anyMac()}, ""},
        {device, "on my computer when I'm on my phone", {.deviceGate = DeviceGate::anyMac()}, "when I'm on my phone"},
        {device, "on my phone", {}, "on my phone"},

        {places, "when I get to gym", {.trigger = arrive("gym")}, ""},
        {places, "when I get to the gymnasium", {.trigger = arrive("gymnasium")}, ""},
        {places, "as soon as i am back at Work", {.trigger = arrive("work")}, ""},
        {places, "when I arrive at THE OFFICE", {.trigger = arrive("office")}, ""},
        {places, "pick up keys 2 hours after I get to The Office", {.trigger = arrive("office", 7200)}, "pick up keys"},
        {places, "lock door when I leave work and give me 5 minutes", {.trigger = leave("work", 300)}, "lock door"},
        {places, "5 minutes after I get home and give me 10 minutes", {.trigger = arrive("home", 600)}, ""},
        // Digits too long for an integer lose the phrase; the shorter form had been in it.
        {places, "99999999999999999999 minutes after I get home", {}, ""},
        {places, "pick up keys when I get to bob's", {}, "pick up keys when I get to bob's"},
        {places, "buy stamps when i'm at home", {}, "buy stamps when i'm at home"},
        {places, "call dad but only if i'm at home", {.gate = "home"}, "call dad"},
        {places, "call dad only in the gym", {.gate = "gym"}, "call dad"},
        {places, "when I get home but only when I’m at The Office", {.trigger = arrive("home"), .gate = "office"}, ""},
        // The user's place names match literally, whatever they hold.
        {oddPlaces, "when I get to St. Mary's", {.trigger = arrive("st. mary's")}, ""},
        {oddPlaces, "when I get to stX mary's", {}, "when I get to stX mary's"},
        {oddPlaces, "when I get to x\\E|y", {.trigger = arrive("x\\e|y")}, ""},
        {oddPlaces, "when I get to y", {}, "when I get to y"},
        {oddPlaces, "when I leave a(b", {.trigger = leave("a(b")}, ""},
        {oddPlaces, "when I get to CAFÉ", {.trigger = arrive("café")}, ""},
        {oddPlaces, "when I get to [z", {.trigger = arrive("[z")}, ""},
        {oddPlaces, "when I get home", {.trigger = arrive("home")}, ""},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        Work work{" " + c.text + " "};
        Parser::State state;
        c.pass(work, state);
        EXPECT_EQ(state.capture, c.capture);
        EXPECT_EQ(rest(work), c.rest);
        EXPECT_EQ(state.day, c.day);
        EXPECT_EQ(state.morning, c.morning);
    }
}

// Dates that a recurrence names lie on the wall clock, so a clock change between now and
// the due date moves nothing.
TEST(Phrases, RecurrenceDatesAcrossClockChanges) {
    const struct { Date now; std::string text; DateComponents due; } cases[] = {
        // Saturday before the spring change; Sunday 29 March has a 23-hour day.
        {moment(2026, 3, 28, 10, 0), "stretch every day at 9", at(2026, 3, 29, 9, 0)},
        {moment(2026, 3, 28, 10, 0), "every sunday at 2:30am", at(2026, 3, 29, 2, 30)},
        {moment(2026, 3, 28, 10, 0), "every 29th", onDay(2026, 3, 29)},
        // Saturday before the autumn change; Sunday 25 October has a 25-hour day.
        {moment(2026, 10, 24, 10, 0), "every sunday and monday at 7", at(2026, 10, 25, 7, 0)},
        {moment(2026, 10, 24, 23, 30), "every weekday", onDay(2026, 10, 26)},
    };
    for (const auto& c : cases) EXPECT_EQ(read(c.text, c.now).capture.due, c.due) << c.text;
}

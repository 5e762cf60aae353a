
#include "Platform/Regex.h"
#include "Platform/Text.h"
#include "VeskParse/ParseTesting.h"

using namespace ParseTesting;

namespace {

using Pass = void (*)(Work&, Parser::State&);

// A nag interval other than the default one, to tell where it came from.
const Parser p{amsterdam(), {"gym", "The Office"}, {.nagInterval = 1200}};
const Parser withOddPlaces = parser({"st. mary's", "x\\E|y", "a(b", "Café", "[z"});
const DateResolver r = resolver();

const Pass style = [](Work& w, Parser::State& s) { p.takeStyle(w, s); };
const Pass start = [](Work& w, Parser::State& s) { Parser::takeStart(w, s, r); };
const Pass hide = [](Work& w, Parser::State& s) { Parser::takeHide(w, s); };
const Pass every = [](Work& w, Parser::State& s) { Parser::takeRecurrence(w, s, r); };
const Pass device = [](Work& w, Parser::State& s) { Parser::takeDeviceGate(w, s); };
const Pass places = [](Work& w, Parser::State& s) { p.takePlaces(w, s); };
const Pass odd = [](Work& w, Parser::State& s) { withOddPlaces.takePlaces(w, s); };

// What a pass left of the text, with blanks collapsed and the ends trimmed.
std::string rest(const Work& work) {
    static const Regex blanks = *Regex::compile("\\s+");
    return blanks.replaceAll(Text::trimWhitespaceAndNewlines(work.text), " ");
}

StartReminding startOn(int64_t year, int64_t month, int64_t day) { return StartReminding::on(onDay(year, month, day)); }
StartReminding startBefore(double seconds) { return StartReminding::beforeDue(seconds); }

}  // namespace

// One pass at a time: what it sets and what it leaves of the sentence.
TEST(Phrases, EachPassReadsItsPhrases) {
    const struct {
        Pass pass;
        std::string text;
        Capture capture = {};
        std::optional<std::string> rest = {};  // none: the text as it was
        std::optional<DateComponents> day = {};
        bool morning = false;
    } cases[] = {
        // clang-format off
        {style, "nag me every hour", {.style = Style::repeatUntilDone(3600)}, ""},
        {style, "Ping Me Every ten mins", {.style = Style::repeatUntilDone(600)}, ""},
        // Without an interval, the settings' one.
        {style, "bug me until I’m done pay rent", {.style = Style::repeatUntilDone(1200)}, "pay rent"},
        {style, "call the bank don’t let me skip this", {.style = Style::escalate()}, "call the bank"},
        {style, "escalate the invoice", {.style = Style::escalate()}, "the invoice"},
        {style, "pay rent, alarm", {.style = Style::alarm()}, "pay rent"},
        {style, "wake me up at 6", {.style = Style::alarm()}, "at 6", {}, true},
        // The style words run in a fixed order and the last one that matches decides.
        {style, "just once escalate", {.style = Style::once()}, ""},
        {style, "remind me to call"},  {style, "buy an alarm clock"},
        // An amount that can't be read loses the phrase, and "nag me" went with it.
        {style, "nag me every 99999999999999999999 minutes", {}, ""},
        {start, "start reminding me in nov", {.startReminding = startOn(2027, 11, 1)}, ""},
        {start, "start reminding me 3 days before", {.startReminding = startBefore(259200)}, ""},
        {start, "start reminding me 99999999999999999999 days ahead", {.startReminding = startBefore(86400)}, ""},
        {start, "start nagging me in march start nagging me 2 days early", {.startReminding = startOn(2027, 3, 1)},
         "start nagging me 2 days early"},
        {hide, "don't show it until the week before it's due", {.hideDaysBefore = 7}, ""},
        {hide, "don’t show me until a week ahead it is due", {.hideDaysBefore = 7}, ""},
        {hide, "hide until the day ahead", {.hideDaysBefore = 1}, ""},
        {hide, "hide it until 2000000000000000000 weeks before", {}, ""},
        {hide, "hide until 3 days before hide until the day ahead", {.hideDaysBefore = 3}, "hide until the day ahead"},
        {every, "pay rent every 1st of the month", {.recurrence = rule(F::monthly, 1)}, "pay rent", onDay(2026, 12, 1)},
        {every, "every 40th floss every day", {.recurrence = rule(F::daily, 1)}, "floss"},
        // The day of the month is tried first, so "2nd" here is a date, not "every second".
        {every, "every 2nd monday", {.recurrence = rule(F::monthly, 1)}, "monday", onDay(2026, 12, 2)},
        {every, "every friday, Monday & friday", {.recurrence = rule(F::weekly, 1, {2, 6})}, ""},
        {every, "every other Tuesday", {.recurrence = rule(F::weekly, 2, {3})}, ""},
        {every, "every 6 weeks from when I last did it", {.recurrence = rule(F::weekly, 6, {}, true)}, ""},
        {every, "descale 3 months after I last did it", {.recurrence = rule(F::monthly, 3, {}, true)}, "descale"},
        {every, "every 99999999999999999999 days", {.recurrence = rule(F::daily, 1)}, ""},
        {every, "pay the bill Monthly", {.recurrence = rule(F::monthly, 1)}, "pay the bill"},
        {every, "every year", {.recurrence = rule(F::yearly, 1)}, ""},  {every, "everyday things"},
        {device, "check phone when i'm on my phone", {.deviceGate = DeviceGate::phone()}, "check phone"},
        {device, "on my computer when I'm on my phone", {.deviceGate = DeviceGate::anyMac()}, "when I'm on my phone"},
        {device, "next time I’m at my desk", {.deviceGate = DeviceGate::anyMac()}, ""},  {device, "on my phone"},
        {places, "when I get to the gymnasium", {.trigger = arrive("gymnasium")}, ""},
        {places, "when I arrive at THE OFFICE", {.trigger = arrive("office")}, ""},
        {places, "pick up keys 2 hours after I get to The Office", {.trigger = arrive("office", 7200)}, "pick up keys"},
        {places, "lock door when I leave work and give me 5 minutes", {.trigger = leave("work", 300)}, "lock door"},
        // Digits too long for an integer lose the phrase; the shorter form had been in it.
        {places, "99999999999999999999 minutes after I get home", {}, ""},
        {places, "pick up keys when I get to bob's"},  {places, "buy stamps when i'm at home"},
        {places, "when I get home but only when I’m at The Office", {.trigger = arrive("home"), .gate = "office"}, ""},
        // The user's place names match literally, whatever they hold.
        {odd, "when I get to St. Mary's", {.trigger = arrive("st. mary's")}, ""},  {odd, "when I get to stX mary's"},
        {odd, "when I get to x\\E|y", {.trigger = arrive("x\\e|y")}, ""},  {odd, "when I get to y"},
        {odd, "when I get to CAFÉ", {.trigger = arrive("café")}, ""},  {odd, "when I get home", {.trigger = arrive("home")}, ""},
        // clang-format on
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        Work work{" " + c.text + " "};
        Parser::State state;
        c.pass(work, state);
        EXPECT_EQ(state.capture, c.capture);
        EXPECT_EQ(rest(work), c.rest.value_or(c.text));
        EXPECT_EQ(state.day, c.day);
        EXPECT_EQ(state.morning, c.morning);
    }
}

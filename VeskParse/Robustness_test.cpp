#include <cmath>
#include <string>
#include <vector>

#include "Platform/Text.h"
#include "VeskParse/ParseTesting.h"
#include "VeskParse/SnoozeTime.h"
#include "VeskParse/Work.h"

using namespace ParseTesting;

namespace {

const Parser p = parser({"gym", "The Office", "a(b", "x\\E"});

// Whatever comes in, a reading comes out: a valid UTF-8 title, the same reading twice,
// and a snooze that is either nothing or a finite moment.
void checkReads(const std::string& input) {
    SCOPED_TRACE(testing::PrintToString(input));
    const Date now = wednesday();
    ParseResult first = p.parse(input, now);
    EXPECT_EQ(Text::repairUtf8(first.capture.title), first.capture.title);
    EXPECT_EQ(p.parse(input, now), first);
    if (auto back = SnoozeTime::resolve(input, now, p.calendar, p.settings)) {
        EXPECT_TRUE(std::isfinite(back->seconds));
    }
}

const std::string max = "9223372036854775807", huge(300, '9');

TEST(Robustness, HugeNumbersAndOddText) {
    // Amounts of any size: the phrase is still taken whole, whatever it can hold.
    for (const std::string& input : std::vector<std::string>{
             "in " + max + " minutes", "in " + max + " days", "in " + max + " months", "in " + max + " years",
             "in " + huge + " minutes", "in 106751991167300 days", "in 2147483647 months", "in 99999999 hours",
             max + " days from tomorrow", "9223372036854775806 days from tomorrow", max + " weeks from friday"}) {
        checkReads(input);
        EXPECT_EQ(p.parse(input, wednesday()).capture.title, "") << input;
    }

    const std::vector<std::string> inputs = {
        "every " + max + " weeks", "start reminding me " + max + " weeks early",
        max + " minutes after I get home and give me " + max + " hours",
        "when I leave work and give me " + huge + " minutes", "every the 0th", "at 99:99", "9999-99-99",
        "0000-00-00 at 0:00", "start:due-" + max + "w", max + "m",
        // Control characters, broken UTF-8, marks, joiners, other scripts and directions.
        "", "\t\n\r ", std::string("call\0mum at 9", 13), "call mum \xc3 at 9", "\xed\xa0\x80 at 5",
        "e\u0301\u0301\u0301 tomorrow at 9", "\U0001F4A9 every monday \U0001F468\u200D\U0001F469\u200D\U0001F467",
        "\u05E9\u05DC\u05D5\u05DD at 9 \u202Eevery friday\u202C", "in \u0663 minutes", "\u0661\u0662:\u0663\u0660",
        "at \u0669pm", "\u017Funday every \u017Funday", "FR\u0130DAY at 9", "\u00A0\u2003at\u20039\u00A0",
        // Unbalanced quotes and empty tokens.
        "list:\"unbalanced quote at 9", "list:\"\" due:\"\" start:\"\"", "due:@,@,", "hide:dw",
        ":::: due: :due ::", std::string(5000, 'a'), std::string(2000, ' '), std::string(1000, '9')};
    for (const auto& input : inputs) checkReads(input);
}

// The app makes a parser for each request with the places of that moment: however many
// different place names come by, the compiled patterns kept stay bounded.
TEST(Robustness, PlaceNamesKeepNoPatternForever) {
    for (int n = 0; n < 2000; ++n) parser({"place " + std::to_string(n)}).parse("at 9 when I get to home", wednesday());
    EXPECT_LE(Work::cachedPatterns(), Work::cacheLimit);
}

}  // namespace

#include <cmath>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

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

// Amounts of any size: the phrase is still taken whole, whatever it can hold.
TEST(Robustness, HugeAmountsAreTakenWhole) {
    for (const std::string& input : std::vector<std::string>{
             "in " + max + " minutes", "in " + max + " hours", "in " + max + " days", "in " + max + " weeks",
             "in " + max + " months", "in " + max + " years", "in " + huge + " minutes",
             "in 153722867280912930 minutes", "in 106751991167300 days", "in 3000000000 years", "in 2147483647 months",
             "in 1317624576693539 weeks", "in 99999999 hours", max + " days from tomorrow",
             "9223372036854775806 days from tomorrow", max + " weeks from friday", max + " hours from now"}) {
        checkReads(input);
        EXPECT_EQ(p.parse(input, wednesday()).capture.title, "") << input;
    }
}

TEST(Robustness, HugeNumbersAndOddText) {
    const std::vector<std::string> inputs = {
        "every " + max + " weeks", "every " + huge + " days", max + " months after I did it",
        "nag me every " + max + " hours", "hide it until " + max + " weeks before",
        "start reminding me " + max + " weeks early", max + " minutes after I get home and give me " + max + " hours",
        "when I leave work and give me " + huge + " minutes", "the 99th", "every the 0th", "on march " + max,
        "at " + max, "at 99:99", "at 13pm", "9999-99-99", "0000-00-00 at 0:00", "due:" + max, "due:" + huge,
        "hide:" + max + "w", "hide:" + huge, "every:" + max + "d", "nag:" + max + "w", "start:due-" + max + "w",
        "arrive:home+" + max + "w", max + "m", huge + "d",
        // Control characters, broken UTF-8, marks, joiners, other scripts and directions.
        "", " ", "\t\n\r ", std::string("\0", 1), std::string("call\0mum at 9", 13), std::string("at 9\0pm", 7),
        "\xff\xfe\xfd", "call mum \xc3 at 9", "\xe2\x80", "\xed\xa0\x80 at 5", "e\u0301\u0301\u0301 tomorrow at 9",
        "call mum\u0308 friday", "\U0001F4A9 every monday \U0001F468\u200D\U0001F469\u200D\U0001F467",
        "\u05E9\u05DC\u05D5\u05DD at 9 \u202Eevery friday\u202C", "in \u0663 minutes", "every \uFF11\uFF12 days",
        "\u0627\u0644\u0633\u0644\u0627\u0645 \u0663 \u0661\u0662:\u0663\u0660", "at \u0669pm",
        "\u017Funday every \u017Funday", "FR\u0130DAY at 9", "\uFEFFbuy milk", "\u00A0\u2003at\u20039\u00A0",
        // Unbalanced quotes and empty tokens.
        "list:\"unbalanced quote at 9", "list:\u201Cunbalanced curly at 9", "list:\"\" due:\"\" start:\"\"",
        "arrive:\"\"", "arrive:+", "arrive:++", "leave:+10m", "leave:\u201C\u201D", "gate:", "due:@,@,", "every:,,,",
        "hide:dw", "on:", "\"\"\"\"", "((((( [[[[[ \\E \\Q", ":::: due: :due ::", std::string(5000, 'a'),
        std::string(2000, ' '), std::string(1000, '9'),
    };
    for (const auto& input : inputs) checkReads(input);
}

// Sentences made of fragments that the passes read, numbers of every size and noise,
// from a fixed seed so that a failure repeats.
TEST(Robustness, GeneratedInputs) {
    const std::vector<std::string> fragments = {
        "call", "mum", "buy milk", "at", "9", "9:30", "5pm", "noon", "midnight", "tomorrow", "today",
        "tonight", "this morning", "friday", "next monday", "on the", "31st", "in", "20", "minutes",
        "hours", "days", "weeks", "months", "from now", "every", "other", "weekday", "monday and thursday",
        "nag me", "bug me until it's done", "wake me", "just once", "escalate", ", alarm", "start nagging me",
        "a week early", "hide it until", "3 days before", "when I get to", "the gym", "home", "The Office",
        "after I leave", "only if i'm at", "give me", "on my mac", "when i'm on my phone", "due:", "fri@5pm",
        "every:", "mon,wed", "arrive:", "+10m", "style:", "once", "list:\"", "hide:", "2w", "start:due-",
        "after I last did it", "ish", "around", "@", "2026-12-01", "by april", "15", "\u2019", "\u201C",
        "\xff", "\U0001F600", "\u0301", "\u0663", "-", ".", ",", "&", "'", "\"", "\t",
    };
    std::mt19937_64 random(20261118);
    for (int n = 0; n < 3000; ++n) {
        std::string input;
        for (int k = 0, pieces = static_cast<int>(random() % 12); k < pieces; ++k) {
            switch (random() % 6) {
            case 0: input += std::to_string(random() % 100); break;
            case 1: input += std::to_string(static_cast<int64_t>(random())); break;
            case 2: input += static_cast<char>(random() % 256); break;
            default: input += fragments[random() % fragments.size()];
            }
            if (random() % 4 != 0) input += ' ';
        }
        checkReads(input);
    }
}

// The app makes a parser for each request with the places of that moment: however many
// different place names come by, the compiled patterns kept stay bounded.
TEST(Robustness, PlaceNamesKeepNoPatternForever) {
    for (int n = 0; n < 2000; ++n) parser({"place " + std::to_string(n)}).parse("at 9 when I get to home", wednesday());
    EXPECT_LE(Work::cachedPatterns(), Work::cacheLimit);
}

}  // namespace

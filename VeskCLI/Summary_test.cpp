#include "VeskCLI/Summary.h"

#include <gtest/gtest.h>

namespace {

const Calendar amsterdam("Europe/Amsterdam", "en_US");

ParseOutput reading(std::string title, std::string style = "repeat") {
    ParseOutput output;
    output.title = std::move(title);
    output.style = std::move(style);
    return output;
}

std::string summary(const ParseOutput& output) { return Summary(output, amsterdam).text; }

// A due date in the calendar's words when it reads as one (a date alone: EveryLineInOrder);
// any other text as it is.
TEST(Summary, DueDates) {
    EXPECT_EQ(Summary::humanDate("2026-03-14T09:05", amsterdam), "Sat, Mar 14 at 9:05 AM");
    EXPECT_EQ(Summary::humanDate("2026-03-29T02:30", amsterdam), "2026-03-29T02:30") << "no such wall time";
    // The text is a wall clock: it reads the same in any zone.
    EXPECT_EQ(Summary::humanDate("2026-03-14T09:05", Calendar("Asia/Tokyo", "en_US")), "Sat, Mar 14 at 9:05 AM");
}

TEST(Summary, TriggerReplacesNextHourAndShowsWholeMinutesOfDelay) {
    for (auto [delay, line] :
         {std::pair<int64_t, const char*>{30, "where  arrive home + 0 min"}, {659, "where  arrive home + 10 min"}}) {
        auto output = reading("water plants");
        output.trigger = ParseOutput::Trigger{"arrive", "home", delay};
        EXPECT_EQ(summary(output), std::string("what   water plants\nhow    repeat until done\n") + line) << delay;
    }
}

TEST(Summary, EveryLineInOrder) {
    auto output = reading("pay rent");
    output.repeatIntervalSeconds = 900;
    output.due = "2026-12-01";
    output.trigger = ParseOutput::Trigger{"leave", "work", 0};
    output.gate = "office";
    output.device = "phone";
    output.recurrence = ParseOutput::Repeat{"weekly", 2, std::vector<int64_t>{2}, true};
    output.startReminding = "-86400";
    output.hideDaysBefore = 3;
    output.list = "Home";
    output.unresolved = {"blorp", "zing"};
    output.needsModel = true;
    output.readByModel = true;
    EXPECT_EQ(summary(output),
              "what   pay rent\n"
              "when   Tue, Dec 1\n"
              "how    repeat every 15 min until done\n"
              "where  leave work\n"
              "gate   only at office\n"
              "device phone\n"
              "repeat every 2 weekly from completion\n"
              "start  -86400\n"
              "list   Home\n"
              "??     didn't understand: blorp, zing\n"
              "model  the on-device model read what the grammar couldn't");
}

TEST(Summary, RecurrenceWithoutCompletionAndUnresolvedOnlyWhenNeeded) {
    auto output = reading("standup", "once");
    output.recurrence = ParseOutput::Repeat{"daily", 1, std::nullopt, false};
    output.unresolved = {"ignored"};
    EXPECT_EQ(summary(output), "what   standup\nwhen   next hour\nhow    once\nrepeat every 1 daily");
}

}  // namespace

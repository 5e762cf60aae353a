#include "Platform/DateFormat.h"

#include <gtest/gtest.h>

namespace {

TEST(DateFormat, ReadsWholeTextsOnly) {
    Calendar calendar("Europe/Amsterdam", "en_US");
    auto date = DateFormat::parse("2026-03-14T09:05", "yyyy-MM-dd'T'HH:mm", calendar);
    ASSERT_TRUE(date);
    EXPECT_EQ(calendar.components(*date), (DateComponents{2026, 3, 14, 9, 5}));
    for (const char* bad : {"2026-03-14T09:05x", "2026-02-30", "2026-13-01", "next week", "", "2026-03-14T"})
        EXPECT_FALSE(DateFormat::parse(bad, "yyyy-MM-dd", calendar)) << bad;
    EXPECT_FALSE(DateFormat::parse("2026-03-29T02:30", "yyyy-MM-dd'T'HH:mm", calendar)) << "skipped by the clock change";
    EXPECT_TRUE(DateFormat::parse("2026-10-25T02:30", "yyyy-MM-dd'T'HH:mm", calendar)) << "repeated by the clock change";
}

TEST(DateFormat, HumanForms) {
    struct Case {
        const char* locale;
        const char* withTime;
        const char* dateOnly;
    } cases[] = {
        {"en_US", "Sat, Mar 14 at 9:05 AM", "Sat, Mar 14"},
        {"en_US_POSIX", "Sat, Mar 14 at 9:05 AM", "Sat, Mar 14"},
        {"en_GB", "Sat, Mar 14 at 9:05 AM", "Sat, Mar 14"},
    };
    Calendar english("Europe/Amsterdam", "en_US");
    EXPECT_EQ(DateFormat::weekdayMonthDayTime(*english.date({2026, 11, 22, 0, 0}), english), "Sun, Nov 22 at 12:00 AM");
    EXPECT_EQ(DateFormat::weekdayMonthDayTime(*english.date({2026, 1, 1, 12, 30}), english), "Thu, Jan 1 at 12:30 PM");
    for (const auto& c : cases) {
        Calendar calendar("Europe/Amsterdam", c.locale);
        Date morning = *calendar.date({2026, 3, 14, 9, 5});
        EXPECT_EQ(DateFormat::weekdayMonthDayTime(morning, calendar), c.withTime) << c.locale;
        EXPECT_EQ(DateFormat::weekdayMonthDay(morning, calendar), c.dateOnly) << c.locale;
    }
    Calendar german("Europe/Amsterdam", "de_DE");
    std::string text = DateFormat::weekdayMonthDayTime(*german.date({2026, 3, 14, 21, 5}), german);
    EXPECT_NE(text.find("14"), std::string::npos) << text;
    EXPECT_NE(text.find("21:05"), std::string::npos) << text;
}

}  // namespace

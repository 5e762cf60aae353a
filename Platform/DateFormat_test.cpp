#include "Platform/DateFormat.h"

#include <gtest/gtest.h>

namespace {

TEST(DateFormat, ReadsWholeTextsOnly) {
    Calendar calendar("Europe/Amsterdam", "en_US");
    auto date = DateFormat::parse("2026-03-14T09:05", "yyyy-MM-dd'T'HH:mm", calendar);
    ASSERT_TRUE(date);
    EXPECT_EQ(calendar.components(*date), (DateComponents{2026, 3, 14, 9, 5}));
    for (const char* bad : {"2026-03-14T09:05x", "2026-02-30", "next week", ""})
        EXPECT_FALSE(DateFormat::parse(bad, "yyyy-MM-dd", calendar)) << bad;
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

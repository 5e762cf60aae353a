#include "Platform/DateFormat.h"

#include <gtest/gtest.h>

namespace {

TEST(DateFormat, ReadsWholeTextsOnly) {
    Calendar calendar("Europe/Amsterdam", "en_US");
    auto date = DateFormat::parse("2026-03-14T09:05", "yyyy-MM-dd'T'HH:mm", calendar);
    ASSERT_TRUE(date);
    EXPECT_EQ(calendar.components(*date), (DateComponents{2026, 3, 14, 9, 5}));
    for (const char* bad : {"2026-03-14T09:05x", "2026-02-30", "next week"})
        EXPECT_FALSE(DateFormat::parse(bad, "yyyy-MM-dd", calendar)) << bad;
    EXPECT_FALSE(DateFormat::parse("2026-03-29T02:30", "yyyy-MM-dd'T'HH:mm", calendar)) << "skipped by clock change";
    EXPECT_TRUE(DateFormat::parse("2026-10-25T02:30", "yyyy-MM-dd'T'HH:mm", calendar)) << "repeated by clock change";
}

// Every English locale gets the same fixed English form; others their own.
TEST(DateFormat, HumanForms) {
    for (const char* locale : {"en_US", "en_US_POSIX", "en_GB"}) {
        Calendar calendar("Europe/Amsterdam", locale);
        Date morning = *calendar.date({2026, 3, 14, 9, 5});
        EXPECT_EQ(DateFormat::weekdayMonthDayTime(morning, calendar), "Sat, Mar 14 at 9:05 AM") << locale;
        EXPECT_EQ(DateFormat::weekdayMonthDay(morning, calendar), "Sat, Mar 14") << locale;
    }
    Calendar english("Europe/Amsterdam", "en_US");
    EXPECT_EQ(DateFormat::weekdayMonthDayTime(*english.date({2026, 11, 22, 0, 0}), english), "Sun, Nov 22 at 12:00 AM");
    EXPECT_EQ(DateFormat::weekdayMonthDayTime(*english.date({2026, 1, 1, 12, 30}), english), "Thu, Jan 1 at 12:30 PM");
    Calendar german("Europe/Amsterdam", "de_DE");
    std::string text = DateFormat::weekdayMonthDayTime(*german.date({2026, 3, 14, 21, 5}), german);
    EXPECT_NE(text.find("14"), std::string::npos) << text;
    EXPECT_NE(text.find("21:05"), std::string::npos) << text;
}

// Where each unit starts, seen from Saturday 14 March 2026 at 12:00 in Amsterdam.
TEST(DateFormat, RelativeForms) {
    Calendar english("Europe/Amsterdam", "en_US"), german("Europe/Amsterdam", "de_DE");
    auto at = [&](int64_t month, int64_t day, int64_t hour, int64_t minute, double second = 0) {
        return english.date({2026, month, day, hour, minute})->addingTimeInterval(second);
    };
    const Date now = at(3, 14, 12, 0);
    const std::pair<Date, const char*> cases[] = {
        {at(3, 14, 12, 0, 0.5), "now"},     {at(3, 14, 12, 0, 59), "in 59 seconds"},
        {at(3, 14, 12, 1), "in 1 minute"},  {at(3, 14, 11, 55), "5 minutes ago"},
        {at(3, 14, 13, 59), "in 1 hour"},   {at(3, 15, 0, 0), "in 12 hours"},
        {at(3, 15, 11, 59), "in 23 hours"}, {at(3, 15, 12, 0), "tomorrow"},
        {at(3, 13, 12, 0), "yesterday"},    {at(3, 16, 9, 0), "in 2 days"},
        {at(3, 20, 23, 0), "in 6 days"},    {at(3, 21, 12, 0), "next week"},
        {at(3, 6, 12, 0), "last week"},     {at(4, 13, 12, 0), "in 5 weeks"},
        {at(4, 14, 12, 0), "next month"},   {at(1, 14, 12, 0), "2 months ago"},
        {at(15, 14, 12, 0), "next year"},   {at(-10, 14, 12, 0), "last year"},
    };
    for (const auto& [date, text] : cases)
        EXPECT_EQ(DateFormat::relative(date, now, english), text) << DateFormat::iso8601(date);
    EXPECT_EQ(DateFormat::relative(at(3, 15, 12, 0), now, german), "morgen");
}

TEST(DateFormat, Iso8601InUtcToTheSecond) {
    Calendar calendar("Europe/Amsterdam", "en_US");
    EXPECT_EQ(DateFormat::iso8601(*calendar.date({2026, 3, 14, 9, 5})), "2026-03-14T08:05:00Z");
    EXPECT_EQ(DateFormat::iso8601(Date{0.999}), "2001-01-01T00:00:00Z");
    EXPECT_EQ(DateFormat::iso8601(Date{-0.5}), "2000-12-31T23:59:59Z");
}

}  // namespace

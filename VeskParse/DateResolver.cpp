#include "VeskParse/DateResolver.h"

#include <algorithm>
#include <cmath>

#include "Platform/Text.h"

namespace {

DateComponents dayOf(const DateComponents& components) {
    return DateResolver::makeDay(components.year, components.month, components.day);
}

int64_t minutes(TimeOfDay time) { return time.hour * 60 + time.minute; }

// Farther from the reference date than this, in seconds (about three million years), the
// calendar has no wall clock to give.
constexpr double representableSeconds = 1e14;

}  // namespace

DateComponents DateResolver::day(int64_t offset) const {
    return day(CalendarComponent::day, offset);
}

DateComponents DateResolver::day(CalendarComponent component, int64_t amount) const {
    auto date = calendar.adding(component, amount, calendar.startOfDay(now)).value_or(now);
    return dayOf(calendar.components(date));
}

DateComponents DateResolver::nextDayOfMonth(int64_t dayOfMonth) const {
    auto today = calendar.components(now);
    int64_t year = today.year.value_or(1);
    int64_t month = today.month.value_or(1);
    if (dayOfMonth < today.day.value_or(1)) month += 1;
    for (int attempt = 0; attempt < 14; ++attempt) {
        if (month > 12) {
            year += 1;
            month -= 12;
        }
        auto candidate = makeDay(year, month, dayOfMonth);
        // The calendar is lenient: a day the month lacks spills into the next month.
        auto date = calendar.date(candidate);
        if (date && calendar.component(CalendarComponent::day, *date) == dayOfMonth) return candidate;
        month += 1;
    }
    // Only a day number that no month has gets here.
    return day(0);
}

DateComponents DateResolver::nextStartOfMonth(int64_t month) const {
    auto today = calendar.components(now);
    int64_t year = today.year.value_or(1);
    if (today.month.value_or(1) >= month) year += 1;
    return makeDay(year, month, 1);
}

TimeOfDay DateResolver::soonest(TimeOfDay written) const {
    int64_t current = currentMinute();
    if (minutes(written) > current) return written;
    TimeOfDay evening{written.hour + 12, written.minute};
    if (minutes(evening) > current) return evening;
    // Both halves have passed: nextDay puts it on tomorrow.
    return written;
}

DateComponents DateResolver::nextDay(TimeOfDay time) const {
    return day(currentMinute() >= minutes(time) ? 1 : 0);
}

DateComponents DateResolver::firstDay(const std::vector<int64_t>& weekdays, std::optional<TimeOfDay> time) const {
    int64_t today = todayWeekday();
    for (int64_t offset = 0; offset <= 7; ++offset) {
        int64_t candidate = (today - 1 + offset) % 7 + 1;
        if (std::find(weekdays.begin(), weekdays.end(), candidate) == weekdays.end()) continue;
        if (offset != 0 || !time) return day(offset);
        if (currentMinute() < minutes(*time)) return day(0);
        // Today is on the list, but its time has passed.
    }
    return day(0);
}

std::optional<DateComponents> DateResolver::adding(double seconds) const {
    Date moment = now.addingTimeInterval(seconds);
    if (!std::isfinite(moment.seconds) || std::fabs(moment.seconds) > representableSeconds) return std::nullopt;
    return calendar.components(moment);
}

std::optional<double> DateResolver::seconds(int64_t amount, std::string_view unit) {
    auto word = Text::lowercased(unit);
    int64_t factor = 0;
    if (word.starts_with("m") && !word.starts_with("mo")) {
        factor = 60;
    } else if (word.starts_with("h")) {
        factor = 60 * 60;
    } else if (word.starts_with("d")) {
        factor = 1440 * 60;
    } else if (word.starts_with("w")) {
        factor = 10080 * 60;
    } else {
        return std::nullopt;
    }
    int64_t result = 0;
    if (__builtin_mul_overflow(amount, factor, &result)) return std::nullopt;
    return static_cast<double>(result);
}

int64_t DateResolver::currentMinute() const {
    auto components = calendar.components(now);
    return components.hour.value_or(0) * 60 + components.minute.value_or(0);
}

int64_t DateResolver::todayWeekday() const {
    return calendar.component(CalendarComponent::weekday, now);
}

DateComponents DateResolver::makeDay(std::optional<int64_t> year, std::optional<int64_t> month, std::optional<int64_t> day) {
    DateComponents components;
    components.year = year;
    components.month = month;
    components.day = day;
    return components;
}

int64_t DateResolver::distance(int64_t weekday) const {
    return (weekday - todayWeekday() + 7) % 7;
}

const std::map<std::string, int64_t>& DateResolver::weekdays() {
    static const std::map<std::string, int64_t> table = {
        {"sunday", 1}, {"monday", 2}, {"tuesday", 3}, {"wednesday", 4}, {"thursday", 5}, {"friday", 6},
        {"saturday", 7}, {"sun", 1},  {"mon", 2},     {"tue", 3},       {"tues", 3},     {"wed", 4},
        {"thu", 5},    {"thur", 5},   {"thurs", 5},   {"fri", 6},       {"sat", 7},
    };
    return table;
}

const std::map<std::string, int64_t>& DateResolver::months() {
    static const std::map<std::string, int64_t> table = {
        {"january", 1}, {"february", 2}, {"march", 3},     {"april", 4},    {"may", 5},       {"june", 6},
        {"july", 7},    {"august", 8},   {"september", 9}, {"october", 10}, {"november", 11}, {"december", 12},
        {"jan", 1},     {"feb", 2},      {"mar", 3},       {"apr", 4},      {"jun", 6},       {"jul", 7},
        {"aug", 8},     {"sep", 9},      {"sept", 9},      {"oct", 10},     {"nov", 11},      {"dec", 12},
    };
    return table;
}

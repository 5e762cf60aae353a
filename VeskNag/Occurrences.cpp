#include "VeskNag/Occurrences.h"

#include <algorithm>

namespace VeskNag {

namespace {

constexpr int64_t periodLimit = 5000;

// The year, month and day of `date` with the time of `due`.
DateComponents occurrence(Date date, const DateComponents& due, const Calendar& calendar) {
    DateComponents day = calendar.components(date);
    day.hour = due.hour;
    day.minute = due.hour ? std::optional<int64_t>(due.minute.value_or(0)) : std::nullopt;
    return day;
}

std::optional<int64_t> times(int64_t a, int64_t b) {
    int64_t product = 0;
    if (__builtin_mul_overflow(a, b, &product)) return std::nullopt;
    return product;
}

// The first period to look at: one before the period that holds `elapsed` days, if any.
int64_t firstPeriod(int64_t elapsed, std::optional<int64_t> periodDays) {
    if (!periodDays || *periodDays <= 0) return 0;
    return std::max<int64_t>(elapsed / *periodDays, 1) - 1;
}

}  // namespace

Date noon(Date date, const Calendar& calendar) { return calendar.settingTime(12, 0, 0, date).value_or(date); }

void forEachOccurrence(const Recurrence& rule, const DateComponents& due, Date near, const Calendar& calendar,
                       const std::function<bool(const DateComponents&)>& visit) {
    const int64_t step = std::max<int64_t>(rule.interval, 1);
    if (!due.year || !due.month || !due.day) return;
    auto base = calendar.date({due.year, due.month, due.day, 12, {}});
    if (!base) return;
    const int64_t elapsed = std::max<int64_t>(calendar.daysBetween(*base, noon(near, calendar)), 0);

    switch (rule.frequency) {
        case Recurrence::Frequency::daily:
        case Recurrence::Frequency::weekly: {
            const auto periodDays =
                rule.frequency == Recurrence::Frequency::daily ? std::optional(step) : times(step, 7);
            const int64_t j0 = firstPeriod(elapsed, periodDays);
            if (rule.frequency == Recurrence::Frequency::weekly && !rule.weekdays.empty()) {
                auto week = calendar.interval(CalendarComponent::weekOfYear, *base);
                if (!week) return;
                for (int64_t j = j0; j < j0 + periodLimit; ++j) {
                    auto weeks = times(j, step);
                    auto start =
                        weeks ? calendar.adding(CalendarComponent::weekOfYear, *weeks, week->start) : std::nullopt;
                    if (!start) return;
                    for (int64_t i = 0; i < 7; ++i) {
                        auto day = calendar.adding(CalendarComponent::day, i, *start);
                        if (!day) return;
                        Date midday = noon(*day, calendar);
                        if (midday < *base) continue;
                        int64_t weekday = calendar.component(CalendarComponent::weekday, midday);
                        if (std::find(rule.weekdays.begin(), rule.weekdays.end(), weekday) == rule.weekdays.end())
                            continue;
                        if (!visit(occurrence(midday, due, calendar))) return;
                    }
                }
                return;
            }
            for (int64_t j = j0; j < j0 + periodLimit; ++j) {
                auto days = periodDays ? times(j, *periodDays) : std::nullopt;
                auto date = days ? calendar.adding(CalendarComponent::day, *days, *base) : std::nullopt;
                if (!date) return;
                if (!visit(occurrence(*date, due, calendar))) return;
            }
            return;
        }
        case Recurrence::Frequency::monthly:
        case Recurrence::Frequency::yearly: {
            const auto months =
                rule.frequency == Recurrence::Frequency::monthly ? std::optional(step) : times(step, 12);
            if (!months) return;
            // A month counts as 31 days, its longest, so the first period never overshoots `near`.
            const int64_t j0 = firstPeriod(elapsed, times(*months, 31));
            for (int64_t j = j0; j < j0 + periodLimit; ++j) {
                // Months counted from January of the due year.
                auto offset = times(j, *months);
                int64_t m = 0, year = 0;
                if (!offset || __builtin_add_overflow(*offset, *due.month - 1, &m) ||
                    __builtin_add_overflow(*due.year, m / 12, &year))
                    return;
                // No clamping: a month without the due day has no occurrence (the probe rolls over).
                auto probe = calendar.date({year, m % 12 + 1, due.day, 12, {}});
                if (!probe || calendar.component(CalendarComponent::day, *probe) != *due.day) continue;
                if (!visit(occurrence(*probe, due, calendar))) return;
            }
            return;
        }
    }
}

std::vector<DateComponents> occurrences(const Recurrence& rule, const DateComponents& due, Date after, int64_t count,
                                        const Calendar& calendar) {
    std::vector<DateComponents> found;
    if (count < 1) return found;
    const Date startOfAfter = calendar.startOfDay(after);
    forEachOccurrence(rule, due, after, calendar, [&](const DateComponents& next) {
        auto date = calendar.date(next);
        if (!date) return true;
        // A date-only occurrence counts from the day after `after`, however early `after` is.
        bool counts = next.hour ? *date > after : *date > startOfAfter;
        if (counts) found.push_back(next);
        return static_cast<int64_t>(found.size()) < count;
    });
    return found;
}

std::optional<DateComponents> nextDue(const Recurrence& rule, const DateComponents& due, Date completedAt,
                                      const Calendar& calendar) {
    if (!rule.fromCompletion) {
        // The fixed grid: completing early skips the occurrence that was due, completing
        // late skips every one that has passed.
        auto dueDate = calendar.date(due);
        if (!dueDate) return std::nullopt;
        auto next = occurrences(rule, due, std::max(*dueDate, completedAt), 1, calendar);
        if (next.empty()) return std::nullopt;
        return next.front();
    }
    // Counted from the completion; weekdays play no part.
    const int64_t step = std::max<int64_t>(rule.interval, 1);
    CalendarComponent unit = CalendarComponent::day;
    switch (rule.frequency) {
        case Recurrence::Frequency::daily: unit = CalendarComponent::day; break;
        case Recurrence::Frequency::weekly: unit = CalendarComponent::weekOfYear; break;
        case Recurrence::Frequency::monthly: unit = CalendarComponent::month; break;
        case Recurrence::Frequency::yearly: unit = CalendarComponent::year; break;
    }
    auto date = calendar.adding(unit, step, noon(completedAt, calendar));
    if (!date) return std::nullopt;
    return occurrence(*date, due, calendar);
}

}  // namespace VeskNag

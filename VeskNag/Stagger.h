#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "Platform/Text.h"
#include "VeskNag/Election.h"
#include "VeskNag/PlanContext.h"

namespace VeskNag {

// The minute of a date: seconds since the reference date divided by 60, toward zero.
inline int64_t minuteOf(Date date) {
    double minute = std::trunc(date.seconds / 60);
    if (!(minute > -9e18)) return INT64_MIN;
    return minute < 9e18 ? static_cast<int64_t>(minute) : INT64_MAX;
}

// The salt of a day: year, month and day joined by "-", without leading zeros.
inline std::string daySalt(Date date, const Calendar& calendar) {
    DateComponents day = calendar.components(date);
    return Text::format("%lld-%lld-%lld", static_cast<long long>(day.year.value_or(0)),
                        static_cast<long long>(day.month.value_or(0)), static_cast<long long>(day.day.value_or(0)));
}

// Moves the alerts that share a minute apart by the stagger, in place: within a minute, in
// the order of the day-salted hash of their keys (then by key), the alert at position i
// moves i staggers later. `keyOf(alert)` gives an alert's key.
template <class Alert, class KeyOf>
void stagger(std::vector<Alert>& alerts, KeyOf keyOf, const PlanContext& context) {
    const double step = context.settings.stagger;
    if (!(step > 0) || alerts.size() < 2) return;

    std::vector<std::pair<int64_t, uint32_t>> byMinute(alerts.size());
    for (uint32_t i = 0; i < alerts.size(); ++i) byMinute[i] = {minuteOf(alerts[i].fireDate), i};
    std::sort(byMinute.begin(), byMinute.end());

    struct Member {
        uint64_t hash;
        uint32_t index;
    };
    std::vector<Member> group;
    for (size_t first = 0; first < byMinute.size();) {
        size_t end = first + 1;
        while (end < byMinute.size() && byMinute[end].first == byMinute[first].first) ++end;
        if (end - first >= 2) {
            // Indices within a minute are ascending, so the group's first alert is its first in the input.
            uint64_t salt = stableHash(daySalt(alerts[byMinute[first].second].fireDate, context.calendar));
            group.clear();
            for (size_t i = first; i < end; ++i) {
                uint32_t index = byMinute[i].second;
                group.push_back({stableHash(keyOf(alerts[index]), salt), index});
            }
            std::stable_sort(group.begin(), group.end(), [&](const Member& a, const Member& b) {
                if (a.hash != b.hash) return a.hash < b.hash;
                return keyOf(alerts[a.index]) < keyOf(alerts[b.index]);
            });
            for (size_t position = 0; position < group.size(); ++position) {
                Date& date = alerts[group[position].index].fireDate;
                date = date.addingTimeInterval(step * static_cast<double>(position));
            }
        }
        first = end;
    }
}

}  // namespace VeskNag

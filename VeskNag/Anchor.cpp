#include "VeskNag/Series.h"

namespace VeskNag {

Date nextHour(Date after, const Calendar& calendar) {
    auto hour = calendar.interval(CalendarComponent::hour, after);
    Date start = hour ? hour->start : after;
    return start == after ? after : start.addingTimeInterval(3600);
}

std::optional<Date> timeAnchor(const NagItem& item, const PlanContext& context) {
    const Calendar& calendar = context.calendar;
    const int64_t dateOnlyHour = context.settings.dateOnlyHour;

    std::optional<Date> anchor;
    if (!item.due) {
        // Without a date, a reminder first alerts at the top of the hour after it was first seen.
        anchor = nextHour(item.firstSeen, calendar);
    } else {
        DateComponents due = *item.due;
        if (!due.hour) {
            due.hour = dateOnlyHour;
            due.minute = 0;
        }
        anchor = calendar.date(due);
        if (!anchor) return std::nullopt;
    }

    if (const auto& start = item.startReminding) {
        if (start->kind == StartReminding::Case::beforeDue) {
            anchor = anchor->addingTimeInterval(-start->seconds);
        } else {
            DateComponents on = start->date;
            on.hour = on.hour.value_or(dateOnlyHour);
            on.minute = on.minute.value_or(0);
            // `on` can only make the start earlier, never later.
            if (auto date = calendar.date(on); date && *date < *anchor) anchor = date;
        }
    }

    if (const auto& trigger = item.trigger) {
        if (!item.triggeredAt) return std::nullopt;
        Date fired = item.triggeredAt->addingTimeInterval(trigger->delay);
        if (!item.due || fired >= *anchor) anchor = fired;
    }

    if (item.snoozedUntil) anchor = *item.snoozedUntil;
    return anchor;
}

std::optional<Date> anchor(const NagItem& item, const PlanContext& context) {
    auto anchor = timeAnchor(item, context);
    if (!anchor || !item.gate) return anchor;
    auto inside = context.inside.find(*item.gate);
    if (inside == context.inside.end() || !inside->second) return std::nullopt;
    // A reminder that was already overdue on arrival starts counting at the arrival.
    auto arrived = context.arrivedAt.find(*item.gate);
    if (arrived != context.arrivedAt.end() && arrived->second > *anchor) anchor = arrived->second;
    return anchor;
}

}  // namespace VeskNag

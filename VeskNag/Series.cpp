#include "VeskNag/Series.h"

#include <algorithm>
#include <cmath>

#include "VeskNag/Election.h"
#include "VeskNag/Stagger.h"

namespace VeskNag {

namespace {

constexpr size_t pointsPerGrid = 500;

// The points S + T*k from the first at or after `now` through `end`, at most 500 of them.
// Each point is computed from S, never accumulated, and the first index is found by
// division, so an old reminder costs what a new one does.
void appendGrid(Date start, double step, const PlanContext& context, Date end, AlertLevel level, int64_t ordinalOffset,
                std::vector<SeriesPoint>& points) {
    if (!(step > 0) || !std::isfinite(start.seconds)) return;
    double first = start >= context.now ? 0 : std::ceil((context.now.seconds - start.seconds) / step);
    // Beyond what an ordinal can count; settings never get here, a stored interval might.
    if (!(first < 9e18)) return;
    auto k = static_cast<int64_t>(first);
    for (size_t count = 0;; ++k, ++count) {
        Date point{start.seconds + step * static_cast<double>(k)};
        if (point > end || count == pointsPerGrid) break;
        points.push_back({point, level, k + ordinalOffset, 0});
    }
}

void appendLadder(Date anchor, const PlanContext& context, Date end, std::vector<SeriesPoint>& points) {
    const NagSettings& settings = context.settings;
    const EscalationLadder& ladder = settings.escalation;
    const Date now = context.now;
    size_t first = points.size();
    // The first rung has no end: a reminder beyond the horizon still plans its notification.
    if (anchor >= now) points.push_back({anchor, AlertLevel::notification, 0, 0});
    Date urgent = anchor.addingTimeInterval(ladder.timeSensitiveAfter);
    if (now <= urgent && urgent <= end) points.push_back({urgent, AlertLevel::timeSensitive, 1, 0});
    appendGrid(anchor.addingTimeInterval(ladder.alarmAfter), ladder.alarmRepeat, context, end, AlertLevel::alarm, 2,
               points);
    // At night escalation stops at time sensitive.
    if (const auto& night = settings.nightWindow) {
        for (size_t i = first; i < points.size(); ++i)
            if (points[i].level == AlertLevel::alarm && night->contains(points[i].fireDate, context.calendar))
                points[i].level = AlertLevel::timeSensitive;
    }
}

}  // namespace

void appendSeries(const NagItem& item, const PlanContext& context, std::vector<SeriesPoint>& points) {
    auto start = anchor(item, context);
    if (!start) return;
    const Date now = context.now;
    const Date end = now.addingTimeInterval(context.horizon);
    if (item.deviceGate) {
        // A gated reminder counts from no moment before this device became active.
        Date floor = context.me.activeSince.value_or(now);
        if (*start < floor) start = floor;
    }
    const NagSettings& settings = context.settings;
    switch (item.style.kind) {
        case Style::Case::once:
            if (now <= *start && *start <= end) points.push_back({*start, AlertLevel::notification, 0, 0});
            break;
        case Style::Case::repeatUntilDone:
            appendGrid(*start, item.style.interval.value_or(settings.defaultRepeat), context, end,
                       AlertLevel::notification, 0, points);
            break;
        case Style::Case::alarm:
            appendGrid(*start, settings.alarmRepeat, context, end, AlertLevel::alarm, 0, points);
            break;
        case Style::Case::escalate: appendLadder(*start, context, end, points); break;
    }
}

std::vector<PlannedAlert> series(const NagItem& item, const PlanContext& context) {
    std::vector<SeriesPoint> points;
    appendSeries(item, context, points);
    std::vector<PlannedAlert> alerts;
    alerts.reserve(points.size());
    for (const SeriesPoint& point : points)
        alerts.push_back({item.key, item.title, point.fireDate, point.level, point.ordinal, item.deviceGate});
    return alerts;
}

std::vector<PlannedAlert> staggered(std::vector<PlannedAlert> alerts, const PlanContext& context) {
    auto keyOf = [](const PlannedAlert& alert) -> const std::string& { return alert.key; };
    stagger(alerts, keyOf, context);
    return alerts;
}

std::vector<PlannedAlert> plan(const std::vector<NagItem>& items, const PlanContext& context) {
    if (context.limit <= 0) return {};
    std::vector<SeriesPoint> points;
    for (uint32_t index = 0; index < items.size(); ++index) {
        if (items[index].isCompleted) continue;
        size_t first = points.size();
        appendSeries(items[index], context, points);
        for (size_t i = first; i < points.size(); ++i) points[i].item = index;
    }
    auto keyOf = [&](const SeriesPoint& point) -> const std::string& { return items[point.item].key; };
    // Staggering comes before ownership, so that every device computes the same times.
    stagger(points, keyOf, context);
    std::erase_if(points, [&](const SeriesPoint& point) {
        return !owns(items[point.item].deviceGate, point.level, point.fireDate, context);
    });

    // A stable sort by date and key, then the first `limit`: the same as sorting by date,
    // key and position, which lets the cut be found before the rest is sorted.
    std::vector<uint32_t> order(points.size());
    for (uint32_t i = 0; i < order.size(); ++i) order[i] = i;
    auto earlier = [&](uint32_t a, uint32_t b) {
        if (points[a].fireDate != points[b].fireDate) return points[a].fireDate < points[b].fireDate;
        int keys = keyOf(points[a]).compare(keyOf(points[b]));
        return keys != 0 ? keys < 0 : a < b;
    };
    size_t kept = std::min(order.size(), static_cast<size_t>(context.limit));
    if (kept < order.size()) std::nth_element(order.begin(), order.begin() + kept, order.end(), earlier);
    order.resize(kept);
    std::sort(order.begin(), order.end(), earlier);

    std::vector<PlannedAlert> alerts;
    alerts.reserve(kept);
    for (uint32_t index : order) {
        const SeriesPoint& point = points[index];
        const NagItem& item = items[point.item];
        alerts.push_back({item.key, item.title, point.fireDate, point.level, point.ordinal, item.deviceGate});
    }
    return alerts;
}

}  // namespace VeskNag

#include "VeskNag/PlaceEvents.h"

#include <algorithm>
#include <set>
#include <utility>

#include "VeskNag/Series.h"

namespace VeskNag {

std::vector<std::string> placesNeeded(const std::vector<NagItem>& items, const PlanContext& context) {
    std::vector<std::pair<Date, std::string>> wanted;
    for (const NagItem& item : items) {
        if (item.isCompleted) continue;
        if (const auto& trigger = item.trigger) {
            // A fired trigger whose delay still runs stays watched: the opposite edge can call it off.
            bool finished = item.triggeredAt && !(context.now < item.triggeredAt->addingTimeInterval(trigger->delay));
            if (!finished) wanted.emplace_back(Date::distantPast(), trigger->place);
        }
        if (item.gate) wanted.emplace_back(timeAnchor(item, context).value_or(Date::distantFuture()), *item.gate);
    }
    std::stable_sort(wanted.begin(), wanted.end());
    std::vector<std::string> places;
    std::set<std::string> seen;
    for (auto& [date, place] : wanted)
        if (seen.insert(place).second) places.push_back(std::move(place));
    return places;
}

std::map<std::string, ReminderMeta> placeEvent(PlaceTrigger::Edge edge, const std::string& place, Date at,
                                               const std::map<std::string, ReminderMeta>& metas) {
    std::map<std::string, ReminderMeta> changed;
    for (const auto& [key, meta] : metas) {
        if (!meta.trigger || meta.trigger->place != place) continue;
        ReminderMeta copy = meta;
        if (edge == meta.trigger->edge) {
            // A trigger that has fired keeps its first date.
            if (!copy.triggeredAt) copy.triggeredAt = at;
        } else if (copy.triggeredAt && meta.trigger->delay > 0 &&
                   at < copy.triggeredAt->addingTimeInterval(meta.trigger->delay)) {
            // Turning back within the delay calls the trigger off.
            copy.triggeredAt.reset();
        }
        if (!(copy == meta)) changed.emplace(key, std::move(copy));
    }
    return changed;
}

}  // namespace VeskNag

#include "VeskApp/Watching.h"

#include <algorithm>
#include <set>

#include "VeskApp/Planning.h"
#include "VeskNag/PlaceEvents.h"

namespace Watching {

std::vector<std::string> needed(const StoreData& data, const Config& config, const Device& me, Date now,
                                const Calendar& calendar) {
    std::vector<std::string> keys;
    for (const std::string& name :
         VeskNag::placesNeeded(Planning::items(data, config), Planning::context(data, me, now, calendar))) {
        const std::string key = Place::key(name);
        if (data.places.count(key) && std::find(keys.begin(), keys.end(), key) == keys.end()) keys.push_back(key);
    }
    return keys;
}

void cross(StoreData& data, const Crossing& crossing) {
    // Triggers name places as they were spoken; the place is found by its key.
    std::map<std::string, ReminderMeta> metas;
    std::set<std::string> spoken;
    for (const auto& [key, reminder] : data.reminders) {
        const auto& trigger = reminder.meta.trigger;
        if (reminder.completed || !trigger || Place::key(trigger->place) != crossing.place) continue;
        metas.emplace(key, reminder.meta);
        spoken.insert(trigger->place);
    }
    for (const std::string& place : spoken)
        for (const auto& [key, meta] : VeskNag::placeEvent(crossing.edge, place, crossing.at, metas))
            data.reminders.at(key).meta = meta;
}

std::vector<Crossing> record(Store& store, const Fix& fix, Date at) {
    std::vector<Crossing> crossings;
    store.change([&](StoreData& data) {
        Regions::Update update = Regions::apply(data.places, data.presence, fix, at);
        data.presence = std::move(update.presence);
        crossings = std::move(update.crossings);
        for (const Crossing& crossing : crossings) cross(data, crossing);
    });
    return crossings;
}

void forget(Store& store) {
    store.change([](StoreData& data) { data.presence.clear(); });
}

}  // namespace Watching

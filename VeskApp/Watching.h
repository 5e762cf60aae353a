#pragma once

#include <string>
#include <vector>

#include "Platform/Calendar.h"
#include "Platform/Date.h"
#include "VeskApp/Config.h"
#include "VeskApp/Regions.h"
#include "VeskApp/Store.h"
#include "VeskNag/PlanContext.h"

// The app's side of arriving and leaving: which places are worth the position, and what a
// fix changes in the store.
namespace Watching {

// The keys of the stored places that open reminders wait on now, most urgent first.
std::vector<std::string> needed(const StoreData& data, const Config& config, const Device& me, Date now,
                                const Calendar& calendar);

// Applies a fix at `at`: where the user is, and the triggers of every place crossed, in
// one change of the store. Returns the crossings.
std::vector<Crossing> record(Store& store, const Fix& fix, Date at);

// What a crossing does to the reminders whose trigger names the place.
void cross(StoreData& data, const Crossing& crossing);

// Once nothing is watched, where the user was is no longer known.
void forget(Store& store);

}  // namespace Watching

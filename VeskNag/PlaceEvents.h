#pragma once

#include <map>
#include <string>
#include <vector>

#include "Platform/Date.h"
#include "VeskModel/Capture.h"
#include "VeskModel/ReminderMeta.h"
#include "VeskNag/PlanContext.h"

// The planner's side of arriving and leaving.
namespace VeskNag {

// The places worth watching now, each once: pending triggers in name order, then place
// gates, the soonest anchor first.
std::vector<std::string> placesNeeded(const std::vector<NagItem>& items, const PlanContext& context);

// One arrival or departure applied to the records of the reminders, by key: the edge of a
// trigger fires it once; the opposite edge calls off a delayed trigger within its delay.
// Only the records that changed come back.
std::map<std::string, ReminderMeta> placeEvent(PlaceTrigger::Edge edge, const std::string& place, Date at,
                                               const std::map<std::string, ReminderMeta>& metas);

}  // namespace VeskNag

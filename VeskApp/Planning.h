#pragma once

#include <map>
#include <string>
#include <vector>

#include "Platform/Calendar.h"
#include "Platform/Date.h"
#include "VeskApp/Config.h"
#include "VeskApp/Store.h"
#include "VeskIPC/Wire.h"
#include "VeskNag/PlanContext.h"
#include "VeskNag/PlannedAlert.h"

// The store as the planner and the listing see it.
namespace Planning {

constexpr double horizon = 24 * 3600;
constexpr int64_t limit = 500;

bool isIgnored(const StoredList& list, const Config& config);
// The open reminders of the lists that are not ignored.
std::vector<NagItem> items(const StoreData& data, const Config& config);
NagItem item(const StoredReminder& reminder);

// Until devices sync, this device is the only one.
PlanContext context(const StoreData& data, const Device& me, Date now, const Calendar& calendar,
                    double horizon = Planning::horizon, int64_t limit = Planning::limit);

// What the planner and the listing take from one state of the store; the same until it
// changes (or the time zone does).
struct Reminders {
    std::vector<NagItem> items;                // open, in lists not ignored
    std::vector<std::optional<Date>> anchors;  // the time anchor of each item, which no clock moves
    std::map<std::string, std::string> lists;  // reminder key -> its list's name
};
Reminders reminders(const StoreData& data, const Config& config, const Calendar& calendar);

// The numbered rows of `vesk now` and `vesk later`, freshly computed: all of them, or those
// of one section only, numbered as among all.
std::vector<ReminderDTO> rows(const StoreData& data, const Reminders& reminders, const Device& me, Date now,
                              const Calendar& calendar, Request::Section section = Request::Section::all);
std::vector<ReminderDTO> rows(const StoreData& data, const Config& config, const Device& me, Date now,
                              const Calendar& calendar, Request::Section section = Request::Section::all);

}  // namespace Planning

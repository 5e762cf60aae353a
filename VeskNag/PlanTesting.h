#pragma once

// Shared fixtures of the planner's tests: Amsterdam's calendar in English, and moments
// written as wall-clock text on Saturday 14 March 2026 unless a date is given.

#include <cstdio>
#include <functional>
#include <random>
#include <string>
#include <vector>

#include "Platform/Calendar.h"
#include "Platform/Text.h"
#include "VeskNag/PlanContext.h"
#include "VeskNag/PlannedAlert.h"

namespace PlanTesting {

inline const Calendar& amsterdam() {
    static const Calendar calendar("Europe/Amsterdam", "en_US");
    return calendar;
}

// "09:20", "09:20:05", "2026-03-20 09:20" or "2026-03-20 09:20:05", Amsterdam time.
inline Date at(const std::string& text) {
    const std::string full = text.size() > 8 ? text : "2026-03-14 " + text;
    int year = 0, month = 0, day = 0, hour = 0, minute = 0, second = 0;
    std::sscanf(full.c_str(), "%d-%d-%d %d:%d:%d", &year, &month, &day, &hour, &minute, &second);
    return amsterdam().date({year, month, day, hour, minute})->addingTimeInterval(second);
}

inline DateComponents day(int64_t year, int64_t month, int64_t day) { return {year, month, day, {}, {}}; }

// The reverse of `at`: the date only when it isn't 14 March, the seconds only when set.
inline std::string text(Date date) {
    const DateComponents c = amsterdam().components(date);
    const int second = int(amsterdam().component(CalendarComponent::second, date));
    const bool the14th = *c.year == 2026 && *c.month == 3 && *c.day == 14;
    return (the14th ? "" : Text::format("%04d-%02d-%02d ", int(*c.year), int(*c.month), int(*c.day))) +
           Text::format("%02d:%02d", int(*c.hour), int(*c.minute)) + (second ? Text::format(":%02d", second) : "");
}

inline std::string optionalText(std::optional<Date> date) { return date ? text(*date) : "-"; }

// Alerts as "09:30 n2, 09:45 t3, 10:00 a4 key": time, level (n, t, a), ordinal, and the
// key when `withKeys`.
inline std::string brief(const std::vector<PlannedAlert>& alerts, bool withKeys = false) {
    std::string result;
    for (const PlannedAlert& alert : alerts)
        result += (result.empty() ? "" : ", ") + text(alert.fireDate) + " " + "nta"[int(alert.level)] +
                  std::to_string(alert.ordinal) + (withKeys ? " " + alert.key : "");
    return result;
}

inline NagItem item(std::string key, Style style = Style::repeatUntilDone(), std::optional<DateComponents> due = {}) {
    return NagItem{.key = key, .title = key, .due = due, .style = style, .firstSeen = at("08:00")};
}

// A repeat-until-done reminder due at `time`, as `at` reads it, then changed by `change`.
inline NagItem due(std::string key, const std::string& time, const std::function<void(NagItem&)>& change = {}) {
    NagItem result = item(key, Style::repeatUntilDone(), amsterdam().components(at(time)));
    if (change) change(result);
    return result;
}

inline Device device(std::string id, Device::Kind kind, std::optional<Date> lastActive = {}, bool relayOnly = false) {
    return Device{.id = id, .kind = kind, .name = id, .relayOnly = relayOnly, .lastActive = lastActive, .places = {}};
}

// A lone Mac that nobody used lately, so every alert falls back to it; the default settings,
// no place known.
inline PlanContext context(Date now, double horizon = 86400, int64_t limit = 500) {
    const Device me = device("mac", Device::Kind::mac);
    return {now, amsterdam(), NagSettings{}, me, {me}, {}, {}, horizon, limit, PlanContext::defaultActiveWindow};
}

// `count` distinct reminders of every style, with dates over sixty days from `daysBack` days
// ago (or all due at `dueDay`), and a share of date-only, undated, recurring, place-gated,
// device-gated, snoozed, hidden, triggered and completed ones. The same seed gives the same set.
inline std::vector<NagItem> mixedItems(size_t count, Date now, uint32_t seed = 1,
                                       std::optional<DateComponents> dueDay = std::nullopt, int64_t daysBack = 30) {
    std::mt19937 random(seed);
    const Style styles[] = {Style::once(),  Style::repeatUntilDone(), Style::repeatUntilDone(900),
                            Style::alarm(), Style::escalate(),        Style::repeatUntilDone(1800)};
    const char* const places[] = {"home", "gym", "office"};
    std::vector<NagItem> items;
    for (size_t i = 0; i < count; ++i) {
        NagItem item = PlanTesting::item("r" + std::to_string(i), styles[random() % 6]);
        item.title = "Reminder " + std::to_string(i);
        item.firstSeen = now.addingTimeInterval(-double(random() % (86400 * 30)));
        DateComponents due = amsterdam().components(
            now.addingTimeInterval(double(random() % (86400 * 60)) - 86400.0 * double(daysBack)));
        if (dueDay) due.year = dueDay->year, due.month = dueDay->month, due.day = dueDay->day;
        due.minute = int64_t(random() % 4) * 15;
        const auto shape = random() % 8;
        if (shape == 0) due.hour.reset(), due.minute.reset();  // date only
        if (shape != 1 || dueDay) item.due = due;              // else undated
        if (random() % 7 == 0) item.recurrence = Recurrence{Recurrence::Frequency::weekly, 1, {2, 4}, false};
        if (random() % 11 == 0) item.gate = places[random() % 3];
        if (random() % 13 == 0) item.deviceGate = random() % 2 ? DeviceGate::anyMac() : DeviceGate::phone();
        if (random() % 17 == 0) item.snoozedUntil = now.addingTimeInterval(double(random() % 86400));
        if (random() % 19 == 0) item.hideDaysBefore = 3;
        if (random() % 23 == 0) {
            item.trigger = PlaceTrigger{random() % 2 ? PlaceTrigger::Edge::arrive : PlaceTrigger::Edge::leave,
                                        places[random() % 3], double(random() % 2) * 600};
            if (random() % 2) item.triggeredAt = now.addingTimeInterval(-double(random() % 7200));
        }
        item.isCompleted = random() % 29 == 0;
        items.push_back(std::move(item));
    }
    return items;
}

}  // namespace PlanTesting

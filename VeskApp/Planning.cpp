#include "VeskApp/Planning.h"

#include "Platform/Text.h"
#include "VeskIPC/Listing.h"
#include "VeskNag/Board.h"
#include "VeskNag/Series.h"

namespace Planning {

bool isIgnored(const StoredList& list, const Config& config) {
    if (list.ignored) return true;
    for (const auto& name : config.ignoredLists)
        if (Text::equalsIgnoringCase(name, list.name)) return true;
    return false;
}

NagItem item(const StoredReminder& reminder) {
    const ReminderMeta& meta = reminder.meta;
    return NagItem{.key = reminder.key,
                   .title = reminder.title,
                   .due = reminder.due,
                   .isCompleted = reminder.completed,
                   .style = meta.style,
                   .trigger = meta.trigger,
                   .triggeredAt = meta.triggeredAt,
                   .gate = meta.gate,
                   .deviceGate = meta.deviceGate,
                   .startReminding = meta.startReminding,
                   .snoozedUntil = meta.snooze ? std::optional(meta.snooze->until) : std::nullopt,
                   .firstSeen = meta.firstSeen,
                   .recurrence = reminder.recurrence,
                   .hideDaysBefore = meta.hideDaysBefore};
}

std::vector<NagItem> items(const StoreData& data, const Config& config) {
    std::vector<NagItem> result;
    result.reserve(data.reminders.size());
    for (const auto& [key, reminder] : data.reminders) {
        if (reminder.completed) continue;
        auto list = data.lists.find(reminder.list);
        if (list != data.lists.end() && isIgnored(list->second, config)) continue;
        result.push_back(item(reminder));
    }
    return result;
}

PlanContext context(const StoreData& data, const Device& me, Date now, const Calendar& calendar, double horizon,
                    int64_t limit) {
    std::map<std::string, bool> inside;
    std::map<std::string, Date> arrivedAt;
    for (const auto& [key, presence] : data.presence) {
        inside[key] = presence.inside;
        if (presence.inside) arrivedAt[key] = presence.since;
    }
    return PlanContext{.now = now,
                       .calendar = calendar,
                       .settings = data.settings,
                       .me = me,
                       .devices = {me},
                       .inside = std::move(inside),
                       .arrivedAt = std::move(arrivedAt),
                       .horizon = horizon,
                       .limit = limit,
                       .activeWindow = PlanContext::defaultActiveWindow};
}

Reminders reminders(const StoreData& data, const Config& config, const Calendar& calendar) {
    Reminders result{items(data, config), {}, {}};
    const PlanContext anyMoment = context(data, Device{}, Date{}, calendar);
    for (const NagItem& item : result.items) result.anchors.push_back(VeskNag::timeAnchor(item, anyMoment));
    for (const auto& [key, reminder] : data.reminders) {
        auto list = data.lists.find(reminder.list);
        if (list != data.lists.end()) result.lists.emplace(key, list->second.name);
    }
    return result;
}

std::vector<ReminderDTO> rows(const StoreData& data, const Config& config, const Device& me, Date now,
                              const Calendar& calendar, Request::Section section) {
    return rows(data, reminders(data, config, calendar), me, now, calendar, section);
}

std::vector<ReminderDTO> rows(const StoreData& data, const Reminders& reminders, const Device& me, Date now,
                              const Calendar& calendar, Request::Section section) {
    const std::map<std::string, std::string>& lists = reminders.lists;
    const PlanContext context = Planning::context(data, me, now, calendar);
    if (section == Request::Section::all)
        return Listing::reminders(VeskNag::board(reminders.items, context), lists, now, calendar);

    // An item is in the now section exactly when its time anchor has come, so one section
    // needs a board of its own items only, and the count of the others.
    std::vector<NagItem> part;
    size_t come = 0;
    for (size_t i = 0; i < reminders.items.size(); ++i) {
        const bool due = reminders.anchors[i] && *reminders.anchors[i] <= now;
        come += due;
        if (due == (section == Request::Section::now)) part.push_back(reminders.items[i]);
    }
    const Board board = VeskNag::board(part, context);
    // One section: only its rows are made, with the numbers they have among all rows.
    std::vector<ReminderDTO> rows;
    int64_t number = section == Request::Section::now ? 0 : static_cast<int64_t>(come);
    auto add = [&](const std::vector<BoardEntry>& entries, const std::string& word) {
        for (const BoardEntry& entry : entries) {
            auto list = lists.find(entry.item.key);
            rows.push_back(Listing::dto(entry, word, ++number,
                                        list == lists.end() ? std::nullopt : std::optional(list->second), now,
                                        calendar));
        }
    };
    if (section == Request::Section::now) {
        add(board.now, "now");
    } else {
        for (const auto* entries : {&board.soon, &board.tomorrow, &board.thisWeek, &board.later})
            add(*entries, "later");
    }
    return rows;
}

}  // namespace Planning

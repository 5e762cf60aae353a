#include "VeskNag/Board.h"

#include <algorithm>

#include "Platform/Text.h"
#include "VeskNag/Election.h"
#include "VeskNag/Series.h"
#include "VeskNag/Stagger.h"

const std::vector<BoardEntry>& Board::entries(Section section) const {
    switch (section) {
        case Section::now: return now;
        case Section::soon: return soon;
        case Section::tomorrow: return tomorrow;
        case Section::thisWeek: return thisWeek;
        case Section::later: return later;
    }
    return now;
}

std::vector<BoardEntry> Board::upcoming() const {
    std::vector<BoardEntry> entries;
    entries.reserve(soon.size() + tomorrow.size() + thisWeek.size() + later.size());
    for (const auto* section : {&soon, &tomorrow, &thisWeek, &later})
        entries.insert(entries.end(), section->begin(), section->end());
    return entries;
}

std::vector<BoardEntry> Board::all() const {
    std::vector<BoardEntry> entries = now;
    std::vector<BoardEntry> next = upcoming();
    entries.insert(entries.end(), next.begin(), next.end());
    entries.insert(entries.end(), hidden.begin(), hidden.end());
    return entries;
}

const char* rawValue(Board::Section section) {
    switch (section) {
        case Board::Section::now: return "now";
        case Board::Section::soon: return "soon";
        case Board::Section::tomorrow: return "tomorrow";
        case Board::Section::thisWeek: return "this-week";
        case Board::Section::later: return "later";
    }
    return "now";
}

namespace VeskNag {

namespace {

// What an entry is sorted by, worked out once, and where the entry waits. The entries
// themselves are large, so they move only once, into their section.
struct Placed {
    uint64_t hash = 0;  // day-salted, for the now section
    Date date;          // the later date
    uint32_t entry = 0;
};

}  // namespace

bool isHidden(const NagItem& item, const PlanContext& context) {
    if (!item.hideDaysBefore || *item.hideDaysBefore <= 0 || !item.due) return false;
    DateComponents day = *item.due;
    day.hour.reset();
    day.minute.reset();
    auto date = context.calendar.date(day);
    if (!date) return false;
    // Calendar days, not 24-hour steps.
    auto shown =
        context.calendar.adding(CalendarComponent::day, -*item.hideDaysBefore, context.calendar.startOfDay(*date));
    return shown && context.now < *shown;
}

bool satisfied(const DeviceGate& gate, const PlanContext& context) {
    const Device& me = context.me;
    switch (gate.kind) {
        case DeviceGate::Case::anyMac:
            return me.kind == Device::Kind::mac && !me.relayOnly && context.isActive(me, context.now);
        case DeviceGate::Case::phone: return me.kind == Device::Kind::phone;
        case DeviceGate::Case::named:
            return me.kind == Device::Kind::mac && Text::equalsIgnoringCase(gate.name, me.name) && !me.relayOnly &&
                   context.isActive(me, context.now);
    }
    return false;
}

Board board(const std::vector<NagItem>& items, const PlanContext& context) {
    const Date now = context.now;
    const uint64_t salt = stableHash(daySalt(now, context.calendar));
    std::vector<BoardEntry> entries;
    entries.reserve(items.size());
    std::vector<Placed> present, upcoming, hidden;
    std::vector<uint32_t> waiting;
    auto place = [&](std::vector<Placed>& pool, uint64_t hash, Date date, const NagItem& item, BoardEntry::Status status) {
        pool.push_back({hash, date, static_cast<uint32_t>(entries.size())});
        entries.push_back({item, std::move(status)});
    };

    for (const NagItem& item : items) {
        if (item.isCompleted) continue;
        // Time alone: a place gate shows as a status instead of hiding the item.
        auto anchor = timeAnchor(item, context);
        if (!anchor) {
            if (item.trigger) {
                waiting.push_back(static_cast<uint32_t>(entries.size()));
                entries.push_back({item, BoardEntry::WaitingForTrigger{*item.trigger}});
            }
            continue;
        }
        if (*anchor > now) {
            place(isHidden(item, context) ? hidden : upcoming, 0, *anchor, item, BoardEntry::Later{*anchor});
            continue;
        }
        BoardEntry::Status status = BoardEntry::Due{*anchor};
        if (item.gate) {
            auto inside = context.inside.find(*item.gate);
            if (inside == context.inside.end() || !inside->second)
                status = BoardEntry::WaitingForPlace{*item.gate, *anchor};
        }
        if (std::holds_alternative<BoardEntry::Due>(status) && item.deviceGate && !satisfied(*item.deviceGate, context))
            status = BoardEntry::WaitingForDevice{*item.deviceGate, *anchor};
        place(present, stableHash(item.key, salt), *anchor, item, std::move(status));
    }

    auto keyOf = [&](const Placed& placed) -> const std::string& { return entries[placed.entry].item.key; };
    // The now section has no order of importance: a shuffle that changes daily.
    std::stable_sort(present.begin(), present.end(), [&](const Placed& a, const Placed& b) {
        if (a.hash != b.hash) return a.hash < b.hash;
        return keyOf(a) < keyOf(b);
    });
    auto byDate = [&](const Placed& a, const Placed& b) {
        if (a.date != b.date) return a.date < b.date;
        return keyOf(a) < keyOf(b);
    };
    std::stable_sort(upcoming.begin(), upcoming.end(), byDate);
    std::stable_sort(hidden.begin(), hidden.end(), byDate);
    std::stable_sort(waiting.begin(), waiting.end(),
                     [&](uint32_t a, uint32_t b) { return entries[a].item.title < entries[b].item.title; });

    Board result;
    result.now.reserve(present.size());
    for (const Placed& placed : present) result.now.push_back(std::move(entries[placed.entry]));
    const Date today = context.calendar.startOfDay(now);
    for (const Placed& placed : upcoming) {
        int64_t days = context.calendar.daysBetween(today, context.calendar.startOfDay(placed.date));
        auto& section = days <= 0 ? result.soon : days == 1 ? result.tomorrow : days <= 6 ? result.thisWeek : result.later;
        section.push_back(std::move(entries[placed.entry]));
    }
    // Trigger-waiting entries have no date, so they come after every dated entry.
    for (uint32_t entry : waiting) result.later.push_back(std::move(entries[entry]));
    result.hidden.reserve(hidden.size());
    for (const Placed& placed : hidden) result.hidden.push_back(std::move(entries[placed.entry]));
    return result;
}

}  // namespace VeskNag

#include "VeskIPC/Listing.h"

#include "Platform/DateFormat.h"
#include "Platform/Text.h"

namespace Listing {

namespace {

const char* const separator = " \u00b7 ";

struct Described {
    const char* status;
    std::string words;
    std::optional<Date> at;
};

std::string deviceWords(const DeviceGate& gate) {
    switch (gate.kind) {
        case DeviceGate::Case::anyMac: return "your Mac";
        case DeviceGate::Case::phone: return "your iPhone";
        case DeviceGate::Case::named: return gate.name;
    }
    return gate.name;
}

Described describe(const BoardEntry::Status& status, Date now, const Calendar& calendar) {
    struct Visitor {
        Date now;
        const Calendar& calendar;
        Described operator()(const BoardEntry::Due& due) const {
            return {"due", "due " + DateFormat::relative(due.since, now, calendar), due.since};
        }
        Described operator()(const BoardEntry::WaitingForPlace& waiting) const {
            return {"waiting-for-place", "waiting for " + waiting.place, waiting.since};
        }
        Described operator()(const BoardEntry::WaitingForDevice& waiting) const {
            return {"waiting-for-device", "waiting for " + deviceWords(waiting.gate), waiting.since};
        }
        Described operator()(const BoardEntry::Later& later) const {
            return {"later", DateFormat::weekdayMonthDayTime(later.date, calendar), later.date};
        }
        Described operator()(const BoardEntry::WaitingForTrigger& waiting) const {
            const char* when =
                waiting.trigger.edge == PlaceTrigger::Edge::leave ? "when you leave " : "when you get to ";
            return {"waiting-for-trigger", when + waiting.trigger.place, std::nullopt};
        }
    };
    return std::visit(Visitor{now, calendar}, status);
}

WireError notFound(std::string message) { return {WireError::Code::notFound, std::move(message)}; }

}  // namespace

ReminderDTO dto(const BoardEntry& entry, const std::string& section, int64_t number,
                const std::optional<std::string>& list, Date now, const Calendar& calendar) {
    const NagItem& item = entry.item;
    Described described = describe(entry.status, now, calendar);
    ReminderDTO row;
    row.number = number;
    row.id = item.key;
    row.title = item.title;
    row.list = list;
    row.section = section;
    row.status = described.status;
    if (described.at) row.at = DateFormat::iso8601(*described.at);
    row.due = ParseOutput::format(item.due);
    std::tie(row.style, row.repeatIntervalSeconds) = ParseOutput::styleOf(item.style);

    if (const auto* waiting = std::get_if<BoardEntry::WaitingForPlace>(&entry.status)) {
        row.place = waiting->place;
    } else if (item.gate) {
        row.place = item.gate;
    } else if (item.trigger) {
        row.place = item.trigger->place;
    }
    if (const auto* waiting = std::get_if<BoardEntry::WaitingForDevice>(&entry.status)) {
        row.device = ParseOutput::deviceOf(waiting->gate);
    } else if (item.deviceGate) {
        row.device = ParseOutput::deviceOf(*item.deviceGate);
    }
    row.detail = described.words + separator + ParseOutput::describe(row.style, row.repeatIntervalSeconds);
    return row;
}

std::vector<ReminderDTO> reminders(const Board& board, const std::map<std::string, std::string>& lists, Date now,
                                   const Calendar& calendar) {
    const std::vector<BoardEntry>* const groups[][4] = {
        {&board.now, nullptr, nullptr, nullptr},
        {&board.soon, &board.tomorrow, &board.thisWeek, &board.later},
        {&board.hidden, nullptr, nullptr, nullptr},
    };
    const std::string words[] = {"now", "later", "hidden"};
    std::vector<ReminderDTO> rows;
    rows.reserve(board.now.size() + board.soon.size() + board.tomorrow.size() + board.thisWeek.size() +
                 board.later.size() + board.hidden.size());
    for (int group = 0; group < 3; ++group) {
        for (const auto* section : groups[group]) {
            if (!section) continue;
            for (const BoardEntry& entry : *section) {
                auto list = lists.find(entry.item.key);
                rows.push_back(dto(entry, words[group], static_cast<int64_t>(rows.size()) + 1,
                                   list == lists.end() ? std::nullopt : std::optional(list->second), now, calendar));
            }
        }
    }
    return rows;
}

std::variant<ReminderDTO, WireError> resolve(std::string_view reference, const std::vector<ReminderDTO>& rows) {
    const std::string text = Text::trimBlanks(reference);
    const std::string_view body = text.starts_with("#") ? std::string_view(text).substr(1) : std::string_view(text);

    // A text that reads as a number is a number and never reaches the titles.
    if (auto number = body.empty() ? std::nullopt : Text::parseInt64(body)) {
        for (const ReminderDTO& row : rows)
            if (row.number == *number) return row;
        return notFound("No reminder #" + std::to_string(*number) + ". `vesk now` and `vesk later` show the numbers.");
    }
    for (const ReminderDTO& row : rows)
        if (row.id == text) return row;

    // An exact title ends the search for titles that merely contain the text.
    std::vector<const ReminderDTO*> found;
    for (const ReminderDTO& row : rows)
        if (Text::equalsIgnoringCase(row.title, text)) found.push_back(&row);
    if (found.empty() && !text.empty()) {
        for (const ReminderDTO& row : rows)
            if (Text::containsIgnoringCase(row.title, text)) found.push_back(&row);
    }
    if (found.size() == 1) return *found.front();
    if (found.empty()) return notFound("No reminder matches \u201c" + text + "\u201d.");

    std::string message = "\u201c" + text + "\u201d matches " + std::to_string(found.size()) + " reminders (";
    for (size_t i = 0; i < found.size() && i < 5; ++i)
        message += (i ? ", #" : "#") + std::to_string(found[i]->number) + " " + found[i]->title;
    return WireError{WireError::Code::invalid, message + "). Use a number or id."};
}

}  // namespace Listing

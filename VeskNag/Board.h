#pragma once

#include <string>
#include <variant>
#include <vector>

#include "Platform/Date.h"
#include "VeskModel/Capture.h"
#include "VeskNag/PlanContext.h"

// One reminder on the board and why it stands where it does.
struct BoardEntry {
    // Due since its anchor.
    struct Due {
        Date since;
        bool operator==(const Due&) const = default;
    };
    // Due since its anchor, but held back until the user is at the place.
    struct WaitingForPlace {
        std::string place;
        Date since;
        bool operator==(const WaitingForPlace&) const = default;
    };
    // Due since its anchor, but held back until this device satisfies the gate.
    struct WaitingForDevice {
        DeviceGate gate;
        Date since;
        bool operator==(const WaitingForDevice&) const = default;
    };
    // Its anchor lies in the future, at this date.
    struct Later {
        Date date;
        bool operator==(const Later&) const = default;
    };
    // Nothing counts until the trigger's place event comes.
    struct WaitingForTrigger {
        PlaceTrigger trigger;
        bool operator==(const WaitingForTrigger&) const = default;
    };
    using Status = std::variant<Due, WaitingForPlace, WaitingForDevice, Later, WaitingForTrigger>;

    NagItem item;
    Status status;

    bool operator==(const BoardEntry&) const = default;

    const std::string& id() const { return item.key; }
};

// What a user still has to do, in sections: now, soon (today), tomorrow, this week (the
// five days after tomorrow), later, and what is hidden for the moment.
struct Board {
    enum class Section { now, soon, tomorrow, thisWeek, later };

    std::vector<BoardEntry> now;
    std::vector<BoardEntry> soon;
    std::vector<BoardEntry> tomorrow;
    std::vector<BoardEntry> thisWeek;
    std::vector<BoardEntry> later;
    std::vector<BoardEntry> hidden;

    bool operator==(const Board&) const = default;

    static constexpr Section allSections[] = {Section::now, Section::soon, Section::tomorrow, Section::thisWeek,
                                              Section::later};

    const std::vector<BoardEntry>& entries(Section section) const;
    // soon, tomorrow, thisWeek and later, in this order.
    std::vector<BoardEntry> upcoming() const;
    // now, upcoming, then hidden.
    std::vector<BoardEntry> all() const;
};

const char* rawValue(Board::Section section);  // "now", "soon", "tomorrow", "this-week", "later"

namespace VeskNag {

Board board(const std::vector<NagItem>& items, const PlanContext& context);

// Whether a not-yet-due item is hidden: `now` lies before the start of the day that is
// `hideDaysBefore` days before its due date.
bool isHidden(const NagItem& item, const PlanContext& context);

// Whether this device fulfils a device gate now.
bool satisfied(const DeviceGate& gate, const PlanContext& context);

}  // namespace VeskNag

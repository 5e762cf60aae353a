#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "Platform/Calendar.h"
#include "Platform/Date.h"
#include "VeskIPC/Wire.h"
#include "VeskNag/Board.h"

// The numbered rows users see, and the way back from what a user types to one row. The
// number `vesk now` shows is the number `vesk done 3` means. Date texts are told against
// `now` in the calendar's zone and locale.
namespace Listing {

// The board's now section, its upcoming sections and its hidden entries, in the board's
// order, numbered from 1 without a gap. `lists` maps a reminder's key to its list's name.
std::vector<ReminderDTO> reminders(const Board& board, const std::map<std::string, std::string>& lists, Date now,
                                   const Calendar& calendar);

ReminderDTO dto(const BoardEntry& entry, const std::string& section, int64_t number,
                const std::optional<std::string>& list, Date now, const Calendar& calendar);

// The row that a number ("3", "#3"), an id or a title names; a `notFound` or `invalid`
// error with the sentence to show when it names none or several.
std::variant<ReminderDTO, WireError> resolve(std::string_view reference, const std::vector<ReminderDTO>& rows);

}  // namespace Listing

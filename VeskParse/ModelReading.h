#pragma once

#include <cstdint>
#include <optional>
#include <stop_token>
#include <string>
#include <vector>

#include "Platform/Calendar.h"
#include "Platform/Date.h"

// What a language model read in a sentence, in plain strings and numbers, before the merge
// decides what of it the user's own words back.
struct ModelReading {
    std::string title;                          // without the date and style words
    std::optional<std::string> dueDate;         // year-month-day with "-" between the numbers
    std::optional<std::string> dueTime;         // in the forms of Parser::timeOfDay
    std::optional<std::string> style;           // "once", "repeat", "alarm" or "escalate", any case
    std::optional<int64_t> repeatMinutes;       // the nagging interval
    std::optional<std::string> recurrence;      // a Recurrence::Frequency raw value, any case
    std::optional<int64_t> recurrenceInterval;  // every how many units
    std::vector<int64_t> weekdays;              // 1 Sunday ... 7 Saturday
    std::optional<std::string> arriveAt;
    std::optional<std::string> leaveFrom;
    std::optional<int64_t> delayMinutes;
    std::optional<std::string> onlyAt;

    bool operator==(const ModelReading&) const = default;
};

// A language model that reads a sentence. `read` runs on a thread of its own; it throws
// when it fails, and should give up soon after `stop` is requested: its answer is then
// no longer wanted.
class LanguageModelParsing {
public:
    virtual ~LanguageModelParsing() = default;
    virtual ModelReading read(const std::string& sentence, Date now, const Calendar& calendar,
                              const std::vector<std::string>& places, std::stop_token stop) const = 0;
};

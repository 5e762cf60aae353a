#include "VeskParse/SnoozeTime.h"

#include <cmath>
#include <cstdlib>
#include <limits>

#include "Platform/Regex.h"
#include "Platform/Text.h"
#include "VeskParse/Parser.h"

namespace SnoozeTime {

std::optional<double> duration(std::string_view text) {
    static const std::optional<Regex> pattern = Regex::compile(R"((?:in\s+)?(\d+)\s*(m|mins?|minutes?|h|hrs?|hours?|d|days?))");
    if (!pattern) return std::nullopt;
    auto match = pattern->wholeMatch(text);
    if (!match) return std::nullopt;

    // \d also takes digits of other scripts, which do not read as a number.
    const std::string& digits = (*match)[1];
    char* end = nullptr;
    double amount = std::strtod(digits.c_str(), &end);
    if (end != digits.c_str() + digits.size() || digits.empty() || !std::isfinite(amount)) return std::nullopt;

    double unit = 86400;
    if ((*match)[2].starts_with("m")) {
        unit = 60;
    } else if ((*match)[2].starts_with("h")) {
        unit = 3600;
    }
    // Hundreds of digits read as a number that no unit can multiply.
    const double seconds = amount * unit;
    if (!std::isfinite(seconds)) return std::nullopt;
    return seconds;
}

std::optional<Date> resolve(std::string_view phrase, Date now, const Calendar& calendar, const NagSettings& settings) {
    std::string text = Text::lowercased(Text::trimBlanks(phrase));
    if (auto seconds = duration(text)) return now.addingTimeInterval(*seconds);

    Parser parser{calendar, {}, settings};
    ParseResult reading = parser.parse("snooze " + text, now);
    if (!reading.capture.due) return std::nullopt;
    // A phrase of which only a part was understood is refused, not guessed at.
    if (!reading.unresolved.empty()) return std::nullopt;

    DateComponents due = *reading.capture.due;
    if (!due.hour) {
        due.hour = settings.dateOnlyHour;
        due.minute = 0;
    }
    auto date = calendar.date(due);
    if (!date || *date <= now) return std::nullopt;
    return date;
}

Date swipe(Date now, const Calendar& calendar, const NagSettings& settings) {
    if (calendar.component(CalendarComponent::hour, now) < 7) return now.addingTimeInterval(8 * 3600);

    Date today = calendar.startOfDay(now);
    Date tomorrow = calendar.adding(CalendarComponent::day, 1, today).value_or(today.addingTimeInterval(86400));
    int64_t hour = settings.dateOnlyHour;
    if (hour < std::numeric_limits<int>::min() || hour > std::numeric_limits<int>::max()) return tomorrow;
    return calendar.settingTime(static_cast<int>(hour), 0, 0, tomorrow).value_or(tomorrow);
}

bool swipeIsTomorrow(Date now, const Calendar& calendar) {
    return calendar.component(CalendarComponent::hour, now) >= 7;
}

}  // namespace SnoozeTime

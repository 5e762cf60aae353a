#include "Platform/DateFormat.h"

#include <cmath>
#include <ctime>
#include <memory>
#include <tuple>
#include <utility>

#include <unicode/dtptngen.h>
#include <unicode/reldatefmt.h>
#include <unicode/smpdtfmt.h>
#include <unicode/timezone.h>

#include "Platform/Civil.h"
#include "Platform/Text.h"

namespace {

const char* const weekdayNames[] = {"Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat"};
const char* const monthNames[] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                  "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};

// English and POSIX locales get one fixed form with plain spaces, whatever the ICU data
// version says about separators. Writing it by hand also spares every run the loading
// of ICU's locale data.
bool isEnglish(const Calendar& calendar) {
    std::string id = calendar.localeId();
    return id.rfind("en", 0) == 0 && (id.size() == 2 || id[2] == '_' || id[2] == '-');
}

std::string english(Date date, const Calendar& calendar, bool withTime) {
    DateComponents c = calendar.components(date);
    int64_t weekday = calendar.component(CalendarComponent::weekday, date);
    std::string text = std::string(weekdayNames[(weekday + 6) % 7]) + ", " + monthNames[(*c.month + 11) % 12] + " ";
    Text::appendNumber(text, *c.day, 0);
    if (!withTime) return text;
    text += " at ";
    Text::appendNumber(text, *c.hour % 12 == 0 ? 12 : *c.hour % 12, 0);
    text += ':';
    Text::appendNumber(text, *c.minute, 2);
    return text + (*c.hour < 12 ? " AM" : " PM");
}

std::string localized(Date date, const Calendar& calendar, const char* skeleton) {
    // Building a formatter loads locale data; a thread keeps the last one it built.
    thread_local std::string cachedKey;
    thread_local std::unique_ptr<icu::SimpleDateFormat> cached;
    std::string key = calendar.localeId() + "|" + calendar.timeZoneId() + "|" + skeleton;
    if (!cached || cachedKey != key) {
        UErrorCode status = U_ZERO_ERROR;
        icu::Locale locale(calendar.localeId().c_str());
        std::unique_ptr<icu::DateTimePatternGenerator> generator(
            icu::DateTimePatternGenerator::createInstance(locale, status));
        if (U_FAILURE(status)) return "";
        icu::UnicodeString pattern = generator->getBestPattern(skeleton, status);
        auto formatter = std::make_unique<icu::SimpleDateFormat>(pattern, locale, status);
        if (U_FAILURE(status)) return "";
        formatter->adoptTimeZone(icu::TimeZone::createTimeZone(icu::UnicodeString::fromUTF8(calendar.timeZoneId())));
        cached = std::move(formatter);
        cachedKey = key;
    }
    icu::UnicodeString text;
    cached->format((date.seconds + Date::unixEpochOffset) * 1000.0, text);
    std::string result;
    text.toUTF8String(result);
    return result;
}

std::string englishRelative(const DateFormat::RelativeOffset& offset) {
    using Unit = DateFormat::RelativeOffset::Unit;
    static const char* const names[] = {"year", "month", "week", "day", "hour", "minute", "second"};
    const int64_t value = offset.value;
    if (offset.unit == Unit::second && value == 0) return "now";
    if (offset.unit == Unit::day && (value == 1 || value == -1)) return value == 1 ? "tomorrow" : "yesterday";
    const bool named = offset.unit == Unit::week || offset.unit == Unit::month || offset.unit == Unit::year;
    const char* name = names[static_cast<int>(offset.unit)];
    if (named && (value == 1 || value == -1)) return std::string(value == 1 ? "next " : "last ") + name;
    const unsigned long long count = value < 0 ? 0 - static_cast<unsigned long long>(value) : value;
    std::string amount = std::to_string(count) + " " + name + (count == 1 ? "" : "s");
    return value < 0 ? amount + " ago" : "in " + amount;
}

std::string localizedRelative(const DateFormat::RelativeOffset& offset, const Calendar& calendar) {
    static const URelativeDateTimeUnit units[] = {UDAT_REL_UNIT_YEAR, UDAT_REL_UNIT_MONTH,  UDAT_REL_UNIT_WEEK,
                                                  UDAT_REL_UNIT_DAY,  UDAT_REL_UNIT_HOUR,   UDAT_REL_UNIT_MINUTE,
                                                  UDAT_REL_UNIT_SECOND};
    thread_local std::string cachedLocale;
    thread_local std::unique_ptr<icu::RelativeDateTimeFormatter> cached;
    if (!cached || cachedLocale != calendar.localeId()) {
        UErrorCode status = U_ZERO_ERROR;
        auto formatter = std::make_unique<icu::RelativeDateTimeFormatter>(
            icu::Locale(calendar.localeId().c_str()), nullptr, UDAT_STYLE_LONG, UDISPCTX_CAPITALIZATION_NONE, status);
        if (U_FAILURE(status)) return englishRelative(offset);
        cached = std::move(formatter);
        cachedLocale = calendar.localeId();
    }
    UErrorCode status = U_ZERO_ERROR;
    icu::UnicodeString text;
    // The named form where the language has one ("tomorrow"), else the number.
    cached->format(static_cast<double>(offset.value), units[static_cast<int>(offset.unit)], text, status);
    if (U_FAILURE(status)) return englishRelative(offset);
    std::string result;
    text.toUTF8String(result);
    return result;
}

bool isDigit(char c) { return c >= '0' && c <= '9'; }

}  // namespace

namespace DateFormat {

// Reads the numeric fields y, M, d, H and m, quoted literals and punctuation. Each field
// takes one or more digits. The fields must name an existing wall time of the calendar:
// 30 February and a time that a clock change skips are refused, as a strict parser does.
std::optional<Date> parse(std::string_view text, std::string_view pattern, const Calendar& calendar) {
    DateComponents components{1970, 1, 1, 0, 0};
    size_t at = 0;
    for (size_t p = 0; p < pattern.size();) {
        char letter = pattern[p];
        if (letter == '\'') {
            size_t close = pattern.find('\'', p + 1);
            if (close == std::string_view::npos) return std::nullopt;
            std::string_view literal = pattern.substr(p + 1, close - p - 1);
            if (text.substr(at, literal.size()) != literal) return std::nullopt;
            at += literal.size();
            p = close + 1;
            continue;
        }
        size_t run = pattern.find_first_not_of(letter, p) - p;
        if (run > pattern.size()) run = pattern.size() - p;
        std::optional<int64_t>* field = nullptr;
        switch (letter) {
            case 'y': field = &components.year; break;
            case 'M': field = &components.month; break;
            case 'd': field = &components.day; break;
            case 'H': field = &components.hour; break;
            case 'm': field = &components.minute; break;
            default: break;
        }
        if (!field) {
            if (text.substr(at, run) != pattern.substr(p, run)) return std::nullopt;
            at += run;
        } else {
            size_t start = at;
            while (at < text.size() && isDigit(text[at]) && at - start < 9) ++at;
            if (at == start) return std::nullopt;
            *field = *Text::parseInt64(text.substr(start, at - start));
        }
        p += run;
    }
    if (at != text.size()) return std::nullopt;
    auto date = calendar.date(components);
    if (!date || calendar.components(*date) != components) return std::nullopt;
    return date;
}

std::string weekdayMonthDayTime(Date date, const Calendar& calendar) {
    return isEnglish(calendar) ? english(date, calendar, true) : localized(date, calendar, "EEEMMMdjmm");
}

std::string weekdayMonthDay(Date date, const Calendar& calendar) {
    return isEnglish(calendar) ? english(date, calendar, false) : localized(date, calendar, "EEEMMMd");
}

RelativeOffset relativeOffset(Date date, Date now, const Calendar& calendar) {
    using Unit = RelativeOffset::Unit;
    const int64_t days = calendar.daysBetween(now, date);
    if (days == 0) {
        // Less than a day by the wall clock: elapsed time, truncated.
        const double elapsed = date.timeIntervalSince(now);
        for (auto [unit, seconds] : {std::pair{Unit::hour, 3600.0}, {Unit::minute, 60.0}, {Unit::second, 1.0}}) {
            const double count = std::trunc(elapsed / seconds);
            if (count != 0 || unit == Unit::second) return {unit, static_cast<int64_t>(count)};
        }
    }
    const DateComponents from = calendar.components(now), to = calendar.components(date);
    // Whole months as a wall clock counts them: back one when the rest of the date hasn't come round.
    auto rest = [&](const DateComponents& c, Date moment) {
        return std::tuple(*c.day, *c.hour, *c.minute, calendar.component(CalendarComponent::second, moment));
    };
    const int64_t monthSpan = (*to.year * 12 + *to.month) - (*from.year * 12 + *from.month);
    int64_t months = monthSpan;
    if (months > 0 && rest(to, date) < rest(from, now)) --months;
    if (months < 0 && rest(to, date) > rest(from, now)) ++months;
    if (months / 12 != 0) return {Unit::year, *to.year - *from.year};
    if (months != 0) return {Unit::month, monthSpan};
    const int64_t calendarDays = calendar.daysBetween(calendar.startOfDay(now), calendar.startOfDay(date));
    if (days >= 7 || days <= -7) {
        // Whole weeks between the starts of the two weeks.
        auto intoWeek = [&](Date moment) {
            return (calendar.component(CalendarComponent::weekday, moment) - calendar.firstWeekday() + 7) % 7;
        };
        return {Unit::week, (calendarDays - intoWeek(date) + intoWeek(now)) / 7};
    }
    return {Unit::day, calendarDays};
}

std::string relative(Date date, Date now, const Calendar& calendar) {
    const RelativeOffset offset = relativeOffset(date, now, calendar);
    return isEnglish(calendar) ? englishRelative(offset) : localizedRelative(offset, calendar);
}

std::string iso8601(Date date) {
    const double seconds = std::floor(date.unixSeconds());
    if (!(seconds > -6e13 && seconds < 2.5e14)) return "";
    const auto whole = static_cast<int64_t>(seconds);
    const int64_t days = Civil::floorDiv(whole, 86400), secondOfDay = whole - days * 86400;
    const Civil::Day day = Civil::dayOf(days);
    std::string text;
    text.reserve(20);
    Text::appendNumber(text, day.year, 4);
    for (auto [separator, value] : {std::pair{'-', day.month}, {'-', day.day}, {'T', secondOfDay / 3600},
                                    {':', secondOfDay / 60 % 60}, {':', secondOfDay % 60}}) {
        text += separator;
        Text::appendNumber(text, value, 2);
    }
    return text + 'Z';
}

}  // namespace DateFormat

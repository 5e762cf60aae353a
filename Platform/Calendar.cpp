#include "Platform/Calendar.h"

#include <cstdlib>
#include <limits>

#include <unicode/gregocal.h>
#include <unicode/locid.h>
#include <unicode/timezone.h>

namespace {

UDate toUDate(Date date) { return (date.seconds + Date::unixEpochOffset) * 1000.0; }
Date fromUDate(UDate udate) { return Date{udate / 1000.0 - Date::unixEpochOffset}; }

UCalendarDateFields field(CalendarComponent component) {
    switch (component) {
        case CalendarComponent::year: return UCAL_YEAR;
        case CalendarComponent::month: return UCAL_MONTH;
        case CalendarComponent::day: return UCAL_DATE;
        case CalendarComponent::hour: return UCAL_HOUR_OF_DAY;
        case CalendarComponent::minute: return UCAL_MINUTE;
        case CalendarComponent::second: return UCAL_SECOND;
        case CalendarComponent::weekday: return UCAL_DAY_OF_WEEK;
        case CalendarComponent::weekOfYear: return UCAL_WEEK_OF_YEAR;
    }
    return UCAL_DATE;
}

bool fitsInt32(int64_t value) {
    return value >= std::numeric_limits<int32_t>::min() && value <= std::numeric_limits<int32_t>::max();
}

// The locale id of a POSIX locale name such as "en_US.UTF-8" or "de_DE@euro".
std::string localeFromEnvironment() {
    for (const char* name : {"LC_ALL", "LC_TIME", "LANG"}) {
        const char* value = std::getenv(name);
        if (!value || !*value) continue;
        std::string id(value);
        id = id.substr(0, id.find_first_of(".@"));
        if (id == "C" || id == "POSIX" || id.empty()) return "en_US_POSIX";
        return id;
    }
    return "en_US_POSIX";
}

}  // namespace

Calendar::Calendar(const std::string& timeZone, const std::string& locale) : locale_(locale) {
    UErrorCode status = U_ZERO_ERROR;
    icu::TimeZone* zone = icu::TimeZone::createTimeZone(icu::UnicodeString::fromUTF8(timeZone));
    calendar_.reset(new icu::GregorianCalendar(zone, icu::Locale(locale.c_str()), status));
    if (U_FAILURE(status)) {
        status = U_ZERO_ERROR;
        calendar_.reset(new icu::GregorianCalendar(icu::TimeZone::getGMT()->clone(), icu::Locale::getRoot(), status));
    }
    calendar_->setLenient(true);
    // A wall time that happens twice means its first occurrence; one that a clock change
    // skips moves forward by the length of the gap.
    calendar_->setRepeatedWallTimeOption(UCAL_WALLTIME_FIRST);
    calendar_->setSkippedWallTimeOption(UCAL_WALLTIME_LAST);
}

Calendar::Calendar(const Calendar& other) : calendar_(other.calendar_->clone()), locale_(other.locale_) {}

Calendar& Calendar::operator=(const Calendar& other) {
    if (this != &other) {
        calendar_.reset(other.calendar_->clone());
        locale_ = other.locale_;
    }
    return *this;
}

Calendar::Calendar(Calendar&&) noexcept = default;
Calendar& Calendar::operator=(Calendar&&) noexcept = default;
Calendar::~Calendar() = default;

Calendar Calendar::current() {
    std::unique_ptr<icu::TimeZone> zone(icu::TimeZone::detectHostTimeZone());
    icu::UnicodeString id;
    zone->getID(id);
    std::string zoneId;
    id.toUTF8String(zoneId);
    return Calendar(zoneId, localeFromEnvironment());
}

std::string Calendar::timeZoneId() const {
    icu::UnicodeString id;
    calendar_->getTimeZone().getID(id);
    std::string result;
    id.toUTF8String(result);
    return result;
}

std::string Calendar::localeId() const { return locale_; }

int Calendar::firstWeekday() const { return calendar_->getFirstDayOfWeek(); }

Date Calendar::startOfDay(Date date) const {
    UErrorCode status = U_ZERO_ERROR;
    calendar_->setTime(toUDate(date), status);
    // Where midnight falls in a gap, the day starts at the first moment after it.
    calendar_->setSkippedWallTimeOption(UCAL_WALLTIME_NEXT_VALID);
    calendar_->set(UCAL_HOUR_OF_DAY, 0);
    calendar_->set(UCAL_MINUTE, 0);
    calendar_->set(UCAL_SECOND, 0);
    calendar_->set(UCAL_MILLISECOND, 0);
    UDate result = calendar_->getTime(status);
    calendar_->setSkippedWallTimeOption(UCAL_WALLTIME_LAST);
    return U_FAILURE(status) ? date : fromUDate(result);
}

std::optional<Date> Calendar::adding(CalendarComponent component, int64_t value, Date date) const {
    if (!fitsInt32(value)) return std::nullopt;
    UErrorCode status = U_ZERO_ERROR;
    calendar_->setTime(toUDate(date), status);
    calendar_->add(field(component), static_cast<int32_t>(value), status);
    UDate result = calendar_->getTime(status);
    if (U_FAILURE(status)) return std::nullopt;
    return fromUDate(result);
}

DateComponents Calendar::components(Date date) const {
    UErrorCode status = U_ZERO_ERROR;
    calendar_->setTime(toUDate(date), status);
    DateComponents components;
    components.year = calendar_->get(UCAL_YEAR, status);
    components.month = calendar_->get(UCAL_MONTH, status) + 1;
    components.day = calendar_->get(UCAL_DATE, status);
    components.hour = calendar_->get(UCAL_HOUR_OF_DAY, status);
    components.minute = calendar_->get(UCAL_MINUTE, status);
    return components;
}

int64_t Calendar::component(CalendarComponent component, Date date) const {
    UErrorCode status = U_ZERO_ERROR;
    calendar_->setTime(toUDate(date), status);
    int32_t value = calendar_->get(field(component), status);
    return component == CalendarComponent::month ? value + 1 : value;
}

std::optional<Date> Calendar::date(const DateComponents& c) const {
    int64_t year = c.year.value_or(1), month = c.month.value_or(1), day = c.day.value_or(1);
    int64_t hour = c.hour.value_or(0), minute = c.minute.value_or(0);
    for (int64_t value : {year, month - 1, day, hour, minute})
        if (!fitsInt32(value)) return std::nullopt;
    UErrorCode status = U_ZERO_ERROR;
    calendar_->clear();
    calendar_->set(static_cast<int32_t>(year), static_cast<int32_t>(month - 1), static_cast<int32_t>(day),
                   static_cast<int32_t>(hour), static_cast<int32_t>(minute), 0);
    UDate result = calendar_->getTime(status);
    if (U_FAILURE(status)) return std::nullopt;
    return fromUDate(result);
}

std::optional<Calendar::Interval> Calendar::interval(CalendarComponent unit, Date date) const {
    std::optional<Date> start, end;
    switch (unit) {
        case CalendarComponent::hour: {
            UErrorCode status = U_ZERO_ERROR;
            calendar_->setTime(toUDate(date), status);
            calendar_->set(UCAL_MINUTE, 0);
            calendar_->set(UCAL_SECOND, 0);
            calendar_->set(UCAL_MILLISECOND, 0);
            UDate udate = calendar_->getTime(status);
            if (U_FAILURE(status)) return std::nullopt;
            start = fromUDate(udate);
            // An hour is an hour of elapsed time, also across a clock change.
            end = start->addingTimeInterval(3600);
            break;
        }
        case CalendarComponent::day:
            start = startOfDay(date);
            if (auto next = adding(CalendarComponent::day, 1, *start)) end = startOfDay(*next);
            break;
        case CalendarComponent::weekOfYear: {
            Date today = startOfDay(date);
            int64_t back = (component(CalendarComponent::weekday, date) - firstWeekday() + 7) % 7;
            if (auto first = adding(CalendarComponent::day, -back, today)) start = startOfDay(*first);
            if (start)
                if (auto next = adding(CalendarComponent::day, 7, *start)) end = startOfDay(*next);
            break;
        }
        default:
            return std::nullopt;
    }
    if (!start || !end) return std::nullopt;
    return Interval{*start, end->timeIntervalSince(*start)};
}

std::optional<Date> Calendar::settingTime(int hour, int minute, int second, Date date) const {
    if (hour < 0 || hour > 23 || minute < 0 || minute > 59 || second < 0 || second > 59) return std::nullopt;
    UErrorCode status = U_ZERO_ERROR;
    calendar_->setTime(toUDate(date), status);
    calendar_->setSkippedWallTimeOption(UCAL_WALLTIME_NEXT_VALID);
    calendar_->set(UCAL_HOUR_OF_DAY, hour);
    calendar_->set(UCAL_MINUTE, minute);
    calendar_->set(UCAL_SECOND, second);
    calendar_->set(UCAL_MILLISECOND, 0);
    UDate result = calendar_->getTime(status);
    calendar_->setSkippedWallTimeOption(UCAL_WALLTIME_LAST);
    if (U_FAILURE(status)) return std::nullopt;
    return fromUDate(result);
}

int64_t Calendar::daysBetween(Date from, Date to) const {
    UErrorCode status = U_ZERO_ERROR;
    calendar_->setTime(toUDate(from), status);
    int32_t days = calendar_->fieldDifference(toUDate(to), UCAL_DATE, status);
    return U_FAILURE(status) ? 0 : days;
}

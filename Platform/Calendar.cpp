#include "Platform/Calendar.h"

#include <atomic>
#include <cmath>
#include <cstdlib>
#include <limits>

#include <unicode/basictz.h>
#include <unicode/gregocal.h>
#include <unicode/locid.h>
#include <unicode/timezone.h>
#include <unicode/tztrans.h>

#include "Platform/Civil.h"

namespace {

constexpr double millisPerDay = 86400000;

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

using Civil::floorDiv;

int64_t daysFromCivil(int64_t year, int64_t month, int64_t day) { return Civil::daysFrom(year, month, day); }

DateComponents civilFromDays(int64_t days) {
    Civil::Day day = Civil::dayOf(days);
    return {day.year, day.month, day.day, {}, {}};
}

// The Julian calendar reigns before October 1582; the arithmetic here is Gregorian only.
const int64_t firstFastDay = daysFromCivil(1583, 1, 1);
const int64_t lastFastDay = daysFromCivil(9999, 12, 31);

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

const icu::BasicTimeZone* basicZone(const icu::Calendar& calendar) {
    return dynamic_cast<const icu::BasicTimeZone*>(&calendar.getTimeZone());
}

std::atomic<uint64_t> lastZoneKey{0};

// A stretch of time between two transitions of a zone, in which its offset holds.
struct Stretch {
    uint64_t zoneKey = 0;
    double from = 0, to = 0;  // milliseconds since 1970, [from, to)
    int32_t offset = 0;
};
// Asking ICU for an offset costs a tenth of a microsecond and more; most questions fall
// into the few stretches just asked about. Per thread, so no lock is needed.
thread_local Stretch stretches[8];
thread_local unsigned nextStretch = 0;

// Wall times within this distance of a transition are left to ICU's own rules for gaps
// and repeated times; no zone moves its clock by more than a day at once.
constexpr double clearOfTransitions = 2 * millisPerDay;

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
    calendar_->setRepeatedWallTimeOption(UCAL_WALLTIME_FIRST);
    calendar_->setSkippedWallTimeOption(UCAL_WALLTIME_LAST);
    zone_ = basicZone(*calendar_);
    zoneKey_ = ++lastZoneKey;
}

Calendar::Calendar(const Calendar& other) : zoneKey_(other.zoneKey_), locale_(other.locale_) {
    std::lock_guard guard(other.lock_);
    calendar_.reset(other.calendar_->clone());
    zone_ = basicZone(*calendar_);
}

Calendar& Calendar::operator=(const Calendar& other) {
    if (this != &other) {
        Calendar copy(other);
        *this = std::move(copy);
    }
    return *this;
}

Calendar::Calendar(Calendar&& other) noexcept
    : calendar_(std::move(other.calendar_)),
      zone_(other.zone_),
      zoneKey_(other.zoneKey_),
      locale_(std::move(other.locale_)) {}

Calendar& Calendar::operator=(Calendar&& other) noexcept {
    calendar_ = std::move(other.calendar_);
    zone_ = other.zone_;
    zoneKey_ = other.zoneKey_;
    locale_ = std::move(other.locale_);
    return *this;
}

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

std::optional<int32_t> Calendar::offsetAt(double udate) const {
    for (const Stretch& stretch : stretches)
        if (stretch.zoneKey == zoneKey_ && udate >= stretch.from && udate < stretch.to) return stretch.offset;
    int32_t raw = 0, dst = 0;
    UErrorCode status = U_ZERO_ERROR;
    zone_->getOffset(udate, false, raw, dst, status);
    if (U_FAILURE(status)) return std::nullopt;
    Stretch stretch{zoneKey_, -HUGE_VAL, HUGE_VAL, raw + dst};
    {
        // ICU builds a zone's transition rules on first use, and two threads doing so at
        // once corrupt them.
        std::lock_guard guard(lock_);
        icu::TimeZoneTransition transition;
        if (zone_->getPreviousTransition(udate, true, transition)) stretch.from = transition.getTime();
        if (zone_->getNextTransition(udate, false, transition)) stretch.to = transition.getTime();
    }
    stretches[nextStretch++ % std::size(stretches)] = stretch;
    return stretch.offset;
}

std::optional<Calendar::Wall> Calendar::wall(Date date) const {
    if (!zone_ || !std::isfinite(date.seconds)) return std::nullopt;
    UDate udate = toUDate(date);
    auto offset = offsetAt(udate);
    if (!offset) return std::nullopt;
    double local = udate + *offset;
    double day = std::floor(local / millisPerDay);
    if (day < firstFastDay || day > lastFastDay) return std::nullopt;
    return Wall{static_cast<int64_t>(day), local - day * millisPerDay};
}

std::optional<Date> Calendar::fromWall(double wallMillisecond, bool nextValidInGap) const {
    if (!zone_) return std::nullopt;
    double day = std::floor(wallMillisecond / millisPerDay);
    if (day < firstFastDay || day > lastFastDay) return std::nullopt;
    // Well inside a stretch, a wall time names exactly one moment.
    for (const Stretch& stretch : stretches) {
        double udate = wallMillisecond - stretch.offset;
        if (stretch.zoneKey == zoneKey_ && udate >= stretch.from + clearOfTransitions &&
            udate < stretch.to - clearOfTransitions)
            return fromUDate(udate);
    }
    int32_t raw = 0, dst = 0;
    UErrorCode status = U_ZERO_ERROR;
    // The offset from before a transition: a skipped wall time moves forward by the gap,
    // a repeated one is its first occurrence.
    zone_->getOffsetFromLocal(wallMillisecond, UCAL_TZ_LOCAL_FORMER, UCAL_TZ_LOCAL_FORMER, raw, dst, status);
    if (U_FAILURE(status)) return std::nullopt;
    Date date = fromUDate(wallMillisecond - raw - dst);
    auto back = wall(date);  // also puts the stretch of `date` into the cache
    // In a gap: the first moment after it is where the transition lies; ICU finds it.
    if (nextValidInGap && (!back || std::fabs(back->day * millisPerDay + back->millisecond - wallMillisecond) > 0.5))
        return std::nullopt;
    return date;
}

Date Calendar::startOfDay(Date date) const {
    if (auto w = wall(date))
        if (auto start = fromWall(w->day * millisPerDay, true)) return *start;
    std::lock_guard guard(lock_);
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
    std::lock_guard guard(lock_);
    UErrorCode status = U_ZERO_ERROR;
    calendar_->setTime(toUDate(date), status);
    calendar_->add(field(component), static_cast<int32_t>(value), status);
    UDate result = calendar_->getTime(status);
    if (U_FAILURE(status)) return std::nullopt;
    return fromUDate(result);
}

DateComponents Calendar::components(Date date) const {
    if (auto w = wall(date)) {
        DateComponents components = civilFromDays(w->day);
        auto minutes = static_cast<int64_t>(std::floor(w->millisecond / 60000));
        components.hour = minutes / 60;
        components.minute = minutes % 60;
        return components;
    }
    std::lock_guard guard(lock_);
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
    if (component != CalendarComponent::weekOfYear) {
        if (auto w = wall(date)) {
            auto seconds = static_cast<int64_t>(std::floor(w->millisecond / 1000));
            switch (component) {
                case CalendarComponent::year: return *civilFromDays(w->day).year;
                case CalendarComponent::month: return *civilFromDays(w->day).month;
                case CalendarComponent::day: return *civilFromDays(w->day).day;
                case CalendarComponent::hour: return seconds / 3600;
                case CalendarComponent::minute: return seconds / 60 % 60;
                case CalendarComponent::second: return seconds % 60;
                // 1970-01-01 was a Thursday, weekday 5.
                case CalendarComponent::weekday: return (w->day % 7 + 7 + 4) % 7 + 1;
                case CalendarComponent::weekOfYear: break;
            }
        }
    }
    std::lock_guard guard(lock_);
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
    int64_t monthIndex = month - 1;
    int64_t days =
        daysFromCivil(year + floorDiv(monthIndex, 12), monthIndex - floorDiv(monthIndex, 12) * 12 + 1, 1) + (day - 1);
    double wallMillisecond = static_cast<double>(days) * millisPerDay + static_cast<double>(hour) * 3600000.0 +
                             static_cast<double>(minute) * 60000.0;
    if (auto date = fromWall(wallMillisecond, false)) return date;

    std::lock_guard guard(lock_);
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
            if (auto w = wall(date)) {
                start = date.addingTimeInterval(-std::fmod(w->millisecond, 3600000.0) / 1000.0);
            } else {
                std::lock_guard guard(lock_);
                UErrorCode status = U_ZERO_ERROR;
                calendar_->setTime(toUDate(date), status);
                calendar_->set(UCAL_MINUTE, 0);
                calendar_->set(UCAL_SECOND, 0);
                calendar_->set(UCAL_MILLISECOND, 0);
                UDate udate = calendar_->getTime(status);
                if (U_FAILURE(status)) return std::nullopt;
                start = fromUDate(udate);
            }
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
        default: return std::nullopt;
    }
    if (!start || !end) return std::nullopt;
    return Interval{*start, end->timeIntervalSince(*start)};
}

std::optional<Date> Calendar::settingTime(int hour, int minute, int second, Date date) const {
    if (hour < 0 || hour > 23 || minute < 0 || minute > 59 || second < 0 || second > 59) return std::nullopt;
    if (auto w = wall(date))
        if (auto result = fromWall(w->day * millisPerDay + hour * 3600000.0 + minute * 60000.0 + second * 1000.0, true))
            return result;
    std::lock_guard guard(lock_);
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
    auto a = wall(from), b = wall(to);
    if (a && b) {
        int64_t days = b->day - a->day;
        if (days > 0 && b->millisecond < a->millisecond) --days;
        if (days < 0 && b->millisecond > a->millisecond) ++days;
        return days;
    }
    std::lock_guard guard(lock_);
    UErrorCode status = U_ZERO_ERROR;
    calendar_->setTime(toUDate(from), status);
    int32_t days = calendar_->fieldDifference(toUDate(to), UCAL_DATE, status);
    return U_FAILURE(status) ? 0 : days;
}

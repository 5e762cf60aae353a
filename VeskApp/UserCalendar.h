#pragma once

#include <memory>
#include <mutex>

#include "Platform/Calendar.h"

// The user's calendar, read again when the system's time zone changes; shared by the
// loop and the requests' threads.
class UserCalendar {
public:
    UserCalendar() : calendar_(std::make_shared<const Calendar>(Calendar::current())) {}

    Calendar get() const {
        std::lock_guard guard(lock_);
        return *calendar_;
    }
    void reload() {
        auto fresh = std::make_shared<const Calendar>(Calendar::current());
        std::lock_guard guard(lock_);
        calendar_ = std::move(fresh);
    }

private:
    mutable std::mutex lock_;
    std::shared_ptr<const Calendar> calendar_;
};

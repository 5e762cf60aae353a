#pragma once

#include <optional>

#include "Platform/Date.h"
#include "VeskApp/Activity.h"
#include "VeskApp/Config.h"
#include "VeskApp/Notifier.h"
#include "VeskApp/SessionIdle.h"
#include "VeskApp/Store.h"
#include "VeskApp/UserCalendar.h"

// The rounds of the scheduler, run on the loop's thread: shows what came due, keeps up to
// when it did, and says when to look again.
class Nagging {
public:
    Nagging(Store& store, const Config& config, Activity& activity, UserCalendar& calendar, Notifier& notifier,
            SessionIdle& idle, bool verbose);

    // One round at the clock's `now`; `woken` is the moment the timer was set for, when
    // that is why the round runs. Returns when the next round is due, or nothing while the
    // store can't be used.
    std::optional<Date> round(Date now, std::optional<Date> woken);

private:
    Store& store_;
    const Config& config_;
    Activity& activity_;
    UserCalendar& calendar_;
    Notifier& notifier_;
    SessionIdle& idle_;
    const bool verbose_;
};

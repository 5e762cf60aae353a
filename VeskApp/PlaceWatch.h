#pragma once

#include <functional>
#include <string>
#include <vector>

#include "Platform/Date.h"
#include "VeskApp/Activity.h"
#include "VeskApp/Config.h"
#include "VeskApp/GeoClue.h"
#include "VeskApp/Store.h"
#include "VeskApp/UserCalendar.h"

// Follows the position while open reminders wait on stored places, and records every fix
// in the store. Runs on the thread of the app's loop.
class PlaceWatch {
public:
    // `changed` is called after a fix was recorded, so that the plan is made again.
    PlaceWatch(Store& store, const Config& config, Activity& activity, UserCalendar& calendar,
               std::function<void()> changed, bool verbose);

    // Starts or stops following as the store needs it now.
    void update(Date now);
    Bus& bus() { return follower_.bus(); }
    void process() { follower_.process(); }

private:
    void fixed(const Fix& fix);
    void failed(const GeoClue::Problem& problem);

    Store& store_;
    const Config& config_;
    Activity& activity_;
    UserCalendar& calendar_;
    std::function<void()> changed_;
    const bool verbose_;
    GeoClue::Follower follower_;
    std::vector<std::string> wanted_;  // the places following was last wanted for
    bool gaveUp_ = false;              // following failed for those: not asked again until they change
    bool saidWhy_ = false;             // the log tells why places can't be watched once
};

#include "VeskApp/PlaceWatch.h"

#include <iostream>

#include "VeskApp/Watching.h"
#include "VeskIPC/Wire.h"

PlaceWatch::PlaceWatch(Store& store, const Config& config, Activity& activity, UserCalendar& calendar,
                       std::function<void()> changed, bool verbose)
    : store_(store),
      config_(config),
      activity_(activity),
      calendar_(calendar),
      changed_(std::move(changed)),
      verbose_(verbose),
      follower_([this](const Fix& fix) { fixed(fix); }, [this](const GeoClue::Problem& problem) { failed(problem); }) {}

void PlaceWatch::update(Date now) {
    if (store_.failure()) return;
    auto data = store_.data();
    std::vector<std::string> wanted = Watching::needed(*data, config_, activity_.me(now), now, calendar_.get());
    // A service that refused is asked again only for other places: it may ask the user each time.
    if (wanted != wanted_) gaveUp_ = false;
    wanted_ = std::move(wanted);
    if (!wanted_.empty()) {
        if (!gaveUp_) follower_.follow();
        return;
    }
    follower_.stop();
    if (!data->presence.empty()) {
        try {
            Watching::forget(store_);
        } catch (const WireError& error) {
            std::cerr << "vesk-app: " << error.message << "\n";
        }
    }
}

void PlaceWatch::fixed(const Fix& fix) {
    try {
        for (const Crossing& crossing : Watching::record(store_, fix, Date::now()))
            if (verbose_)
                std::cerr << "vesk-app: " << (crossing.edge == PlaceTrigger::Edge::arrive ? "arrived at " : "left ")
                          << crossing.place << "\n";
        saidWhy_ = false;
        changed_();
    } catch (const WireError& error) {
        std::cerr << "vesk-app: " << error.message << "\n";
    }
}

void PlaceWatch::failed(const GeoClue::Problem& problem) {
    gaveUp_ = true;
    if (!saidWhy_) std::cerr << "vesk-app: can't watch places: " << problem.message << "\n";
    saidWhy_ = true;
}

#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <mutex>
#include <string>

#include "Platform/Calendar.h"
#include "Platform/Date.h"
#include "VeskApp/Activity.h"
#include "VeskApp/Config.h"
#include "VeskApp/Geocoder.h"
#include "VeskApp/Planning.h"
#include "VeskApp/Regions.h"
#include "VeskApp/Store.h"
#include "VeskIPC/Wire.h"
#include "VeskParse/ModelReading.h"

// Answers the requests of `vesk` from the store, with the grammar, the planner and the
// listing. May run on several threads at once; changes to the store run one at a time.
class Handler {
public:
    // What the handler asks of the world, so that tests can pin it.
    struct World {
        std::function<Date()> now;
        std::function<Calendar()> calendar;          // the user's, at this moment
        std::function<std::string()> notifications;  // "granted" or "unavailable"
        std::function<void()> changed;               // after every change that was saved
        // A second reader of sentences the grammar leaves words of, and how long to wait for it.
        std::shared_ptr<const LanguageModelParsing> model{};
        std::chrono::milliseconds modelTimeout{0};
        std::function<std::string()> modelStatus{};  // doctor's "model"; "off" when absent
        // Where this machine is, and where an address is; both throw WireError when they can't say.
        std::function<Fix()> here{};
        std::function<Geocoder::Found(const std::string& search)> geocode{};
    };

    Handler(Store& store, Config config, Activity& activity, World world);

    // The answer; refusals are thrown as WireError.
    Response answer(const Request& request);

    // The actions of a notification, by the reminder's key: done as `vesk done` does it,
    // and the one-gesture snooze. Refusals are thrown as WireError.
    void complete(const std::string& key);
    void snoozeOnce(const std::string& key);

private:
    struct Moment {
        Date now;
        Calendar calendar;
    };

    Response add(const Request::Add& add, const Moment& moment);
    Response list(Request::Section section, const Moment& moment);
    Response done(const std::string& reference, const Moment& moment);
    Response snooze(const Request::Snooze& snooze, const Moment& moment);
    Response remove(const std::string& reference, const Moment& moment);
    Response addPlace(const Request::AddPlace& add, const Moment& moment);
    Response removePlace(const std::string& name);
    Response setSetting(const Request::SetSetting& set);
    Response lists();
    Response places();
    Response settings();
    Response doctor();

    void complete(const std::string& key, const Moment& moment);
    void snoozeUntil(const std::string& key, Date until);
    std::vector<ReminderDTO> rows(const std::shared_ptr<const StoreData>& data, const Moment& moment,
                                  Request::Section section = Request::Section::all) const;
    // The planner's view of the store as it is, made again only after a change.
    std::shared_ptr<const Planning::Reminders> reminders(const std::shared_ptr<const StoreData>& data,
                                                         const Calendar& calendar) const;
    ReminderDTO resolve(const std::string& reference, const Moment& moment) const;
    // Saves `change` with this device's record, and tells the world.
    std::shared_ptr<const StoreData> change(const std::function<void(StoredReminder&)>& change, const std::string& key);
    std::shared_ptr<const StoreData> change(const std::function<void(StoreData&)>& change);

    Store& store_;
    const Config config_;
    Activity& activity_;
    World world_;
    mutable std::mutex viewing_;  // guards the three below
    mutable std::shared_ptr<const StoreData> viewed_;
    mutable std::string viewedZone_;
    mutable std::shared_ptr<const Planning::Reminders> view_;
};

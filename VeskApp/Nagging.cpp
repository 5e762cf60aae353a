#include "VeskApp/Nagging.h"

#include <iostream>
#include <set>

#include "VeskApp/Planning.h"
#include "VeskApp/Scheduler.h"
#include "VeskParse/SnoozeTime.h"

Nagging::Nagging(Store& store, const Config& config, Activity& activity, UserCalendar& calendar, Notifier& notifier,
                 SessionIdle& idle, bool verbose)
    : store_(store),
      config_(config),
      activity_(activity),
      calendar_(calendar),
      notifier_(notifier),
      idle_(idle),
      verbose_(verbose) {}

std::optional<Date> Nagging::round(Date now, std::optional<Date> woken) {
    if (store_.failure()) return std::nullopt;
    // Woken for a moment, the round covers it, even should the clock read a hair before.
    if (woken && *woken > now) now = *woken;
    // A user at the machine counts as a sign of use at every round.
    if (idle_.present() == true) activity_.touch(now);
    if (!notifier_.connected()) notifier_.connect();

    const Calendar calendar = calendar_.get();
    auto data = store_.data();
    const Device me = activity_.me(now);
    Scheduler::Round round = Scheduler::round(*data, config_, me, now, calendar);
    if (round.deliveredUpTo != data->deliveredUpTo) {
        try {
            // Saved before anything is shown: a crash in between loses an alert, never repeats one.
            data = store_.change([&](StoreData& saved) {
                saved.deliveredUpTo = round.deliveredUpTo;
                saved.device = activity_.record();
            });
        } catch (const WireError& error) {
            std::cerr << "vesk-app: " << error.message << "\n";
            round.due.clear();
        }
    }
    if (!round.due.empty() || notifier_.showsAnything()) {
        const auto rows = Planning::rows(*data, config_, me, now, calendar, Request::Section::now);
        std::set<std::string> dueNow;
        for (const auto& row : rows) dueNow.insert(row.id);
        notifier_.withdrawAllBut(dueNow);
        const std::string snooze =
            SnoozeTime::swipeIsTomorrow(now, calendar) ? "Snooze till tomorrow" : "Snooze 8 hours";
        for (const PlannedAlert& alert : round.due) {
            std::string body;
            for (const auto& row : rows)
                if (row.id == alert.key) body = row.detail;
            notifier_.show(alert, body, snooze);
            if (verbose_) std::cerr << "vesk-app: alert " << alert.id() << "\n";
        }
    }
    return round.nextWake;
}

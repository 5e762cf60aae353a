#pragma once

#include <sys/types.h>

#include <cstdint>
#include <string>

struct sd_bus;

// A bus of a test's own: a dbus-daemon listening in `directory`, so that nothing reaches
// the desktop of whoever runs the tests. A call for org.freedesktop.Notifications has the
// bus start vesk-notifyd, which records what it is shown in `serverLog`, as a desktop's
// server started on demand would.
//
//     PrivateBus bus(app.base(), app.base() + "/shown");
//     app.environment["DBUS_SESSION_BUS_ADDRESS"] = bus.address();
//     bus.startServer();                 // or leave it to the first notification
//     bus.invoke(1, "done");             // the user clicks Done on notification 1
//
// The server and the bus end with it.
class PrivateBus {
public:
    // Throws when the bus doesn't answer within 5 seconds.
    PrivateBus(const std::string& directory, const std::string& serverLog);
    ~PrivateBus();
    PrivateBus(const PrivateBus&) = delete;
    PrivateBus& operator=(const PrivateBus&) = delete;

    const std::string& address() const { return address_; }

    // Starts the notification server now; returns once it serves.
    void startServer();
    // Ends the notification server, when one runs, and waits until it is gone.
    void endServer();
    // Has the server say that the user clicked `action` on notification `id`; the failure, if any.
    std::string invoke(uint32_t id, const std::string& action);

private:
    std::string address_;
    pid_t daemon_ = -1;
    sd_bus* bus_ = nullptr;
};

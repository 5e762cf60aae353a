#pragma once

#include <systemd/sd-bus.h>

#include <chrono>
#include <csignal>
#include <cstdint>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <thread>

#include "Process.h"

// A bus of a test's own: a dbus-daemon listening in `directory`, so that nothing reaches
// the desktop of whoever runs the tests. A call for org.freedesktop.Notifications has the
// bus start vesk-notifyd, which records what it is shown in `serverLog`, as a desktop's
// server started on demand would. The server and the bus end with it.
class PrivateBus {
public:
    // Throws when the bus doesn't answer within 5 seconds.
    PrivateBus(const std::string& directory, const std::string& serverLog)
        : address_("unix:path=" + directory + "/bus") {
        const std::string services = directory + "/services";
        std::filesystem::create_directories(services);
        writeFile(services + "/notifications.service", std::string("[D-BUS Service]\nName=") + service +
                                                           "\nExec=" + NOTIFYD_BINARY + " " + serverLog + "\n");
        // Anyone may own any name and call anything; services come from `services` alone.
        writeFile(directory + "/bus.conf",
                  "<busconfig><type>session</type><listen>" + address_ + "</listen><auth>EXTERNAL</auth><servicedir>" +
                      services +
                      "</servicedir><policy context=\"default\"><allow send_destination=\"*\"/>"
                      "<allow receive_sender=\"*\"/><allow own=\"*\"/></policy></busconfig>\n");
        Environment environment = testEnvironment();
        environment["DBUS_SESSION_BUS_ADDRESS"] = address_;  // for the servers it starts
        daemon_ = spawnProcess({"dbus-daemon", "--config-file=" + directory + "/bus.conf", "--nofork"}, environment);
        for (int attempt = 0; attempt < 500 && !bus_; ++attempt) {
            if (sd_bus_new(&bus_) < 0 || sd_bus_set_address(bus_, address_.c_str()) < 0 ||
                sd_bus_set_bus_client(bus_, 1) < 0 || sd_bus_start(bus_) < 0) {
                bus_ = sd_bus_unref(bus_);
                std::this_thread::sleep_for(std::chrono::milliseconds(10));
            }
        }
        if (!bus_) {
            endProcess(daemon_, SIGTERM);
            throw std::runtime_error("private bus: dbus-daemon doesn't answer at " + address_);
        }
    }
    ~PrivateBus() {
        endServer();
        sd_bus_flush_close_unref(bus_);
        endProcess(daemon_, SIGTERM);
    }
    PrivateBus(const PrivateBus&) = delete;
    PrivateBus& operator=(const PrivateBus&) = delete;

    const std::string& address() const { return address_; }

    // Starts the notification server now (any call does), and returns once it serves.
    void startServer() {
        if (sd_bus_call_method(bus_, service, path, "org.freedesktop.DBus.Peer", "Ping", nullptr, nullptr, "") < 0)
            throw std::runtime_error("private bus: vesk-notifyd doesn't start");
    }
    // Ends the notification server, when one runs, and waits until it is gone.
    void endServer() {
        sd_bus_creds* creds = nullptr;
        pid_t pid = -1;
        if (sd_bus_get_name_creds(bus_, service, SD_BUS_CREDS_PID, &creds) >= 0) sd_bus_creds_get_pid(creds, &pid);
        sd_bus_creds_unref(creds);
        if (pid > 0) endProcess(pid, SIGTERM);
    }
    // Has the server say that the user clicked `action` on notification `id`; the failure, if any.
    std::string invoke(uint32_t id, const std::string& action) {
        sd_bus_error error = SD_BUS_ERROR_NULL;
        int r = sd_bus_call_method(bus_, service, path, service, "Invoke", &error, nullptr, "us", id, action.c_str());
        std::string failure = r >= 0 ? "" : error.message ? error.message : "Invoke failed";
        sd_bus_error_free(&error);
        return failure;
    }

private:
    static constexpr const char* service = "org.freedesktop.Notifications";
    static constexpr const char* path = "/org/freedesktop/Notifications";

    std::string address_;
    pid_t daemon_ = -1;
    sd_bus* bus_ = nullptr;
};

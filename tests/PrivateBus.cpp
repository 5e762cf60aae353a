#include "PrivateBus.h"

#include <chrono>
#include <csignal>
#include <filesystem>
#include <stdexcept>
#include <thread>

#include <systemd/sd-bus.h>

#include "Process.h"

namespace {

const char* const service = "org.freedesktop.Notifications";
const char* const objectPath = "/org/freedesktop/Notifications";

}  // namespace

PrivateBus::PrivateBus(const std::string& directory, const std::string& serverLog)
    : address_("unix:path=" + directory + "/bus") {
    const std::string services = directory + "/services";
    std::filesystem::create_directories(services);
    writeFile(services + "/notifications.service",
              std::string("[D-BUS Service]\nName=") + service + "\nExec=" + NOTIFYD_BINARY + " " + serverLog + "\n");
    // Anyone may own any name and call anything; services come from `services` alone.
    writeFile(directory + "/bus.conf", "<busconfig><type>session</type><listen>" + address_ +
                                           "</listen><auth>EXTERNAL</auth><servicedir>" + services +
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

PrivateBus::~PrivateBus() {
    endServer();
    sd_bus_flush_close_unref(bus_);
    endProcess(daemon_, SIGTERM);
}

void PrivateBus::startServer() {
    // Any call starts it, and its answer comes once it serves.
    if (sd_bus_call_method(bus_, service, objectPath, "org.freedesktop.DBus.Peer", "Ping", nullptr, nullptr, "") < 0)
        throw std::runtime_error("private bus: vesk-notifyd doesn't start");
}

void PrivateBus::endServer() {
    sd_bus_creds* creds = nullptr;
    pid_t pid = -1;
    if (sd_bus_get_name_creds(bus_, service, SD_BUS_CREDS_PID, &creds) >= 0) sd_bus_creds_get_pid(creds, &pid);
    sd_bus_creds_unref(creds);
    if (pid > 0) endProcess(pid, SIGTERM);
}

std::string PrivateBus::invoke(uint32_t id, const std::string& action) {
    sd_bus_error error = SD_BUS_ERROR_NULL;
    int r = sd_bus_call_method(bus_, service, objectPath, service, "Invoke", &error, nullptr, "us", id, action.c_str());
    std::string failure = r >= 0 ? "" : error.message ? error.message : "Invoke failed";
    sd_bus_error_free(&error);
    return failure;
}

#include "PrivateBus.h"

#include <chrono>
#include <filesystem>
#include <stdexcept>
#include <thread>

#include <systemd/sd-bus.h>

#include "PrivateHome.h"
#include "Process.h"

namespace {

const char* const service = "org.freedesktop.Notifications";
const char* const objectPath = "/org/freedesktop/Notifications";

// Anyone may own any name and call anything; services come from `services` alone.
std::string configuration(const std::string& socket, const std::string& services) {
    return "<busconfig><type>session</type><listen>unix:path=" + socket +
           "</listen><auth>EXTERNAL</auth><servicedir>" + services +
           "</servicedir><policy context=\"default\"><allow send_destination=\"*\"/>"
           "<allow receive_sender=\"*\"/><allow own=\"*\"/></policy></busconfig>\n";
}

// A client of the bus at `address`, once it listens.
sd_bus* connectTo(const std::string& address) {
    for (int attempt = 0; attempt < 500; ++attempt) {
        sd_bus* bus = nullptr;
        if (sd_bus_new(&bus) >= 0 && sd_bus_set_address(bus, address.c_str()) >= 0 &&
            sd_bus_set_bus_client(bus, 1) >= 0 && sd_bus_start(bus) >= 0)
            return bus;
        sd_bus_unref(bus);
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    return nullptr;
}

}  // namespace

PrivateBus::PrivateBus(const std::string& directory, const std::string& serverLog) {
    const std::string socket = directory + "/bus";
    const std::string services = directory + "/services";
    std::filesystem::create_directories(services);
    writeFile(services + "/notifications.service", std::string("[D-BUS Service]\nName=") + service +
                                                       "\nExec=" + NOTIFYD_BINARY + " --log " + serverLog + "\n");
    writeFile(directory + "/bus.conf", configuration(socket, services));
    address_ = "unix:path=" + socket;
    auto environment = testEnvironment();
    environment["DBUS_SESSION_BUS_ADDRESS"] = address_;
    daemon_ = spawnProcess({"dbus-daemon", "--config-file=" + directory + "/bus.conf", "--nofork"}, environment);
    bus_ = connectTo(address_);
    if (!bus_) {
        end();
        throw std::runtime_error("private bus: dbus-daemon doesn't answer at " + address_);
    }
}

PrivateBus::~PrivateBus() { end(); }

void PrivateBus::end() {
    if (bus_) endServer();
    bus_ = sd_bus_flush_close_unref(bus_);
    if (daemon_ > 0) endProcess(daemon_);
    daemon_ = -1;
}

void PrivateBus::startServer() {
    // Any call starts it, and its answer comes once it serves.
    sd_bus_message* reply = nullptr;
    int r = sd_bus_call_method(bus_, service, objectPath, service, "GetServerInformation", nullptr, &reply, "");
    sd_bus_message_unref(reply);
    if (r < 0) throw std::runtime_error("private bus: vesk-notifyd doesn't start");
}

void PrivateBus::endServer() {
    sd_bus_creds* creds = nullptr;
    pid_t pid = -1;
    if (sd_bus_get_name_creds(bus_, service, SD_BUS_CREDS_PID, &creds) >= 0) sd_bus_creds_get_pid(creds, &pid);
    sd_bus_creds_unref(creds);
    if (pid > 0) endProcess(pid);
}

std::string PrivateBus::invoke(uint32_t id, const std::string& action) {
    sd_bus_error error = SD_BUS_ERROR_NULL;
    int r = sd_bus_call_method(bus_, service, objectPath, "org.vesk.Test", "Invoke", &error, nullptr, "us", id,
                               action.c_str());
    std::string failure = r >= 0 ? "" : error.message ? error.message : "Invoke failed";
    sd_bus_error_free(&error);
    return failure;
}

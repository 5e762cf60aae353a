// vesk-notifyd FILE: a notification server for tests, on the session bus of
// DBUS_SESSION_BUS_ADDRESS. It answers as a desktop's would and adds one line per Notify
// to FILE, fields split by tabs:
//     id  replaces_id  app_name  summary  body  actions (by ",")  urgency  sound-name  expire_timeout
// and the id of each notification that CloseNotification takes away to FILE.closed.
// Invoke(u id, s action), a method of its own, plays a user's click on an action: the server
// says ActionInvoked, then NotificationClosed. Every line is flushed as written, so the server
// may end at any time: at a signal, or when the bus goes.
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <set>
#include <string>

#include <systemd/sd-bus.h>

namespace {

const char* const service = "org.freedesktop.Notifications";
const char* const objectPath = "/org/freedesktop/Notifications";

FILE* logFile = nullptr;
FILE* closedFile = nullptr;  // the ids that CloseNotification took away, a line each
uint32_t lastId = 0;
std::set<uint32_t> showing;  // ids of the notifications on screen

// The urgency (-1 when absent) and sound-name among the hints.
int readHints(sd_bus_message* message, int& urgency, std::string& sound) {
    int r = sd_bus_message_enter_container(message, 'a', "{sv}");
    while (r >= 0 && (r = sd_bus_message_enter_container(message, 'e', "sv")) > 0) {
        const char* key = nullptr;
        r = sd_bus_message_read(message, "s", &key);
        if (r >= 0 && std::strcmp(key, "urgency") == 0) {
            uint8_t value = 0;
            r = sd_bus_message_read(message, "v", "y", &value);
            urgency = value;
        } else if (r >= 0 && std::strcmp(key, "sound-name") == 0) {
            const char* value = nullptr;
            r = sd_bus_message_read(message, "v", "s", &value);
            sound = value;
        } else if (r >= 0) {
            r = sd_bus_message_skip(message, "v");
        }
        if (r >= 0) r = sd_bus_message_exit_container(message);
    }
    return r < 0 ? r : sd_bus_message_exit_container(message);
}

int notify(sd_bus_message* message, void*, sd_bus_error*) {
    const char *app = nullptr, *icon = nullptr, *summary = nullptr, *body = nullptr;
    uint32_t replaces = 0;
    char** actions = nullptr;
    int urgency = -1;
    std::string sound, joined;
    int32_t timeout = 0;
    int r = sd_bus_message_read(message, "susss", &app, &replaces, &icon, &summary, &body);
    if (r >= 0) r = sd_bus_message_read_strv(message, &actions);
    if (r >= 0) r = readHints(message, urgency, sound);
    if (r >= 0) r = sd_bus_message_read(message, "i", &timeout);
    for (char** action = actions; action && *action; ++action) {
        joined += (joined.empty() ? "" : ",") + std::string(*action);
        free(*action);
    }
    free(actions);
    if (r < 0) return r;

    // A notification still open is replaced in place; any other gets a new id.
    uint32_t id = showing.count(replaces) ? replaces : ++lastId;
    showing.insert(id);
    std::fprintf(logFile, "%u\t%u\t%s\t%s\t%s\t%s\t%d\t%s\t%d\n", id, replaces, app, summary, body, joined.c_str(),
                 urgency, sound.c_str(), timeout);
    std::fflush(logFile);
    return sd_bus_reply_method_return(message, "u", id);
}

// Takes an open notification away and says so, with the reason's number.
void withdraw(sd_bus* bus, uint32_t id, uint32_t reason) {
    if (showing.erase(id)) sd_bus_emit_signal(bus, objectPath, service, "NotificationClosed", "uu", id, reason);
}

int closeNotification(sd_bus_message* message, void*, sd_bus_error*) {
    uint32_t id = 0;
    int r = sd_bus_message_read(message, "u", &id);
    if (r < 0) return r;
    withdraw(sd_bus_message_get_bus(message), id, 3);  // closed by a call to CloseNotification
    std::fprintf(closedFile, "%u\n", id);
    std::fflush(closedFile);
    return sd_bus_reply_method_return(message, "");
}

// A click on an action: the server says which, and the notification goes away.
int invoke(sd_bus_message* message, void*, sd_bus_error*) {
    uint32_t id = 0;
    const char* action = nullptr;
    int r = sd_bus_message_read(message, "us", &id, &action);
    if (r < 0) return r;
    sd_bus* bus = sd_bus_message_get_bus(message);
    if ((r = sd_bus_emit_signal(bus, objectPath, service, "ActionInvoked", "us", id, action)) < 0) return r;
    withdraw(bus, id, 2);  // dismissed by the user
    return sd_bus_reply_method_return(message, "");
}

const sd_bus_vtable notifications[] = {
    SD_BUS_VTABLE_START(0),
    SD_BUS_METHOD("Notify", "susssasa{sv}i", "u", notify, SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_METHOD("CloseNotification", "u", "", closeNotification, SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_SIGNAL("ActionInvoked", "us", 0),
    SD_BUS_SIGNAL("NotificationClosed", "uu", 0),
    SD_BUS_METHOD("Invoke", "us", "", invoke, SD_BUS_VTABLE_UNPRIVILEGED),  // for the tests
    SD_BUS_VTABLE_END,
};

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) return 2;
    logFile = std::fopen(argv[1], "a");
    closedFile = std::fopen((std::string(argv[1]) + ".closed").c_str(), "a");
    sd_bus* bus = nullptr;
    int r = logFile && closedFile ? sd_bus_open_user(&bus) : -errno;
    if (r >= 0) r = sd_bus_add_object_vtable(bus, nullptr, objectPath, service, notifications, nullptr);
    if (r >= 0) r = sd_bus_request_name(bus, service, 0);
    if (r < 0) {
        std::fprintf(stderr, "vesk-notifyd: can't serve: %s\n", std::strerror(-r));
        return 1;
    }
    while (r >= 0) {  // until the bus goes
        r = sd_bus_process(bus, nullptr);
        if (r == 0) r = sd_bus_wait(bus, UINT64_MAX);
    }
    return 0;
}

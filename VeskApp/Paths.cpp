#include "VeskApp/Paths.h"

#include <cstdlib>

#include "VeskIPC/Socket.h"

namespace {

std::string home() {
    const char* value = std::getenv("HOME");
    return value && *value == '/' ? value : VeskSocket::homeDirectory();
}

std::string base(const char* variable, const char* fallback) {
    const char* value = std::getenv(variable);
    return value && *value == '/' ? value : home() + fallback;
}

}  // namespace

Paths Paths::current() {
    return {base("XDG_DATA_HOME", "/.local/share") + "/vesk", base("XDG_CONFIG_HOME", "/.config") + "/vesk/config"};
}

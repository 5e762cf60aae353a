#include "VeskApp/Config.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>

#include "Platform/Text.h"

namespace {

std::vector<std::string> names(std::string_view text) {
    std::vector<std::string> result;
    for (const std::string& piece : Text::split(text, ',')) {
        std::string name = Text::trimBlanks(piece);
        if (!name.empty()) result.push_back(name);
    }
    return result;
}

}  // namespace

std::variant<Config, std::string> Config::parse(std::string_view text) {
    Config config;
    size_t number = 0;
    for (size_t start = 0; start < text.size();) {
        size_t end = std::min(text.find('\n', start), text.size());
        std::string_view line = text.substr(start, end - start);
        start = end + 1;
        ++number;
        auto problem = [&](const std::string& what) { return "config:" + std::to_string(number) + ": " + what; };
        if (size_t hash = line.find('#'); hash != std::string_view::npos) line = line.substr(0, hash);
        std::string trimmed = Text::trimWhitespaceAndNewlines(line);
        if (trimmed.empty()) continue;
        size_t equals = trimmed.find('=');
        if (equals == std::string::npos) return problem("expected key = value, found \u201c" + trimmed + "\u201d");
        std::string key = Text::trimBlanks(std::string_view(trimmed).substr(0, equals));
        std::string value = Text::trimBlanks(std::string_view(trimmed).substr(equals + 1));
        if (key == "device-name") {
            if (value.empty()) return problem("device-name needs a name");
            config.deviceName = value;
        } else if (key == "relay-only") {
            if (value != "true" && value != "false")
                return problem("relay-only is true or false, not \u201c" + value + "\u201d");
            config.relayOnly = value == "true";
        } else if (key == "default-list") {
            if (value.empty()) return problem("default-list needs a list name");
            config.defaultList = value;
        } else if (key == "ignored-lists") {
            config.ignoredLists = names(value);
        } else if (key == "model-url" || key == "geocoder-url") {
            if (!value.starts_with("http://") && !value.starts_with("https://"))
                return problem(key + " is an http:// or https:// address, not \u201c" + value + "\u201d");
            while (value.ends_with('/')) value.pop_back();
            if (key == "model-url")
                config.modelUrl = value;
            else
                config.geocoderUrl = value;
        } else if (key == "model-name") {
            if (value.empty()) return problem("model-name needs a name");
            config.modelName = value;
        } else if (key == "model-timeout" || key == "geocoder-timeout") {
            char* end = nullptr;
            const double seconds = std::strtod(value.c_str(), &end);
            if (value.empty() || end != value.c_str() + value.size() || !(seconds > 0 && seconds <= 600))
                return problem(key + " is a number of seconds above 0 and up to 600, not \u201c" + value + "\u201d");
            (key == "model-timeout" ? config.modelTimeout : config.geocoderTimeout) = seconds;
        } else {
            return problem("unknown key \u201c" + key + "\u201d");
        }
    }
    return config;
}

std::variant<Config, std::string> Config::load(const std::string& path) {
    int fd = open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0) {
        if (errno == ENOENT) return Config{};
        return "config: can't read " + path + ": " + std::strerror(errno);
    }
    std::string text;
    char buffer[4096];
    for (;;) {
        ssize_t n = read(fd, buffer, sizeof buffer);
        if (n > 0) {
            text.append(buffer, static_cast<size_t>(n));
        } else if (n == 0) {
            break;
        } else if (errno != EINTR) {
            std::string problem = "config: can't read " + path + ": " + std::strerror(errno);
            close(fd);
            return problem;
        }
    }
    close(fd);
    return parse(text);
}

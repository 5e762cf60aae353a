#include "ArgumentParser/Entry.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <exception>

#include "ArgumentParser/Exit.h"
#include "ArgumentParser/Parser.h"
#include "Platform/Descriptor.h"
#include "Platform/Text.h"

namespace ArgumentParser {

namespace {

std::optional<std::string> variable(const char* name) {
    const char* value = std::getenv(name);
    return value ? std::optional<std::string>(value) : std::nullopt;
}

}  // namespace

Environment Environment::current() {
    Environment environment;
    environment.columns = variable("COLUMNS");
    environment.shell = variable("SHELL");
    winsize size{};
    if (isatty(STDOUT_FILENO) && ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0)
        environment.terminalWidth = size.ws_col;
    return environment;
}

int Environment::screenWidth() const {
    if (columns)
        if (auto width = Text::parseInt64(*columns); width && *width > 0 && *width <= 100000)
            return static_cast<int>(*width);
    if (terminalWidth && *terminalWidth > 0) return *terminalWidth;
    return 80;
}

std::variant<Invocation, Outcome> parse(const Command& root, const std::vector<std::string>& arguments,
                                        const Environment& environment) {
    Reading reading = read(root, arguments);
    if (auto invocation = std::get_if<Invocation>(&reading)) return std::move(*invocation);
    return outcomeFor(root, reading, environment);
}

Outcome run(const Command& root, const Invocation& invocation, const Environment& environment) {
    const Command& command = *invocation.path.back();
    try {
        if (command.run) command.run(invocation.values);
        return {};
    } catch (const ValidationError& error) {
        return validationFailure(root, error.message, environment);
    } catch (const ExitCode& exit) {
        return {"", "", exit.status};
    } catch (const std::exception& error) {
        return otherFailure(error.what());
    } catch (...) {
        return otherFailure("The command failed.");
    }
}

void main(const Command& root, int argc, char** argv) {
    const Environment environment = Environment::current();
    std::vector<std::string> arguments;
    for (int i = 1; i < argc; ++i) arguments.push_back(Text::repairUtf8(argv[i]));
    auto parsed = parse(root, arguments, environment);
    Outcome outcome;
    if (auto invocation = std::get_if<Invocation>(&parsed))
        outcome = run(root, *invocation, environment);
    else
        outcome = std::get<Outcome>(parsed);
    // What the command printed itself goes out first.
    std::fflush(nullptr);
    Descriptor::writeAll(STDOUT_FILENO, outcome.standardOutput);
    Descriptor::writeAll(STDERR_FILENO, outcome.standardError);
    std::exit(outcome.status);
}

}  // namespace ArgumentParser

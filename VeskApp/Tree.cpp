#include "VeskApp/Tree.h"

#include <iostream>

#include "Platform/Version.h"
#include "VeskApp/App.h"
#include "VeskApp/Daemon.h"
#include "VeskApp/PlanCommand.h"
#include "VeskIPC/Socket.h"

using namespace ArgumentParser;

namespace {

// The config, or the end of the program with the reason.
Config loadConfig(const Paths& paths) {
    auto config = Config::load(paths.configFile);
    if (auto* problem = std::get_if<std::string>(&config)) {
        std::cerr << "vesk-app: " << *problem << "\n";
        throw ExitCode{1};
    }
    return std::get<Config>(config);
}

void serve(const Values& values) {
    const Paths paths = Paths::current();
    App::Options options{paths, loadConfig(paths), values.flag("verbose"), {}, {}};
    if (!values.flag("background")) throw ExitCode{App::serve(options)};

    // Someone already serves: nothing to start.
    for (const auto& path : VeskSocket::candidatePaths())
        if (SocketClient::isListening(path)) throw ExitCode{0};
    Daemon::background([&](Daemon::Ready ready, Daemon::Failed failed) {
        options.ready = std::move(ready);
        options.failed = std::move(failed);
        return App::serve(options);
    });
}

void plan(const Values& values) {
    const int64_t hours = values.optionalInteger("hours").value_or(24);
    if (hours < 1 || hours > 24 * 366) throw ValidationError{"--hours takes a whole number from 1 to 8784."};
    const Paths paths = Paths::current();
    throw ExitCode{printPlan(paths, loadConfig(paths), hours, values.flag("json"))};
}

Command leaf(std::string typeName, std::string name, std::string abstract, std::vector<Input> inputs,
             std::function<void(const Values&)> run) {
    Command command;
    command.typeName = std::move(typeName);
    command.configuration.commandName = std::move(name);
    command.configuration.abstract = std::move(abstract);
    command.inputs = std::move(inputs);
    command.run = std::move(run);
    return command;
}

struct Tree {
    Command serve = leaf("Serve", "serve", "Keep the reminders and nag at their times, until stopped.",
                         {flag("background", "Detach, and return once the app listens."),
                          flag("verbose", "Log every request and alert.")},
                         ::serve);
    Command plan = leaf("Plan", "plan", "This device's coming alerts, read from the store. Changes nothing.",
                        {option("hours", "How far ahead to look, in hours. Default 24.", ValueType::integer),
                         flag("json", "Machine-readable output.")},
                        ::plan);
    Command root = rootCommand();

    Command rootCommand() const {
        Command command;
        command.typeName = "VeskApp";
        command.configuration.commandName = "vesk-app";
        command.configuration.abstract = "The Vesk companion: keeps your reminders and nags at their times.";
        command.configuration.discussion =
            "`vesk` starts it on demand with --background; `systemctl --user enable --now vesk-app` starts it at "
            "login. Its data lives in ~/.local/share/vesk, its config in ~/.config/vesk/config.";
        command.configuration.version = veskVersion;
        command.subcommands = {&serve, &plan};
        command.defaultSubcommand = &serve;
        return command;
    }
};

}  // namespace

const Command& appRoot() {
    static const Tree tree;
    return tree.root;
}

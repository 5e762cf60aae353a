#pragma once

#include <string>
#include <vector>

#include "ArgumentParser/Declaration.h"

// A small tree of commands for the framework's own tests: `tool`, version 1.2.3, runs `say`
// by default; `remote` runs `show` by default; `admin` has a subcommand but runs nothing.
namespace ArgumentParser::Testing {

// The commands point at each other, so the tree is never copied.
struct TestTree {
    Command say, count, copy, paint, remoteShow, remoteAdd, remote, adminReset, admin, exec, after, sleep, root;

    TestTree() {
        auto make = [](Command& command, std::string typeName, std::string abstract, std::vector<Input> inputs,
                       std::string commandName = "") {
            command.typeName = std::move(typeName);
            command.configuration.commandName = std::move(commandName);
            command.configuration.abstract = std::move(abstract);
            command.inputs = std::move(inputs);
        };
        make(say, "Say", "Say the words.", {flag("loud", "Shout."), capturingList("words", "What to say.")});
        Input verbose = flag("verbose", "Tell more.");
        verbose.names = {{Name::Kind::longName, "verbose"}, {Name::Kind::shortName, "v"}};
        Input ratio = option("ratio", "A ratio.", ValueType::double64);
        ratio.defaultValue = "0.5";
        make(count, "Count", "Count things.",
             {verbose, option("times", "How often.", ValueType::integer), ratio, argument("target", "What to count.")});
        make(copy, "Copy", "Copy a file.", {argument("source", "Where from."), argument("destination", "Where to.")});
        Input red = flag("red", "Red paint."), blue = flag("blue", "Blue paint.");
        red.group = blue.group = "color";
        red.isOptional = blue.isOptional = false;
        make(paint, "Paint", "Paint it.", {red, blue});
        make(remoteShow, "RemoteShow", "Show the remotes.", {flag("json", "As JSON.")}, "show");
        make(remoteAdd, "RemoteAdd", "Add a remote.", {argument("name", "Its name."), option("url", "Its address.")},
             "add");
        make(remote, "Remote", "Manage remotes.", {});
        remote.subcommands = {&remoteShow, &remoteAdd};
        remote.defaultSubcommand = &remoteShow;
        make(adminReset, "AdminReset", "Reset everything.", {}, "reset");
        make(admin, "Admin", "Administration.", {});
        admin.subcommands = {&adminReset};
        Input command = argument("command", "The command and its arguments.");
        command.isRepeating = command.isOptional = true;
        command.strategy = ParsingStrategy::allRemainingInput;
        make(exec, "Exec", "Run a command.", {flag("quiet", "Say nothing."), command});
        Input rest = argument("rest", "Behind the terminator.");
        rest.isRepeating = rest.isOptional = true;
        rest.strategy = ParsingStrategy::postTerminator;
        make(after, "After", "Take what follows.", {flag("dry", "Pretend."), rest});
        Input seconds = argument("seconds", "How long.");
        seconds.type = ValueType::double64;
        make(sleep, "Sleep", "Wait a while.", {seconds});
        make(root, "Tool", "A tool for tests.", {});
        root.configuration.discussion = "It does a few things.";
        root.configuration.version = "1.2.3";
        root.subcommands = {&say, &count, &copy, &paint, &remote, &admin, &exec, &after, &sleep};
        root.defaultSubcommand = &say;
    }
    TestTree(const TestTree&) = delete;
    TestTree& operator=(const TestTree&) = delete;
};

}  // namespace ArgumentParser::Testing

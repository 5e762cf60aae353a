#include "ArgumentParser/Exit.h"

#include "ArgumentParser/Completion.h"
#include "ArgumentParser/Dump.h"
#include "ArgumentParser/Help.h"

namespace ArgumentParser {

namespace {

constexpr int usageStatus = 64;

Outcome printed(std::string text) { return {std::move(text) + "\n", "", 0}; }

std::string shellList() {
    std::string text = "Please use --generate-completion-script=<shell> with one of:";
    for (const auto& name : shellNames()) text += "\n    " + name;
    return text;
}

Outcome completion(const Command& root, const CompletionRequest& request, const Environment& environment) {
    std::string name;
    if (request.shell) {
        name = *request.shell;
    } else {
        std::string path = environment.shell.value_or("");
        name = path.substr(path.find_last_of('/') == std::string::npos ? 0 : path.find_last_of('/') + 1);
        if (!shellNamed(name)) return otherFailure("Can't autodetect a supported shell.\n" + shellList());
    }
    auto shell = shellNamed(name);
    if (!shell) return otherFailure("Can't generate completion scripts for '" + name + "'.\n" + shellList());
    return printed(completionScript(root, *shell));
}

}  // namespace

std::string fullErrorText(const Command& root, const UsageFailure& failure, int screenWidth) {
    std::string text;
    std::string message = messageFor(failure.error, failure.path);
    if (!message.empty()) text += "Error: " + message + "\n";
    std::string help = helpLineFor(failure.error);
    if (!help.empty()) text += "Help:  " + help + "\n";
    if (failure.noArguments)
        text += "\n" + helpText({&root}, screenWidth);
    else
        text += usageText(failure.path);
    return text;
}

Outcome outcomeFor(const Command& root, const Reading& reading, const Environment& environment) {
    const int width = environment.screenWidth();
    if (auto help = std::get_if<HelpRequest>(&reading)) return printed(helpText(help->path, width));
    if (auto dump = std::get_if<DumpRequest>(&reading)) return printed(dumpText(dump->path));
    if (auto version = std::get_if<VersionRequest>(&reading)) return printed(version->version);
    if (auto request = std::get_if<CompletionRequest>(&reading)) return completion(root, *request, environment);
    if (auto failure = std::get_if<UsageFailure>(&reading))
        return {"", fullErrorText(root, *failure, width) + "\n", usageStatus};
    return {};
}

Outcome validationFailure(const Command& root, const std::string& message, const Environment&) {
    std::string text;
    if (!message.empty()) text += "Error: " + message + "\n";
    text += usageText({&root});
    return {"", text + "\n", usageStatus};
}

Outcome otherFailure(const std::string& description) { return {"", "Error: " + description + "\n", 1}; }

}  // namespace ArgumentParser

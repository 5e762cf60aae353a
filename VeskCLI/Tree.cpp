#include "VeskCLI/Tree.h"

#include <utility>
#include <vector>

#include "Platform/Version.h"
#include "VeskCLI/Commands.h"

using namespace ArgumentParser;

namespace {

const char* const reminderHelp = "A number from `vesk now`, a full id, or words from the title.";
const char* const wordsHelp = "The reminder, in your own words.";

// A leaf: `--json` always comes first, then the command's own inputs.
Command leaf(std::string typeName, Configuration configuration, std::vector<Input> inputs,
             std::function<void(const Values&)> run) {
    std::vector<Input> all{flag("json", "Machine-readable output, schema 1.")};
    for (auto& input : inputs) all.push_back(std::move(input));
    Command command;
    command.typeName = std::move(typeName);
    command.configuration = std::move(configuration);
    command.inputs = std::move(all);
    command.run = std::move(run);
    return command;
}

Configuration named(std::string name, std::string abstract) {
    Configuration configuration;
    configuration.commandName = std::move(name);
    configuration.abstract = std::move(abstract);
    return configuration;
}

Configuration unnamed(std::string abstract) { return named("", std::move(abstract)); }

Command group(std::string typeName, Configuration configuration, std::vector<const Command*> subcommands) {
    Command command;
    command.typeName = std::move(typeName);
    command.configuration = std::move(configuration);
    command.defaultSubcommand = subcommands.front();
    command.subcommands = std::move(subcommands);
    return command;
}

struct Tree {
    Command add = leaf("Add",
                       unnamed("Add a reminder in your own words. Tokens like due:fri nag:15m override the reading."),
                       {flag("dryRun", "Show how Vesk reads it, using the app's settings, without saving."),
                        capturingList("words", wordsHelp)},
                       Commands::add);
    Command now = leaf("Now", unnamed("Everything due now, in today's order."), {}, Commands::now);
    Command later = leaf("Later", unnamed("Everything coming up, in time order."), {}, Commands::later);
    Command done = leaf("Done", unnamed("Complete a reminder, by number, id, or title."),
                        {argument("reminder", reminderHelp)}, Commands::done);
    Command snooze = leaf("Snooze", unnamed("Snooze a reminder: 15m, 2h, 1d, tonight, tomorrow, friday at 3pm."),
                          {argument("reminder", reminderHelp), capturingList("until", "Until when.")},
                          Commands::snooze);
    Command remove = leaf("Delete", unnamed("Delete a reminder from Reminders."),
                          {argument("reminder", reminderHelp)}, Commands::deleteReminder);
    Command lists = leaf("Lists", unnamed("Reminders lists, and which ones Vesk ignores."), {}, Commands::lists);

    Command placesList = leaf("PlacesList", named("list", "Saved places, and how many reminders wait on each."), {},
                              Commands::placesList);
    Command placesAdd = leaf(
        "PlacesAdd",
        named("add", "Save a place from a search, or where this Mac is. A place with the same name is replaced."),
        {argument("name", "The name reminders use, like home or office."),
         option("at", "An address or a place to search for."), flag("here", "Where this Mac is now."),
         option("radius", "Radius in meters. Default 100.", ValueType::double64)},
        Commands::placesAdd);
    Command placesRemove =
        leaf("PlacesRemove", named("remove", "Forget a place. Reminders that name it wait until it exists again."),
             {argument("name", "The place's name.")}, Commands::placesRemove);
    Command places = group("Places", unnamed("Named places for triggers and gates."),
                           {&placesList, &placesAdd, &placesRemove});

    Command settingsShow =
        leaf("SettingsShow", named("show", "Every nag setting and its value."), {}, Commands::settingsShow);
    Command settingsSet = leaf("SettingsSet", setConfiguration(),
                               {argument("key", "repeat, nag, stagger, alarm-repeat, date-only-hour, or night."),
                                argument("value", "The new value.")},
                               Commands::settingsSet);
    Command settings = group("SettingsCommand", named("settings", "The nag settings every device shares."),
                             {&settingsShow, &settingsSet});

    Command doctor = leaf("Doctor", unnamed("Check permissions and settings."), {}, Commands::doctor);
    Command parse = leaf("Parse", unnamed("Show how the grammar reads a sentence, offline, without saving."),
                         {capturingList("words", wordsHelp)}, Commands::parse);

    Command root = group("Vesk", rootConfiguration(),
                         {&add, &now, &later, &done, &snooze, &remove, &lists, &places, &settings, &doctor, &parse});

    static Configuration setConfiguration() {
        Configuration configuration = named("set", "Change one setting.");
        configuration.discussion =
            "repeat, nag, stagger, and alarm-repeat take minutes; date-only-hour takes 0 to 23; "
            "night takes 22:00-07:00 or off.";
        return configuration;
    }

    static Configuration rootConfiguration() {
        Configuration configuration = named("vesk", "Ride me like a vesk.");
        configuration.discussion =
            "Add is the default: `vesk call the dentist at 9, nag me every 15 minutes`.\n"
            "Every command takes --json (schema 1). Exit status: 0 ok, 1 invalid, 2 not found, 3 permission, "
            "4 partial write, 5 Vesk app unreachable.";
        configuration.version = veskVersion;
        return configuration;
    }
};

}  // namespace

const Command& veskRoot() {
    // The commands point at each other, so the tree lives in one place and never moves.
    static const Tree tree;
    return tree.root;
}

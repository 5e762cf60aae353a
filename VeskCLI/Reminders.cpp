#include "VeskCLI/Add.h"
#include "VeskCLI/Commands.h"
#include "VeskCLI/Connection.h"
#include "VeskCLI/Output.h"
#include "VeskCLI/Render.h"
#include "VeskCLI/Summary.h"

// The commands about reminders themselves.
namespace Commands {

namespace {

void list(const Values& values, Request::Section section) {
    bool json = values.flag("json");
    Render::list(Connection::send({Request::List{section}}, json), json);
}

// Done and Delete: the reminder's title behind a prefix, or what the user typed.
void finish(const Values& values, const Request& request, const std::string& prefix) {
    bool json = values.flag("json");
    Response response = Connection::send(request, json);
    if (json) return Render::json(response);
    Output::print(prefix + (response.reminder ? response.reminder->title : values.text("reminder")));
}

}  // namespace

void add(const Values& values) {
    auto words = values.list("words");
    if (auto refusal = Add::refusal(words, values.arguments)) throw ArgumentParser::ExitCode{Add::invalid(*refusal)};

    bool json = values.flag("json");
    bool dryRun = values.flag("dryRun");
    Response response = Connection::send({Request::Add{Add::joined(words), dryRun}}, json);
    if (json) return Render::json(response);
    if (response.parse) Output::print(Summary(*response.parse, Calendar::current()).text);
    if (const auto& reminder = response.reminder) {
        Output::print("\nSaved as #" + std::to_string(reminder->number) + (reminder->list ? " in " + *reminder->list : "") +
                      ".");
    } else if (dryRun) {
        Output::print("\nDry run: nothing saved.");
    }
}

void now(const Values& values) { list(values, Request::Section::now); }

void later(const Values& values) { list(values, Request::Section::later); }

void done(const Values& values) { finish(values, {Request::Done{values.text("reminder")}}, "Done: "); }

void deleteReminder(const Values& values) {
    finish(values, {Request::Delete{values.text("reminder")}}, "Deleted: ");
}

void snooze(const Values& values) {
    auto until = values.list("until");
    if (until.empty()) throw ArgumentParser::ValidationError{"Say until when, like 1h or tomorrow."};

    bool json = values.flag("json");
    Response response = Connection::send({Request::Snooze{values.text("reminder"), Add::joined(until)}}, json);
    if (json) return Render::json(response);
    if (response.reminder) Output::print("Snoozed " + response.reminder->title + ": " + response.reminder->detail);
}

}  // namespace Commands

#include "VeskCLI/Commands.h"
#include "VeskCLI/Connection.h"
#include "VeskCLI/Output.h"
#include "VeskCLI/Render.h"

// Lists, settings and the health check.
namespace Commands {

namespace {

void showSettings(const Values& values, const Request& request) {
    bool json = values.flag("json");
    Response response = Connection::send(request, json);
    if (json) return Render::json(response);
    if (response.settings) Output::print(Render::settings(*response.settings));
}

}  // namespace

void lists(const Values& values) {
    bool json = values.flag("json");
    Response response = Connection::send({Request::Lists{}}, json);
    if (json) return Render::json(response);
    if (!response.lists) return;
    for (const auto& list : *response.lists) Output::print(list.name + (list.ignored ? "  (ignored)" : ""));
}

void settingsShow(const Values& values) { showSettings(values, {Request::Settings{}}); }

void settingsSet(const Values& values) {
    showSettings(values, {Request::SetSetting{values.text("key"), values.text("value")}});
}

void doctor(const Values& values) {
    bool json = values.flag("json");
    Response response = Connection::send({Request::Doctor{}}, json);
    if (!response.doctor) return;
    if (json) {
        Render::json(response);
    } else {
        Output::print(Render::doctor(*response.doctor));
    }
    if (!response.doctor->healthy()) throw ArgumentParser::ExitCode{3};
}

}  // namespace Commands

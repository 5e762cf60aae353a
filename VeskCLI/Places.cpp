#include "VeskCLI/Add.h"
#include "VeskCLI/Commands.h"
#include "VeskCLI/Connection.h"
#include "VeskCLI/Output.h"
#include "VeskCLI/Render.h"

// `vesk places` and its subcommands.
namespace Commands {

void placesList(const Values& values) {
    bool json = values.flag("json");
    Response response = Connection::send({Request::Places{}}, json);
    if (json) return Render::json(response);
    if (!response.places || response.places->empty()) {
        Output::print("No places yet. Add one with `vesk places add home --at \"your address\"`.");
        return;
    }
    Output::print(Render::places(*response.places));
}

void placesAdd(const Values& values) {
    auto at = values.optionalText("at");
    bool here = values.flag("here");
    if (at.has_value() == here) {
        throw ArgumentParser::ExitCode{Add::invalid("Give either --at \"an address or place\" or --here.")};
    }

    bool json = values.flag("json");
    Response response =
        Connection::send({Request::AddPlace{values.text("name"), at, here, values.optionalDouble("radius")}}, json);
    if (json) return Render::json(response);
    if (response.places && !response.places->empty()) {
        const auto& place = response.places->front();
        Output::print("Saved " + place.name + ": " + Render::where(place));
    }
}

void placesRemove(const Values& values) {
    bool json = values.flag("json");
    Response response = Connection::send({Request::RemovePlace{values.text("name")}}, json);
    if (json) return Render::json(response);
    bool named = response.places && !response.places->empty();
    Output::print("Removed " + (named ? response.places->front().name : values.text("name")) + ".");
}

}  // namespace Commands

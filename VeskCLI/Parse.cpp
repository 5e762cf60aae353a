#include "Platform/Calendar.h"
#include "Platform/Date.h"
#include "VeskCLI/Add.h"
#include "VeskCLI/Commands.h"
#include "VeskCLI/Output.h"
#include "VeskCLI/Render.h"
#include "VeskCLI/Summary.h"
#include "VeskParse/Parser.h"

namespace Commands {

// Reads the sentence here, with the default settings and no places: the app is never asked.
void parse(const Values& values) {
    Calendar calendar = Calendar::current();
    Parser parser{calendar, {}, NagSettings{}};
    ParseOutput output(parser.parse(Add::joined(values.list("words")), Date::now()));

    if (values.flag("json")) {
        Response response;
        response.parse = output;
        return Render::json(response);
    }
    Output::print(Summary(output, calendar).text);
}

}  // namespace Commands

#include "VeskCLI/Summary.h"

#include <vector>

#include "Platform/DateFormat.h"

namespace {

std::string joined(const std::vector<std::string>& parts, const std::string& separator) {
    std::string text;
    for (size_t i = 0; i < parts.size(); ++i) text += (i ? separator : "") + parts[i];
    return text;
}

}  // namespace

Summary::Summary(const ParseOutput& output, const Calendar& calendar) {
    std::vector<std::string> lines{"what   " + output.title};
    if (output.due) {
        lines.push_back("when   " + humanDate(*output.due, calendar));
    } else if (!output.trigger) {
        lines.push_back("when   next hour");
    }
    lines.push_back("how    " + ParseOutput::describe(output.style, output.repeatIntervalSeconds));
    if (const auto& trigger = output.trigger) {
        std::string line = "where  " + trigger->edge + " " + trigger->place;
        if (trigger->delaySeconds >= 1) line += " + " + std::to_string(trigger->delaySeconds / 60) + " min";
        lines.push_back(line);
    }
    if (output.gate) lines.push_back("gate   only at " + *output.gate);
    if (output.device) lines.push_back("device " + *output.device);
    if (const auto& recurrence = output.recurrence) {
        lines.push_back("repeat every " + std::to_string(recurrence->interval) + " " + recurrence->frequency +
                        (recurrence->fromCompletion ? " from completion" : ""));
    }
    if (output.startReminding) lines.push_back("start  " + *output.startReminding);
    if (output.list) lines.push_back("list   " + *output.list);
    if (output.needsModel) lines.push_back("??     didn't understand: " + joined(output.unresolved, ", "));
    if (output.readByModel) lines.push_back("model  the on-device model read what the grammar couldn't");
    text = joined(lines, "\n");
}

std::string Summary::humanDate(const std::string& text, const Calendar& calendar) {
    bool withTime = text.find('T') != std::string::npos;
    auto date = DateFormat::parse(text, withTime ? "yyyy-MM-dd'T'HH:mm" : "yyyy-MM-dd", calendar);
    if (!date) return text;
    return withTime ? DateFormat::weekdayMonthDayTime(*date, calendar) : DateFormat::weekdayMonthDay(*date, calendar);
}

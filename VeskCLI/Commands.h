#pragma once

#include "ArgumentParser/Declaration.h"

// The run of every leaf command. Each may end the process itself (through Connection)
// or throw ArgumentParser::ExitCode / ArgumentParser::ValidationError.
namespace Commands {

using ArgumentParser::Values;

void add(const Values& values);
void now(const Values& values);
void later(const Values& values);
void done(const Values& values);
void snooze(const Values& values);
void deleteReminder(const Values& values);
void lists(const Values& values);
void placesList(const Values& values);
void placesAdd(const Values& values);
void placesRemove(const Values& values);
void settingsShow(const Values& values);
void settingsSet(const Values& values);
void doctor(const Values& values);
void parse(const Values& values);

}  // namespace Commands

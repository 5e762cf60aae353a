#pragma once

#include <string>

// Where the app keeps its files, read from the environment once at the program's entry.
struct Paths {
    std::string dataDirectory;  // $XDG_DATA_HOME/vesk, by default ~/.local/share/vesk
    std::string configFile;     // $XDG_CONFIG_HOME/vesk/config, by default ~/.config/vesk/config

    std::string database() const { return dataDirectory + "/vesk.db"; }
    std::string lockFile() const { return dataDirectory + "/vesk-app.lock"; }

    // Home is HOME, or the password entry's directory when HOME is unset; XDG variables
    // that are not absolute paths are ignored, as the base directory rules say.
    static Paths current();
};

// The completion scripts, loaded into the real shells: every command, subcommand, flag and
// option name of the tree completes.
#include <gtest/gtest.h>
#include <stdlib.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <set>

#include "Process.h"

namespace {

namespace fs = std::filesystem;

// The tree as the user knows it: for each command, its subcommands and its flag and option names.
struct Node {
    std::string path;
    std::vector<std::string> subcommands;
    std::vector<std::string> names;
};

const std::vector<std::string> leafNames{"--json", "-h", "--help"};

const std::vector<Node> tree{
    {"", {"add", "now", "later", "done", "snooze", "delete", "lists", "places", "settings", "doctor", "parse", "help"},
     {"--version", "-h", "--help"}},
    {"add", {}, {"--json", "--dry-run", "-h", "--help"}},
    {"now", {}, leafNames},
    {"later", {}, leafNames},
    {"done", {}, leafNames},
    {"snooze", {}, leafNames},
    {"delete", {}, leafNames},
    {"lists", {}, leafNames},
    {"places", {"list", "add", "remove"}, {"-h", "--help"}},
    {"places list", {}, leafNames},
    {"places add", {}, {"--json", "--at", "--here", "--radius", "-h", "--help"}},
    {"places remove", {}, leafNames},
    {"settings", {"show", "set"}, {"-h", "--help"}},
    {"settings show", {}, leafNames},
    {"settings set", {}, leafNames},
    {"doctor", {}, leafNames},
    {"parse", {}, leafNames},
};

std::string line(const std::string& path, const std::string& word) {
    return "vesk " + (path.empty() ? "" : path + " ") + word;
}

// A query, and names it must offer or must not.
struct Expectation {
    std::string query;
    std::vector<std::string> offered;
    std::vector<std::string> notOffered;
};

std::vector<Expectation> expectations() {
    std::vector<Expectation> result;
    for (const auto& node : tree) {
        if (!node.subcommands.empty()) result.push_back({line(node.path, ""), node.subcommands, {}});
        result.push_back({line(node.path, "-"), node.names, {}});
    }
    result.push_back({"vesk pl", {"places"}, {"parse"}});
    result.push_back({"vesk settings s", {"show", "set"}, {}});
    result.push_back({"vesk places add --ra", {"--radius"}, {"--at"}});
    result.push_back({"vesk later --json -", {"--help"}, {"--json"}});
    result.push_back({"vesk places add home --at x -", {"--radius", "--here"}, {"--at"}});
    // Words that name no command go to `add`, and so do its flags.
    result.push_back({"vesk call mom --d", {"--dry-run"}, {}});
    return result;
}

class Scratch {
public:
    Scratch() {
        std::string pattern = (fs::temp_directory_path() / "vesk-completion-XXXXXX").string();
        if (!mkdtemp(pattern.data())) throw std::runtime_error("mkdtemp failed");
        path = pattern;
    }
    ~Scratch() {
        std::error_code ignored;
        fs::remove_all(path, ignored);
    }
    std::string write(const std::string& name, const std::string& text) const {
        std::ofstream(path / name, std::ios::binary) << text;
        return (path / name).string();
    }
    std::string read(const std::string& name) const {
        std::ifstream in(path / name, std::ios::binary);
        return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
    }
    fs::path path;
};

std::map<std::string, std::string> shellEnvironment(const Scratch& scratch) {
    auto environment = testEnvironment();
    environment["HOME"] = scratch.path.string();
    environment["TERM"] = "xterm";
    environment["XDG_CONFIG_HOME"] = (scratch.path / "config").string();
    environment["XDG_DATA_HOME"] = (scratch.path / "data").string();
    return environment;
}

// Splits "@@QUERY <line>" blocks into the names offered for each line.
std::map<std::string, std::set<std::string>> offers(const std::string& output) {
    std::map<std::string, std::set<std::string>> result;
    std::string current;
    size_t start = 0;
    while (start < output.size()) {
        size_t end = output.find('\n', start);
        if (end == std::string::npos) end = output.size();
        std::string text = output.substr(start, end - start);
        start = end + 1;
        if (text.starts_with("@@QUERY ")) {
            current = text.substr(8);
            result[current];
        } else if (!text.empty() && !text.starts_with("@@")) {
            text = text.substr(0, text.find('\t'));  // fish adds a tab and the description
            result[current].insert(text);
        }
    }
    return result;
}

std::string queries() {
    std::string text;
    for (const auto& expectation : expectations()) text += expectation.query + "\n";
    return text;
}

void checkOffers(const std::string& shell, const std::map<std::string, std::set<std::string>>& offered) {
    for (const auto& expectation : expectations()) {
        auto found = offered.find(expectation.query);
        ASSERT_NE(found, offered.end()) << shell << ": no answer for '" << expectation.query << "'";
        std::string all;
        for (const auto& name : found->second) all += " " + name;
        for (const auto& name : expectation.offered)
            EXPECT_TRUE(found->second.count(name)) << shell << ": '" << expectation.query << "' lacks " << name
                                                   << "; offered:" << all;
        for (const auto& name : expectation.notOffered)
            EXPECT_FALSE(found->second.count(name)) << shell << ": '" << expectation.query << "' offers " << name;
    }
}

std::string script(const std::string& shell) {
    auto result = runVesk({"--generate-completion-script", shell});
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(result.err, "");
    return result.out;
}

const char* const bashDriver = R"script(source "$1"
function=$(complete -p vesk | sed -E 's/.*-F ([^ ]+).*/\1/')
while IFS= read -r line; do
    read -ra COMP_WORDS <<< "$line"
    [[ "$line" == *" " ]] && COMP_WORDS+=("")
    COMP_CWORD=$(( ${#COMP_WORDS[@]} - 1 ))
    COMP_LINE="$line"
    COMP_POINT=${#line}
    COMPREPLY=()
    "$function" vesk "${COMP_WORDS[COMP_CWORD]}" "${COMP_WORDS[COMP_CWORD-1]}"
    printf '@@QUERY %s\n' "$line"
    printf '%s\n' "${COMPREPLY[@]}"
done < "$2"
)script";

const char* const fishDriver = R"script(source $argv[1]
for line in (cat $argv[2])
    echo "@@QUERY $line"
    complete -C "$line"
end
)script";

// Sourced by an interactive zsh: every match that completion adds goes to $VESK_OUT too, and
// tab completes, marks the end and clears the line.
const char* const zshSetup = R"script(PS1='' PS2='' RPS1='' PROMPT_EOL_MARK=''
unsetopt beep
autoload -Uz compinit && compinit -u -D
source "$VESK_SCRIPT"
compadd() {
    local arg
    for arg in "$@"; do
        [[ $arg == (-|--) ]] && break
        if [[ $arg == -[[:alpha:]]#[OAD]* ]]; then
            builtin compadd "$@"
            return
        fi
    done
    local -a hits
    builtin compadd -O hits "$@"
    (( $#hits )) && print -rl -- "${hits[@]}" >> "$VESK_OUT"
    builtin compadd "$@"
}
__vesk_test_complete() {
    zle complete-word
    print -r -- "@@END" >> "$VESK_OUT"
    BUFFER=''
    CURSOR=0
}
zle -N __vesk_test_complete
bindkey -e
bindkey '^I' __vesk_test_complete
print -r -- "@@READY" >> "$VESK_OUT"
)script";

// Types each query into that zsh on a pseudo-terminal, presses tab and waits for the mark.
const char* const zshDriver = R"script(zmodload zsh/zpty zsh/datetime
export VESK_SCRIPT=$1 VESK_OUT=$3
local setup=$4 queries=$2
: > $VESK_OUT
markers() { local -a lines; lines=(${(f)"$(<$VESK_OUT)"}); print ${#${(M)lines:#@@(READY|END)}} }
awaitMarkers() {
    local deadline=$(( EPOCHREALTIME + 20 )) line
    while (( $(markers) < $1 )); do
        while zpty -rt vz line 2>/dev/null; do :; done
        (( EPOCHREALTIME > deadline )) && { print -u2 "timed out waiting for completion"; exit 3 }
        sleep 0.02
    done
}
zpty vz zsh -f -i
zpty -w vz "source ${(q)setup}"
awaitMarkers 1
local count=1 query
for query in "${(@f)$(<$queries)}"; do
    print -r -- "@@QUERY $query" >> $VESK_OUT
    zpty -w -n vz "$query"$'\t'
    (( count++ ))
    awaitMarkers $count
done
zpty -d vz
)script";

TEST(Completion, BashCompletesEveryName) {
    Scratch scratch;
    std::string text = script("bash");
    EXPECT_TRUE(text.starts_with("#!/bin/bash\n\n"));
    EXPECT_NE(text.find("complete -o filenames -F "), std::string::npos);
    auto result = runProcess({"timeout", "60", "bash", "--norc", "--noprofile", scratch.write("driver.sh", bashDriver),
                              scratch.write("vesk.bash", text), scratch.write("queries", queries())},
                             shellEnvironment(scratch));
    ASSERT_EQ(result.status, 0) << result.err;
    checkOffers("bash", offers(result.out));
}

TEST(Completion, ZshCompletesEveryName) {
    Scratch scratch;
    std::string text = script("zsh");
    EXPECT_NE(text.find("_arguments"), std::string::npos);
    EXPECT_NE(text.find("compdef"), std::string::npos);
    auto result = runProcess({"timeout", "120", "zsh", "-f", scratch.write("driver.zsh", zshDriver),
                              scratch.write("_vesk", text), scratch.write("queries", queries()),
                              (scratch.path / "out").string(), scratch.write("setup.zsh", zshSetup)},
                             shellEnvironment(scratch));
    ASSERT_EQ(result.status, 0) << result.err;
    checkOffers("zsh", offers(scratch.read("out")));
}

TEST(Completion, FishCompletesEveryName) {
    Scratch scratch;
    std::string text = script("fish");
    EXPECT_NE(text.find("complete -c "), std::string::npos);
    auto result = runProcess({"timeout", "60", "fish", "--no-config", scratch.write("driver.fish", fishDriver),
                              scratch.write("vesk.fish", text), scratch.write("queries", queries())},
                             shellEnvironment(scratch));
    ASSERT_EQ(result.status, 0) << result.err;
    checkOffers("fish", offers(result.out));
}

TEST(Completion, ScriptsTellTheProgramTheirShell) {
    for (const char* shell : {"bash", "zsh", "fish"}) {
        std::string text = script(shell);
        EXPECT_NE(text.find("SAP_SHELL"), std::string::npos) << shell;
        EXPECT_NE(text.find("SAP_SHELL_VERSION"), std::string::npos) << shell;
    }
}

TEST(Completion, ShellFromTheEnvironment) {
    auto environment = testEnvironment();
    environment["SHELL"] = "/usr/bin/fish";
    auto detected = runVesk({"--generate-completion-script"}, environment);
    EXPECT_EQ(detected.status, 0);
    EXPECT_EQ(detected.out, script("fish"));

    environment["SHELL"] = "/bin/sh";
    auto undetected = runVesk({"--generate-completion-script"}, environment);
    EXPECT_EQ(undetected.status, 1);
    EXPECT_EQ(undetected.err,
              "Error: Can't autodetect a supported shell.\n"
              "Please use --generate-completion-script=<shell> with one of:\n"
              "    zsh\n"
              "    bash\n"
              "    fish\n");

    auto unknown = runVesk({"--generate-completion-script=tcsh"});
    EXPECT_EQ(unknown.status, 1);
    EXPECT_TRUE(unknown.err.starts_with("Error: Can't generate completion scripts for 'tcsh'.\n")) << unknown.err;
}

}  // namespace

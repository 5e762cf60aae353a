// The completion scripts, loaded into the real shells: every command, subcommand, flag and
// option name of the tree completes.
#include <gtest/gtest.h>

#include <map>
#include <set>
#include <sstream>

#include "PrivateHome.h"
#include "Process.h"

namespace {

// A query, and names it must offer or must not.
struct Expectation {
    std::string query;
    std::vector<std::string> offered;
    std::vector<std::string> notOffered = {};
};

// Every command, subcommand, flag and option name of the tree, and a few partial words.
std::vector<Expectation> expectations() {
    std::vector<Expectation> result{
        {"vesk ",
         {"add", "now", "later", "done", "snooze", "delete", "lists", "places", "settings", "doctor", "parse", "help"}},
        {"vesk -", {"--version", "-h", "--help"}},
        {"vesk add -", {"--json", "--dry-run", "-h", "--help"}},
        {"vesk places ", {"list", "add", "remove"}},
        {"vesk places -", {"-h", "--help"}},
        {"vesk places add -", {"--json", "--at", "--here", "--radius", "-h", "--help"}},
        {"vesk pl", {"places"}, {"parse"}},
        {"vesk places add --ra", {"--radius"}, {"--at"}},
        {"vesk later --json -", {"--help"}, {"--json"}},
        {"vesk places add home --at x -", {"--radius", "--here"}, {"--at"}},
        // Words that name no command go to `add`, and so do its flags.
        {"vesk call mom --d", {"--dry-run"}},
    };
    for (std::string leaf : {"now", "later", "done", "snooze", "delete", "lists", "places list", "places remove",
                             "settings show", "settings set", "doctor", "parse"})
        result.push_back({"vesk " + leaf + " -", {"--json", "-h", "--help"}});
    return result;
}

// Splits "@@QUERY <line>" blocks into the names offered for each line.
std::map<std::string, std::set<std::string>> offers(const std::string& output) {
    std::map<std::string, std::set<std::string>> result;
    std::string current;
    std::istringstream lines(output);
    for (std::string text; std::getline(lines, text);) {
        if (text.starts_with("@@QUERY ")) {
            current = text.substr(8);
            result[current];
        } else if (!text.empty()) {
            result[current].insert(text.substr(0, text.find('\t')));  // fish adds a tab and the description
        }
    }
    return result;
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

// Sourced by an interactive zsh: tab writes the line to $VESK_OUT, completes it and clears
// it; every match that completion adds goes to $VESK_OUT too.
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
    print -r -- "@@QUERY $BUFFER" >> "$VESK_OUT"
    zle complete-word
    BUFFER=''
}
zle -N __vesk_test_complete
bindkey -e
bindkey '^I' __vesk_test_complete
)script";

// Types every query and a tab into that zsh on a pseudo-terminal, waits for it to end, and
// prints what it wrote.
const char* const zshDriver = R"script(zmodload zsh/zpty
export VESK_SCRIPT=$1 VESK_OUT=$2.out
zpty vz zsh -f -i
zpty -w vz "source ${(q)3}"
for query in "${(@f)$(<$2)}"; do zpty -w -n vz "$query"$'\t'; done
zpty -w vz exit
while zpty -r vz line; do :; done
cat $VESK_OUT
)script";

TEST(Completion, EveryShellCompletesEveryName) {
    const struct {
        std::string shell;
        std::vector<std::string> options;
        const char* driver;
    } shells[] = {{"bash", {"--norc", "--noprofile"}, bashDriver},
                  {"zsh", {"-f"}, zshDriver},
                  {"fish", {"--no-config"}, fishDriver}};
    for (const auto& [shell, options, driver] : shells) {
        SCOPED_TRACE(shell);
        PrivateHome home;  // of the shell
        auto put = [&](const std::string& name, const std::string& text) {
            writeFile(home.base() + "/" + name, text);
            return home.base() + "/" + name;
        };
        auto generated = runVesk({"--generate-completion-script", shell});
        ASSERT_EQ(generated.status, 0) << generated.err;
        std::string queries;
        for (const auto& expectation : expectations()) queries += expectation.query + "\n";
        std::vector<std::string> argv{"timeout", "120", shell};
        argv.insert(argv.end(), options.begin(), options.end());
        argv.insert(argv.end(), {put("driver", driver), put("vesk." + shell, generated.out), put("queries", queries)});
        if (shell == "zsh") argv.push_back(put("setup.zsh", zshSetup));
        auto environment = testEnvironment();
        environment["HOME"] = home.home();
        environment["TERM"] = "xterm";
        auto result = runProcess(argv, environment);
        ASSERT_EQ(result.status, 0) << result.err;
        auto offered = offers(result.out);
        for (const auto& [query, wanted, unwanted] : expectations()) {
            SCOPED_TRACE(query);
            ASSERT_TRUE(offered.count(query)) << "no answer";
            std::string all;
            for (const auto& name : offered[query]) all += " " + name;
            for (const auto& name : wanted)
                EXPECT_TRUE(offered[query].count(name)) << "lacks " << name << "; offered:" << all;
            for (const auto& name : unwanted) EXPECT_FALSE(offered[query].count(name)) << "offers " << name;
        }
    }
}

// Which shell names are refused is checked in ArgumentParser/Exit_test.cpp.
TEST(Completion, ShellFromTheEnvironment) {
    auto environment = testEnvironment();
    environment["SHELL"] = "/usr/bin/fish";
    auto detected = runVesk({"--generate-completion-script"}, environment);
    EXPECT_EQ(detected.status, 0);
    EXPECT_EQ(detected.out, runVesk({"--generate-completion-script", "fish"}).out);
}

}  // namespace

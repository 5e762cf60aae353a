#include "ArgumentParser/Parser.h"

#include <gtest/gtest.h>

#include "ArgumentParser/Exit.h"
#include "ArgumentParser/TestTree.h"
#include "Platform/Text.h"

namespace ArgumentParser {
namespace {

using Testing::TestTree;

std::string shown(const Values::Value& value) {
    struct Show {
        std::string operator()(bool b) const { return b ? "true" : "false"; }
        std::string operator()(const std::string& s) const { return "'" + s + "'"; }
        std::string operator()(double d) const { return Text::format("%g", d); }
        std::string operator()(int64_t i) const { return std::to_string(i); }
        std::string operator()(const std::vector<std::string>& list) const {
            std::string text = "[";
            for (size_t i = 0; i < list.size(); ++i) text += (i ? "," : "") + list[i];
            return text + "]";
        }
    };
    return std::visit(Show{}, value);
}

// One line that tells what a reading came to.
std::string described(const Reading& reading) {
    if (auto invocation = std::get_if<Invocation>(&reading)) {
        std::string text = "run " + pathName(invocation->path);
        for (const auto& [field, value] : invocation->values.values) text += " " + field + "=" + shown(value);
        return text;
    }
    if (auto help = std::get_if<HelpRequest>(&reading)) return "help " + pathName(help->path);
    if (auto dump = std::get_if<DumpRequest>(&reading)) return "dump " + pathName(dump->path);
    if (auto version = std::get_if<VersionRequest>(&reading)) return "version " + version->version;
    if (auto completion = std::get_if<CompletionRequest>(&reading))
        return "completion " + completion->shell.value_or("(from SHELL)");
    const auto& failure = std::get<UsageFailure>(reading);
    return "error " + messageFor(failure.error, failure.path);
}

// Each case: the arguments, and what they come to.
void check(const std::vector<std::pair<std::vector<std::string>, std::string>>& cases) {
    TestTree tree;
    for (const auto& [arguments, expected] : cases)
        EXPECT_EQ(described(read(tree.root, arguments)), expected) << testing::PrintToString(arguments);
}

TEST(Parser, FindsTheCommandAndReadsItsInputs) {
    check({
        {{}, "run tool say loud=false words=[]"},
        {{"count", "-v", "x", "--times", "3"}, "run tool count ratio=0.5 target='x' times=3 verbose=true"},
        {{"count", "--times=-4", "--ratio", "2.5", "x"}, "run tool count ratio=2.5 target='x' times=-4 verbose=false"},
        {{"count", "--times", "1", "--times", "2", "x"}, "run tool count ratio=0.5 target='x' times=2 verbose=false"},
        {{"remote", "--json"}, "run tool remote show json=true"},
        {{"admin", "reset"}, "run tool admin reset"},
        {{"exec", "--quiet", "ls", "-la", "--quiet"}, "run tool exec command=[ls,-la,--quiet] quiet=true"},
        {{"after", "--dry", "--", "b", "--dry"}, "run tool after dry=true rest=[b,--dry]"},
        // Another case, an option before the word, or the terminator: no command is named.
        {{"Count", "x"}, "run tool say loud=false words=[Count,x]"},
        {{"--", "count"}, "run tool say loud=false words=[--,count]"},
        {{"--loud", "count", "x"}, "run tool say loud=true words=[count,x]"},
        {{"remote", "origin"}, "error Unexpected argument 'origin'"},
        // A capturing list keeps everything unused as typed.
        {{"a", "--loud", "b"}, "run tool say loud=true words=[a,b]"},
        {{"a", "--", "--loud", "-h"}, "run tool say loud=false words=[a,--,--loud,-h]"},
        {{"say", "--what", "-xy", "b"}, "run tool say loud=false words=[--what,-xy,b]"},
        {{"say", "--loud="}, "error The option '--loud' does not take any value, but '' was specified."},
    });
}

// Beside the screens the command line shows end to end.
TEST(Parser, BuiltInRequests) {
    // clang-format off
    check({
        {{"count", "--times", "x", "-h"}, "help tool count"}, {{"remote", "--json", "--help"}, "help tool remote show"},
        {{"help", "remote", "nothing", "add"}, "help tool remote"}, {{"help", "-help", "count"}, "help tool count"},
        {{"help"}, "help tool"},                              {{"count", "x", "--version"}, "version 1.2.3"},
        // Help goes first; with two arguments left the root hands both to its default.
        {{"--help", "--version"}, "help tool say"},
        {{"remote", "--experimental-dump-help"}, "dump tool remote"},
        {{"--generate-completion-script=zsh"}, "completion zsh"},
        {{"--generate-completion-script"}, "completion (from SHELL)"},
        {{"count", "--help", "--generate-completion-script", "fish"}, "completion fish"},
    });
    // clang-format on
}

TEST(Parser, UsageErrors) {
    check({
        {{"count"}, "error Missing expected argument '<target>'"},
        {{"count", "---x"}, "error Invalid option: ---x"},
        {{"copy", "a", "b", "c", "d"}, "error 2 unexpected arguments: 'c', 'd'"},
        {{"copy", "a", "b", "--"}, "run tool copy destination='b' source='a'"},
        {{"copy", "a", "--", "-b"}, "run tool copy destination='-b' source='a'"},
        {{"copy", "a", "b", "--", "-c"}, "error Unexpected argument '-c'"},
        // An option's value is the next argument, unless that is an option, the terminator, or absent.
        {{"count", "x", "--times", "-4"}, "error Missing value for '--times <times>'"},
        {{"remote", "add", "--url", "--", "o"}, "error Missing value for '--url <url>'"},
        {{"remote", "add", "o", "--url"}, "error Missing value for '--url <url>'"},
        {{"count", "x", "--times", "1.5"}, "error The value '1.5' is invalid for '--times <times>'"},
        {{"count", "x", "--ratio=abc"}, "error The value 'abc' is invalid for '--ratio <ratio>'"},
        {{"sleep", " 1"}, "error The value ' 1' is invalid for '<seconds>'"},
        {{"paint", "--red", "--blue"}, "error Value to be set with --blue had already been set with --red"},
        {{"paint"}, "error Missing one of: '--red', '--blue'"},
        {{"paint", "--blue"}, "run tool paint blue=true red=false"},
        {{"admin"}, "error Missing required subcommand."},
        // The nearest known long option is named, up to three edits away.
        {{"count", "x", "--timesabc"}, "error Unknown option '--timesabc'. Did you mean '--times'?"},
        {{"count", "x", "--t"}, "error Unknown option '--t'"},
        {{"count", "x", "-times"}, "error Unknown option '-times'. Did you mean '--times'?"},
        // A known letter of a cluster is taken, and the first unknown one is named.
        {{"count", "x", "-vq"}, "error Unknown option '-q'"},
    });
}

TEST(Parser, DefaultSubcommandThatIsNoChildIsAnInvalidState) {
    Command stray, root;
    stray.typeName = "Stray";
    root.typeName = "Broken";
    root.defaultSubcommand = &stray;
    auto reading = read(root, {"x"});
    ASSERT_TRUE(std::holds_alternative<UsageFailure>(reading));
    EXPECT_EQ(messageFor(std::get<UsageFailure>(reading).error, {&root}),
              "Internal error. Invalid state while parsing command-line arguments.");
}

TEST(Parser, KeepsTheArgumentsForTheCommand) {
    TestTree tree;
    auto reading = read(tree.root, {"--loud", "x"});
    ASSERT_TRUE(std::holds_alternative<Invocation>(reading));
    EXPECT_EQ(std::get<Invocation>(reading).values.arguments, (std::vector<std::string>{"--loud", "x"}));
}

TEST(Parser, AnyCommandLineReadsWithoutEscaping) {
    TestTree tree;
    const std::vector<std::string> tokens{"",    "-",       "--",       "---",   "-h",       "--help",
                                          "-vx", "--times", "--times=", "-=",    "count",    "remote",
                                          "add", "help",    "x",        "--url", "--loud=1", "é"};
    for (const auto& a : tokens)
        for (const auto& b : tokens)
            for (const auto& c : tokens) EXPECT_NO_THROW(read(tree.root, {a, b, c})) << a << " " << b << " " << c;
}

// Whole texts only, whatever the process's locale.
TEST(Parser, ReadsNumbers) {
    EXPECT_EQ(readDouble("-1e2"), -100.0);
    for (const char* bad : {"", " 1", "1 ", "1,5"}) EXPECT_FALSE(readDouble(bad)) << bad;
}

}  // namespace
}  // namespace ArgumentParser

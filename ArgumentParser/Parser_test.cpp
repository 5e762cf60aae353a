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
std::string described(const TestTree& tree, const Reading& reading) {
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
    auto text = fullErrorText(tree.root, std::get<UsageFailure>(reading), 80);
    text = text.substr(0, text.find('\n'));
    return text.starts_with("Error: ") ? "error " + text.substr(7) : "unprefixed " + text;
}

// Each case: the arguments, and what they come to.
void check(const std::vector<std::pair<std::vector<std::string>, std::string>>& cases) {
    TestTree tree;
    for (const auto& [arguments, expected] : cases)
        EXPECT_EQ(described(tree, read(tree.root, arguments)), expected) << testing::PrintToString(arguments);
}

TEST(Parser, FindsTheCommandAndReadsItsInputs) {
    check({
        {{}, "run tool say loud=false words=[]"},
        {{"count", "x"}, "run tool count ratio=0.5 target='x' verbose=false"},
        {{"count", "-v", "x", "--times", "3"}, "run tool count ratio=0.5 target='x' times=3 verbose=true"},
        {{"count", "--times=3", "--ratio", "2.5", "x"}, "run tool count ratio=2.5 target='x' times=3 verbose=false"},
        {{"count", "x", "--verbose", "--times=-4"}, "run tool count ratio=0.5 target='x' times=-4 verbose=true"},
        {{"count", "--times", "1", "--times", "2", "x"}, "run tool count ratio=0.5 target='x' times=2 verbose=false"},
        {{"remote"}, "run tool remote show json=false"},
        {{"remote", "--json"}, "run tool remote show json=true"},
        {{"remote", "add", "--url=a=b", "origin"}, "run tool remote add name='origin' url='a=b'"},
        {{"admin", "reset"}, "run tool admin reset"},
        {{"sleep", "1e3"}, "run tool sleep seconds=1000"},
        {{"copy", "", "-"}, "run tool copy destination='-' source=''"},
        {{"exec", "--quiet", "ls", "-la", "--quiet"}, "run tool exec command=[ls,-la,--quiet] quiet=true"},
        {{"after", "--dry", "--", "b", "--dry"}, "run tool after dry=true rest=[b,--dry]"},
        // Another case, an option before the word, or the terminator: no command is named.
        {{"Count", "x"}, "run tool say loud=false words=[Count,x]"},
        {{"--", "count"}, "run tool say loud=false words=[--,count]"},
        {{"--loud", "count", "x"}, "run tool say loud=true words=[count,x]"},
        {{"-x", "count"}, "run tool say loud=false words=[-x,count]"},
        {{"remote", "origin"}, "error Unexpected argument 'origin'"},
        // A capturing list keeps everything unused as typed.
        {{"a", "--loud", "b"}, "run tool say loud=true words=[a,b]"},
        {{"a", "--", "--loud", "-h"}, "run tool say loud=false words=[a,--,--loud,-h]"},
        {{"say", "--what", "-xy", "b"}, "run tool say loud=false words=[--what,-xy,b]"},
        {{"say", "--what", "-x=1", "---"}, "error Invalid option: ---"},
        {{"say", "--what", "-x=1", "--loud=", "b"},
         "error The option '--loud' does not take any value, but '' was specified."},
    });
}

// Beside the screens the command line shows end to end.
TEST(Parser, BuiltInRequests) {
    check({
        {{"count", "--times", "x", "-h"}, "help tool count"},
        {{"remote", "--json", "--help"}, "help tool remote show"},
        // Help goes first; with two arguments left the root hands both to its default.
        {{"--help", "--version"}, "help tool say"},
        {{"count", "x", "--version"}, "version 1.2.3"},
        {{"remote", "--experimental-dump-help"}, "dump tool remote"},
        {{"--generate-completion-script=zsh"}, "completion zsh"},
        {{"--generate-completion-script"}, "completion (from SHELL)"},
        {{"count", "--help", "--generate-completion-script", "fish"}, "completion fish"},
        {{"help", "remote", "nothing", "add"}, "help tool remote"},
        {{"help", "-help", "count"}, "help tool count"},
        {{"help", "help"}, "help tool help"},
        {{"help"}, "help tool"},
        {{"help", "--version"}, "version 1.2.3"},
    });
}

TEST(Parser, UsageErrors) {
    check({
        {{"count"}, "error Missing expected argument '<target>'"},
        {{"count", "---x"}, "error Invalid option: ---x"},
        {{"count", "x", "-vq"}, "error Unknown option '-q'"},
        {{"count", "x", "-qz"}, "error Unknown option '-qz'"},
        {{"copy", "a"}, "error Missing expected argument '<destination>'"},
        {{"copy", "a", "b", "c", "d"}, "error 2 unexpected arguments: 'c', 'd'"},
        {{"copy", "a", "b", "--"}, "run tool copy destination='b' source='a'"},
        {{"copy", "a", "--", "-b"}, "run tool copy destination='-b' source='a'"},
        {{"copy", "a", "b", "--", "-c"}, "error Unexpected argument '-c'"},
        // An option's value is the next argument, unless that is an option, the terminator, or absent.
        {{"remote", "add", "o", "--url", "--json"}, "error Missing value for '--url <url>'"},
        {{"remote", "add", "--url", "--", "o"}, "error Missing value for '--url <url>'"},
        {{"remote", "add", "o", "--url"}, "error Missing value for '--url <url>'"},
        {{"count", "x", "--times", "-4"}, "error Missing value for '--times <times>'"},
        {{"count", "x", "--times", "1.5"}, "error The value '1.5' is invalid for '--times <times>'"},
        {{"count", "x", "--ratio=abc"}, "error The value 'abc' is invalid for '--ratio <ratio>'"},
        {{"paint", "--red", "--blue"}, "error Value to be set with --blue had already been set with --red"},
        {{"paint", "--red", "--red"}, "error Value to be set with --red had already been set with --red"},
        {{"paint"}, "error Missing one of: '--red', '--blue'"},
        {{"paint", "--blue"}, "run tool paint blue=true red=false"},
        {{"sleep", " 1"}, "error The value ' 1' is invalid for '<seconds>'"},
        // The nearest known long option is named, up to three edits away.
        {{"count", "x", "--time"}, "error Unknown option '--time'. Did you mean '--times'?"},
        {{"count", "x", "--ratoi"}, "error Unknown option '--ratoi'. Did you mean '--ratio'?"},
        {{"count", "x", "--timesabc"}, "error Unknown option '--timesabc'. Did you mean '--times'?"},
        {{"count", "x", "--t"}, "error Unknown option '--t'"},
        {{"admin"}, "error Missing required subcommand."},
        {{"count", "x", "-times"}, "error Unknown option '-times'. Did you mean '--times'?"},
        // A known letter of a cluster is taken, and the first unknown one is named.
        {{"count", "x", "-verbose"}, "error Unknown option '-e'"},
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

TEST(Parser, ReadsNumbersLikeThePlatform) {
    for (auto [text, value] : {std::pair{"2.5", 2.5}, {"+3", 3.0}, {"-1e2", -100.0}, {".5", 0.5}, {"0x10", 16.0}})
        EXPECT_EQ(readDouble(text), value) << text;
    EXPECT_TRUE(readDouble("inf").has_value());
    for (const char* bad : {"", " 1", "1 ", "1,5", "abc", "1e", "--1"}) EXPECT_FALSE(readDouble(bad)) << bad;
}

}  // namespace
}  // namespace ArgumentParser

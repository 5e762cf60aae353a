#include "ArgumentParser/Exit.h"

#include <gtest/gtest.h>

#include <stdexcept>

#include "ArgumentParser/Help.h"
#include "ArgumentParser/TestTree.h"

namespace ArgumentParser {
namespace {

using Testing::TestTree;

Environment plain() {
    Environment environment;
    environment.columns = "80";
    return environment;
}

Outcome outcome(const Command& root, const std::vector<std::string>& arguments,
                const Environment& environment = plain()) {
    auto parsed = parse(root, arguments, environment);
    if (auto done = std::get_if<Outcome>(&parsed)) return *done;
    return run(root, std::get<Invocation>(parsed), environment);
}

TEST(Exit, UsageFailureGoesToStandardErrorWithStatus64) {
    // The usage is that of the command reached: a default subcommand's, the root's for an
    // invalid option, and without the pointer to help for `help`, which has no help of its own.
    const struct {
        std::vector<std::string> arguments;
        std::string standardError;
    } cases[] = {
        {{"remote", "add", "o", "--nope"},
         "Error: Unknown option '--nope'\nUsage: tool remote add [--url <url>] <name>\n"
         "  See 'tool remote add --help' for more information.\n"},
        {{"remote", "--nope"},
         "Error: Unknown option '--nope'\nUsage: tool remote show [--json]\n"
         "  See 'tool remote show --help' for more information.\n"},
        {{"copy", "a", "-=x"},
         "Error: Invalid option: -=x\nUsage: tool <subcommand>\n  See 'tool --help' for more information.\n"},
        {{"help", "--nope"}, "Error: Unknown option '--nope'\nUsage: tool help [<subcommands> ...]\n"},
    };
    TestTree tree;
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::PrintToString(c.arguments));
        auto failed = outcome(tree.root, c.arguments);
        EXPECT_EQ(failed.standardOutput, "");
        EXPECT_EQ(failed.standardError, c.standardError);
        EXPECT_EQ(failed.status, 64);
    }
    // With no arguments at all the root's help follows.
    tree.root.defaultSubcommand = &tree.copy;
    auto failed = outcome(tree.root, {});
    EXPECT_EQ(failed.standardError,
              "Error: Missing expected argument '<source>'\nHelp:  <source>  Where from.\n\n" +
                  helpText({&tree.root}, 80) + "\n");
    EXPECT_EQ(failed.status, 64);
}

TEST(Exit, WhatARunReturnsOrThrows) {
    struct Case { std::function<void()> run; std::string standardError; int status; };
    const std::string rootUsage = "Usage: tool <subcommand>\n  See 'tool --help' for more information.\n";
    const Case cases[] = {
        {[] {}, "", 0},
        {[] { throw ValidationError{"Bad copy."}; }, "Error: Bad copy.\n" + rootUsage, 64},
        {[] { throw ExitCode{5}; }, "", 5},
        {[] { throw std::runtime_error("boom"); }, "Error: boom\n", 1},
    };
    for (const auto& c : cases) {
        TestTree tree;
        tree.copy.run = [&](const Values&) { c.run(); };
        auto ran = outcome(tree.root, {"copy", "a", "b"});
        EXPECT_EQ(ran.standardOutput, "");
        EXPECT_EQ(ran.standardError, c.standardError);
        EXPECT_EQ(ran.status, c.status);
    }
}

TEST(Exit, CompletionScriptFailures) {
    TestTree tree;
    auto unknown = outcome(tree.root, {"--generate-completion-script", "tcsh"});
    EXPECT_EQ(unknown.standardError,
              "Error: Can't generate completion scripts for 'tcsh'.\n"
              "Please use --generate-completion-script=<shell> with one of:\n"
              "    zsh\n"
              "    bash\n"
              "    fish\n");
    EXPECT_EQ(unknown.status, 1);
    Environment environment = plain();
    environment.shell = "/bin/sh";
    auto undetected = outcome(tree.root, {"--generate-completion-script"}, environment);
    EXPECT_TRUE(undetected.standardError.starts_with("Error: Can't autodetect a supported shell.\n"
                                                     "Please use --generate-completion-script=<shell> with one of:\n"));
    EXPECT_EQ(undetected.status, 1);
}

TEST(Environment, ScreenWidth) {
    Environment environment;
    EXPECT_EQ(environment.screenWidth(), 80);
    environment.terminalWidth = 120;
    EXPECT_EQ(environment.screenWidth(), 120);
    environment.columns = "50";
    EXPECT_EQ(environment.screenWidth(), 50);
    for (const char* unusable : {"0", "-3", "abc", ""}) {
        environment.columns = unusable;
        EXPECT_EQ(environment.screenWidth(), 120) << unusable;
    }
}

}  // namespace
}  // namespace ArgumentParser

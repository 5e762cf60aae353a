#include "ArgumentParser/Exit.h"

#include <gtest/gtest.h>

#include <stdexcept>

#include "ArgumentParser/Help.h"
#include "ArgumentParser/TestTree.h"

namespace ArgumentParser {
namespace {

using Testing::TestTree;

// No COLUMNS and no terminal: 80 columns.
Outcome outcome(const Command& root, const std::vector<std::string>& arguments, const Environment& environment = {}) {
    auto parsed = parse(root, arguments, environment);
    if (auto done = std::get_if<Outcome>(&parsed)) return *done;
    return run(root, std::get<Invocation>(parsed), environment);
}

TEST(Exit, UsageFailureGoesToStandardErrorWithStatus64) {
    // The usage is that of the command reached, here a default subcommand; the root's for an
    // invalid option, and without the pointer to help for `help`, which has no help of its own.
    const std::pair<std::vector<std::string>, std::string> cases[] = {
        {{"remote", "--nope"},
         "Error: Unknown option '--nope'\nUsage: tool remote show [--json]\n"
         "  See 'tool remote show --help' for more information.\n"},
        {{"copy", "a", "-=x"},
         "Error: Invalid option: -=x\nUsage: tool <subcommand>\n  See 'tool --help' for more information.\n"},
        {{"help", "--nope"}, "Error: Unknown option '--nope'\nUsage: tool help [<subcommands> ...]\n"},
    };
    TestTree tree;
    for (const auto& [arguments, standardError] : cases) {
        auto failed = outcome(tree.root, arguments);
        EXPECT_EQ(failed.standardOutput, "");
        EXPECT_EQ(failed.standardError, standardError);
        EXPECT_EQ(failed.status, 64);
    }
    // With no arguments at all the root's help follows.
    tree.root.defaultSubcommand = &tree.copy;
    auto failed = outcome(tree.root, {});
    EXPECT_EQ(failed.standardError, "Error: Missing expected argument '<source>'\nHelp:  <source>  Where from.\n\n" +
                                        helpText({&tree.root}, 80) + "\n");
    EXPECT_EQ(failed.status, 64);
}

TEST(Exit, WhatARunReturnsOrThrows) {
    const std::string rootUsage = "Usage: tool <subcommand>\n  See 'tool --help' for more information.\n";
    const std::tuple<std::function<void()>, std::string, int> cases[] = {
        {[] {}, "", 0},
        {[] { throw ValidationError{"Bad copy."}; }, "Error: Bad copy.\n" + rootUsage, 64},
        {[] { throw ExitCode{5}; }, "", 5},
        {[] { throw std::runtime_error("boom"); }, "Error: boom\n", 1},
    };
    for (const auto& [body, standardError, status] : cases) {
        TestTree tree;
        tree.copy.run = [&](const Values&) { body(); };
        auto ran = outcome(tree.root, {"copy", "a", "b"});
        EXPECT_EQ(ran.standardOutput, "");
        EXPECT_EQ(ran.standardError, standardError);
        EXPECT_EQ(ran.status, status);
    }
}

TEST(Exit, CompletionScriptFailures) {
    TestTree tree;
    const std::string shells =
        "Please use --generate-completion-script=<shell> with one of:\n    zsh\n    bash\n    fish\n";
    auto unknown = outcome(tree.root, {"--generate-completion-script", "tcsh"});
    EXPECT_EQ(unknown.standardError, "Error: Can't generate completion scripts for 'tcsh'.\n" + shells);
    EXPECT_EQ(unknown.status, 1);
    auto undetected = outcome(tree.root, {"--generate-completion-script"}, Environment{{}, {}, "/bin/sh"});
    EXPECT_EQ(undetected.standardError, "Error: Can't autodetect a supported shell.\n" + shells);
    EXPECT_EQ(undetected.status, 1);
}

TEST(Environment, ScreenWidth) {
    Environment environment;
    EXPECT_EQ(environment.screenWidth(), 80);
    environment.terminalWidth = 120;
    EXPECT_EQ(environment.screenWidth(), 120);
    environment.columns = "50";
    EXPECT_EQ(environment.screenWidth(), 50);
    for (const char* unusable : {"0", "abc"}) {
        environment.columns = unusable;
        EXPECT_EQ(environment.screenWidth(), 120) << unusable;
    }
}

}  // namespace
}  // namespace ArgumentParser

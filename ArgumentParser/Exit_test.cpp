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

TEST(Exit, RequestsPrintToStandardOutputWithStatusZero) {
    TestTree tree;
    auto help = outcome(tree.root, {"--help"});
    EXPECT_EQ(help.standardOutput, helpText({&tree.root}, 80) + "\n");
    EXPECT_EQ(help.standardError, "");
    EXPECT_EQ(help.status, 0);
    auto version = outcome(tree.root, {"--version"});
    EXPECT_EQ(version.standardOutput, "1.2.3\n");
    EXPECT_EQ(version.status, 0);
    auto dump = outcome(tree.root, {"--experimental-dump-help"});
    EXPECT_TRUE(dump.standardOutput.starts_with("{\n")) << dump.standardOutput;
    EXPECT_EQ(dump.status, 0);
}

TEST(Exit, UsageFailureGoesToStandardErrorWithStatus64) {
    TestTree tree;
    auto failed = outcome(tree.root, {"copy", "a", "b", "c"});
    EXPECT_EQ(failed.standardOutput, "");
    EXPECT_EQ(failed.standardError,
              "Error: Unexpected argument 'c'\n"
              "Usage: tool copy <source> <destination>\n"
              "  See 'tool copy --help' for more information.\n");
    EXPECT_EQ(failed.status, 64);
}

TEST(Exit, UsageFailureWithNoArgumentsShowsTheRootHelp) {
    TestTree tree;
    tree.root.defaultSubcommand = &tree.copy;
    auto failed = outcome(tree.root, {});
    EXPECT_EQ(failed.standardError, "Error: Missing expected argument '<source>'\n"
                                    "Help:  <source>  Where from.\n"
                                    "\n" +
                                        helpText({&tree.root}, 80) + "\n");
    EXPECT_EQ(failed.status, 64);
}

TEST(Exit, WhatARunThrows) {
    TestTree tree;
    tree.copy.run = [](const Values&) { throw ValidationError{"Bad copy."}; };
    auto refused = outcome(tree.root, {"copy", "a", "b"});
    EXPECT_EQ(refused.standardError,
              "Error: Bad copy.\n"
              "Usage: tool <subcommand>\n"
              "  See 'tool --help' for more information.\n");
    EXPECT_EQ(refused.status, 64);

    tree.copy.run = [](const Values&) { throw ExitCode{5}; };
    auto bare = outcome(tree.root, {"copy", "a", "b"});
    EXPECT_EQ(bare.standardOutput + bare.standardError, "");
    EXPECT_EQ(bare.status, 5);

    tree.copy.run = [](const Values&) { throw std::runtime_error("boom"); };
    auto other = outcome(tree.root, {"copy", "a", "b"});
    EXPECT_EQ(other.standardError, "Error: boom\n");
    EXPECT_EQ(other.status, 1);
}

TEST(Exit, RunThatReturnsEndsWithZero) {
    TestTree tree;
    auto ran = outcome(tree.root, {"copy", "a", "b"});
    EXPECT_EQ(ran.standardOutput + ran.standardError, "");
    EXPECT_EQ(ran.status, 0);
    EXPECT_EQ(tree.ran, std::vector<std::string>{"copy"});
}

TEST(Exit, CompletionScriptsAndTheirFailures) {
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

    environment.shell = "/usr/local/bin/bash";
    auto detected = outcome(tree.root, {"--generate-completion-script"}, environment);
    EXPECT_TRUE(detected.standardOutput.starts_with("#!/bin/bash\n\n"));
    EXPECT_NE(detected.standardOutput.find("complete -o filenames -F "), std::string::npos);
    EXPECT_EQ(detected.status, 0);

    auto zsh = outcome(tree.root, {"--generate-completion-script=zsh"});
    EXPECT_NE(zsh.standardOutput.find("_arguments"), std::string::npos);
    EXPECT_NE(zsh.standardOutput.find("compdef"), std::string::npos);
    auto fish = outcome(tree.root, {"--generate-completion-script", "fish"});
    EXPECT_NE(fish.standardOutput.find("complete -c 'tool'"), std::string::npos);
    for (const auto& script : {detected.standardOutput, zsh.standardOutput, fish.standardOutput})
        EXPECT_NE(script.find("SAP_SHELL_VERSION"), std::string::npos);
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

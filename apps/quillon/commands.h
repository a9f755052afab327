// The subcommands of the program, and the options that several of them have.
#pragma once

#include <CLI/CLI.hpp>
#include <optional>
#include <string>

namespace quillon::cli {

struct CreateOptions;
struct WriteOptions;

// Each adds its subcommand. `exitStatus` receives the result when the command has run.
void addCreateCommand(CLI::App& program, int& exitStatus);
void addWriteCommand(CLI::App& program, int& exitStatus);
void addPublishCommand(CLI::App& program, int& exitStatus);
void addDiscCommand(CLI::App& program, int& exitStatus);
void addProfilesCommand(CLI::App& program, int& exitStatus);
void addListCommand(CLI::App& program, int& exitStatus);
void addHeaderCommand(CLI::App& program, int& exitStatus);
void addVerifyCommand(CLI::App& program, int& exitStatus);
void addWipeCommand(CLI::App& program, int& exitStatus);
void addConfigCommand(CLI::App& program, int& exitStatus);
// Two: register and unregister.
void addRegisterCommands(CLI::App& program, int& exitStatus);

// What create, or write, and publish have in common.
void addCreateOptions(CLI::App& command, CreateOptions& job);
void addWriteOptions(CLI::App& command, WriteOptions& job);
// To be called when they are known; throws, as CLI11 does, for options that miss another.
void checkWriteOptions(const WriteOptions& job);

void addRootOption(CLI::App& command, std::optional<std::string>& root);
// Refuses terms that are not known.
void addCharacterSetOption(CLI::App& command, std::string& terms);
void addDryRunOption(CLI::App& command, bool& isDryRun);
void addJsonOption(CLI::App& command, bool& isJson);
void addQuietOption(CLI::App& command, bool& showsProgress);
void addLogOption(CLI::App& command, std::string& logFile);

}  // namespace quillon::cli

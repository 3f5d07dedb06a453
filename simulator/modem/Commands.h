#pragma once

#include <profile/CommandLine.h>
#include <simulator/modem/ModemState.h>
#include <simulator/modem/Outcome.h>

#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace kxsim {

struct Command;

// Carries a form of a command out. The parameters are those of a set form or of a basic command.
using Handler = Outcome (*)(ModemState& state, const Command& command, std::string_view parameters);

// A built-in command: the forms that it has, and what their handlers work on. A form without a
// handler is an error.
struct Command {
  std::string_view name;
  Handler execute = nullptr;
  Handler read = nullptr;
  Handler set = nullptr;
  Handler test = nullptr;
  std::string_view range = {};                            // what the test form lists
  Setting setting = kEcho;                                // which one a basic command changes
  int highest = 0;                                        // its highest value
  std::string_view initial = {};                          // of a value that is just kept
  std::string_view choices = {};                          // its values, parted by "|"; else numbers
  const std::string& (*text)(const Identity&) = nullptr;  // what an identity command tells
};

inline Outcome Done() { return {}; }
inline Outcome Info(std::string text) { return {.text = std::move(text)}; }
inline Outcome Refused() { return {.result = "ERROR"}; }
inline Outcome Refused(EquipmentError error) { return {.error = error}; }
// kNoError is a success.
inline Outcome Concluded(EquipmentError error) {
  return error == kNoError ? Done() : Refused(error);
}

// "+NAME: value", as most commands answer.
Outcome Told(const Command& command, std::string_view value);
// A test form that says what the command takes, and one that only says that it is there.
Outcome ListRange(ModemState& state, const Command& command, std::string_view parameters);
Outcome Known(ModemState& state, const Command& command, std::string_view parameters);
// A number from 0 to the highest.
std::optional<int> NumberUpTo(int highest, std::string_view text);

// The tables, by what they are about.
std::span<const Command> BasicCommands();
std::span<const Command> CallCommands();
std::span<const Command> IdentityCommands();
std::span<const Command> GsmIdentityCommands();
std::span<const Command> SimCommands();
std::span<const Command> NetworkCommands();
std::span<const Command> StoredCommands();
std::span<const Command> PacketCommands();
std::span<const Command> PacketRegistrationCommands();
std::span<const Command> CdmaReadings();
std::span<const Command> CdmaCommands();
std::span<const Command> QualcommCommands();

// The S-registers are commands too: S0 to S31.
Outcome RunRegister(ModemState& state, const Invocation& command);

// A built-in command, or null when the device does not know it.
const Command* FindCommand(const ModemState& state, std::string_view name);

}  // namespace kxsim

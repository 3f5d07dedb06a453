#pragma once

#include <profile/CommandLine.h>
#include <simulator/modem/ModemState.h>
#include <simulator/modem/Outcome.h>

#include <span>
#include <string>
#include <string_view>

namespace kxsim {

// Carries a command out. The parameters are those of a set form.
using Handler = Outcome (*)(ModemState& state, std::string_view parameters);

// A built-in command. A form without a handler is an error.
struct Command {
  std::string_view name;
  Handler test = nullptr;
  Handler read = nullptr;
  Handler set = nullptr;
  Handler execute = nullptr;
};

inline Outcome Done() { return {}; }
inline Outcome Info(std::string text) { return {.text = std::move(text)}; }
inline Outcome Refused() { return {.result = "ERROR"}; }
inline Outcome Refused(EquipmentError error) { return {.error = error}; }
// kNoError is a success.
inline Outcome Concluded(EquipmentError error) {
  return error == kNoError ? Done() : Refused(error);
}

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

#include <simulator/modem/Commands.h>

#include <string>

namespace kxsim {
namespace {

const std::string& Manufacturer(const Identity& identity) { return identity.manufacturer; }
const std::string& Model(const Identity& identity) { return identity.model; }
const std::string& Revision(const Identity& identity) { return identity.revision; }
const std::string& Serial(const Identity& identity) { return identity.serial; }

// A device that has no such name does not know the command.
Outcome IsNamed(ModemState& state, const Command& command, std::string_view) {
  return Concluded(command.text(state.profile->identity).empty() ? kNotSupported : kNoError);
}

Outcome Name(ModemState& state, const Command& command, std::string_view) {
  const Identity& identity = state.profile->identity;
  const std::string& name = command.text(identity);
  if (name.empty()) return Refused(kNotSupported);
  const std::string text = identity.quotes ? '"' + name + '"' : name;
  return identity.prefix ? Told(command, text) : Info(text);
}

Outcome Capabilities(ModemState& state, const Command& command, std::string_view) {
  const std::string& list = state.profile->identity.capabilities;
  return list.empty() ? Refused(kNotSupported) : Told(command, list);
}

Outcome Subscriber(ModemState& state, const Command&, std::string_view) {
  if (state.Obstacle() != kNoError) return Refused(state.Obstacle());
  const std::string& imsi = state.profile->identity.imsi;
  return imsi.empty() ? Refused(kNotSupported) : Info(imsi);
}

Outcome OwnNumber(ModemState& state, const Command& command, std::string_view) {
  if (state.Obstacle() != kNoError) return Refused(state.Obstacle());
  const std::string& number = state.profile->identity.number;
  if (number.empty()) return Done();
  return Told(command, "\"\",\"" + number + "\"," + (number.front() == '+' ? "145" : "129"));
}

constexpr Command kBasic[] = {
    {.name = "+GMI", .execute = Name, .test = IsNamed, .text = Manufacturer},
    {.name = "+GMM", .execute = Name, .test = IsNamed, .text = Model},
    {.name = "+GMR", .execute = Name, .test = IsNamed, .text = Revision},
    {.name = "+GSN", .execute = Name, .test = IsNamed, .text = Serial},
    {.name = "+GCAP", .execute = Capabilities},
};

constexpr Command kGsm[] = {
    {.name = "+CGMI", .execute = Name, .test = IsNamed, .text = Manufacturer},
    {.name = "+CGMM", .execute = Name, .test = IsNamed, .text = Model},
    {.name = "+CGMR", .execute = Name, .test = IsNamed, .text = Revision},
    {.name = "+CGSN", .execute = Name, .test = IsNamed, .text = Serial},
    {.name = "+CIMI", .execute = Subscriber, .test = Known},
    {.name = "+CNUM", .execute = OwnNumber, .test = Known},
};

}  // namespace

std::span<const Command> IdentityCommands() { return kBasic; }

std::span<const Command> GsmIdentityCommands() { return kGsm; }

}  // namespace kxsim

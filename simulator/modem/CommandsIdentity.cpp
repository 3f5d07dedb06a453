#include <simulator/modem/Commands.h>

#include <string>

namespace kxsim {
namespace {

// The name by which a form "+GMM: text" is known.
struct GenericName {
  char text[8];
};

Outcome Named(const ModemState& state, std::string_view name, const std::string& text) {
  if (text.empty()) return Refused(kNotSupported);
  const Identity& identity = state.profile->identity;
  const std::string start = identity.prefix ? std::string(name) + ": " : "";
  return Info(start + (identity.quotes ? '"' + text + '"' : text));
}

template <GenericName name, auto text>
Outcome Tell(ModemState& state, std::string_view) {
  return Named(state, name.text, state.profile->identity.*text);
}

template <GenericName name, auto text>
constexpr Command Teller() {
  return {.name = name.text,
          .test =
              [](ModemState& state, std::string_view) {
                const bool known = !(state.profile->identity.*text).empty();
                return Concluded(known ? kNoError : kNotSupported);
              },
          .execute = Tell<name, text>};
}

Outcome Capabilities(ModemState& state, std::string_view) {
  const std::string& list = state.profile->identity.capabilities;
  return list.empty() ? Refused(kNotSupported) : Info("+GCAP: " + list);
}

Outcome Subscriber(ModemState& state, std::string_view) {
  if (state.Obstacle() != kNoError) return Refused(state.Obstacle());
  const std::string& imsi = state.profile->identity.imsi;
  return imsi.empty() ? Refused(kNotSupported) : Info(imsi);
}

Outcome OwnNumber(ModemState& state, std::string_view) {
  if (state.Obstacle() != kNoError) return Refused(state.Obstacle());
  const std::string& number = state.profile->identity.number;
  if (number.empty()) return Done();
  return Info("+CNUM: \"\",\"" + number + "\"," + (number.front() == '+' ? "145" : "129"));
}

Outcome Known(ModemState&, std::string_view) { return Done(); }

constexpr Command kBasic[] = {
    Teller<GenericName{"+GMI"}, &Identity::manufacturer>(),
    Teller<GenericName{"+GMM"}, &Identity::model>(),
    Teller<GenericName{"+GMR"}, &Identity::revision>(),
    Teller<GenericName{"+GSN"}, &Identity::serial>(),
    {.name = "+GCAP", .execute = Capabilities},
};

}  // namespace

std::span<const Command> IdentityCommands() { return kBasic; }

std::span<const Command> GsmIdentityCommands() {
  static constexpr Command kGsm[] = {
      Teller<GenericName{"+CGMI"}, &Identity::manufacturer>(),
      Teller<GenericName{"+CGMM"}, &Identity::model>(),
      Teller<GenericName{"+CGMR"}, &Identity::revision>(),
      Teller<GenericName{"+CGSN"}, &Identity::serial>(),
      {.name = "+CIMI", .test = Known, .execute = Subscriber},
      {.name = "+CNUM", .test = Known, .execute = OwnNumber},
  };
  return kGsm;
}

}  // namespace kxsim

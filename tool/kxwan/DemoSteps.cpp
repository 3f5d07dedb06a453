#include <tool/kxwan/DemoSteps.h>

#include <tool/kxwan/PortCheck.h>
#include <tool/kxwan/Text.h>

#include <optional>

namespace kxtool {
namespace {

std::string TextOf(const std::string& text) { return text; }
std::string TextOf(int number) { return std::to_string(number); }

// What is wrong with a value; nothing when it is as expected or nothing is.
template <typename Value>
std::string Differs(const std::optional<Value>& expected, const std::optional<Value>& seen) {
  if (!expected || !seen || *expected == *seen) return "";
  return "expected " + TextOf(*expected) + ", got " + TextOf(*seen);
}

std::string SpeedText(unsigned long speed) { return std::to_string(speed) + " bit/s"; }

StepOutcome Open(Demonstration& demonstration) {
  const Result failure = demonstration.port.Open();
  if (failure) return {"", failure->sentence};
  // A simulated line loses nothing, so that one silent try says that the speed is wrong.
  demonstration.port.Modem()->m_nRetries = 1;
  return {demonstration.port.Path(), ""};
}

StepOutcome FindItsSpeed(Demonstration& demonstration) {
  Observation& observed = demonstration.observed;
  ObserveSpeed(demonstration.port.Device(), observed);
  return {SpeedText(observed.speed),
          Differs(demonstration.profile.expect.baud, observed.seen.baud)};
}

StepOutcome IdentifyIt(Demonstration& demonstration) {
  Identity& identity = demonstration.identity;
  const kxsim::Expectation& expect = demonstration.profile.expect;
  kxsim::Expectation& seen = demonstration.observed.seen;
  ReadNames(demonstration.port, identity);
  identity.platform = demonstration.observed.platform;
  identity.speed = demonstration.observed.speed;
  seen.manufacturer = identity.manufacturer;
  seen.model = identity.model;
  return {
      identity.manufacturer + " " + identity.model + " (" + *seen.platform + ")",
      Joined({Differs(expect.platform, seen.platform),
              Differs(expect.manufacturer, seen.manufacturer), Differs(expect.model, seen.model)},
             "; ")};
}

StepOutcome ReadItsSim(Demonstration& demonstration) {
  const kxwan::SimState state = kxwan::ReadSimState(demonstration.port.Modem());
  const std::string text = kxwan::DescribeSimState(state);
  return {text, state == kxwan::SimState::kPin ? "" : "a PIN should be needed"};
}

StepOutcome Unlock(Demonstration& demonstration) {
  constexpr unsigned long kTimeoutMs = 20000;
  CSModem* modem = demonstration.port.Modem();
  const kxwan::PinOutcome outcome =
      kxwan::EnterPin(modem, demonstration.profile.sim.pin.c_str(), kTimeoutMs);
  if (outcome != kxwan::PinOutcome::kAccepted) return {"", kxwan::DescribePinOutcome(outcome)};
  const kxwan::SimState state = kxwan::ReadSimState(modem);
  return {kxwan::DescribeSimState(state),
          state == kxwan::SimState::kReady ? "" : "the SIM should be ready now"};
}

StepOutcome RaiseSpeed(Demonstration& demonstration) {
  Observation& observed = demonstration.observed;
  const unsigned long before = observed.speed;
  ObserveFastSpeed(demonstration.port.Device(), observed);
  return {std::to_string(before) + " to " + SpeedText(observed.speed),
          Differs(demonstration.profile.expect.fastBaud, observed.seen.fastBaud)};
}

StepOutcome Prepare(Demonstration& demonstration) {
  const Identity& identity = demonstration.identity;
  Observation& observed = demonstration.observed;
  if (!ObservePreparation(demonstration.port.Device(), identity.Properties(), observed)) {
    return {"", kxwan::DescribeConnectError(static_cast<unsigned long>(*observed.seen.lastError))};
  }
  const bool isOwn = !DialsAsCdma(identity.platform);
  return {"dial " + NumberToDial(identity),
          isOwn ? Differs(demonstration.profile.expect.dial, observed.seen.dial) : ""};
}

StepOutcome ReadInformation(Demonstration& demonstration) {
  const kxsim::Expectation& expect = demonstration.profile.expect;
  const kxsim::Expectation& seen = demonstration.observed.seen;
  if (!ObserveInformation(demonstration.port.Device(), demonstration.observed)) {
    return {"", "the device is silent"};
  }
  return {*seen.capabilities + ", " + *seen.coverage + ", signal " + std::to_string(*seen.signal) +
              " %, version " + *seen.version,
          Joined({Differs(expect.capabilities, seen.capabilities),
                  Differs(expect.coverage, seen.coverage), Differs(expect.signal, seen.signal),
                  Differs(expect.version, seen.version)},
                 "; ")};
}

StepOutcome ReadItsBattery(Demonstration& demonstration) {
  const kxsim::Expectation& seen = demonstration.observed.seen;
  if (!ObserveBattery(demonstration.port.Device(), demonstration.observed)) {
    return {"", "it tells nothing"};
  }
  return {std::to_string(*seen.battery) + " %",
          Differs(demonstration.profile.expect.battery, seen.battery)};
}

StepOutcome SendCommand(Demonstration& demonstration) {
  constexpr unsigned long kTimeoutMs = 5000;
  const Exchange exchange = Ask(demonstration.port, "AT+GCAP", kTimeoutMs);
  return {"AT+GCAP gives " + exchange.text, exchange.IsOk() ? "" : ResultName(exchange)};
}

StepOutcome Close(Demonstration& demonstration) {
  demonstration.port.Close();
  const PortCheck check = CheckPort(demonstration.port.Path());
  const char* state = PortStateName(check.state);
  return {std::string("the port is ") + state, check.state == PortState::kFree ? "" : state};
}

bool Always(const Demonstration&) { return true; }

bool NeedsPin(const Demonstration& demonstration) {
  return demonstration.profile.sim.state == kxsim::SimState::kPin;
}

bool NeedsSpeed(const Demonstration& demonstration) {
  const kxsim::Expectation& expect = demonstration.profile.expect;
  return expect.fastBaud && expect.fastBaud != expect.baud;
}

bool HasBattery(const Demonstration& demonstration) {
  return demonstration.profile.expect.battery.has_value();
}

}  // namespace

const Step kSteps[kStepCount] = {
    {"open", "opening", Always, Open},
    {"find the speed", "searching, a wrong speed is silent", Always, FindItsSpeed},
    {"identify", "asking who it is", Always, IdentifyIt},
    {"SIM", "asking for the state of the SIM", NeedsPin, ReadItsSim},
    {"enter the PIN", "entering the PIN", NeedsPin, Unlock},
    {"raise the speed", "trying faster speeds", NeedsSpeed, RaiseSpeed},
    {"prepare", "readying it for a data call", Always, Prepare},
    {"information", "reading", Always, ReadInformation},
    {"battery", "reading", HasBattery, ReadItsBattery},
    {"send a command", "waiting", Always, SendCommand},
    {"close", "closing", Always, Close},
};

}  // namespace kxtool

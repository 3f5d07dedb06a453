#include <tool/kxwan/DemoSteps.h>

#include <optional>

#include <tool/kxwan/PortCheck.h>
#include <tool/kxwan/Text.h>

namespace kxtool {
namespace {

// What is wrong with a value; nothing when it is as expected or nothing is.
std::string Differs(const std::optional<std::string>& expected, const std::string& got) {
  return !expected || *expected == got ? "" : "expected " + *expected + ", got " + got;
}

std::string Differs(const std::optional<int>& expected, long got) {
  return expected ? Differs(std::to_string(*expected), std::to_string(got)) : "";
}

StepOutcome Open(Demonstration& demonstration) {
  const Result failure = demonstration.port.Open();
  if (failure) return {"", failure->sentence};
  // A simulated line loses nothing, so that one silent try says that the speed is wrong.
  demonstration.port.Modem()->m_nRetries = 1;
  return {demonstration.port.Path(), ""};
}

StepOutcome FindItsSpeed(Demonstration& demonstration) {
  Identity& identity = demonstration.identity;
  identity.platform = demonstration.port.Device().DetectModem(identity.speed);
  return {std::to_string(identity.speed) + " bit/s",
          Differs(demonstration.profile.expect.baud, static_cast<long>(identity.speed))};
}

StepOutcome IdentifyIt(Demonstration& demonstration) {
  Identity& identity = demonstration.identity;
  const kxsim::Expectation& expect = demonstration.profile.expect;
  ReadNames(demonstration.port, identity);
  const std::string platform = PlatformNames(identity.platform);
  return {identity.manufacturer + " " + identity.model + " (" + platform + ")",
          Joined({Differs(expect.platform, platform),
                  Differs(expect.manufacturer, identity.manufacturer),
                  Differs(expect.model, identity.model)},
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
  Identity& identity = demonstration.identity;
  const unsigned long before = identity.speed;
  demonstration.port.Device().DetectModemBaudRate(identity.platform, identity.speed);
  return {std::to_string(before) + " to " + std::to_string(identity.speed) + " bit/s",
          Differs(demonstration.profile.expect.fastBaud, static_cast<long>(identity.speed))};
}

StepOutcome Prepare(Demonstration& demonstration) {
  KXModemProperties properties = demonstration.identity.Properties();
  if (!demonstration.port.Device().PrepareDeviceForConnection(&properties, "internet")) {
    return {"", kxwan::DescribeConnectError(GetLastModemError())};
  }
  const std::string number = NumberToDial(demonstration.identity);
  const bool isOwn = !DialsAsCdma(demonstration.identity.platform);
  return {"dial " + number, isOwn ? Differs(demonstration.profile.expect.dial, number) : ""};
}

StepOutcome ReadInformation(Demonstration& demonstration) {
  ModemInfo& info = demonstration.info;
  if (!demonstration.port.Device().GetModemData(&info)) return {"", "the device is silent"};
  const kxsim::Expectation& expect = demonstration.profile.expect;
  return {
      std::string(info.szCapabilities) + ", " + info.szCoverage + ", signal " +
          std::to_string(info.nSignalLevel) + " %, version " + info.szVersion,
      Joined({Differs(expect.capabilities, info.szCapabilities),
              Differs(expect.coverage, info.szCoverage), Differs(expect.signal, info.nSignalLevel),
              Differs(expect.version, info.szVersion)},
             "; ")};
}

StepOutcome ReadItsBattery(Demonstration& demonstration) {
  ModemInfo& info = demonstration.info;
  if (!demonstration.port.Device().GetBatteryLevelFromDevice(&info))
    return {"", "it tells nothing"};
  return {std::to_string(info.dwBatteryLevel) + " %",
          Differs(demonstration.profile.expect.battery, info.dwBatteryLevel)};
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

#include <tool/kxwan/Device.h>
#include <tool/kxwan/Progress.h>
#include <tool/kxwan/Reading.h>
#include <tool/kxwan/Secret.h>
#include <tool/kxwan/Verb.h>

#include <algorithm>
#include <iterator>

namespace kxtool {
namespace {

using kxwan::PinOutcome;
using kxwan::SimState;

constexpr unsigned long kEntryTimeoutMs = 20000;  // a card may take its time

// What was typed or read, checked.
struct Secrets {
  std::string puk;
  std::string pin;
};

struct Action {
  const char* name;
  const char* secretName;  // "" for none
  SimState wanted;         // the state in which the card takes the entry
  Result (*read)(const Options& options, Secrets& secrets);
  PinOutcome (*enter)(CSModem* modem, const Secrets& secrets);
};

Result CheckPin(const std::string& pin) {
  if (kxwan::IsPin(pin.c_str())) return {};
  return WrongCall("That cannot be a PIN: a PIN has 4 to 8 digits. Nothing was sent.");
}

Result ReadNothing(const Options&, Secrets&) { return {}; }

Result ReadPin(const Options& options, Secrets& secrets) {
  std::vector<std::string> lines;
  if (Result failure = ReadSecrets(options.pinFile, {"PIN"}, "PIN", lines)) return failure;
  secrets.pin = lines[0];
  return CheckPin(secrets.pin);
}

Result ReadPuk(const Options& options, Secrets& secrets) {
  std::vector<std::string> prompts = {"PUK", "New PIN"};
  if (options.pinFile.empty()) prompts.emplace_back("New PIN again");
  std::vector<std::string> lines;
  if (Result failure = ReadSecrets(options.pinFile, prompts, "PUK and new PIN", lines)) {
    return failure;
  }
  secrets = {lines[0], lines[1]};
  if (!kxwan::IsPuk(secrets.puk.c_str())) {
    return WrongCall("That cannot be a PUK: a PUK has 8 digits. Nothing was sent.");
  }
  if (lines.back() != secrets.pin) {
    return WrongCall("The new PIN was not the same both times. Nothing was sent.");
  }
  return CheckPin(secrets.pin);
}

PinOutcome EnterNothing(CSModem*, const Secrets&) { return PinOutcome::kNotSent; }

PinOutcome EnterPin(CSModem* modem, const Secrets& secrets) {
  return kxwan::EnterPin(modem, secrets.pin.c_str(), kEntryTimeoutMs);
}

PinOutcome EnterPuk(CSModem* modem, const Secrets& secrets) {
  return kxwan::EnterPuk(modem, secrets.puk.c_str(), secrets.pin.c_str(), kEntryTimeoutMs);
}

constexpr Action kActions[] = {
    {"status", "", SimState::kUnknown, ReadNothing, EnterNothing},
    {"unlock", "PIN", SimState::kPin, ReadPin, EnterPin},
    {"unblock", "PUK", SimState::kPuk, ReadPuk, EnterPuk},
};

// The states for programs; DescribeSimState has the sentences for people.
constexpr std::pair<SimState, const char*> kStateNames[] = {
    {SimState::kReady, "ready"},     {SimState::kPin, "pin"},
    {SimState::kPuk, "puk"},         {SimState::kPin2, "pin2"},
    {SimState::kPuk2, "puk2"},       {SimState::kDeviceLock, "device lock"},
    {SimState::kMissing, "missing"}, {SimState::kBusy, "busy"},
    {SimState::kFailed, "failed"},   {SimState::kNoAnswer, "no answer"},
    {SimState::kUnknown, "unknown"}, {SimState::kDeviceGone, "device gone"},
};

void ShowState(SimState state, Report& report) {
  const auto* row = std::find_if(std::begin(kStateNames), std::end(kStateNames),
                                 [&](const auto& entry) { return entry.first == state; });
  report.Data("state", row->second);
  report.Fact("sim", "SIM", kxwan::DescribeSimState(state));
}

bool IsOpenForUse(SimState state) {
  return state == SimState::kReady || state == SimState::kPin2 || state == SimState::kPuk2;
}

// What was not told is no state: nothing is shown then.
Result ReadState(Port& port, SimState& state, Report& report) {
  const Reading reading = ReadInTime(port, [&] { state = kxwan::ReadSimState(port.Modem()); });
  if (reading.failure) return reading.failure;
  if (state == SimState::kNoAnswer || state == SimState::kDeviceGone) {
    return DeviceFailed(kxwan::DescribeSimState(state));
  }
  ShowState(state, report);
  return {};
}

Result ShowPinLength(Port& port, Report& report) {
  long length = 0;
  const Reading reading = ReadInTime(port, [&] { length = GetSIMPINLength(port.Modem()); });
  if (reading.failure) return reading.failure;
  report.Fact("pin_length", "Longest PIN", length == 0 ? Value(nullptr) : Value(length), "digits");
  return {};
}

// The card's own lock, switched off by the PIN that it just took. Sent once, as the PIN was.
Result SavePin(Port& port, const Secrets& secrets, Report& report) {
  const Exchange exchange = Ask(port, "AT+CLCK=\"SC\",0,\"" + secrets.pin + "\"", kEntryTimeoutMs);
  if (!exchange.Came()) {
    return DeviceFailed(
        "The PIN was accepted, but it is not known whether the SIM will go on "
        "asking for it. " +
        NoAnswer(port, exchange.result).sentence);
  }
  report.Data("saved", exchange.IsOk());
  if (exchange.IsOk()) {
    report.Line("The SIM will not ask for its PIN any more.");
    return {};
  }
  return DeviceFailed("The SIM will go on asking for its PIN: the device answered " +
                      ResultName(exchange) + " when it was to switch that off.");
}

// What is known of an entry whose outcome is not that it was accepted.
struct EntryFailure {
  PinOutcome outcome;
  const char* known;
};

constexpr char kNotAccepted[] = "was not accepted.";
constexpr EntryFailure kEntryFailures[] = {
    {PinOutcome::kNotSent, "was not entered."},
    {PinOutcome::kInDoubt, "was not entered."},
    {PinOutcome::kLineBlocked, "was not entered."},
    {PinOutcome::kNoAnswer, "was entered, but it is not known whether it was accepted."},
    {PinOutcome::kDeviceGone, "may have been entered, and the try may have counted."},
};

Failure EntryFailed(const Action& action, PinOutcome outcome) {
  const auto* row = std::find_if(std::begin(kEntryFailures), std::end(kEntryFailures),
                                 [&](const EntryFailure& each) { return each.outcome == outcome; });
  const bool listed = row != std::end(kEntryFailures);
  return DeviceFailed("The " + std::string(action.secretName) + " " +
                      (listed ? row->known : kNotAccepted) + " " +
                      kxwan::DescribePinOutcome(outcome));
}

Result Enter(Port& port, const Action& action, const Secrets& secrets, SimState state,
             Report& report) {
  if (IsOpenForUse(state)) {
    report.Line(std::string("It asks for no ") + action.secretName + "; none was sent.");
    return {};
  }
  if (state != action.wanted) {
    return DeviceFailed("The SIM does not ask for its " + std::string(action.secretName) +
                        ", so that none was sent. " + kxwan::DescribeSimState(state));
  }
  PinOutcome outcome = PinOutcome::kNoAnswer;
  {
    const Progress progress("waiting for the SIM", !report.IsJson());
    outcome = action.enter(port.Modem(), secrets);
  }
  if (outcome != PinOutcome::kAccepted) return EntryFailed(action, outcome);
  if (Result failure = ReadState(port, state, report)) {
    return DeviceFailed("The " + std::string(action.secretName) + " was accepted. " +
                        failure->sentence);
  }
  return {};
}

constexpr Option kOptions[] = {
    kPort,
    {.name = "ACTION",
     .place = &Options::action,
     .help = "status: tell what the SIM asks for; unlock: enter the PIN; unblock: enter the PUK "
             "and a new PIN",
     .required = true,
     .oneOf = "status, unlock, unblock"},
    {.name = "--pin-file",
     .place = &Options::pinFile,
     .help = "file, number of an open descriptor, or - with the PIN in its first line; for "
             "unblock the PUK, and the new PIN in the second. Without it they are asked for"},
    {.name = "--save", .place = &Options::save, .help = "let the SIM not ask for its PIN any more"},
};

Result Run(const Options& options, Report& report) {
  const Action& action =
      *std::find_if(std::begin(kActions), std::end(kActions),
                    [&](const Action& row) { return options.action == row.name; });
  Secrets secrets;
  if (Result failure = action.read(options, secrets)) return failure;

  Port port(options.port);
  if (Result failure = port.Open()) return failure;
  unsigned long speed = 0;
  if (Result failure = FindSpeed(port, report, speed)) return failure;
  SimState state = SimState::kNoAnswer;
  if (Result failure = ReadState(port, state, report)) return failure;
  if (secrets.pin.empty()) return ShowPinLength(port, report);
  if (Result failure = Enter(port, action, secrets, state, report)) return failure;
  return options.save ? SavePin(port, secrets, report) : Result();
}

}  // namespace

const Verb kSimVerb = {"sim", "Tell the state of the SIM, enter its PIN or PUK",
                       "kxwan sim /dev/ttyUSB0 unlock --pin-file ~/.pin", kOptions, Run};

}  // namespace kxtool

#include <profile/Faults.h>

#include <profile/CommandLine.h>
#include <profile/Text.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <iterator>
#include <vector>

namespace kxsim {
namespace {

constexpr double kMost = 1'000'000;
constexpr std::string_view kWholeNumber = "a whole number from 0 to 1000000";

constexpr FaultParameter kParameters[] = {
    {.name = "at", .expected = kWholeNumber, .number = &Fault::at},
    {.name = "rate", .expected = "a number from 0 to 1", .chance = &Fault::rate},
    {.name = "bytes", .expected = kWholeNumber, .number = &Fault::bytes},
    {.name = "ms", .expected = "milliseconds from 0 to 1000000", .number = &Fault::ms},
    {.name = "text", .expected = "a text", .text = &Fault::text},
};
constexpr size_t kForEveryKind = 2;  // the first of them

constexpr FaultUse kRing = {.parameter = "text", .meaning = "the line (RING)", .text = "RING"};

constexpr FaultKind kKinds[] = {
    {"pieces",
     "the reply comes in pieces",
     {{.parameter = "bytes", .meaning = "in each (1)", .number = 1},
      {.parameter = "ms", .meaning = "between them (0)"}}},
    {"pace", "the reply comes byte by byte, as fast as the line is set"},
    {"late", "the reply comes later", {{.parameter = "ms", .meaning = "how much", .needed = true}}},
    {"lost", "no reply"},
    {.name = "drop", .meaning = "bytes of the reply are lost", .ratePerByte = true},
    {.name = "flip", .meaning = "a bit of a byte is wrong", .ratePerByte = true},
    {"rubbish",
     "something in front of the reply",
     {{.parameter = "text", .meaning = "what"},
      {.parameter = "bytes", .meaning = "random ones in its place (1)", .number = 1}}},
    {"between",
     "an unsolicited line behind the reply",
     {kRing, {.parameter = "ms", .meaning = "before it (0)"}}},
    {"inside", "an unsolicited line within the reply", {kRing}},
    {"flood",
     "unsolicited lines behind the reply",
     {kRing, {.parameter = "bytes", .meaning = "in all (without end)"}}},
    {"hangup",
     "the line is hung up in place of the reply",
     {{.parameter = "ms", .meaning = "until the device is back under its link (never)"}}},
    {"echo", "the echo cannot be switched off"},
    {"noise", "at a wrong speed it sends rubbish instead of nothing"},
};

const FaultParameter* FindParameter(std::string_view name) {
  const auto* found = std::find_if(std::begin(kParameters), std::end(kParameters),
                                   [=](const FaultParameter& row) { return row.name == name; });
  return found == std::end(kParameters) ? nullptr : found;
}

// What a kind takes, in the order of the parameters.
std::vector<std::string> ParametersOf(const FaultKind& kind) {
  std::vector<std::string> names;
  for (const FaultParameter& parameter : kParameters) {
    const bool used =
        std::any_of(std::begin(kind.uses), std::end(kind.uses),
                    [&](const FaultUse& use) { return use.parameter == parameter.name; });
    if (used || names.size() < kForEveryKind) names.emplace_back(parameter.name);
  }
  return names;
}

std::string KindNames() {
  std::vector<std::string> names;
  for (const FaultKind& kind : kKinds) names.emplace_back(kind.name);
  return Joined(names);
}

bool Set(const FaultParameter& parameter, const FaultValue& value, Fault& fault) {
  if (parameter.text != nullptr) {
    fault.*parameter.text = value.text.value_or("");
    return value.text.has_value();
  }
  const double number = value.number.value_or(-1);
  if (!(number >= 0 && number <= (parameter.chance != nullptr ? 1 : kMost))) return false;
  if (parameter.chance != nullptr) {
    fault.*parameter.chance = number;
    return true;
  }
  fault.*parameter.number = static_cast<int>(number);
  return number == std::floor(number);
}

std::optional<double> NumberIn(std::string_view text) {
  double number = 0;
  const auto [end, failed] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (failed != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return number;
}

}  // namespace

std::span<const FaultParameter> FaultParameters() { return kParameters; }

const FaultKind* FindFaultKind(std::string_view name) {
  const auto* found = std::find_if(std::begin(kKinds), std::end(kKinds),
                                   [=](const FaultKind& kind) { return kind.name == name; });
  return found == std::end(kKinds) ? nullptr : found;
}

Fault WithPresets(Fault fault) {
  const FaultKind* kind = FindFaultKind(fault.kind);
  if (kind == nullptr) return fault;
  for (const FaultUse& use : kind->uses) {
    const FaultParameter* parameter = FindParameter(use.parameter);
    if (parameter == nullptr) continue;
    if (parameter->number != nullptr && fault.*parameter->number == 0) {
      fault.*parameter->number = use.number;
    }
    if (parameter->text != nullptr && (fault.*parameter->text).empty()) {
      fault.*parameter->text = use.text;
    }
  }
  return fault;
}

Result StartFault(const std::string& kind, Fault& fault) {
  fault = {};
  fault.kind = kind;
  if (FindFaultKind(kind) != nullptr) return {};
  return Failure{"unknown fault " + Quoted(kind) + "; expected one of " + KindNames()};
}

Result SetFaultParameter(std::string_view name, const FaultValue& value, Fault& fault) {
  const std::vector<std::string> names = ParametersOf(*FindFaultKind(fault.kind));
  if (std::find(names.begin(), names.end(), name) == names.end()) {
    return Failure{"the fault " + Quoted(fault.kind) + " has no " + Quoted(name) + "; it takes " +
                   Joined(names)};
  }
  const FaultParameter& parameter = *FindParameter(name);
  if (Set(parameter, value, fault)) return {};
  return Failure{Quoted(name) + ": expected " + std::string(parameter.expected)};
}

Result CheckFault(const Fault& fault) {
  for (const FaultUse& use : FindFaultKind(fault.kind)->uses) {
    if (!use.needed || fault.*FindParameter(use.parameter)->number > 0) continue;
    return Failure{"the fault " + Quoted(fault.kind) + " needs " + Quoted(use.parameter) +
                   " from 1 to 1000000"};
  }
  return {};
}

Result ParseFault(std::string_view words, Fault& fault) {
  const std::vector<std::string> parts = SplitParameters(words);
  if (Result failure = StartFault(parts[0], fault)) return failure;
  for (size_t i = 1; i < parts.size(); ++i) {
    const std::string_view part = parts[i];
    const size_t sign = std::min(part.find('='), part.size());
    FaultValue value;
    if (sign < part.size()) {
      value = {NumberIn(part.substr(sign + 1)), std::string(part.substr(sign + 1))};
    }
    if (Result failure = SetFaultParameter(part.substr(0, sign), value, fault)) return failure;
  }
  return CheckFault(fault);
}

std::string FaultHelp() {
  std::string text;
  for (const FaultKind& kind : kKinds) {
    text += "  " + std::string(kind.name) + std::string(10 - kind.name.size(), ' ');
    text += kind.meaning;
    for (const FaultUse& use : kind.uses) {
      if (use.parameter.empty()) continue;
      text += "; " + std::string(use.parameter) + "=: " + std::string(use.meaning);
    }
    text += '\n';
  }
  return text;
}

}  // namespace kxsim

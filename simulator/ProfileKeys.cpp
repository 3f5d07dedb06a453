#include <simulator/LineSpeed.h>
#include <simulator/ProfileKeysPrivate.h>

#include <algorithm>
#include <array>
#include <charconv>

namespace kxsim {
namespace {

// The field of a profile that a path of members leads to.
template <auto... Path>
auto& Field(Profile& profile) {
  return (profile.*....*Path);
}

bool NumberIn(const toml::node& node, int low, int high, int& number) {
  const std::optional<int64_t> value = node.value_exact<int64_t>();
  if (!value || *value < low || *value > high) return false;
  number = static_cast<int>(*value);
  return true;
}

template <int low, int high, auto... Path>
bool Number(const toml::node& node, Profile& profile) {
  int number = 0;
  if (!NumberIn(node, low, high, number)) return false;
  Field<Path...>(profile) = number;
  return true;
}

template <auto... Path>
bool Flag(const toml::node& node, Profile& profile) {
  const std::optional<bool> value = node.value_exact<bool>();
  if (value) Field<Path...>(profile) = *value;
  return value.has_value();
}

template <auto... Path>
bool Text(const toml::node& node, Profile& profile) {
  const std::optional<std::string> value = node.value_exact<std::string>();
  if (value) Field<Path...>(profile) = *value;
  return value.has_value();
}

template <auto... Path>
bool Speed(const toml::node& node, Profile& profile) {
  int speed = 0;
  if (!NumberIn(node, 1, 1'000'000, speed) || !IsLineSpeed(speed)) return false;
  Field<Path...>(profile) = speed;
  return true;
}

bool Speeds(const toml::node& node, Profile& profile) {
  const toml::array* list = node.as_array();
  if (list == nullptr) return false;
  for (const toml::node& item : *list) {
    int speed = 0;
    if (!NumberIn(item, 1, 1'000'000, speed) || !IsLineSpeed(speed)) return false;
    profile.line.speeds.push_back(speed);
  }
  return true;
}

template <auto... Path>
bool Texts(const toml::node& node, Profile& profile) {
  const toml::array* list = node.as_array();
  if (list == nullptr) return false;
  std::vector<std::string> texts;
  for (const toml::node& item : *list) {
    const std::optional<std::string> text = item.value_exact<std::string>();
    if (!text) return false;
    texts.push_back(*text);
  }
  Field<Path...>(profile) = std::move(texts);
  return true;
}

// Four digits or more and nothing else.
template <auto... Path>
bool Code(const toml::node& node, Profile& profile) {
  const std::optional<std::string> value = node.value_exact<std::string>();
  const auto isDigit = [](char byte) { return byte >= '0' && byte <= '9'; };
  if (!value || value->size() < 4 || !std::all_of(value->begin(), value->end(), isDigit)) {
    return false;
  }
  Field<Path...>(profile) = *value;
  return true;
}

// A table whose keys are numbers.
template <int low, int high, auto... Path>
bool Numbered(const toml::node& node, Profile& profile) {
  const toml::table* table = node.as_table();
  if (table == nullptr) return false;
  for (const auto& [key, value] : *table) {
    const toml::node& item = value;
    const std::string_view digits = key.str();
    int number = 0;
    const auto [end, failed] =
        std::from_chars(digits.data(), digits.data() + digits.size(), number);
    const std::optional<std::string> text = item.value_exact<std::string>();
    if (failed != std::errc() || end != digits.data() + digits.size() || number < low ||
        number > high || !text) {
      return false;
    }
    Field<Path...>(profile).emplace_back(number, *text);
  }
  return true;
}

// A number, or pairs of a second and the number from then on.
template <int low, int high, auto... Path>
bool Steps(const toml::node& node, Profile& profile) {
  std::vector<Step> steps(1);
  if (!NumberIn(node, low, high, steps[0].value)) {
    const toml::array* list = node.as_array();
    if (list == nullptr || list->empty()) return false;
    steps.clear();
    for (const toml::node& item : *list) {
      const toml::array* pair = item.as_array();
      Step step;
      if (pair == nullptr || pair->size() != 2 ||
          !NumberIn(*pair->get(0), steps.empty() ? 0 : steps.back().second, 1'000'000,
                    step.second) ||
          !NumberIn(*pair->get(1), low, high, step.value)) {
        return false;
      }
      steps.push_back(step);
    }
  }
  Field<Path...>(profile) = std::move(steps);
  return true;
}

bool ReadSimState(const toml::node& node, Profile& profile) {
  constexpr std::array<std::string_view, 5> kNames = {"none", "ready", "pin", "puk", "failure"};
  const std::optional<std::string_view> value = node.value_exact<std::string_view>();
  if (!value) return false;
  const auto found = std::find(kNames.begin(), kNames.end(), *value);
  if (found == kNames.end()) return false;
  profile.sim.state = static_cast<SimState>(found - kNames.begin());
  return true;
}

bool ReadFamilies(const toml::node& node, Profile& profile) {
  constexpr std::array<std::string_view, 4> kNames = {"gsm", "gprs", "cdma", "qualcomm"};
  return Texts<&Profile::families>(node, profile) &&
         std::all_of(profile.families.begin(), profile.families.end(), [&](const auto& name) {
           return std::find(kNames.begin(), kNames.end(), name) != kNames.end();
         });
}

using P = Profile;
using L = LineSettings;
using I = Identity;
using S = SimSettings;
using R = RadioSettings;
using D = PacketSettings;
using E = Expectation;

constexpr std::string_view kText = "a text";
constexpr std::string_view kFlag = "true or false";
constexpr std::string_view kSpeed = "a line speed such as 19200 or 115200";
constexpr std::string_view kMilliseconds = "milliseconds from 0 to 600000";
constexpr std::string_view kDigits = "a text of four digits or more";
constexpr std::string_view kWhole = "a whole number";
constexpr int kBig = 2'000'000'000;

constexpr ProfileKey kKeys[] = {
    {"", "description", kText, Text<&P::description>},
    {"", "scripted", kFlag, Flag<&P::scripted>},
    {"", "families", "a list of \"gsm\", \"gprs\", \"cdma\" and \"qualcomm\"", ReadFamilies},

    {"line", "baud", kSpeed, Speed<&P::line, &L::baud>},
    {"line", "speeds", "a list of line speeds", Speeds},
    {"line", "autobaud", kFlag, Flag<&P::line, &L::autobaud>},
    {"line", "moves", kFlag, Flag<&P::line, &L::moves>},
    {"line", "echo", kFlag, Flag<&P::line, &L::echo>},
    {"line", "latency", kMilliseconds, Number<0, 600'000, &P::line, &L::latencyMs>},
    {"line", "line_end", kText, Text<&P::line, &L::lineEnd>},
    {"line", "nul_bytes", kFlag, Flag<&P::line, &L::nulBytes>},

    {"identity", "manufacturer", kText, Text<&P::identity, &I::manufacturer>},
    {"identity", "model", kText, Text<&P::identity, &I::model>},
    {"identity", "revision", kText, Text<&P::identity, &I::revision>},
    {"identity", "serial", kText, Text<&P::identity, &I::serial>},
    {"identity", "capabilities", kText, Text<&P::identity, &I::capabilities>},
    {"identity", "imsi", kText, Text<&P::identity, &I::imsi>},
    {"identity", "number", kText, Text<&P::identity, &I::number>},
    {"identity", "prefix", kFlag, Flag<&P::identity, &I::prefix>},
    {"identity", "quotes", kFlag, Flag<&P::identity, &I::quotes>},
    {"identity", "pages", "a table of texts with the keys 0 to 9",
     Numbered<0, 9, &P::identity, &I::pages>},

    {"sim", "state", "\"none\", \"ready\", \"pin\", \"puk\" or \"failure\"", ReadSimState},
    {"sim", "pin", kDigits, Code<&P::sim, &S::pin>},
    {"sim", "puk", kDigits, Code<&P::sim, &S::puk>},
    {"sim", "pin_tries", "1 to 99", Number<1, 99, &P::sim, &S::pinTries>},
    {"sim", "puk_tries", "1 to 99", Number<1, 99, &P::sim, &S::pukTries>},
    {"sim", "lock", kFlag, Flag<&P::sim, &S::lock>},
    {"sim", "state_as_error", kFlag, Flag<&P::sim, &S::stateAsError>},
    {"sim", "pin_length", "4 to 99", Number<4, 99, &P::sim, &S::pinLength>},

    {"radio", "on", kFlag, Flag<&P::radio, &R::on>},
    {"radio", "registration", "0 to 5", Number<0, 5, &P::radio, &R::registration>},
    {"radio", "operator", kText, Text<&P::radio, &R::operatorName>},
    {"radio", "operator_code", kDigits, Code<&P::radio, &R::operatorCode>},
    {"radio", "signal", "0 to 99, or a list of [second, level]",
     Steps<0, 99, &P::radio, &R::signal>},
    {"radio", "battery", "0 to 100, or a list of [second, level]",
     Steps<0, 100, &P::radio, &R::battery>},
    {"radio", "battery_status", "0 to 3", Number<0, 3, &P::radio, &R::batteryStatus>},
    {"radio", "service", "0 to 9", Number<0, 9, &P::radio, &R::service>},

    {"packet", "attached", kFlag, Flag<&P::packet, &D::attached>},
    {"packet", "refuse_attach", kFlag, Flag<&P::packet, &D::refuseAttach>},
    {"packet", "attach_seconds", "0 to 600", Number<0, 600, &P::packet, &D::attachSeconds>},
    {"packet", "contexts", "a table of access points with the keys 1 to 16",
     Numbered<1, 16, &P::packet, &D::contexts>},
    {"packet", "qos", "a list of commands such as \"+CGQMIN\"", Texts<&P::packet, &D::qos>},

    {"expect", "platform", kText, Text<&P::expect, &E::platform>},
    {"expect", "baud", kSpeed, Speed<&P::expect, &E::baud>},
    {"expect", "fast_baud", kSpeed, Speed<&P::expect, &E::fastBaud>},
    {"expect", "manufacturer", kText, Text<&P::expect, &E::manufacturer>},
    {"expect", "model", kText, Text<&P::expect, &E::model>},
    {"expect", "capabilities", kText, Text<&P::expect, &E::capabilities>},
    {"expect", "coverage", kText, Text<&P::expect, &E::coverage>},
    {"expect", "version", kText, Text<&P::expect, &E::version>},
    {"expect", "signal", kWhole, Number<-kBig, kBig, &P::expect, &E::signal>},
    {"expect", "battery", kWhole, Number<-kBig, kBig, &P::expect, &E::battery>},
    {"expect", "dial", kText, Text<&P::expect, &E::dial>},
    {"expect", "properties_type", kText, Text<&P::expect, &E::propertiesType>},
    {"expect", "prepare", "a list of commands", Texts<&P::expect, &E::prepare>},
    {"expect", "last_error", kWhole, Number<0, kBig, &P::expect, &E::lastError>},
    {"expect", "sim", kWhole, Number<0, kBig, &P::expect, &E::sim>},
    {"expect", "pin_length", kWhole, Number<0, 99, &P::expect, &E::pinLength>},
};

}  // namespace

std::span<const ProfileKey> ProfileKeys() { return kKeys; }

}  // namespace kxsim

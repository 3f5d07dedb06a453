#include <profile/FaultSet.h>
#include <profile/ProfileKeysPrivate.h>
#include <profile/ProfileValuesPrivate.h>

#include <algorithm>

namespace kxsim {
namespace {

template <int Fault::*field>
bool Number(const toml::node& node, Fault& fault) {
  return ReadNumberIn(node, 0, 1'000'000, fault.*field);
}

bool Text(const toml::node& node, Fault& fault) { return ReadText(node, fault.text); }

bool Kind(const toml::node& node, Fault& fault) {
  return ReadText(node, fault.kind) && IsFaultKind(fault.kind);
}

bool Rate(const toml::node& node, Fault& fault) {
  fault.rate = node.value<double>().value_or(-1);
  return fault.rate >= 0 && fault.rate <= 1;
}

struct FaultKey {
  std::string_view name;
  std::string_view expected;
  bool (*read)(const toml::node& node, Fault& fault);
};

constexpr std::string_view kCount = "a whole number from 0 to 1000000";

constexpr FaultKey kFaultKeys[] = {
    {"kind", "the name of a fault", Kind},  {"at", kCount, Number<&Fault::at>},
    {"rate", "a number from 0 to 1", Rate}, {"bytes", kCount, Number<&Fault::bytes>},
    {"ms", kCount, Number<&Fault::ms>},     {"text", "a text", Text},
};

bool ReadFaultKey(std::string_view name, const toml::node& node, Fault& fault,
                  ProfileError& error) {
  const FaultKey* key = std::find_if(std::begin(kFaultKeys), std::end(kFaultKeys),
                                     [=](const FaultKey& row) { return row.name == name; });
  const std::string quoted = "\"" + std::string(name) + "\"";
  if (key == std::end(kFaultKeys)) {
    error = {node.source(),
             "unknown key " + quoted + "; expected kind, at, rate, bytes, ms or text"};
    return false;
  }
  if (key->read(node, fault)) return true;
  const std::string names = key->read == Kind ? ", one of " + FaultKinds() : "";
  error = {node.source(), quoted + ": expected " + std::string(key->expected) + names};
  return false;
}

}  // namespace

bool ReadFaults(const toml::node& section, Profile& profile, ProfileError& error) {
  const toml::array* list = section.as_array();
  if (list == nullptr || !list->is_homogeneous(toml::node_type::table)) {
    error = {section.source(), "\"faults\": expected sections [[faults]]"};
    return false;
  }
  for (const toml::node& item : *list) {
    Fault fault;
    for (const auto& [name, node] : *item.as_table()) {
      if (!ReadFaultKey(name.str(), node, fault, error)) return false;
    }
    if (fault.kind.empty()) {
      error = {item.source(), "a fault without \"kind\""};
      return false;
    }
    profile.faults.push_back(std::move(fault));
  }
  return true;
}

}  // namespace kxsim

#include <profile/ProfileKeysPrivate.h>

#include <algorithm>
#include <set>

namespace kxsim {
namespace {

const ProfileKey* FindKey(std::string_view section, std::string_view name) {
  const std::span<const ProfileKey> keys = ProfileKeys();
  const auto found = std::find_if(keys.begin(), keys.end(), [&](const ProfileKey& key) {
    return key.section == section && key.name == name;
  });
  return found == keys.end() ? nullptr : &*found;
}

std::string NamesIn(std::string_view section) {
  std::string names;
  for (const ProfileKey& key : ProfileKeys()) {
    if (key.section != section) continue;
    names += (names.empty() ? "" : ", ") + std::string(key.name);
  }
  return names;
}

std::string SectionNames() {
  std::set<std::string> names = {"replies", "faults"};
  for (const ProfileKey& key : ProfileKeys()) names.insert(std::string(key.section));
  std::string list;
  for (const std::string& name : names) {
    if (!name.empty()) list += (list.empty() ? "" : ", ") + name;
  }
  return list;
}

bool ReadKey(std::string_view section, std::string_view name, const toml::node& node,
             Profile& profile, ProfileError& error) {
  const ProfileKey* key = FindKey(section, name);
  const std::string quoted = "\"" + std::string(name) + "\"";
  if (key == nullptr) {
    error = {node.source(), "unknown key " + quoted + "; expected one of " + NamesIn(section)};
    return false;
  }
  if (key->read(node, profile)) return true;
  error = {node.source(), quoted + ": expected " + std::string(key->expected)};
  return false;
}

bool ReadSection(std::string_view section, const toml::node& node, Profile& profile,
                 ProfileError& error) {
  const toml::table* table = node.as_table();
  if (table == nullptr || NamesIn(section).empty()) {
    error = {node.source(), "unknown key \"" + std::string(section) + "\"; expected one of " +
                                NamesIn("") + ", or a section of " + SectionNames()};
    return false;
  }
  return std::all_of(table->begin(), table->end(), [&](const auto& item) {
    return ReadKey(section, item.first.str(), item.second, profile, error);
  });
}

bool ReadItem(std::string_view name, const toml::node& node, Profile& profile,
              ProfileError& error) {
  if (name == "replies") return ReadReplies(node, profile, error);
  if (name == "faults") return ReadFaults(node, profile, error);
  if (FindKey("", name) != nullptr) return ReadKey("", name, node, profile, error);
  return ReadSection(name, node, profile, error);
}

std::string Located(const std::string& fileName, const toml::source_region& where,
                    std::string_view text) {
  return fileName + ":" + std::to_string(where.begin.line) + ": " + std::string(text);
}

}  // namespace

bool ParseProfile(std::string_view toml, const std::string& fileName, Profile& profile,
                  std::string& error) {
  toml::table parsed;
  try {
    parsed = toml::parse(toml, fileName);
  } catch (const toml::parse_error& failure) {
    error = Located(fileName, failure.source(), failure.description());
    return false;
  }
  profile = Profile();
  const size_t folder = fileName.rfind('/') + 1;
  profile.name = fileName.substr(folder, fileName.rfind(".toml") - folder);
  ProfileError problem;
  for (const auto& [name, node] : parsed) {
    if (ReadItem(name.str(), node, profile, problem)) continue;
    error = Located(fileName, problem.where, problem.text);
    return false;
  }
  // A device that is all script echoes only when it is said to.
  if (profile.scripted && !parsed["line"]["echo"]) profile.line.echo = false;
  return true;
}

}  // namespace kxsim

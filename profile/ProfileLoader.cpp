#include <profile/BuiltInProfiles.h>
#include <profile/Profile.h>

#include <cerrno>
#include <cstring>
#include <fstream>
#include <iterator>

namespace kxsim {
namespace {

bool LoadFile(const std::string& path, Profile& profile, std::string& error) {
  errno = 0;
  std::ifstream file(path, std::ios::binary);
  const std::string text{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
  if (!file || text.empty()) {
    error = path + ": " + (errno == 0 ? "the file is empty" : strerror(errno));
    return false;
  }
  return ParseProfile(text, path, profile, error);
}

}  // namespace

bool LoadProfile(const std::string& nameOrPath, Profile& profile, std::string& error) {
  if (nameOrPath.find('/') != std::string::npos || nameOrPath.ends_with(".toml")) {
    return LoadFile(nameOrPath, profile, error);
  }
  std::string names;
  for (const BuiltInProfile* row = kBuiltInProfiles; row->name != nullptr; ++row) {
    if (nameOrPath == row->name) return ParseProfile(row->text, row->name, profile, error);
    names += (names.empty() ? "" : ", ") + std::string(row->name);
  }
  error = "there is no profile \"" + nameOrPath + "\"; there are: " + names;
  return false;
}

}  // namespace kxsim

#include <profile/BuiltInProfiles.h>
#include <profile/Profile.h>
#include <profile/Text.h>

#include <cerrno>
#include <cstdio>
#include <cstring>

namespace kxsim {
namespace {

// More than a profile from a log can have.
constexpr size_t kLongestFile = 256 * 1024 * 1024;

Result ReadFile(const std::string& path, std::string& text) {
  FILE* file = fopen(path.c_str(), "re");
  if (file == nullptr) return Failure{path + ": " + strerror(errno)};
  char bytes[16 * 1024];
  size_t count = 0;
  errno = 0;
  while (text.size() <= kLongestFile && (count = fread(bytes, 1, sizeof bytes, file)) > 0) {
    text.append(bytes, count);
  }
  const int error = ferror(file) != 0 ? errno : 0;
  fclose(file);
  if (error != 0) return Failure{path + ": " + strerror(error)};
  if (text.empty()) return Failure{path + ": the file is empty"};
  if (text.size() > kLongestFile) return Failure{path + ": the file is too long for a profile"};
  return {};
}

}  // namespace

Result LoadProfile(const std::string& nameOrPath, Profile& profile) {
  if (nameOrPath.find('/') != std::string::npos || nameOrPath.ends_with(".toml")) {
    std::string text;
    if (Result failure = ReadFile(nameOrPath, text)) return failure;
    return ParseProfile(text, nameOrPath, profile);
  }
  std::vector<std::string> names;
  for (const BuiltInProfile* row = kBuiltInProfiles; row->name != nullptr; ++row) {
    if (nameOrPath == row->name) return ParseProfile(row->text, row->name, profile);
    names.emplace_back(row->name);
  }
  return Failure{"there is no profile " + Quoted(nameOrPath) + "; there are: " + Joined(names)};
}

}  // namespace kxsim

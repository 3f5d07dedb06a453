#include <tool/kxwan-sim/FromLog.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fstream>

namespace kxsim {
namespace {

bool WriteFile(const std::string& path, const std::string& text, bool overwrite) {
  FILE* file = fopen(path.c_str(), overwrite ? "we" : "wxe");
  if (file == nullptr) return false;
  const bool written = fwrite(text.data(), 1, text.size(), file) == text.size();
  return fclose(file) == 0 && written;
}

}  // namespace

Result LoadLog(const std::string& path, const std::string& port, LogReading& reading) {
  errno = 0;
  std::ifstream log(path, std::ios::binary);
  const Result failure = ReadLog(log, port, reading);
  if (!log.is_open() || log.bad()) return Failure{path + ": " + strerror(errno)};
  if (failure) return Failure{path + ": " + failure->sentence, failure->status};
  return {};
}

Result SaveProfile(Profile profile, const std::string& path, bool overwrite,
                   std::vector<Replacement>& replaced) {
  replaced = Anonymise(profile);
  if (WriteFile(path, FormatProfile(profile), overwrite)) return {};
  const bool exists = errno == EEXIST;
  return Failure{path + ": " +
                 (exists ? "the file exists; --force overwrites it" : strerror(errno))};
}

}  // namespace kxsim

#include <tool/kxwan-sim/FromLog.h>

#include <recording/Anonymiser.h>
#include <recording/LogReader.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fstream>

namespace kxsim {
namespace {

constexpr int kNothingToPlay = 1;
constexpr int kWrongFile = 2;

int Complain(const std::string& path, const std::string& sentence, int status) {
  fprintf(stderr, "%s: %s\n", path.c_str(), sentence.c_str());
  return status;
}

bool WriteFile(const std::string& path, const std::string& text, bool overwrite) {
  FILE* file = fopen(path.c_str(), overwrite ? "we" : "wxe");
  if (file == nullptr) return false;
  const bool written = fwrite(text.data(), 1, text.size(), file) == text.size();
  return fclose(file) == 0 && written;
}

}  // namespace

int LoadLog(const std::string& path, const std::string& port, Profile& profile) {
  errno = 0;
  std::ifstream log(path, std::ios::binary);
  LogReading reading;
  const bool playable = ReadLog(log, port, reading);
  if (!log.is_open() || log.bad()) return Complain(path, strerror(errno), kWrongFile);
  for (const LogNote& note : reading.notes) {
    fprintf(stderr, "%s:%zu: %s\n", path.c_str(), note.line, note.text.c_str());
  }
  if (!playable) {
    const std::string whose = port.empty() ? "" : " with " + port;
    return Complain(path, "there is no dialogue" + whose + " that could be played", kNothingToPlay);
  }
  profile = std::move(reading.profile);
  return 0;
}

int SaveProfile(Profile profile, const std::string& path, bool overwrite) {
  const std::vector<Replacement> replaced = Anonymise(profile);
  if (!WriteFile(path, FormatProfile(profile), overwrite)) {
    const bool exists = errno == EEXIST;
    return Complain(path, exists ? "the file exists; --force overwrites it" : strerror(errno),
                    kWrongFile);
  }
  for (const Replacement& each : replaced) {
    fprintf(stderr, "%s: replaced by %s: %s, places: %zu\n", path.c_str(), each.by.c_str(),
            each.what.c_str(), each.places);
  }
  if (replaced.empty()) fprintf(stderr, "%s: nothing had to be replaced\n", path.c_str());
  return 0;
}

}  // namespace kxsim

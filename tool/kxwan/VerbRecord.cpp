#include <fcntl.h>
#include <sys/stat.h>
#include <tool/kxwan/Recorder.h>
#include <tool/kxwan/Text.h>
#include <tool/kxwan/Verb.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>

namespace kxtool {
namespace {

constexpr Option kOptions[] = {
    kPort,
    {.name = "PROFILE",
     .place = &Options::file,
     .help = "file to write, such as my-card.toml",
     .required = true},
    {.name = "--force", .place = &Options::force, .help = "overwrite the file"},
};

Failure CannotWrite(const std::string& file) {
  return WrongCall("The file " + Printable(file) + " cannot be written: " + std::strerror(errno) +
                   ".");
}

// Made before the device is asked, so that nothing is asked in vain; what is there stays until
// there is something to put in its place.
Result Create(const Options& options, int& descriptor) {
  const int mode = options.force ? 0 : O_EXCL;
  descriptor = open(options.file.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC | mode, 0644);
  if (descriptor >= 0) return {};
  if (errno != EEXIST) return CannotWrite(options.file);
  return WrongCall("The file " + Printable(options.file) +
                   " is there already: choose another name, or --force to overwrite it.");
}

// Leaves no empty file behind.
void CleanUp(int descriptor, const std::string& file) {
  struct stat status;
  if (fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode) && status.st_size == 0) {
    unlink(file.c_str());
  }
}

Result Write(int descriptor, const std::string& file, const std::string& text) {
  if (ftruncate(descriptor, 0) != 0) return CannotWrite(file);
  size_t done = 0;
  while (done < text.size()) {
    const ssize_t written = write(descriptor, text.data() + done, text.size() - done);
    if (written < 0 && errno != EINTR) return CannotWrite(file);
    if (written > 0) done += static_cast<size_t>(written);
  }
  return {};
}

Result Record(const Options& options, Report& report, Recording& recording) {
  Port port(options.port);
  if (Result failure = port.Open()) return failure;
  if (Result failure = RecordDevice(port, report, recording)) return failure;
  port.Close();
  if (Result failure = RecordExpectation(recording.profile)) return failure;
  const kxsim::Expectation& expect = recording.profile.expect;
  recording.profile.name = std::filesystem::path(options.file).stem();
  recording.profile.description = "Recorded: " + *expect.manufacturer + " " + *expect.model;
  return {};
}

void Show(const Options& options, const Recording& recording, Report& report) {
  report.Fact("file", "Written", options.file);
  report.Fact("platform", "Platform", *recording.profile.expect.platform);
  report.Fact("asked", "Questions", recording.asked);
  report.Fact("silent", "Unanswered", recording.silent);
  const std::vector<std::string> replaced(recording.replaced.begin(), recording.replaced.end());
  report.Data("replaced", replaced);
  report.Line("Replaced        " + (replaced.empty() ? "nothing" : Joined(replaced, ", ")));
  report.Line("Read the file before you pass it on: only you know what is private in it.");
}

Result Run(const Options& options, Report& report) {
  int descriptor = -1;
  if (Result failure = Create(options, descriptor)) return failure;
  Recording recording;
  Result result = Record(options, report, recording);
  if (!result) result = Write(descriptor, options.file, kxsim::FormatProfile(recording.profile));
  if (result) CleanUp(descriptor, options.file);
  close(descriptor);
  if (!result) Show(options, recording, report);
  return result;
}

}  // namespace

const Verb kRecordVerb = {"record", "Write a device down as a profile for a bug report",
                          "kxwan record /dev/ttyUSB0 my-card.toml", kOptions, Run};

}  // namespace kxtool

#include <KXWAN/foundation/DebugLog.h>

#include <KXWAN/foundation/DebugLogPrivate.h>

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <mutex>

FILE* logFileFD = nullptr;

namespace kxwan {

size_t FormatLogRecord(char (&line)[kLogLineSize], const tm& time, const char* format,
                       va_list arguments) {
  constexpr size_t kLongest = kLogLineSize - 1;
  const int stamp =
      std::snprintf(line, sizeof line, "%2.2d:%2.2d:%2.2d %2.2d:%2.2d:%2.2d - ", time.tm_mon + 1,
                    time.tm_mday, time.tm_year - 100, time.tm_hour, time.tm_min, time.tm_sec);
  const size_t start = static_cast<size_t>(std::max(stamp, 0));
  const int text = std::vsnprintf(line + start, sizeof line - start, format, arguments);
  const size_t length = start + static_cast<size_t>(std::max(text, 0));
  if (length <= kLongest) return length;
  // A record that is cut still ends its line, or the next one would be lost behind it.
  line[kLongest - 1] = '\n';
  return kLongest;
}

bool IsOwnLogFile(const struct stat& status, uid_t user) {
  return S_ISREG(status.st_mode) && status.st_uid == user;
}

// In a directory that everybody may write to, the name can be anybody's link, pipe or file.
FILE* OpenLog(const char* path) {
  constexpr int kFlags = O_WRONLY | O_APPEND | O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC;
  const int descriptor = open(path, kFlags, S_IRUSR | S_IWUSR);
  if (descriptor < 0) return nullptr;
  struct stat status = {};
  const bool own = fstat(descriptor, &status) == 0 && IsOwnLogFile(status, geteuid());
  FILE* stream = own ? fdopen(descriptor, "a") : nullptr;
  if (stream == nullptr) close(descriptor);
  return stream;
}

void AppendLogRecord(FILE*& stream, const char* path, std::string_view record) {
  static std::mutex guard;
  const std::lock_guard<std::mutex> lock(guard);
  if (stream == nullptr) stream = OpenLog(path);
  if (stream == nullptr) return;
  std::fwrite(record.data(), 1, record.size(), stream);
  std::fflush(stream);
}

}  // namespace kxwan

void KXOutputDebug(const char* format, ...) {
  const int callersErrno = errno;
  const time_t now = time(nullptr);
  tm local = {};
  // localtime would look at the time zone file for every record.
  localtime_r(&now, &local);
  char line[kxwan::kLogLineSize];
  va_list arguments;
  va_start(arguments, format);
  const size_t length = kxwan::FormatLogRecord(line, local, format, arguments);
  va_end(arguments);
  kxwan::AppendLogRecord(logFileFD, "/tmp/zrklog.txt", {line, length});
  errno = callersErrno;
}

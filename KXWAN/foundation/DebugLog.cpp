#include <KXWAN/foundation/DebugLog.h>

#include <KXWAN/foundation/DebugLogPrivate.h>

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <mutex>

FILE* logFileFD = nullptr;

namespace kxwan {

LogStamp FormatLogStamp(const tm& time) {
  LogStamp stamp;
  const int length = std::snprintf(
      stamp.text, sizeof stamp.text, "%2.2d:%2.2d:%2.2d %2.2d:%2.2d:%2.2d - ", time.tm_mon + 1,
      time.tm_mday, time.tm_year - 100, time.tm_hour, time.tm_min, time.tm_sec);
  stamp.length =
      static_cast<size_t>(std::clamp(length, 0, static_cast<int>(sizeof stamp.text) - 1));
  return stamp;
}

size_t FormatLogRecord(char (&line)[kLogLineSize], const LogStamp& stamp, const char* format,
                       va_list arguments) {
  constexpr size_t kLongest = kLogLineSize - 1;
  const size_t start = stamp.length;
  std::memcpy(line, stamp.text, start);
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

namespace {

// Made once a second: it costs more than the rest of a record.
const LogStamp& StampOfNow() {
  thread_local time_t second = -1;
  thread_local LogStamp stamp;
  const time_t now = std::time(nullptr);
  if (now == second) return stamp;
  tm local = {};
  // localtime would look at the time zone file each time.
  localtime_r(&now, &local);
  stamp = FormatLogStamp(local);
  second = now;
  return stamp;
}

}  // namespace

}  // namespace kxwan

void KXOutputDebug(const char* format, ...) {
  const int callersErrno = errno;
  char line[kxwan::kLogLineSize];
  va_list arguments;
  va_start(arguments, format);
  const size_t length = kxwan::FormatLogRecord(line, kxwan::StampOfNow(), format, arguments);
  va_end(arguments);
  kxwan::AppendLogRecord(logFileFD, "/tmp/zrklog.txt", {line, length});
  errno = callersErrno;
}

#include <KXWAN/foundation/DebugLog.h>
#include <KXWAN/foundation/DebugLogPrivate.h>
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

namespace fs = std::filesystem;

namespace {

std::string Record(const tm& time, const char* format, ...) {
  char line[kxwan::kLogLineSize];
  va_list arguments;
  va_start(arguments, format);
  const size_t length = kxwan::FormatLogRecord(line, time, format, arguments);
  va_end(arguments);
  return {line, length};
}

std::string Contents(const fs::path& path) {
  std::ostringstream text;
  text << std::ifstream(path).rdbuf();
  return text.str();
}

// Which number the next descriptor would get.
int NextDescriptor() {
  const int next = dup(STDERR_FILENO);
  close(next);
  return next;
}

class LogFile : public testing::Test {
 protected:
  LogFile() {
    std::string pattern = testing::TempDir() + "kxwan-log-XXXXXX";
    folder_ = mkdtemp(pattern.data());
    path_ = folder_ / "log.txt";
  }
  ~LogFile() override { fs::remove_all(folder_); }

  void Append(FILE*& stream, const char* record) {
    kxwan::AppendLogRecord(stream, path_.c_str(), record);
  }

  fs::path folder_;
  fs::path path_;
};

// The log stream is a socket that keeps apart what is written at once.
class LogStream : public testing::Test {
 protected:
  LogStream() {
    EXPECT_EQ(socketpair(AF_UNIX, SOCK_DGRAM, 0, ends_), 0);
    logFileFD = fdopen(ends_[0], "a");
  }
  ~LogStream() override {
    fclose(logFileFD);
    close(ends_[1]);
    logFileFD = before_;
  }
  std::string NextWrite() const {
    char buffer[4096];
    const ssize_t size = recv(ends_[1], buffer, sizeof buffer, MSG_DONTWAIT);
    return size < 0 ? "" : std::string(buffer, static_cast<size_t>(size));
  }

  FILE* before_ = logFileFD;
  int ends_[2];
};

}  // namespace

TEST(DebugLog, StampsMonthFirstWithTheYearSince2000) {
  const struct {
    int year, month, day, hour, minute, second;
    const char* stamp;
  } cases[] = {
      {2026, 11, 16, 6, 29, 35, "11:16:26 06:29:35 - x\n"},
      {2000, 1, 2, 0, 0, 0, "01:02:00 00:00:00 - x\n"},
      {2105, 12, 31, 23, 59, 60, "12:31:105 23:59:60 - x\n"},
  };
  for (const auto& row : cases) {
    tm time = {};
    time.tm_year = row.year - 1900;
    time.tm_mon = row.month - 1;
    time.tm_mday = row.day;
    time.tm_hour = row.hour;
    time.tm_min = row.minute;
    time.tm_sec = row.second;
    EXPECT_EQ(Record(time, "%c\n", 'x'), row.stamp);
  }
}

TEST_F(LogStream, WritesEachRecordAtOnceAndKeepsErrno) {
  const std::string longest(1023, 'x');
  errno = EXDEV;
  KXOutputDebug("Port '%s' %d\n", "caf\xE9\xFF", 5);
  KXOutputDebug("%s", longest.c_str());
  KXOutputDebug("%s", "");
  EXPECT_EQ(errno, EXDEV);
  EXPECT_THAT(NextWrite(), testing::MatchesRegex("[01][0-9]:[0-3][0-9]:[0-9]+ [0-9:]+ - "
                                                 "Port 'caf\xE9\xFF' 5\n"));
  const std::string cut = NextWrite();
  EXPECT_EQ(cut.size(), 1023U);
  EXPECT_THAT(cut, testing::EndsWith("- " + longest.substr(0, 1023 - cut.find('x'))));
  EXPECT_THAT(NextWrite(), testing::EndsWith(" - "));
  EXPECT_EQ(NextWrite(), "");
}

TEST_F(LogStream, KeepsErrnoWhenTheWriteFails) {
  FILE* good = logFileFD;
  logFileFD = fopen("/dev/null", "r");
  errno = EXDEV;
  KXOutputDebug("lost\n");
  EXPECT_EQ(errno, EXDEV);
  fclose(logFileFD);
  logFileFD = good;
}

TEST_F(LogFile, IsMadeForItsOwnerAloneAndAppendedTo) {
  const mode_t mask = umask(0);
  FILE* stream = nullptr;
  Append(stream, "one\n");
  umask(mask);
  ASSERT_NE(stream, nullptr);
  EXPECT_EQ(fs::status(path_).permissions(), fs::perms::owner_read | fs::perms::owner_write);
  EXPECT_EQ(fcntl(fileno(stream), F_GETFD) & FD_CLOEXEC, FD_CLOEXEC);
  std::ofstream(path_, std::ios::app) << "from elsewhere\n";
  Append(stream, "two\n");
  FILE* second = nullptr;
  Append(second, "three\n");
  EXPECT_EQ(Contents(path_), "one\nfrom elsewhere\ntwo\nthree\n");
  fclose(stream);
  fclose(second);
}

TEST_F(LogFile, IsNothingButARegularFile) {
  const fs::path victim = folder_ / "victim";
  std::ofstream(victim) << "precious";
  const struct {
    const char* what;
    void (*make)(const fs::path& path, const fs::path& victim);
  } cases[] = {
      {"link", [](const fs::path& path, const fs::path& to) { fs::create_symlink(to, path); }},
      {"dangling link",
       [](const fs::path& path, const fs::path&) { fs::create_symlink("nowhere", path); }},
      {"directory", [](const fs::path& path, const fs::path&) { fs::create_directory(path); }},
      {"pipe", [](const fs::path& path, const fs::path&) { mkfifo(path.c_str(), 0600); }},
  };
  for (const auto& row : cases) {
    SCOPED_TRACE(row.what);
    row.make(path_, victim);
    const int next = NextDescriptor();
    EXPECT_EQ(kxwan::OpenLog(path_.c_str()), nullptr);
    EXPECT_EQ(NextDescriptor(), next);
    fs::remove(path_);
  }
  EXPECT_EQ(Contents(victim), "precious");
  EXPECT_FALSE(fs::exists(folder_ / "nowhere"));

  mkfifo(path_.c_str(), 0600);
  const int reader = open(path_.c_str(), O_RDONLY | O_NONBLOCK);
  const int next = NextDescriptor();
  EXPECT_EQ(kxwan::OpenLog(path_.c_str()), nullptr) << "a pipe that somebody reads";
  EXPECT_EQ(NextDescriptor(), next);
  close(reader);
}

TEST_F(LogFile, BelongsToTheUser) {
  const uid_t user = 1000;
  const struct {
    mode_t type;
    uid_t owner;
    bool own;
  } cases[] = {{S_IFREG, 1000, true},
               {S_IFREG, 0, false},
               {S_IFREG, 1001, false},
               {S_IFIFO, 1000, false},
               {S_IFCHR, 1000, false}};
  for (const auto& row : cases) {
    struct stat status = {};
    status.st_mode = row.type | 0600;
    status.st_uid = row.owner;
    EXPECT_EQ(kxwan::IsOwnLogFile(status, user), row.own) << row.type << ' ' << row.owner;
  }
}

TEST_F(LogFile, IsTriedAgainByTheNextRecord) {
  path_ = folder_ / "not yet" / "log.txt";
  FILE* stream = nullptr;
  Append(stream, "dropped\n");
  EXPECT_EQ(stream, nullptr);
  fs::create_directory(path_.parent_path());
  Append(stream, "kept\n");
  ASSERT_NE(stream, nullptr);
  EXPECT_EQ(Contents(path_), "kept\n");
  fclose(stream);
}

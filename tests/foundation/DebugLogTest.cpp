#include <KXWAN/foundation/DebugLog.h>
#include <KXWAN/foundation/DebugLogPrivate.h>
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

namespace fs = std::filesystem;

namespace {

std::string Record(const tm& time, const char* format, ...) {
  char line[kxwan::kLogLineSize];
  va_list arguments;
  va_start(arguments, format);
  const size_t length =
      kxwan::FormatLogRecord(line, kxwan::FormatLogStamp(time), format, arguments);
  va_end(arguments);
  return {line, length};
}

std::string Contents(const fs::path& path) {
  std::ifstream file(path);
  return {std::istreambuf_iterator<char>(file), {}};
}

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

  fs::path folder_;
  fs::path path_;
};

}  // namespace

TEST(DebugLog, StampsMonthFirstWithTheYearSince2000) {
  const struct {
    int year;
    const char* stamp;
  } cases[] = {{2026, "11:16:26 06:29:35 - x\n"},
               {2000, "11:16:00 06:29:35 - x\n"},
               {2105, "11:16:105 06:29:35 - x\n"}};
  for (const auto& row : cases) {
    tm time = {};
    std::sscanf("11 16 6 29 35", "%d %d %d %d %d", &time.tm_mon, &time.tm_mday, &time.tm_hour,
                &time.tm_min, &time.tm_sec);
    time.tm_year = row.year - 1900;
    --time.tm_mon;
    EXPECT_EQ(Record(time, "%c\n", 'x'), row.stamp);
  }
}

// A socket that keeps messages apart shows what is written at once.
TEST(DebugLog, WritesEachRecordAtOnceAndKeepsErrno) {
  int ends[2];
  ASSERT_EQ(socketpair(AF_UNIX, SOCK_DGRAM, 0, ends), 0);
  FILE* before = logFileFD;
  logFileFD = fdopen(ends[0], "a");
  const auto next = [&] {
    char buffer[4096];
    const ssize_t size = recv(ends[1], buffer, sizeof buffer, MSG_DONTWAIT);
    return std::string(buffer, static_cast<size_t>(std::max<ssize_t>(size, 0)));
  };
  const std::string longest(1023, 'x');
  errno = EXDEV;
  KXOutputDebug("Port '%s' %d\n", "caf\xE9\xFF", 5);
  KXOutputDebug("%s", longest.c_str());
  EXPECT_THAT(next(), testing::MatchesRegex("[01][0-9]:[0-3][0-9]:[0-9]+ [0-9:]+ - "
                                            "Port 'caf\xE9\xFF' 5\n"));
  const std::string cut = next();
  EXPECT_EQ(cut.size(), 1023U);
  EXPECT_THAT(cut, testing::EndsWith("- " + longest.substr(0, 1022 - cut.find('x')) + "\n"));
  EXPECT_EQ(next(), "");
  close(ends[1]);
  errno = EXDEV;
  KXOutputDebug("lost\n");
  EXPECT_EQ(errno, EXDEV) << "although nobody takes the record";
  fclose(logFileFD);
  logFileFD = before;
}

TEST_F(LogFile, IsMadeForItsOwnerAloneAndAppendedTo) {
  FILE* stream = nullptr;
  kxwan::AppendLogRecord(stream, (folder_ / "none" / "log.txt").c_str(), "dropped\n");
  EXPECT_EQ(stream, nullptr);
  const mode_t mask = umask(0);
  kxwan::AppendLogRecord(stream, path_.c_str(), "one\n");
  umask(mask);
  ASSERT_NE(stream, nullptr) << "the next record tries again";
  EXPECT_EQ(fs::status(path_).permissions(), fs::perms::owner_read | fs::perms::owner_write);
  EXPECT_EQ(fcntl(fileno(stream), F_GETFD) & FD_CLOEXEC, FD_CLOEXEC);
  std::ofstream(path_, std::ios::app) << "from elsewhere\n";
  kxwan::AppendLogRecord(stream, path_.c_str(), "two\n");
  EXPECT_EQ(Contents(path_), "one\nfrom elsewhere\ntwo\n");
  fclose(stream);
}

TEST_F(LogFile, IsNothingButARegularFile) {
  std::ofstream(folder_ / "victim") << "precious";
  fs::create_symlink("victim", folder_ / "link");
  fs::create_symlink("nowhere", folder_ / "dangling");
  fs::create_directory(folder_ / "directory");
  mkfifo((folder_ / "pipe").c_str(), 0600);
  mkfifo((folder_ / "read pipe").c_str(), 0600);
  const int reader = open((folder_ / "read pipe").c_str(), O_RDONLY | O_NONBLOCK);
  const int next = NextDescriptor();
  for (const char* name : {"link", "dangling", "directory", "pipe", "read pipe"}) {
    EXPECT_EQ(kxwan::OpenLog((folder_ / name).c_str()), nullptr) << name;
  }
  EXPECT_EQ(NextDescriptor(), next);
  close(reader);
  EXPECT_EQ(Contents(folder_ / "victim"), "precious");
  EXPECT_FALSE(fs::exists(folder_ / "nowhere"));
}

TEST_F(LogFile, BelongsToTheUser) {
  struct stat status = {};
  status.st_mode = S_IFREG | 0600;
  status.st_uid = 1000;
  EXPECT_TRUE(kxwan::IsOwnLogFile(status, 1000));
  EXPECT_FALSE(kxwan::IsOwnLogFile(status, 0));
}

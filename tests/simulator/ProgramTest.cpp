#ifdef KXWAN_SIM_PROGRAM

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <tests/support/Host.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace {

using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::MatchesRegex;
using ::testing::Not;
using ::testing::StartsWith;

std::string TempPath(const std::string& name) {
  return testing::TempDir() + "kxsim-" + std::to_string(getpid()) + "-" + name;
}

// The program, running; it is told to stop at the end.
class Program {
 public:
  explicit Program(std::vector<std::string> arguments) : complaints_(TempPath("stderr")) {
    int ends[2];
    if (pipe(ends) != 0) return;
    process_ = fork();
    if (process_ == 0) {
      dup2(ends[1], STDOUT_FILENO);
      close(ends[0]);
      close(ends[1]);
      if (freopen(complaints_.c_str(), "w", stderr) == nullptr) _exit(126);
      std::vector<char*> words = {const_cast<char*>(KXWAN_SIM_PROGRAM)};
      for (std::string& argument : arguments) words.push_back(argument.data());
      words.push_back(nullptr);
      execv(KXWAN_SIM_PROGRAM, words.data());
      _exit(127);
    }
    close(ends[1]);
    output_ = fdopen(ends[0], "r");
  }
  ~Program() {
    if (process_ > 0) Stop();
    fclose(output_);
    std::filesystem::remove(complaints_);
  }
  Program(const Program&) = delete;
  Program& operator=(const Program&) = delete;

  std::string Line() {
    char line[512] = "";
    if (fgets(line, sizeof line, output_) == nullptr) return "";
    return std::string(line).substr(0, std::string(line).find('\n'));
  }
  std::string Rest() {
    std::string text;
    for (int byte = fgetc(output_); byte != EOF; byte = fgetc(output_))
      text += static_cast<char>(byte);
    return text;
  }
  // The status with which it ends by itself.
  int Wait() {
    int status = 0;
    waitpid(process_, &status, 0);
    process_ = -1;
    return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
  }
  int Stop() {
    kill(process_, SIGTERM);
    return Wait();
  }
  std::string Complaints() const {
    std::ifstream file(complaints_);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
  }

 private:
  const std::string complaints_;
  pid_t process_ = -1;
  FILE* output_ = nullptr;
};

struct WrongCall {
  std::vector<std::string> arguments;
  const char* complaint;
};

TEST(Program, SaysWhatIsWrongWithACall) {
  const std::string file = TempPath("file.toml");
  std::ofstream(file) << "[line]\nbaud = 1\n";
  const WrongCall kWrongCalls[] = {
      {{}, "kxwan-sim: name a profile; --list shows those that are built in\n"},
      {{"no-such"}, "kxwan-sim: there is no profile \"no-such\"; there are: "},
      {{"/nowhere/none.toml"}, "/nowhere/none.toml: No such file or directory\n"},
      {{file}, ":2: \"baud\": expected a line speed"},
      {{"gprs-phone", "--link", file}, "exists and is no link\n"},
      {{"gprs-phone", "--link", "/nowhere/at/all"}, "/nowhere/at/all: No such file"},
      {{"gprs-phone", "--link", "a", "--link", "b"}, "there are more links than profiles\n"},
      {{"gprs-phone", "--fault", "fire"}, "kxwan-sim: unknown fault \"fire\""},
      {{"gprs-phone", "--fault", "late"}, "the fault \"late\" needs \"ms\""},
      {{"gprs-phone", "--for", "-1"},
       "--for: expected seconds from 0.001 to 1000000000 (see kxwan"},
      {{"gprs-phone", "--for", "1e999"},
       "--for: expected seconds from 0.001 to 1000000000 (see kx"},
      {{"gprs-phone", "--for", "nan"}, "--for: expected seconds"},
      {{"gprs-phone", "--seed", "x"}, "--seed: expected a whole number from 0 to 18446744073709"},
      {{"gprs-phone", "--seed", "-1"}, "--seed: expected a whole number from 0 to"},
      {{"/"}, "kxwan-sim: /: Is a directory\n"},
      {{"--describe", "/"}, "kxwan-sim: /: Is a directory\n"},
      {{"--describe", "no-such"}, "there is no profile \"no-such\""},
      {{"--bogus"}, "--bogus"},
  };
  for (const WrongCall& row : kWrongCalls) {
    SCOPED_TRACE(row.complaint);
    Program program(row.arguments);
    EXPECT_EQ(program.Line(), "");
    EXPECT_EQ(program.Wait(), 2);
    EXPECT_THAT(program.Complaints(), HasSubstr(row.complaint));
  }
  std::filesystem::remove(file);
}

TEST(Program, ListsAndDescribes) {
  Program list({"--list"});
  EXPECT_THAT(list.Line(), MatchesRegex("[a-z0-9-]+ +.+"));
  Program description({"--describe", "tdma-phone"});
  EXPECT_EQ(description.Line(), "tdma-phone");
  EXPECT_EQ(description.Line(), "description:   A TDMA phone");
  for (std::string line = "x"; !line.empty();) line = description.Line();
  EXPECT_EQ(description.Wait(), 0);
}

TEST(Program, TellsItsVersion) {
  Program program({"--version"});
  EXPECT_THAT(program.Line(), MatchesRegex("kxwan-sim [0-9]+\\.[0-9]+\\.[0-9]+"));
  EXPECT_EQ(program.Wait(), 0);
}

// What a device says must not move the cursor or retitle the window of whoever looks at it.
TEST(Program, ShowsTextsHarmlessly) {
  const std::string profile = TempPath("escape.toml");
  std::ofstream(profile)
      << "description = \"d\\u001B[2J\"\nfamilies = []\n"
      << "[identity]\nmodel = \"m\\u001B[2J\\u009B\"\n"
      << "[replies]\n\"AT\\u001B[2J\" = [\"a\\u001B[2J\\nb\\r\", \"+CME ERROR: \\u001B\"]\n";
  const std::string wrong = TempPath("wrong.toml");
  std::ofstream(wrong) << "\"key\\u001B[2J\" = 1\n";
  const std::string log = TempPath("escape-log");
  std::ofstream(log) << "11:16:26 06:29:35 - KxSerial::Open() - '/dev/\x1B[2J' Success\n"
                     << "11:16:26 06:29:35 - CSModem::SendCommand() -> AT\r\n"
                     << "11:16:26 06:29:35 - CSModem::GetResponse() -> OK\n";
  struct {
    std::vector<std::string> arguments;
    const char* shown;
  } const kCalls[] = {
      {{"--describe", profile}, "description:   d\\x1B[2J\n"},
      {{"--describe", profile}, "model:         m\\x1B[2J\\x9B\n"},
      {{"--describe", profile}, "  AT\\x1B[2J -> a\\x1B[2J / b\\r / OK, then +CME ERROR: \\x1B\n"},
      {{wrong}, ":1: unknown key \"key\\x1B[2J\""},
      {{"--from-log", log, "--write", "/nowhere/x"}, " played: /dev/\\x1B[2J\n"},
      {{"--from-log", log, "--port", "\x1B"}, "there is no dialogue with \\x1B that could"},
      {{"\x1B"}, "there is no profile \"\\x1B\""},
  };
  for (const auto& row : kCalls) {
    SCOPED_TRACE(row.shown);
    Program program(row.arguments);
    const std::string output = program.Rest();
    program.Wait();
    EXPECT_THAT(output + program.Complaints(), AllOf(HasSubstr(row.shown), Not(HasSubstr("\x1B"))));
  }
  for (const std::string& file : {profile, wrong, log}) std::filesystem::remove(file);
}

TEST(Program, PlaysUnderALinkUntilItIsStopped) {
  const std::string link = TempPath("link");
  const std::string own = link + ".new";
  std::ofstream(own) << "the user's";
  std::filesystem::create_symlink("/nowhere", link);
  Program program({"--trace", "--link", link, "--fault", "rubbish,text=\x01", "gsm-phone-9600"});
  const std::string path = program.Line();
  EXPECT_THAT(path, StartsWith("/dev/"));
  EXPECT_EQ(std::filesystem::read_symlink(link), path);
  Host host(link, B9600);
  const std::string answer = "AT+GMM\r\x01\r\nSH 888\r\n\r\nOK\r\n";
  EXPECT_EQ(host.Ask("AT+GMM\r", answer), answer);
  EXPECT_EQ(program.Stop(), 0);
  EXPECT_THAT(program.Complaints(), HasSubstr(" >> AT+GMM\\r\n"));
  EXPECT_THAT(program.Complaints(), HasSubstr(" << AT+GMM\\r\\x01\\r\\n\n"));
  EXPECT_THAT(program.Complaints(), HasSubstr(" << SH 888\\r\\n\n"));
  EXPECT_FALSE(std::filesystem::exists(std::filesystem::symlink_status(link)));
  EXPECT_TRUE(std::filesystem::remove(own));
}

TEST(Program, PlaysSeveralAndEndsInTime) {
  Program program({"tdma-phone", "iden-phone", "--for", "0.01"});
  EXPECT_THAT(program.Line(), MatchesRegex("/dev/.* tdma-phone"));
  EXPECT_THAT(program.Line(), MatchesRegex("/dev/.* iden-phone"));
  EXPECT_EQ(program.Wait(), 0);
}

TEST(Program, MakesAProfileOfALog) {
  const std::string log = TempPath("log");
  const std::string profile = TempPath("log.toml");
  std::ofstream(log) << "rubbish\n11:16:26 06:29:35 - CSModem::SendCommand() -> AT+CIMI\r\n"
                     << "11:16:26 06:29:35 - CSModem::GetResponse() -> 262011234567890\n";
  struct {
    std::vector<std::string> arguments;
    int status;
    std::string complaint;
  } const kCalls[] = {
      {{"--from-log", "/nowhere"}, 2, "/nowhere: No such file"},
      {{"--from-log", "/"}, 2, "/: Is a directory"},
      {{"--from-log", "/dev/null"}, 1, "/dev/null: there is no dialogue that could be played"},
      {{"--from-log", log, "--port", "x"}, 1, "there is no dialogue with x"},
      {{"--from-log", log, "gprs-phone"}, 2, "excludes"},
      {{"--from-log", log, "--write", profile}, 0, log + ":1: this is no record of the log\n"},
      {{"--from-log", log, "--write", profile}, 2, "the file exists"},
      {{"--from-log", log, "--write", profile, "--force"}, 0, "replaced by 000000000000001: IMSI"},
  };
  for (const auto& row : kCalls) {
    SCOPED_TRACE(row.complaint);
    Program program(row.arguments);
    EXPECT_EQ(program.Line(), "");
    EXPECT_EQ(program.Wait(), row.status);
    EXPECT_THAT(program.Complaints(), HasSubstr(row.complaint));
  }
  for (const char* digits : {"262011234567890", "000000000000001"}) {
    const bool original = digits[0] == '2';
    Program program(original ? std::vector<std::string>{"--from-log", log}
                             : std::vector<std::string>{profile});
    Host host(program.Line());
    const std::string answer = "\r\n" + std::string(digits) + "\r\n\r\nOK\r\n";
    EXPECT_EQ(host.Ask("AT+CIMI\r", answer), answer);
  }
  std::filesystem::remove(log);
  std::filesystem::remove(profile);
}

}  // namespace

#endif

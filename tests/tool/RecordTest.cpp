#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <simulator/SimulatedDevice.h>
#include <tests/support/Host.h>
#include <tests/tool/Program.h>

#include <filesystem>
#include <fstream>
#include <sstream>

namespace {

using testing::HasSubstr;
using testing::Not;

// A phone whose owner would rather not be named, with its echo and its reports on.
constexpr char kPhone[] = R"toml(scripted = true
[line]
baud = 115200
echo = true
[replies]
"AT" = "OK"
"AT+GCAP" = "+GCAP: +CGSM"
"AT+GMI" = "Ardent"
"AT+GMM" = "A310"
"ATI" = "A310\nIMEI 350000000000018 of 2005-04-12"
"AT+CGSN" = "350000000000018"
"AT+CGATT=?" = "+CGATT: (0,1)"
"AT+CGDCONT?" = "+CGDCONT: 1,\"IP\",\"corp.example\""
"AT+CMEE?" = "+CMEE: 2"
"AT+CMEE=1" = "OK"
"AT+CMEE=1;+CPIN?" = "+CME ERROR: 11"
)toml";

std::string ContentOf(const std::string& file) {
  std::stringstream content;
  content << std::ifstream(file).rdbuf();
  return content.str();
}

std::string NewFile(const char* name) {
  std::string file = testing::TempDir() + std::to_string(getpid()) + name;
  std::filesystem::remove(file);
  return file;
}

TEST(Record, ChangesNothingThatStays) {
  kxsim::SimulatedDevice device(ProfileOf(kPhone));
  ASSERT_EQ(RunProgram({"record", device.Path(), NewFile("kept.toml")}).status, 0);
  const std::vector<std::string> commands = device.Commands();
  ASSERT_GT(commands.size(), 50U);
  EXPECT_EQ(commands.back(), "ATE1");
  EXPECT_EQ(commands.end()[-2], "AT+CMEE=2");
  for (const std::string& command : commands) {
    if (command.find("+CMEE=") != command.npos) continue;
    const size_t sign = command.find('=');
    EXPECT_TRUE(sign == command.npos || command.substr(sign) == "=?") << command;
    EXPECT_NE(command.substr(0, 3), "ATD");
  }
}

TEST(Record, WritesAProfileThatPlaysTheDeviceAndNamesNobody) {
  const std::string port = SimulatedPort(kPhone);
  const std::string file = NewFile("phone.toml");
  const ProgramRun run = RunProgram({"record", port, file});
  ASSERT_EQ(run.status, 0) << run.err;
  EXPECT_THAT(run.out, HasSubstr("Replaced"));
  const std::string content = ContentOf(file);
  EXPECT_THAT(content, Not(HasSubstr("350000000000018")));
  EXPECT_THAT(content, Not(HasSubstr("corp")));
  for (const char* kept : {"2005-04-12", "platform = \"GSM, GPRS\"", "sim = 1014",
                           "fast_baud = ", "prepare = [", "last_error = ", "dial = \"*99***3#\""}) {
    EXPECT_THAT(content, HasSubstr(kept));
  }
  EXPECT_EQ(RunProgram({"detect", "sim:" + file}).out, RunProgram({"detect", port}).out);

  EXPECT_EQ(RunProgram({"record", port, file}).status, 2);
  EXPECT_EQ(ContentOf(file), content);
  EXPECT_EQ(RunProgram({"record", port, file, "--force"}).status, 0);
}

TEST(Record, LeavesFilesAloneWhenThereIsNoDevice) {
  const std::string file = NewFile("none.toml");
  EXPECT_EQ(RunProgram({"record", "/dev/none", file}).status, 2);
  EXPECT_FALSE(std::filesystem::exists(file));
  std::ofstream(file) << "kept";
  EXPECT_EQ(RunProgram({"record", "/dev/none", file, "--force"}).status, 2);
  EXPECT_EQ(ContentOf(file), "kept");
  EXPECT_EQ(RunProgram({"record", "/dev/none", "/none/none.toml"}).status, 2);
}

}  // namespace

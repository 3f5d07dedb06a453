#include <KXWAN/handset/LineSpeed.h>
#include <gtest/gtest.h>
#include <tests/handset/DeviceAtSpeed.h>
#include <tests/support/BusyMachine.h>
#include <tests/support/SideBySide.h>

#include <algorithm>
#include <iterator>

namespace {

using Commands = std::vector<std::string>;

TEST(FindLineSpeed, FindsWhereTheDeviceAnswers) {
  DeviceAtSpeed device(9600, {{"ATE0V1", "ERROR"}});
  device.SetPort(19200);
  unsigned long speed = 0;
  EXPECT_TRUE(kxwan::FindLineSpeed(device.Modem(), speed));
  EXPECT_EQ(speed, 9600U);
  EXPECT_EQ(device.PortSpeed(), 9600U);
  device.Device().HangUp();
  EXPECT_FALSE(kxwan::FindLineSpeed(device.Modem(), speed));
  EXPECT_EQ(speed, 9600U);
}

// Speed 0: the device takes any, and answers at each that is asked.
struct FindCase {
  const char* name;
  int speed;
  int latencyMs;
  int firstMs;    // the first answer
  bool answered;  // all that is asked behind it
};

const FindCase kFindCases[] = {
    {"a real line", 9600, 20, 20, true},
    {"a slow device on a real line", 9600, 400, 400, true},
    {"a slow device that takes any speed", 0, 400, 400, true},
    {"a device that wakes up and takes any speed", 0, 300, 5600, false},
};

kxsim::Profile DeviceOf(const FindCase& row) {
  kxsim::Profile profile;
  profile.families = {"gsm"};
  profile.line.autobaud = row.speed == 0;
  profile.line.baud = row.speed == 0 ? 19200 : row.speed;
  profile.line.latencyMs = row.latencyMs;
  profile.faults = {{.kind = "late", .at = 1, .ms = row.firstMs - row.latencyMs, .text = ""}};
  profile.identity.manufacturer = "maker";
  profile.identity.model = "model";
  profile.identity.revision = "revision";
  profile.identity.serial = "350000000000000";
  return profile;
}

TEST(FindLineSpeed, LeavesNoAnswerForWhatIsAskedBehindIt) {
  SideBySide(kFindCases, [](const FindCase& row) {
    OnABusyMachine([&] {
      ScriptedDevice device(DeviceOf(row));
      if (!row.answered) device.Modem()->m_dwResponseTimeout = 1500;
      unsigned long speed = 0;
      EXPECT_TRUE(kxwan::FindLineSpeed(device.Modem(), speed));
      EXPECT_TRUE(row.speed == 0 || speed == static_cast<unsigned long>(row.speed)) << speed;
      for (const auto& [command, answer] : Answers{{"AT+GMI\r", "maker"},
                                                   {"AT+GMM\r", "model"},
                                                   {"AT+GMR\r", "revision"},
                                                   {"AT+GSN\r", "350000000000000"},
                                                   {"AT+GMM\r", "model"}}) {
        int result = -1;
        CString response;
        const bool came = device.Modem()->SendCommandGetResponse(command.c_str(), result, response);
        EXPECT_TRUE(came || !row.answered) << command;
        EXPECT_STREQ(response.String(), came ? answer.c_str() : "");
      }
    });
  });
}

struct ChangeCase {
  const char* name;
  const char* answer;     // to AT+IPR=
  const char* registers;  // answer to ATS3?
  bool moves;
  unsigned long asked;
  bool changed;
  Commands told;  // the speeds that the device was told
};

const ChangeCase kChanges[] = {
    {"moves", "OK", "013", true, 115200, true, {"AT+IPR=115200"}},
    {"moves and refuses questions", "OK", "ERROR", true, 115200, true, {"AT+IPR=115200"}},
    {"refuses", "+CME ERROR: 3", "013", true, 115200, false, {"AT+IPR=115200"}},
    {"says OK and stays", "OK", "013", false, 115200, false, {"AT+IPR=115200"}},
    {"no line knows it", "OK", "013", true, 12345, false, {}},
};

// How many questions check the new speed depends on how soon the device answers.
Commands SpeedsIn(const Commands& commands) {
  Commands told;
  std::copy_if(commands.begin(), commands.end(), std::back_inserter(told),
               [](const std::string& command) { return command.starts_with("AT+IPR="); });
  return told;
}

TEST(ChangeLineSpeed, IsCheckedAndUndone) {
  SideBySide(kChanges, [](const ChangeCase& row) {
    OnABusyMachine([&] {
      DeviceAtSpeed device(
          19200, {{"AT+IPR=*", row.answer}, {"ATS3?", row.registers}, {"AT+GMM", "model"}},
          row.moves);
      EXPECT_EQ(kxwan::ChangeLineSpeed(device.Modem(), row.asked), row.changed);
      EXPECT_EQ(device.PortSpeed(), row.changed ? row.asked : 19200U);
      EXPECT_EQ(SpeedsIn(device.Commands()), row.told);

      int result = -1;
      CString response;
      EXPECT_TRUE(device.Modem()->SendCommandGetResponse("AT+GMM\r", result, response));
      EXPECT_STREQ(response.String(), "model");
    });
  });
}

}  // namespace

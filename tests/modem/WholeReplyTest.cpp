#include <KXWAN/modem/CSModem.h>
#include <gtest/gtest.h>
#include <pthread.h>
#include <tests/support/BusyMachine.h>
#include <tests/support/ScriptedDevice.h>
#include <tests/support/SideBySide.h>

#include <csignal>
#include <ctime>
#include <string>
#include <string_view>
#include <vector>

namespace {

using kxwan::kResultOk;
using kxwan::kResultTimeout;
using Pieces = std::vector<std::string>;

// The command before was answered, or it was not and its answer is lost or comes late.
enum class Before { kAnswered, kLost, kLate };

// What a device sends for "AT+V" and what comes of it.
struct Case {
  const char* name;
  Before before;
  Pieces pieces;
  int result;
  std::string response;
};

const Pieces kValue = {"OK\r\nline 2\r\n\r\nOK\r\n"};
const Pieces kValueInPieces = {"O", "K\r", "\nline 2\r\n", "\r\nOK", "\r\n"};
const Pieces kHalf = {"\r\n+CREG: 1\r\n"};
const Pieces kHalfError = {"\r\n+CREG: 1\r\n\r\n+CME ERROR: 3"};

const Case kCases[] = {
    {"value", Before::kAnswered, kValue, kResultOk, "OK\r\nline 2"},
    {"value behind a lost answer", Before::kLost, kValue, kResultOk, "OK\r\nline 2"},
    {"value behind a late answer", Before::kLate, kValue, kResultOk, "OK\r\nline 2"},
    {"value in pieces", Before::kAnswered, kValueInPieces, kResultOk, "OK\r\nline 2"},
    {"value in pieces behind a lost answer", Before::kLost, kValueInPieces, kResultOk,
     "OK\r\nline 2"},
    {"half", Before::kAnswered, kHalf, kResultTimeout, "\r\n+CREG: 1\r\n"},
    {"half an error", Before::kAnswered, kHalfError, kResultTimeout, " 3"},
    {"half an error behind a lost answer", Before::kLost, kHalfError, kResultTimeout, " 3"},
    {"half an error behind a late answer", Before::kLate, kHalfError, kResultTimeout, " 3"},
};

kxsim::Profile DeviceOf(const Case& row) {
  kxsim::Profile profile = kxsim::ScriptedProfile({{"AT+N", "next"}});
  kxsim::AddReply(profile, "AT+V", {.raw = row.pieces, .gapMs = 20});
  kxsim::Answer earlier = kxsim::ParseAnswer(row.before == Before::kLost ? "(silence)" : "earlier");
  earlier.latencyMs = row.before == Before::kLate ? 3000 : 0;
  kxsim::AddReply(profile, "AT+E", earlier);
  return profile;
}

// What is left of a half may cost the next command its answer, but never makes it another.
TEST(WholeReply, IsTheAnswer) {
  SideBySide(kCases, [](const Case& row) {
    OnABusyMachine([&] {
      ScriptedDevice device(DeviceOf(row));
      CSModem& modem = *device.Modem();
      int result = -1;
      CString response;
      device.ExpectSilence(row.before == Before::kAnswered ? 20000 : 1000);
      EXPECT_EQ(modem.SendCommandGetResponse("AT+E\r", result, response),
                row.before == Before::kAnswered);
      device.ExpectSilence(5000);
      EXPECT_EQ(modem.SendCommandGetResponse("AT+V\r", result, response),
                row.result != kResultTimeout);
      EXPECT_EQ(result, row.result);
      EXPECT_EQ(response.String(), row.response);
      if (modem.SendCommandGetResponse("AT+N\r", result, response)) {
        EXPECT_EQ(result, kResultOk);
        EXPECT_STREQ(response.String(), "next");
      }
    });
  });
}

// A host that is not scheduled: its thread sleeps in a signal.
void Pause(int) {
  timespec left = {4, 500000000};
  while (nanosleep(&left, &left) != 0) {
  }
}

// The host stops when the device sends its last piece, and goes on when the time of the try is
// over.
TEST(WholeReply, IsTheAnswerToAHostThatStopsForLonger) {
  struct sigaction action = {};
  action.sa_handler = Pause;
  sigaction(SIGUSR1, &action, nullptr);
  for (const Pieces& pieces : {Pieces{"\r\nfirst half, rest\r\n\r\nOK\r\n"},
                               Pieces{"\r\nfirst half,", " rest\r\n\r\nOK\r\n"}}) {
    SCOPED_TRACE(pieces.front());
    kxsim::Profile profile = kxsim::ScriptedProfile({{"AT+N", "next"}});
    kxsim::AddReply(profile, "AT+V", {.raw = pieces, .gapMs = 500});
    kxsim::DeviceOptions options;
    options.onTraffic = [host = pthread_self()](kxsim::Traffic kind, std::string_view bytes) {
      const bool isLast = kind == kxsim::Traffic::kToHost && bytes.find("rest") != bytes.npos;
      if (isLast) pthread_kill(host, SIGUSR1);
    };
    ScriptedDevice device(profile, options);
    device.Modem()->m_dwResponseTimeout = 4000;
    int result = -1;
    CString response;
    EXPECT_TRUE(device.Modem()->SendCommandGetResponse("AT+V\r", result, response));
    EXPECT_STREQ(response.String(), "first half, rest");
    EXPECT_TRUE(device.Modem()->SendCommandGetResponse("AT+N\r", result, response));
    EXPECT_STREQ(response.String(), "next");
    EXPECT_EQ(device.Commands(), (std::vector<std::string>{"AT+V", "AT+N"}));
  }
}

}  // namespace

#include <KXWAN/modem/CSModem.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <tests/support/BusyMachine.h>
#include <tests/support/ScriptedDevice.h>
#include <tests/support/TestLog.h>
#include <tests/support/Waiting.h>

#include <chrono>

using namespace std::string_literals;
using kxwan::kResultEquipmentError;
using kxwan::kResultError;
using kxwan::kResultOk;
using kxwan::kResultTimeout;
using Pieces = std::vector<std::string>;

namespace {

kxsim::Answer Raw(Pieces pieces, int gapMs = 300) {
  kxsim::Answer answer;
  answer.raw = std::move(pieces);
  answer.gapMs = gapMs;
  return answer;
}

double CpuSeconds() {
  rusage usage = {};
  getrusage(RUSAGE_THREAD, &usage);
  const auto seconds = [](const timeval& time) {
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
  };
  return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

struct ReplyCase {
  const char* name;
  Pieces pieces;
  int result;
  std::string response;
  std::string logged;  // behind "CSModem::GetResponse() -> "
};

ReplyCase Of(const char* name, Pieces pieces, int result, std::string response,
             std::string logged) {
  return {name, std::move(pieces), result, std::move(response), std::move(logged)};
}

const ReplyCase kReplies[] = {
    Of("bare OK", {"\r\nOK\r\n"}, kResultOk, "", "OK"),
    Of("OK in two pieces", {"\r\nOK", "\r\n"}, kResultOk, "", "OK"),
    Of("OK cut inside its line end", {"\r\nOK\r", "\n"}, kResultOk, "", "OK"),
    Of("information", {"\r\n+CSQ: 20,99\r\n\r\nOK\r\n"}, kResultOk, "+CSQ: 20,99", "+CSQ: 20,99"),
    Of("inner line breaks stay", {"\r\na\r\n\r\nb\r\n\r\nOK\r\n"}, kResultOk, "a\r\n\r\nb", "a"),
    Of("the echo stays", {"AT\r\r\nOK\r\n"}, kResultOk, "AT", "AT"),
    Of("OK within a line is text", {"\r\nNOT OK\r\nOKAY\r\n", "\r\nOK\r\n"}, kResultOk,
       "NOT OK\r\nOKAY", "NOT OK"),
    Of("a lone line feed is no line end", {"\nOK\r\n\r\nOK\r\n"}, kResultOk, "OK", "OK"),
    Of("runs of carriage returns", {"\r\r\nx\r\r\n\r\r\nOK\r\r\n"}, kResultOk, "x", "x"),
    Of("NULs are no text", {"\0\r\n\0+GMM: m\0x\r\n\r\nO\0K\r\n\0"s}, kResultOk, "+GMM: mx",
       "+GMM: mx"),
    Of("high bytes pass", {"\xFF\xFE\r\n\xE9\r\n\r\nOK\r\n"}, kResultOk, "\xFF\xFE\r\n\xE9",
       "\xFF\xFE"),
    Of("ERROR empties", {"\r\nrubbish\r\n\r\nERROR\r\n"}, kResultError, "", "ERROR"),
    Of("OK counts before ERROR in one text", {"\r\nERROR\r\n\r\nOK\r\n"}, kResultOk, "ERROR",
       "ERROR"),
    Of("ERROR counts before an equipment error", {"\r\n+CME ERROR: 3\r\n\r\nERROR\r\n"},
       kResultError, "", "ERROR"),
    Of("+CME", {"\r\n+CME ERROR: 10\r\n"}, kResultEquipmentError, "10", "CME Error: 10"),
    Of("CME", {"\r\nCME ERROR: 515\r\n"}, kResultEquipmentError, "515", "CME Error: 515"),
    Of("+CMS", {"\r\n+CMS ERROR: 500\r\n"}, kResultEquipmentError, "500", "CMS Error: 500"),
    Of("CMS", {"\r\nCMS ERROR: 8\r\n"}, kResultEquipmentError, "8", "CMS Error: 8"),
    Of("verbose, cut inside its token and its line",
       {"\r\n+CM", "E ERROR: SIM", " PIN required\r\n"}, kResultEquipmentError, "SIM PIN required",
       "CME Error: SIM PIN required"),
    Of("what stands before the token is given up", {"\r\n+CREG: 1\r\n\r\n+CME ERROR: 30\r\n"},
       kResultEquipmentError, "30", "CME Error: 30"),
    Of("the token with + counts first", {"\r\nCME ERROR: 1\r\n\r\n+CME ERROR: 2\r\n"},
       kResultEquipmentError, "2", "CME Error: 2"),
    Of("both kinds: CME is taken first, then CMS", {"\r\n+CME ERROR: 1\r\n+CMS ERROR: 2\r\n"},
       kResultEquipmentError, "2", "CME Error: 2"),
    Of("a second token stays in the text", {"\r\n+CME ERROR: 1\r\n+CME ERROR: 2\r\n"},
       kResultEquipmentError, "1\r\n+CME ERROR: 2", "CME Error: 1"),
    Of("OK behind an open error line", {"\r\n+CME ERROR: 1", "\r\nOK\r\n"}, kResultOk, "1", "1"),
    Of("longer than a log line", {"\r\n" + std::string(4000, 'x') + "\r\n\r\nOK\r\n"}, kResultOk,
       std::string(4000, 'x'), std::string(512, 'x')),
};

TEST(Exchange, ClassifiesTheReply) {
  for (const ReplyCase& row : kReplies) {
    SCOPED_TRACE(row.name);
    OnABusyMachine([&] {
      kxsim::Profile profile = kxsim::ScriptedProfile({});
      kxsim::AddReply(profile, "ATX", Raw(row.pieces));
      ScriptedDevice device(profile);
      int result = -1;
      CString response;
      TakeLog();
      EXPECT_TRUE(device.Modem()->SendCommandGetResponse("ATX\r", result, response));
      EXPECT_EQ(result, row.result);
      EXPECT_EQ(response.String(), row.response);
      EXPECT_EQ(device.Commands().size(), 1u);
      const std::string records = WithoutStamps(TakeLog());
      EXPECT_EQ(records.find("CSModem::SendCommand() -> ATX\r\n"), 0u) << records;
      const size_t record = records.find("CSModem::GetResponse() -> " + row.logged);
      ASSERT_NE(record, std::string::npos) << records;
      EXPECT_LE(records.size() - record, 600u);
      EXPECT_NE(device.Modem()->m_dwLastResponseTime, 0u);
    });
  }
}

TEST(Exchange, GivesASilentDeviceItsThreeAttemptsWithoutSpinning) {
  ScriptedDevice device(Answers{{"AT", "(silence)"}});
  device.Modem()->m_nRetries = 3;
  device.Modem()->m_dwResponseTimeout = 1500;
  int result = -1;
  CString response;
  TakeLog();
  const auto start = std::chrono::steady_clock::now();
  const double cpu = CpuSeconds();
  EXPECT_FALSE(device.Modem()->SendCommandGetResponse("AT\r", result, response));
  const double seconds = SecondsSince(start);
  EXPECT_GE(seconds, 4.5);
  EXPECT_LT(CpuSeconds() - cpu, seconds * 0.02);
  EXPECT_EQ(result, kResultTimeout);
  EXPECT_EQ(device.Commands(), (std::vector<std::string>{"AT", "AT", "AT"}));
  const std::string records = WithoutStamps(TakeLog());
  const std::string attempt =
      "CSModem::SendCommand() -> AT\r\nCSModem::GetResponse() -> Response Timeout !\n";
  EXPECT_EQ(records, attempt + attempt + attempt);
}

TEST(Exchange, EndsInTimeOnALineThatHungUp) {
  ScriptedDevice device(Answers{{"AT", "(silence)"}});
  CSModem* modem = device.Modem();
  ASSERT_TRUE(modem->SendCommand("AT\r"));
  device.Device().HangUp();
  int result = -1;
  CString response;
  TakeLog();
  const auto start = std::chrono::steady_clock::now();
  const double cpu = CpuSeconds();
  EXPECT_FALSE(modem->GetResponse(result, response, 600));
  EXPECT_GE(SecondsSince(start), 0.6);
  EXPECT_LT(CpuSeconds() - cpu, 0.02);
  EXPECT_FALSE(modem->SendCommandGetResponse("AT\r", result, response));
  EXPECT_LT(TakeLog().size(), 8000u);
}

TEST(Exchange, EndsInTimeOnAFlood) {
  kxsim::Profile profile = kxsim::ScriptedProfile({});
  kxsim::AddReply(profile, "AT", Raw(Pieces(64, std::string(4096, 'x') + "\r\n"), 0));
  ScriptedDevice device(profile);
  device.ExpectSilence(3000);
  int result = -1;
  CString response;
  EXPECT_FALSE(device.Modem()->SendCommandGetResponse("AT\r", result, response));
  EXPECT_EQ(result, kResultTimeout);
  EXPECT_GT(response.GetLength(), 4096);
}

TEST(Exchange, WaitsItsTimeOnALineThatHangsUp) {
  kxsim::Profile profile = kxsim::ScriptedProfile({});
  profile.faults = {{.kind = "hangup", .at = 1, .text = ""}};
  ScriptedDevice device(profile);
  device.ExpectSilence(1500);
  int result = -1;
  CString response;
  const auto start = std::chrono::steady_clock::now();
  EXPECT_FALSE(device.Modem()->SendCommandGetResponse("AT\r", result, response));
  EXPECT_GE(SecondsSince(start), 1.5);
  EXPECT_EQ(result, kResultTimeout);
}

TEST(Exchange, FailsAtOnceOnAClosedPort) {
  CSModem modem;
  EXPECT_EQ(modem.m_nRetries, 3);
  EXPECT_EQ(modem.m_dwResponseTimeout, 1500u);
  int result = -1;
  CString response("old");
  EXPECT_FALSE(modem.SendCommandGetResponse("AT\r", result, response));
  EXPECT_EQ(result, kResultTimeout);
  EXPECT_TRUE(response.IsEmpty());
}

// An application may keep a copy of a reply, or a locked text, over the next exchange.
TEST(Exchange, LeavesEarlierCopiesAloneAndReplacesALockedText) {
  ScriptedDevice device(Answers{{"AT1", "first"}, {"AT2", "2nd"}, {"AT3", "ERROR"}});
  int result = -1;
  CString response;
  device.Modem()->SendCommandGetResponse("AT1\r", result, response);
  const CString copy = response;
  device.Modem()->SendCommandGetResponse("AT2\r", result, response);
  EXPECT_STREQ(copy.String(), "first");
  EXPECT_STREQ(response.String(), "2nd");
  response.LockBuffer();
  device.Modem()->SendCommandGetResponse("AT3\r", result, response);
  EXPECT_STREQ(response.String(), "");
}

// Texts that share their characters share them to the end, whatever an exchange makes of one.
TEST(Exchange, FreesNothingThatItsCallerShares) {
  ScriptedDevice device(Answers{{"AT", "(silence)"}});
  device.Modem()->m_nRetries = 2;
  device.Modem()->m_dwResponseTimeout = 200;
  int result = -1;
  CString kept("a text that is longer than any answer");
  CString response(kept);
  response = "";
  EXPECT_FALSE(device.Modem()->SendCommandGetResponse("AT\r", result, response));
  EXPECT_STREQ(response.String(), "");
  kept = "shorter";
  EXPECT_STREQ(kept.String(), "shorter");
}

}  // namespace

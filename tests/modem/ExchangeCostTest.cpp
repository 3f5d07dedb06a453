#include <KXWAN/foundation/CString.h>
#include <gtest/gtest.h>
#include <sys/ptrace.h>
#include <sys/wait.h>
#include <tests/support/ScriptedDevice.h>
#include <unistd.h>

#include <csignal>

namespace {

// Runs the exchanges in a child, each with another answer than the one before, and counts its
// system calls between two signals that it raises. -1 where tracing is not allowed.
int CountSystemCalls(const std::string& path, int exchanges) {
  const pid_t child = fork();
  if (child == 0) {
    CSModem modem;
    int result = 0;
    CString response;
    modem.m_pSerial->Open(path.c_str());
    modem.SendCommandGetResponse("AT\r", result, response);
    if (ptrace(PTRACE_TRACEME, 0, nullptr, nullptr) != 0) _exit(1);
    raise(SIGUSR1);
    for (int i = 0; i < exchanges; ++i) {
      modem.SendCommandGetResponse(i % 2 == 0 ? "AT+A\r" : "AT+B\r", result, response);
    }
    raise(SIGUSR2);
    _exit(0);
  }
  int stops = -1;
  int status = 0;
  while (waitpid(child, &status, 0) == child && WIFSTOPPED(status)) {
    const int signal = WSTOPSIG(status);
    if (signal == SIGUSR2) {
      kill(child, SIGKILL);
      waitpid(child, &status, 0);
      return stops / 2;  // each call stops on its way in and on its way out
    }
    stops = signal == SIGUSR1 ? 0 : stops + (signal == SIGTRAP ? 1 : 0);
    ptrace(PTRACE_SYSCALL, child, nullptr, nullptr);
  }
  return -1;
}

TEST(ExchangeCost, IsAtMostSevenSystemCalls) {
  constexpr int kExchanges = 50;
  ScriptedDevice device(Answers{{"AT", "OK"}, {"AT+A", "a"}, {"AT+B", "b"}});
  device.Modem()->m_pSerial->Close();
  const int around = CountSystemCalls(device.Path(), 0);
  const int calls = CountSystemCalls(device.Path(), kExchanges);
  if (around < 0 || calls < 0) GTEST_SKIP() << "processes may not be traced here";
  EXPECT_GT(calls - around, kExchanges * 4);
  EXPECT_LE(calls - around, kExchanges * 7);
}

}  // namespace

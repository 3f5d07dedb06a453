// Does a program that runs for months grow? The counters are the growth of the resident memory over
// 100,000 rounds, and the allocations of one round.

#include <KXWAN/KXWAN.h>
#include <benchmark/benchmark.h>
#include <benchmarks/PlayerDevice.h>

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <new>

namespace {

thread_local size_t g_allocations = 0;

void* CountedAllocation(size_t size) {
  ++g_allocations;
  return std::malloc(size);
}

}  // namespace

void* operator new(size_t size) { return CountedAllocation(size); }
void* operator new[](size_t size) { return CountedAllocation(size); }
void* operator new(size_t size, const std::nothrow_t&) noexcept { return CountedAllocation(size); }
void* operator new[](size_t size, const std::nothrow_t&) noexcept {
  return CountedAllocation(size);
}
void operator delete(void* block) noexcept { std::free(block); }
void operator delete[](void* block) noexcept { std::free(block); }
void operator delete(void* block, size_t) noexcept { std::free(block); }
void operator delete[](void* block, size_t) noexcept { std::free(block); }

namespace {

constexpr int kRounds = 100000;

double ResidentKiB() {
  long pages = 0;
  std::unique_ptr<FILE, int (*)(FILE*)> statm(fopen("/proc/self/statm", "r"), fclose);
  if (statm == nullptr || fscanf(statm.get(), "%*d %ld", &pages) != 1) return 0;
  return static_cast<double>(pages * sysconf(_SC_PAGESIZE)) / 1024;
}

template <typename Round>
void Measure(benchmark::State& state, Round round) {
  std::unique_ptr<FILE, int (*)(FILE*)> log(tmpfile(), fclose);
  logFileFD = log.get();
  PlayerDevice device({{"AT+CSQ?", "\r\n+CSQ: 20,99\r\n\r\nOK\r\n"},
                       {"AT+CBC?", "\r\n+CBC: 0,80\r\n\r\nOK\r\n"},
                       {"AT+CAD?", "\r\n+CAD: 1\r\n\r\nOK\r\n"}});
  device.Record(false);
  CSWirelessModem modem;
  if (!modem.Open(device.Path().c_str())) return state.SkipWithError("the port does not open");
  for (int i = 0; i < 100; ++i) round(modem);
  const double before = ResidentKiB();
  g_allocations = 0;
  for (auto _ : state) round(modem);
  state.counters["allocations"] = static_cast<double>(g_allocations) / kRounds;
  state.counters["growth_KiB"] = ResidentKiB() - before;
  logFileFD = nullptr;
}

void Exchanges(benchmark::State& state) {
  Measure(state, [](CSWirelessModem& modem) {
    int result = 0;
    CString response;
    modem.m_pModem->SendCommandGetResponse("AT+CSQ?\r", result, response);
    response.LockBuffer();  // so that its buffer is freed
  });
}
BENCHMARK(Exchanges)->Iterations(kRounds);

void CommandsIntoPlainBuffers(benchmark::State& state) {
  Measure(state, [](CSWirelessModem& modem) {
    char reply[64];
    modem.SendATCommandAndGetReply("AT+CSQ?", reply, sizeof reply);
  });
}
BENCHMARK(CommandsIntoPlainBuffers)->Iterations(kRounds);

void PollsOfSignalBatteryAndCoverage(benchmark::State& state) {
  ModemInfo info = ModemInfo();
  Measure(state, [&info](CSWirelessModem& modem) {
    modem.GetSignalLevelFromDevice(&info);
    modem.GetBatteryLevelFromDevice(&info);
    modem.GetModemCoverage(&info);
  });
}
BENCHMARK(PollsOfSignalBatteryAndCoverage)->Iterations(kRounds);

}  // namespace

// Is the cost of a reply in proportion to its length, whatever pieces it comes in? The counters are
// the thread's CPU time per byte for the library and for a raw write, poll and read loop on the
// same pseudo-terminal, and the ratio of the two.

#include <KXWAN/KXWAN.h>
#include <benchmark/benchmark.h>
#include <benchmarks/PlayerDevice.h>

#include <memory>

namespace {

// Information text of so many bytes in lines of 80.
std::string LongAnswer(size_t length) {
  std::string answer = "\r\n";
  while (answer.size() < length) answer += std::string(78, 'x') + "\r\n";
  return answer + "\r\nOK\r\n";
}

void ReplyLength(benchmark::State& state) {
  std::unique_ptr<FILE, int (*)(FILE*)> log(tmpfile(), fclose);
  logFileFD = log.get();
  const std::string answer = LongAnswer(static_cast<size_t>(state.range(0)));
  PlayerDevice device({{"AT+LONG", answer}}, "\r\nOK\r\n", static_cast<size_t>(state.range(1)));
  device.Record(false);
  CSModem modem;
  modem.m_pSerial->Open(device.Path().c_str());
  modem.m_dwResponseTimeout = 60000;
  const double bytes = static_cast<double>(answer.size());

  std::vector<double> library;
  std::vector<double> raw;
  for (auto _ : state) {
    int result = -1;
    CString response;
    library.push_back(SecondsOn(CLOCK_THREAD_CPUTIME_ID, [&] {
      modem.SendCommandGetResponse("AT+LONG\r", result, response);
    }));
    response.LockBuffer();  // so that its buffer is freed
    if (result != kxwan::kResultOk) state.SkipWithError("the reply did not come");
    raw.push_back(
        SecondsOn(CLOCK_THREAD_CPUTIME_ID, [&] { RawExchange(modem.m_pSerial->fd, "AT+LONG"); }));
  }
  state.counters["library_ns_per_byte"] = Median(library) / bytes * 1e9;
  state.counters["raw_ns_per_byte"] = Median(raw) / bytes * 1e9;
  state.counters["ratio"] = Median(library) / Median(raw);
  logFileFD = nullptr;
}
BENCHMARK(ReplyLength)
    ->ArgNames({"bytes", "piece"})
    ->ArgsProduct({{100, 1 << 10, 10 << 10, 100 << 10, 1 << 20}, {0, 8, 64}})
    ->Iterations(15);

}  // namespace

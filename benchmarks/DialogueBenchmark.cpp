// What do the library's dialogues cost over the bare writes and reads that they need? Each dialogue
// and a raw write, poll and read loop of the same commands run in turn on the same pseudo-terminal;
// the counters are the medians of both and their ratio. Logging is included.

#include <KXWAN/KXWAN.h>
#include <benchmark/benchmark.h>
#include <benchmarks/PlayerDevice.h>

#include <functional>
#include <memory>

namespace {

using Answers = std::map<std::string, std::string>;

const Answers kGsmPhone = {
    {"ATE0V1", "\r\nOK\r\n"},
    {"AT", "\r\nOK\r\n"},
    {"AT+GCAP", "\r\n+GCAP: +CGSM\r\n\r\nOK\r\n"},
    {"AT+GMM", "\r\n+GMM: M600\r\n\r\nOK\r\n"},
    {"AT+GMI", "\r\nACME\r\n\r\nOK\r\n"},
    {"AT+GMR", "\r\n+GMR: 1.0\r\n\r\nOK\r\n"},
    {"AT+CGATT=?", "\r\n+CGATT: (0,1)\r\n\r\nOK\r\n"},
    {"AT+CGEQMIN=?", "\r\nOK\r\n"},
    {"AT+CMEE=1", "\r\nOK\r\n"},
    {"AT+CMEE=0", "\r\nOK\r\n"},
    {"AT+CPIN?", "\r\n+CPIN: READY\r\n\r\nOK\r\n"},
    {"AT+CSQ", "\r\n+CSQ: 20,99\r\n\r\nOK\r\n"},
};

using Dialogue = std::function<void(CSWirelessModem&)>;

void Compare(benchmark::State& state, const Dialogue& dialogue) {
  std::unique_ptr<FILE, int (*)(FILE*)> log(tmpfile(), fclose);
  logFileFD = log.get();
  PlayerDevice device(kGsmPhone);
  CSWirelessModem modem;
  if (!modem.Open(device.Path().c_str())) return state.SkipWithError("the port does not open");
  dialogue(modem);
  const std::vector<std::string> commands = device.TakeCommands();
  device.Record(false);

  std::vector<double> library;
  std::vector<double> raw;
  for (auto _ : state) {
    library.push_back(SecondsOn(CLOCK_MONOTONIC, [&] { dialogue(modem); }));
    raw.push_back(SecondsOn(CLOCK_MONOTONIC, [&] {
      for (const std::string& command : commands)
        RawExchange(modem.m_pModem->m_pSerial->fd, command);
    }));
  }
  state.counters["exchanges"] = static_cast<double>(commands.size());
  state.counters["library_us"] = Median(library) * 1e6;
  state.counters["raw_us"] = Median(raw) * 1e6;
  state.counters["ratio"] = Median(library) / Median(raw);
  logFileFD = nullptr;
}

void Exchange(benchmark::State& state) {
  Compare(state, [](CSWirelessModem& modem) {
    char reply[64];
    modem.SendATCommandAndGetReply("AT", reply, sizeof reply);
  });
}
BENCHMARK(Exchange)->Iterations(20000);

void ExchangeWithReply(benchmark::State& state) {
  Compare(state, [](CSWirelessModem& modem) {
    char reply[64];
    modem.SendATCommandAndGetReply("AT+CSQ", reply, sizeof reply);
  });
}
BENCHMARK(ExchangeWithReply)->Iterations(20000);

void Identification(benchmark::State& state) {
  Compare(state, [](CSWirelessModem& modem) {
    unsigned long baud = 0;
    modem.DetectModem(baud);
  });
}
BENCHMARK(Identification)->Iterations(3000);

void ModemData(benchmark::State& state) {
  ModemInfo* info = CreateModemInfo();
  Compare(state, [info](CSWirelessModem& modem) { modem.GetModemData(info); });
  ReleaseModemInfo(info);
}
BENCHMARK(ModemData)->Iterations(3000);

// From a closed port to the platform bits.
void OpenAndIdentify(benchmark::State& state) {
  std::unique_ptr<FILE, int (*)(FILE*)> log(tmpfile(), fclose);
  logFileFD = log.get();
  PlayerDevice device(kGsmPhone);
  device.Record(false);
  for (auto _ : state) {
    CSWirelessModem modem;
    unsigned long baud = 0;
    if (!modem.Open(device.Path().c_str()) || modem.DetectModem(baud) == PLATFORM_UNKNOWN) {
      state.SkipWithError("the device was not identified");
      break;
    }
  }
  logFileFD = nullptr;
}
BENCHMARK(OpenAndIdentify)->Iterations(500)->UseRealTime()->Unit(benchmark::kMillisecond);

}  // namespace

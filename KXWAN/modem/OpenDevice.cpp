#include <KXWAN/foundation/ClockPrivate.h>
#include <KXWAN/foundation/DebugLog.h>
#include <KXWAN/foundation/TablePrivate.h>
#include <KXWAN/modem/CSModem.h>
#include <KXWAN/modem/ExchangePrivate.h>

#include <chrono>
#include <string>

bool pcCardOpenDelayFlag = false;

using kxwan::Answer;
using kxwan::Exchange;
using kxwan::SetPortSpeed;

namespace {

struct SearchedSpeed {
  unsigned long maskBit;
  unsigned long speed;
};

// Deliberate: the order of the search is neither that of the bits nor that of the speeds; the
// speeds that devices are most often found at come first.
constexpr SearchedSpeed kSearchedSpeeds[] = {
    {0x02, 19200}, {0x10, 115200}, {0x04, 38400}, {0x08, 57600}, {0x01, 9600},
};

// What a device is sent once behind its opening. The first row that fits counts.
struct DeviceOption {
  const char* manufacturer;  // occurs in the manufacturer's text
  const char* model;         // occurs in the model's text
  const char* command;
};

constexpr DeviceOption kDeviceOptions[] = {
    {"Sierra", "AC850", "AT!UARTONLY\r"},
    {"Sierra", "AC860", "AT!UARTONLY\r"},
};

bool OpenPort(KxSerial* port, const char* path) {
  if (port->fd != -1) return true;
  if (__atomic_exchange_n(&pcCardOpenDelayFlag, false, __ATOMIC_ACQ_REL)) {
    kxwan::WaitFully(std::chrono::seconds(2));
  }
  return port->Open(path) != 0 && port->fd != -1;
}

// Echo off and verbose results: the probe at every speed. Any final result counts as an answer.
Answer Probe(CSModem* modem) { return Exchange(modem, "ATE0V1\r"); }

bool AnswersAtOptimum(CSModem* modem, unsigned long speed) {
  if (!SetPortSpeed(modem, speed)) return false;
  KXOutputDebug("CSModem::AutoBaud() - Set to optimum baud - %d\n", static_cast<int>(speed));
  const Answer answer = Probe(modem);
  if (!answer.Came()) return false;
  if (answer.result == kxwan::kResultError) Exchange(modem, "AT+CFUN=1\r");
  KXOutputDebug("CSModem::AutoBaud() - Device at proper baud - %d\n", static_cast<int>(speed));
  return true;
}

bool FindSpeed(CSModem* modem, unsigned long baudMask, unsigned long optimumBaud) {
  for (const SearchedSpeed& row : kSearchedSpeeds) {
    if ((baudMask & row.maskBit) == 0 || row.speed == optimumBaud) continue;
    KXOutputDebug("CSModem::AutoBaud() - Searching on baud - %d\n", static_cast<int>(row.speed));
    if (SetPortSpeed(modem, row.speed) && Probe(modem).Came()) return true;
  }
  return false;
}

bool MoveToSpeed(CSModem* modem, unsigned long speed) {
  const std::string command = kxwan::Formatted("AT+IPR=%lu\r", speed);
  if (!kxwan::Accepts(modem, command.c_str()) || !SetPortSpeed(modem, speed)) return false;
  KXOutputDebug("CSModem::AutoBaud() - Changed to optimum baud - %d\n", static_cast<int>(speed));
  if (!Probe(modem).Came()) return false;
  KXOutputDebug("CSModem::AutoBaud() - Device reset to baud - %d\n", static_cast<int>(speed));
  return true;
}

}  // namespace

void KXModemSetPCCardOpenDelayFlag() {
  __atomic_store_n(&pcCardOpenDelayFlag, true, __ATOMIC_RELEASE);
}

bool CSModem::OpenDeviceFast(const char* port, unsigned long baudMask, unsigned long optimumBaud) {
  if (!OpenPort(m_pSerial, port)) return false;
  m_pSerial->SetModemData();
  if (AnswersAtOptimum(this, optimumBaud)) return true;
  // Deliberate: with no speeds to search the open counts as done although the device is silent;
  // what is asked of it later fails on its own.
  if (baudMask == 0) return true;
  return FindSpeed(this, baudMask, optimumBaud) && MoveToSpeed(this, optimumBaud);
}

bool CSModem::InitModemOptions(const char*, KXModemProperties* properties) {
  const DeviceOption* option = kxwan::FindRow(
      kDeviceOptions, kxwan::FitsDevice(properties->szManufacturer, properties->szModel));
  return option == nullptr || Exchange(this, option->command).Came();
}

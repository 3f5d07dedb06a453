#include <KXWAN/foundation/DebugLog.h>
#include <KXWAN/foundation/TextPrivate.h>
#include <KXWAN/modem/CSModem.h>
#include <unistd.h>

#include <cstdio>

bool pcCardOpenDelayFlag = false;

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
  if (pcCardOpenDelayFlag) {
    pcCardOpenDelayFlag = false;
    sleep(2);
  }
  return port->Open(path) != 0 && port->fd != -1;
}

bool SetSpeed(KxSerial* port, unsigned long speed) {
  return port->SetDataFormat(speed, E_PARITY_UNCHANGED, E_BYTESIZE_UNCHANGED,
                             E_STOPBITS_UNCHANGED) != 0;
}

// Echo off and verbose results: the probe at every speed. Any final result counts as an answer.
bool Probe(CSModem* modem, int& result) {
  kxwan::ScopedText response;
  return modem->SendCommandGetResponse("ATE0V1\r", result, response);
}

bool AnswersAtOptimum(CSModem* modem, unsigned long speed) {
  if (!SetSpeed(modem->m_pSerial, speed)) return false;
  KXOutputDebug("CSModem::AutoBaud() - Set to optimum baud - %d\n", static_cast<int>(speed));
  int result = kxwan::kResultTimeout;
  if (!Probe(modem, result)) return false;
  if (result == kxwan::kResultError) {
    kxwan::ScopedText response;
    modem->SendCommandGetResponse("AT+CFUN=1\r", result, response);
  }
  KXOutputDebug("CSModem::AutoBaud() - Device at proper baud - %d\n", static_cast<int>(speed));
  return true;
}

bool FindSpeed(CSModem* modem, unsigned long baudMask, unsigned long optimumBaud) {
  for (const SearchedSpeed& row : kSearchedSpeeds) {
    if ((baudMask & row.maskBit) == 0 || row.speed == optimumBaud) continue;
    KXOutputDebug("CSModem::AutoBaud() - Searching on baud - %d\n", static_cast<int>(row.speed));
    int result = kxwan::kResultTimeout;
    if (SetSpeed(modem->m_pSerial, row.speed) && Probe(modem, result)) return true;
  }
  return false;
}

bool MoveToSpeed(CSModem* modem, unsigned long speed) {
  char command[40];
  snprintf(command, sizeof command, "AT+IPR=%lu\r", speed);
  int result = kxwan::kResultTimeout;
  kxwan::ScopedText response;
  if (!modem->SendCommandGetResponse(command, result, response)) return false;
  if (result != kxwan::kResultOk || !SetSpeed(modem->m_pSerial, speed)) return false;
  KXOutputDebug("CSModem::AutoBaud() - Changed to optimum baud - %d\n", static_cast<int>(speed));
  if (!Probe(modem, result)) return false;
  KXOutputDebug("CSModem::AutoBaud() - Device reset to baud - %d\n", static_cast<int>(speed));
  return true;
}

}  // namespace

void KXModemSetPCCardOpenDelayFlag() { pcCardOpenDelayFlag = true; }

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
  for (const DeviceOption& row : kDeviceOptions) {
    if (!kxwan::Contains(properties->szManufacturer, row.manufacturer) ||
        !kxwan::Contains(properties->szModel, row.model)) {
      continue;
    }
    int result = kxwan::kResultTimeout;
    kxwan::ScopedText response;
    return SendCommandGetResponse(row.command, result, response);
  }
  return true;
}

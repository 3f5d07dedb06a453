#include <KXWAN/api/CSWirelessModem.h>

#include <KXWAN/foundation/TablePrivate.h>
#include <KXWAN/handset/Detection.h>
#include <KXWAN/handset/DetectionPrivate.h>
#include <KXWAN/modem/ExchangePrivate.h>

#include <algorithm>
#include <cstring>
#include <iterator>
#include <memory>
#include <new>
#include <string>

using kxwan::Contains;
using kxwan::CopyText;

namespace {

constexpr unsigned long kDetectedSpeeds[] = {19200, 57600, 115200, 230400, 9600};

// Which speeds OpenDevice may search, by the platform bits. The first row that fits decides.
struct SearchRule {
  CHandsetPlatform platform = 0;  // 0 fits any
  const char* manufacturer = "";  // occurs in the manufacturer's text; "" fits any
  unsigned long baudMask = 0;
};

constexpr unsigned long kAllBut9600 = 0x02 | 0x04 | 0x08 | 0x10;
constexpr unsigned long kOnly9600 = 0x01;

constexpr SearchRule kSearchRules[] = {
    {.platform = PLATFORM_1XRTT, .baudMask = kAllBut9600},
    {.platform = PLATFORM_GPRS, .manufacturer = "Sony Ericsson", .baudMask = kOnly9600},
    {.baudMask = 0},
};
static_assert(std::rbegin(kSearchRules)->platform == 0, "the last row must fit any device");

unsigned long SearchMask(const KXModemProperties& properties) {
  const auto fits = [&](const SearchRule& row) {
    return (row.platform == 0 || (properties.dwDeviceType & row.platform) != 0) &&
           Contains(properties.szManufacturer, row.manufacturer);
  };
  return kxwan::FirstRow(kSearchRules, fits).baudMask;
}

// Cards whose answers promise too little or too much. Every row that fits is applied in turn, so
// that the last one wins.
struct PlatformCorrection {
  const char* model;
  CHandsetPlatform keep;  // the detected bits that stay
  CHandsetPlatform add;
};

// Deliberate: "gc8" in lower case and "GC75" in upper case, as these cards spell themselves.
constexpr PlatformCorrection kSonyEricssonCards[] = {
    {"gc8", ~CHandsetPlatform{0}, PLATFORM_GPRS | PLATFORM_EDGE},
    {"GC75", 0, PLATFORM_GPRS},
};

std::unique_ptr<CSModem> NewModem() {
  std::unique_ptr<CSModem> modem(new (std::nothrow) CSModem);
  if (modem != nullptr && (modem->m_pSerial == nullptr || modem->m_pEngine == nullptr)) {
    modem.reset();
  }
  return modem;
}

}  // namespace

CHandsetPlatform kxwan::CorrectPlatform(CSModem* modem, CHandsetPlatform platform) {
  const DeviceNames names = ReadDeviceNames(modem);
  if (!Contains(names.manufacturer.text, "SONY ERICSSON")) return platform;
  for (const PlatformCorrection& row : kSonyEricssonCards) {
    if (Contains(names.model.text, row.model)) platform = (platform & row.keep) | row.add;
  }
  return platform;
}

CSWirelessModem::CSWirelessModem() : m_pModem(nullptr) {}

CSWirelessModem::~CSWirelessModem() { Close(); }

void CSWirelessModem::Close() {
  if (m_pModem == nullptr) return;
  m_pModem->m_pSerial->Close();
  delete m_pModem;
  m_pModem = nullptr;
}

bool CSWirelessModem::Open(const char* port) {
  if (m_pModem != nullptr) return false;
  std::unique_ptr<CSModem> modem = NewModem();
  if (modem == nullptr || modem->m_pSerial->Open(port) == 0) return false;
  m_pModem = modem.release();
  return true;
}

bool CSWirelessModem::OpenDevice(const char* port, KXModemProperties* properties) {
  if (m_pModem != nullptr) return false;
  std::unique_ptr<CSModem> modem = NewModem();
  if (modem == nullptr ||
      !modem->OpenDeviceFast(port, SearchMask(*properties), properties->dwBaudRate) ||
      !modem->InitModemOptions(port, properties)) {
    return false;
  }
  m_pModem = modem.release();
  return true;
}

CHandsetPlatform CSWirelessModem::DetectModem(unsigned long& baud) {
  CHandsetPlatform platform = PLATFORM_UNKNOWN;
  for (const unsigned long speed : kDetectedSpeeds) {
    baud = speed;
    if (DetectWirelessPhone(m_pModem, speed, platform)) break;
  }
  return kxwan::CorrectPlatform(m_pModem, platform);
}

int CSWirelessModem::SendATCommandAndGetReply(const char* command, char* reply, int replySize) {
  constexpr size_t kLongestCommand = 254;
  std::string text(command);
  if (!text.empty() && text.back() == '\r') text.pop_back();
  text = text.substr(0, kLongestCommand) + '\r';

  const kxwan::Answer answer = kxwan::Exchange(m_pModem, text.c_str());
  if (answer.Came()) CopyText(reply, static_cast<size_t>(std::max(replySize, 0)), answer.text);
  return answer.result;
}

bool CSWirelessModem::GetModelAndManufacturer(char* model, char* manufacturer) {
  const kxwan::DeviceNames names = kxwan::ReadDeviceNames(m_pModem);
  std::strcpy(model, names.model.text.c_str());
  std::strcpy(manufacturer, names.manufacturer.text.c_str());
  return true;
}

bool CSWirelessModem::GetModelAndManufacturer(char* model, int modelSize, char* manufacturer,
                                              int manufacturerSize) {
  const kxwan::DeviceNames names = kxwan::ReadDeviceNames(m_pModem);
  CopyText(model, static_cast<size_t>(std::max(modelSize, 0)), names.model.text);
  CopyText(manufacturer, static_cast<size_t>(std::max(manufacturerSize, 0)),
           names.manufacturer.text);
  return true;
}

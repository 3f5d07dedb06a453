#include <KXWAN/KXWAN.h>
#include <gtest/gtest.h>
#include <simulator/SimulatedDevice.h>
#include <tests/support/Observation.h>

#include <algorithm>
#include <iterator>
#include <sstream>

namespace {

using kxsim::Expectation;
using kxsim::Profile;
using kxsim::SimulatedDevice;

constexpr CHandsetPlatform kPacketData = PLATFORM_GPRS | PLATFORM_EDGE | PLATFORM_UMTS;

// What a silent try may cost: the simulated line loses nothing, so that one is enough.
constexpr uint32_t kSilenceMs = 2000;

void ExpectSilence(CSModem& modem) {
  modem.m_nRetries = 1;
  modem.m_dwResponseTimeout = kSilenceMs;
}

void ExpectAnswers(CSModem& modem) {
  modem.m_nRetries = 3;
  modem.m_dwResponseTimeout = 1500;
}

// The bit of a search mask for the speed; 0 for a speed that is not searched.
unsigned long MaskFor(int speed) {
  constexpr int kSearched[] = {9600, 19200, 38400, 57600, 115200};
  const auto* found = std::find(std::begin(kSearched), std::end(kSearched), speed);
  return found == std::end(kSearched) ? 0 : 1UL << (found - std::begin(kSearched));
}

// The detected platform, or the names that the profile gives in its place. A choice that has no
// name in the library is written "SPRINT".
CHandsetPlatform TypeOf(const Profile& profile, CHandsetPlatform detected) {
  if (!profile.expect.propertiesType) return detected;
  CHandsetPlatform type = PLATFORM_UNKNOWN;
  std::istringstream names(*profile.expect.propertiesType);
  for (std::string name; std::getline(names >> std::ws, name, ',');) {
    type |= name == "SPRINT" ? PLATFORM_1X_SPRINT : MapDeviceTypeToDeviceFlag(name.c_str());
  }
  return type;
}

KXModemProperties Properties(CHandsetPlatform type, const std::string& manufacturer,
                             const std::string& model) {
  KXModemProperties properties = {};
  properties.dwDeviceType = type;
  manufacturer.copy(properties.szManufacturer, sizeof properties.szManufacturer - 1);
  model.copy(properties.szModel, sizeof properties.szModel - 1);
  return properties;
}

void ObserveInformation(CSWirelessModem& modem, Expectation& seen) {
  ModemInfo info = {};
  EXPECT_TRUE(modem.GetModemData(&info));
  modem.GetBatteryLevelFromDevice(&info);
  seen.manufacturer = info.szManufacturer;
  seen.model = info.szModel;
  seen.version = info.szVersion;
  seen.capabilities = info.szCapabilities;
  seen.coverage = info.szCoverage;
  seen.signal = info.nSignalLevel;
  seen.battery = static_cast<int>(info.dwBatteryLevel);
}

void ObserveSim(const Profile& profile, CSWirelessModem& modem, Expectation& seen) {
  const char* pin = profile.sim.pin.c_str();
  long length = -1;
  seen.sim = modem.IsPasswordRequired(&length);
  seen.pinLength = static_cast<int>(length);
  if (seen.sim == kxwan::kSimPinRequired) {
    EXPECT_EQ(modem.SetPIN(pin, 0), kxwan::kSimReady);
  } else if (seen.sim == kxwan::kSimPukRequired) {
    EXPECT_EQ(modem.SetPINPUK(profile.sim.puk.c_str(), pin, 0), kxwan::kSimReady);
  } else {
    return;
  }
  EXPECT_EQ(modem.IsPasswordRequired(&length), kxwan::kSimReady);
}

void ObservePreparation(CHandsetPlatform type, CSWirelessModem& modem, Expectation& seen) {
  KXModemProperties properties = Properties(type, *seen.manufacturer, *seen.model);
  const bool prepared = modem.PrepareDeviceForConnection(&properties, "internet");
  seen.lastError = static_cast<int>(CSWirelessModem::GetLastModemError());
  EXPECT_EQ(prepared, seen.lastError == kxwan::kNoConnectError);
  if ((type & kPacketData) == 0) return;
  char number[16] = "";
  CSWirelessModem::GetGPRSDialedNumber(properties.szManufacturer, properties.szModel, number,
                                       sizeof number);
  seen.dial = number;
}

}  // namespace

void ObserveOpening(const Profile& profile, Expectation& seen) {
  const Expectation& expect = profile.expect;
  SimulatedDevice device(profile);
  CSModem modem;
  ExpectSilence(modem);
  KXModemProperties properties =
      Properties(0, expect.manufacturer.value_or(""), expect.model.value_or(""));
  const int answers = expect.baud.value_or(profile.line.baud);
  const auto speed = static_cast<unsigned long>(expect.openBaud.value_or(answers));
  seen.opens = modem.OpenDeviceFast(device.Path().c_str(), MaskFor(answers), speed) &&
               modem.InitModemOptions(device.Path().c_str(), &properties);
  seen.open = device.Commands();
}

void ObserveUse(const Profile& profile, Expectation& seen) {
  SimulatedDevice device(profile);
  CSWirelessModem modem;
  if (!modem.Open(device.Path().c_str())) return;
  ExpectSilence(*modem.m_pModem);
  unsigned long speed = 0;
  const CHandsetPlatform platform = modem.DetectModem(speed);
  seen.platform = GetModemProtocolTypeAsString(platform);
  seen.baud = static_cast<int>(speed);

  ExpectAnswers(*modem.m_pModem);
  ObserveInformation(modem, seen);
  ObserveSim(profile, modem, seen);

  ExpectSilence(*modem.m_pModem);
  modem.DetectModemBaudRate(platform, speed);
  seen.fastBaud = static_cast<int>(speed);
  device.ClearCommands();
  ObservePreparation(TypeOf(profile, platform), modem, seen);
  seen.prepare = device.Commands();
}

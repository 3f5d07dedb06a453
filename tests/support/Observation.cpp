#include <KXWAN/KXWAN.h>
#include <gtest/gtest.h>
#include <simulator/SimulatedDevice.h>
#include <tests/support/Observation.h>
#include <tool/kxwan/Observe.h>

#include <algorithm>
#include <iterator>
#include <sstream>

namespace {

using kxsim::Expectation;
using kxsim::Profile;
using kxsim::SimulatedDevice;

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

// Unlocks a SIM that asks for it with the profile's own PIN or PUK.
void Unlock(const Profile& profile, CSWirelessModem& modem, const Expectation& seen) {
  const char* pin = profile.sim.pin.c_str();
  if (seen.sim == kxwan::kSimPinRequired) {
    EXPECT_EQ(modem.SetPIN(pin, 0), kxwan::kSimReady);
  } else if (seen.sim == kxwan::kSimPukRequired) {
    EXPECT_EQ(modem.SetPINPUK(profile.sim.puk.c_str(), pin, 0), kxwan::kSimReady);
  } else {
    return;
  }
  long length = 0;
  EXPECT_EQ(modem.IsPasswordRequired(&length), kxwan::kSimReady);
}

}  // namespace

void ObserveOpening(const Profile& profile, Expectation& seen) {
  const Expectation& expect = profile.expect;
  SimulatedDevice device(profile);
  CSModem modem;
  ExpectSilence(modem);
  KXModemProperties properties =
      kxtool::PropertiesOf(0, expect.manufacturer.value_or(""), expect.model.value_or(""));
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
  kxtool::Observation observation{seen};
  kxtool::ObserveSpeed(modem, observation);

  ExpectAnswers(*modem.m_pModem);
  EXPECT_TRUE(kxtool::ObserveInformation(modem, observation));
  kxtool::ObserveBattery(modem, observation);
  kxtool::ObserveSim(modem, observation);
  Unlock(profile, modem, seen);

  ExpectSilence(*modem.m_pModem);
  kxtool::ObserveFastSpeed(modem, observation);
  device.ClearCommands();
  const ModemInfo& info = observation.info;
  const KXModemProperties properties = kxtool::PropertiesOf(TypeOf(profile, observation.platform),
                                                            info.szManufacturer, info.szModel);
  const bool prepared = kxtool::ObservePreparation(modem, properties, observation);
  EXPECT_EQ(prepared, seen.lastError == kxwan::kNoConnectError);
  seen.prepare = device.Commands();
}

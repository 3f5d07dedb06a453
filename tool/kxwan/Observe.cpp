#include <tool/kxwan/Observe.h>

namespace kxtool {

void ObserveSpeed(CSWirelessModem& device, Observation& observation) {
  unsigned long speed = 0;
  const CHandsetPlatform platform = device.DetectModem(speed);
  TakeSpeed(platform, speed, observation);
}

void TakeSpeed(CHandsetPlatform platform, unsigned long speed, Observation& observation) {
  observation.platform = platform;
  observation.speed = speed;
  observation.seen.platform = GetModemProtocolTypeAsString(platform);
  observation.seen.baud = static_cast<int>(speed);
}

bool ObserveInformation(CSWirelessModem& device, Observation& observation) {
  ModemInfo& info = observation.info;
  kxsim::Expectation& seen = observation.seen;
  const bool answered = device.GetModemData(&info);
  seen.manufacturer = info.szManufacturer;
  seen.model = info.szModel;
  seen.version = info.szVersion;
  seen.capabilities = info.szCapabilities;
  seen.coverage = info.szCoverage;
  seen.signal = info.nSignalLevel;
  return answered;
}

bool ObserveBattery(CSWirelessModem& device, Observation& observation) {
  const bool told = device.GetBatteryLevelFromDevice(&observation.info);
  observation.seen.battery = static_cast<int>(observation.info.dwBatteryLevel);
  return told;
}

void ObserveSim(CSWirelessModem& device, Observation& observation) {
  long pinLength = 0;
  observation.seen.sim = device.IsPasswordRequired(&pinLength);
  observation.seen.pinLength = static_cast<int>(pinLength);
}

void ObserveFastSpeed(CSWirelessModem& device, Observation& observation) {
  device.DetectModemBaudRate(observation.platform, observation.speed);
  observation.seen.fastBaud = static_cast<int>(observation.speed);
}

bool ObservePreparation(CSWirelessModem& device, KXModemProperties properties,
                        Observation& observation) {
  constexpr CHandsetPlatform kPacketData = PLATFORM_GPRS | PLATFORM_EDGE | PLATFORM_UMTS;
  const bool prepared = device.PrepareDeviceForConnection(&properties, "internet");
  observation.seen.lastError = static_cast<int>(CSWirelessModem::GetLastModemError());
  if ((properties.dwDeviceType & kPacketData) != 0) {
    char number[16] = "";
    kxwan::DialNumber(properties.szManufacturer, properties.szModel, number, sizeof number);
    observation.seen.dial = number;
  }
  return prepared;
}

KXModemProperties PropertiesOf(CHandsetPlatform platform, const std::string& manufacturer,
                               const std::string& model) {
  KXModemProperties properties = {};
  properties.dwDeviceType = platform;
  manufacturer.copy(properties.szManufacturer, sizeof properties.szManufacturer - 1);
  model.copy(properties.szModel, sizeof properties.szModel - 1);
  return properties;
}

}  // namespace kxtool

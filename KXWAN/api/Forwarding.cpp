#include <KXWAN/api/CSWirelessModem.h>
#include <KXWAN/connect/Connection.h>
#include <KXWAN/connect/DialString.h>
#include <KXWAN/foundation/LastError.h>
#include <KXWAN/handset/LineSpeed.h>
#include <KXWAN/info/Battery.h>
#include <KXWAN/info/Capabilities.h>
#include <KXWAN/info/Identity.h>
#include <KXWAN/info/ModemData.h>
#include <KXWAN/info/Signal.h>
#include <KXWAN/sim/SimPin.h>

bool CSWirelessModem::GetBatteryLevelFromDevice(ModemInfo* info) {
  return ::GetBatteryLevelFromDevice(m_pModem, info);
}

bool CSWirelessModem::GetSignalLevelFromDevice(ModemInfo* info) {
  return ::GetSignalLevelFromDevice(m_pModem, info);
}

bool CSWirelessModem::GetManufacturerString(ModemInfo* info) {
  return ::GetManufacturerString(m_pModem, info);
}

bool CSWirelessModem::GetModelString(ModemInfo* info) { return ::GetModelString(m_pModem, info); }

void CSWirelessModem::GSMCapabilities(ModemInfo* info) { ::GSMCapabilities(m_pModem, info); }

bool CSWirelessModem::GetCapabilitiesKey(ModemInfo* info) {
  return ::GetCapabilitiesKey(m_pModem, info);
}

void CSWirelessModem::GetModemCoverage(ModemInfo* info) { ::GetModemCoverage(m_pModem, info); }

void CSWirelessModem::GetModemVersion(ModemInfo* info) { ::GetModemVersion(m_pModem, info); }

bool CSWirelessModem::GetModemData(ModemInfo* info) { return ::GetModemData(m_pModem, info); }

bool CSWirelessModem::DetectModemBaudRate(CHandsetPlatform platform, unsigned long& baud) {
  return ::DetectModemBaudRate(m_pModem, platform, baud);
}

bool CSWirelessModem::PrepareDeviceForConnection(KXModemProperties* properties, const char* apn) {
  return ::PrepareDeviceForConnection(m_pModem, properties, apn);
}

int CSWirelessModem::IsPasswordRequired(long* pinLength) {
  return static_cast<int>(::IsPasswordRequired(m_pModem, pinLength));
}

int CSWirelessModem::SetPIN(const char* pin, signed char savePIN) {
  return static_cast<int>(::SetPIN(m_pModem, pin, savePIN));
}

int CSWirelessModem::SetPINPUK(const char* puk, const char* newPin, signed char savePIN) {
  return static_cast<int>(::SetPINPUK(m_pModem, puk, newPin, savePIN));
}

unsigned long CSWirelessModem::GetLastModemError() { return ::GetLastModemError(); }

bool CSWirelessModem::DoesGPRSDeviceRequire57600(const char* manufacturer, const char* model) {
  return ::DoesGPRSDeviceRequire57600(manufacturer, model);
}

void CSWirelessModem::GetGPRSDialedNumber(const char* manufacturer, const char* model, char* number,
                                          int size) {
  ::GetGPRSDialedNumber(manufacturer, model, number, size);
}

#pragma once

#include <KXWAN/foundation/Export.h>
#include <KXWAN/handset/CHandsetPlatform.h>
#include <KXWAN/modem/CSModem.h>
#include <KXWAN/modem/KXModemProperties.h>

struct ModemInfo;

// One device. An object is closed or open; opening an open one fails and leaves it as it is. All
// methods but the opens and Close presume an open device. One thread at a time uses one
// object; two objects may be used by two threads at the same time.
class KXWAN_API CSWirelessModem {
 public:
  CSWirelessModem();
  ~CSWirelessModem();  // closes
  CSWirelessModem(const CSWirelessModem&) = delete;
  CSWirelessModem& operator=(const CSWirelessModem&) = delete;

  // Opens the port at 19200 bit/s and sends nothing. A failed open leaves the object closed.
  bool Open(const char* port);

  // Opens the port, finds the device's speed and sends what the device needs once; see
  // CSModem::OpenDeviceFast and InitModemOptions for the commands. The speeds that are searched
  // follow from properties->dwDeviceType. A failure leaves the object closed.
  bool OpenDevice(const char* port, KXModemProperties* properties);

  // Restores the port's attributes and closes it. Harmless when closed.
  void Close();

  // Tries 19200, 57600, 115200, 230400 and 9600 bit/s, stores the speed at which the device
  // answered in baud (9600 when it answered nowhere) and gives its platform bits.
  CHandsetPlatform DetectModem(unsigned long& baud);

  // Sends a command of at most 254 characters, with "\r" added unless it is there. Copies at most
  // replySize - 1 characters and a NUL into reply and gives the result code, see ResultCode.h.
  // kResultTimeout leaves reply untouched.
  int SendATCommandAndGetReply(const char* command, char* reply, int replySize);

  // Copies the device's model and manufacturer. The first form presumes 64 characters of room or
  // more; the second cuts to the sizes given.
  bool GetModelAndManufacturer(char* model, char* manufacturer);
  bool GetModelAndManufacturer(char* model, int modelSize, char* manufacturer,
                               int manufacturerSize);

  // Each of these hands the open device to the library function of the same name, which is
  // documented in the header named. They presume an open device.

  bool GetBatteryLevelFromDevice(ModemInfo* info);  // charge and status, info/Battery.h
  bool GetSignalLevelFromDevice(ModemInfo* info);   // info/Signal.h
  bool GetManufacturerString(ModemInfo* info);      // info/Identity.h
  bool GetModelString(ModemInfo* info);             // info/Identity.h
  void GSMCapabilities(ModemInfo* info);            // data services of a GSM device, Capabilities.h
  bool GetCapabilitiesKey(ModemInfo* info);         // info/Capabilities.h
  void GetModemCoverage(ModemInfo* info);           // info/Signal.h
  void GetModemVersion(ModemInfo* info);            // firmware version, info/Identity.h
  bool GetModemData(ModemInfo* info);               // the whole record, info/ModemData.h

  // Moves the port to the fastest speed that the device accepts, handset/LineSpeed.h.
  bool DetectModemBaudRate(CHandsetPlatform platform, unsigned long& baud);

  // Readies the device for a packet-data call, connect/Connection.h.
  bool PrepareDeviceForConnection(KXModemProperties* properties, const char* apn);

  // These give a code of sim/SimCodes.h.
  int IsPasswordRequired(long* pinLength);                                  // sim/SimPin.h
  int SetPIN(const char* pin, signed char savePIN);                         // sim/SimPin.h
  int SetPINPUK(const char* puk, const char* newPin, signed char savePIN);  // sim/SimPin.h

  // These need neither an object nor a device.
  static unsigned long GetLastModemError();  // reads and clears, foundation/LastError.h
  static bool DoesGPRSDeviceRequire57600(const char* manufacturer,
                                         const char* model);  // connect/DialString.h
  static void GetGPRSDialedNumber(const char* manufacturer, const char* model, char* number,
                                  int size);  // connect/DialString.h

  CSModem* m_pModem;  // owned; null while closed
};

namespace kxwan {

// The platform bits with what is known of cards whose answers promise too little or too much; the
// device is asked for its model and manufacturer. DetectModem ends with this, DetectWirelessPhone
// does not.
KXWAN_API CHandsetPlatform CorrectPlatform(CSModem* modem, CHandsetPlatform platform);

}  // namespace kxwan

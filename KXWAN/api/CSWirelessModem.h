#pragma once

#include <KXWAN/foundation/Export.h>
#include <KXWAN/handset/CHandsetPlatform.h>
#include <KXWAN/modem/CSModem.h>
#include <KXWAN/modem/KXModemProperties.h>

// One device. An object is closed or open; opening an open one fails and leaves it as it is. All
// methods but the opens and Close presume an open device. One thread uses one object.
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

  CSModem* m_pModem;  // owned; null while closed
};

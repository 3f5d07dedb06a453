#pragma once

#include <KXWAN/foundation/CString.h>
#include <KXWAN/foundation/Export.h>
#include <KXWAN/serial/ModemDescriptorArray.h>
#include <termios.h>

#include <cstdint>

// Framing and flow control. Deliberate: parity, byte size and stop bits are accepted and not
// applied; the device's own framing stays.
enum E_PARITY { E_PARITY_UNCHANGED = -1, E_PARITY_NONE = 0, E_PARITY_ODD = 1, E_PARITY_EVEN = 2 };
enum E_BYTESIZE { E_BYTESIZE_UNCHANGED = -1, E_BYTESIZE_7 = 7, E_BYTESIZE_8 = 8 };
enum E_STOPBITS { E_STOPBITS_UNCHANGED = -1, E_STOPBITS_1 = 1, E_STOPBITS_2 = 2 };
enum E_FLOWCONTROL {
  E_FLOWCONTROL_NONE = 0,
  E_FLOWCONTROL_SOFTWARE = 1,
  E_FLOWCONTROL_HARDWARE = 2
};

// One open tty. Speeds are plain bits per second. Results are 1 for success and 0 for failure where
// nothing else is said. Every failed system call is logged. One thread uses one object.
class KXWAN_API KxSerial {
 public:
  KxSerial();
  virtual ~KxSerial();  // closes
  KxSerial(const KxSerial&) = delete;
  KxSerial& operator=(const KxSerial&) = delete;

  // Opens the tty for exclusive use in raw mode with blocking reads that end after a tenth of a
  // second of silence. A failed open leaves the object closed.
  int Open(CString& path);
  int Open(const char* path);

  // Restores the attributes that the tty had and closes it. Nothing when closed.
  void Close();

  // Gathers a burst: gives back when len bytes have come or the line has been quiet for a tenth of
  // a second. buf holds len + 1 bytes, as a NUL is stored behind the data. *got is the number of
  // bytes; after a read error it is 0, whatever buf holds. 1 when at least one byte came.
  int Read(unsigned char* buf, unsigned long len, unsigned long* got);
  int Read(unsigned char* buf, int len);  // gives the number of bytes

  // 1 when every byte was written. A line that takes nothing is given up after three tries.
  int Write(const unsigned char* buf, unsigned long len);

  // Sets the line speed, input and output. A speed that the system does not know fails.
  // The second form is for callers that hold plain numbers; -1 means unchanged.
  int SetDataFormat(unsigned long speed, E_PARITY, E_BYTESIZE, E_STOPBITS);
  int SetDataFormat(unsigned long speed, int, int, int) {
    return SetDataFormat(speed, E_PARITY_UNCHANGED, E_BYTESIZE_UNCHANGED, E_STOPBITS_UNCHANGED);
  }
  // Stores the input speed; on failure *speed is untouched.
  int GetDataFormat(unsigned long* speed);

  // Deliberate: failures go to standard error and give the number of characters of the message, so
  // that a caller cannot tell them from success by the result.
  int SetFlowControl(E_FLOWCONTROL mode);
  int SetFlowControl(int mode) { return SetFlowControl(static_cast<E_FLOWCONTROL>(mode)); }

  // 19200 bit/s and hardware flow control; gives what SetFlowControl gave.
  int SetModemData();

  // Raises (on non-zero) or drops DTR; gives the result of the ioctl that writes the lines.
  int SetDTR(signed char on);

  // Deliberate: stores isOpen in *out and always gives 1024; it does not count bytes.
  int GetRXBytes(signed char* out);

  // The path with "?" for every character that is not printable, in a buffer of this object.
  char* GetDebugDevicePath(const char* path);

  // The process-wide table of open ports, a record for the log and not a lock.
  uint32_t AllocatePortID(const char* path);  // 0xFFFFFFFF: already open, or no slot free
  void DeallocatePortID(uint32_t id);

  // The machine's serial devices. See SerialDevices.
  int FindSerialDevices(unsigned int* iterator);
  ModemDescriptorArray* GetSerialDeviceData(unsigned int iterator);
  int GetInstalledSerialDevices(ModemDescriptorArray** out);

  uint32_t portID;
  int32_t fd;  // -1 when closed
  struct termios savedAttributes;
  signed char isOpen;
  char debugPath[259];

  // Counts the opens and the changes of speed, so that an owner can tell that the line is not the
  // one it knew.
  uint32_t lineGeneration;
};

// For code that holds the port as an opaque pointer. CreateISSerial gives 0, or -1 when there is no
// memory; DeleteISSerial closes and deletes, and takes null.
KXWAN_API int CreateISSerial(void** out);
KXWAN_API void DeleteISSerial(void* port);

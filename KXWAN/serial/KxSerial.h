#pragma once

#include <KXWAN/foundation/CString.h>
#include <KXWAN/foundation/Export.h>
#include <KXWAN/serial/ModemDescriptorArray.h>
#include <termios.h>

#include <cstdint>

// Framing and flow control. Deliberate: parity, byte size and stop bits are accepted and not
// applied; the device's own framing stays.
enum E_PARITY : int {
  E_PARITY_UNCHANGED = -1,
  E_PARITY_NONE = 1,
  E_PARITY_ODD = 2,
  E_PARITY_EVEN = 3
};
enum E_BYTESIZE : int { E_BYTESIZE_UNCHANGED = -1, E_BYTESIZE_7 = 7, E_BYTESIZE_8 = 8 };
enum E_STOPBITS : int { E_STOPBITS_UNCHANGED = -1, E_STOPBITS_1 = 1, E_STOPBITS_2 = 2 };
enum E_FLOWCONTROL : int {
  E_FLOWCONTROL_NONE = 0,
  E_FLOWCONTROL_SOFTWARE = 1,  // accepted and not applied
  E_FLOWCONTROL_HARDWARE = 2   // RTS/CTS
};

namespace kxwan {

// The identifier of a port without a slot.
constexpr uint32_t kNoPortID = 0xFFFFFFFF;

// One port that is open through any KxSerial of the process.
struct PortSlot {
  uint32_t id;     // 0: the slot is free
  char path[256];  // as given to Open, cut to 255 characters
};

}  // namespace kxwan

// The process-wide record of open ports, for the log and not a lock: a port beyond the sixth, or
// one that is open already, works without a slot. Ports may be opened and closed on several
// threads; who looks at the table itself does so while none of them is.
extern KXWAN_API kxwan::PortSlot portList[6];

// The identifier given out last; -1 before the first, which is 0x104. Never given out twice.
extern KXWAN_API int32_t nextPortID;

// One open tty. Speeds are plain bits per second. Results are 1 for success and 0 for failure where
// nothing else is said. Failures to open, read, write or set the speed are logged with the system's
// error. A signal is no failure: the call is made again. Only Open, Close, Read and Write look
// whether the port is open; on a closed one the others fail like any system call. One thread at a
// time uses one object; two objects may be used by two threads at the same time.
class KXWAN_API KxSerial {
 public:
  KxSerial();
  virtual ~KxSerial();  // closes
  KxSerial(const KxSerial&) = delete;
  KxSerial& operator=(const KxSerial&) = delete;

  // Opens the tty for exclusive use, at 19200 bit/s, without line editing, echo and output
  // processing, and with blocking reads that end after a tenth of a second of silence. The first
  // Write makes the descriptor one that does not block, for as long as it is open. What the tty
  // translates on input, its framing and its flow control stay. A failed open leaves the object
  // closed. A port that is open is closed first.
  int Open(CString& path);
  int Open(const char* path);

  // Restores the attributes that the tty had, gives up the exclusive use that this open took, and
  // closes it. Nothing when closed. isOpen stays. What was written last gets 0.3 s to go out; what
  // the device has not taken by then is dropped. On Linux a short-lived child process does that,
  // of which the program gets no signal; no wait but one for every kind of child sees it.
  void Close();

  // Gathers a burst: gives back when len bytes have come or the line has been quiet for a tenth of
  // a second. buf holds len + 1 bytes, as a NUL is stored behind the data. *got is the number of
  // bytes; after a read error it is 0, whatever buf holds. 1 when at least one byte came. A line
  // that hung up may look quiet without the wait.
  int Read(unsigned char* buf, unsigned long len, unsigned long* got);
  int Read(unsigned char* buf, int len);  // gives the number of bytes

  // 1 when every byte was written. A line that takes nothing is given up after three tries of half
  // a second. buf is null: 0.
  int Write(const unsigned char* buf, unsigned long len);

  // Sets the line speed, input and output. A speed that the system does not know fails.
  // The second form is for callers that hold plain numbers.
  int SetDataFormat(unsigned long speed, E_PARITY, E_BYTESIZE, E_STOPBITS);
  int SetDataFormat(unsigned long speed, int, int, int) {
    return SetDataFormat(speed, E_PARITY_UNCHANGED, E_BYTESIZE_UNCHANGED, E_STOPBITS_UNCHANGED);
  }
  // Stores the input speed, any that the tty may have: one that SetDataFormat does not know, or 0
  // for a line that is hung up. On failure *speed is untouched.
  int GetDataFormat(unsigned long* speed);

  // Sets or clears RTS/CTS flow control; a mode other than these two changes nothing and gives 1.
  // Deliberate: failures go to standard error and give the number of characters of the message, so
  // that a caller cannot tell them from success by the result.
  int SetFlowControl(E_FLOWCONTROL mode);
  int SetFlowControl(int mode) { return SetFlowControl(static_cast<E_FLOWCONTROL>(mode)); }

  // 19200 bit/s and hardware flow control; gives what SetFlowControl gave.
  int SetModemData();

  // Raises (on non-zero) or drops DTR; gives the result of the ioctl that writes the lines, 0 or
  // -1.
  int SetDTR(signed char on);

  // Deliberate: stores isOpen in *out and always gives 1024; it does not count bytes.
  int GetRXBytes(signed char* out);

  // The path with "?" for every character that is not printable, cut to 258 characters, in a buffer
  // of this object that the next call overwrites.
  char* GetDebugDevicePath(const char* path);

  // Take and give back a slot of portList.
  uint32_t AllocatePortID(const char* path);  // 0xFFFFFFFF: already open, or no slot free
  void DeallocatePortID(uint32_t id);

  // The machine's serial devices, whether this port is open or not. Failures go to standard error.
  // FindSerialDevices gives 0 and stores an iterator of the system's device registry, or gives 1.
  // GetSerialDeviceData lists what the iterator yields, up to the first name that is no ASCII text
  // of at most 126 characters; null when it yields nothing.
  // GetInstalledSerialDevices does both and releases the iterator. 1 with a list in *out; 0 with
  // null in *out when there is no device, or with *out untouched when the search failed. The caller
  // deletes the list.
  int FindSerialDevices(unsigned int* iterator);
  ModemDescriptorArray* GetSerialDeviceData(unsigned int iterator);
  int GetInstalledSerialDevices(ModemDescriptorArray** out);

  uint32_t portID;                 // of its slot; 0xFFFFFFFF when it has none
  int32_t fd;                      // -1 when closed
  struct termios savedAttributes;  // what Close restores
  signed char isOpen;              // 1 from an open until a failed open, read or write
  char debugPath[259];             // see GetDebugDevicePath

  // Counts the opens and the changes of speed that succeeded, so that an owner can tell that the
  // line is not the one it knew.
  uint32_t lineGeneration;

  bool blocking;  // whether the system's own reads and writes of fd may wait; Read and Write do not
                  // depend on it
  bool exclusive;  // whether it was this open that took the tty for exclusive use
};

// For code that holds the port as an opaque pointer. CreateISSerial gives 0, or -1 when there is no
// memory; DeleteISSerial closes and deletes, and takes null.
KXWAN_API int CreateISSerial(void** out);
KXWAN_API void DeleteISSerial(void* port);

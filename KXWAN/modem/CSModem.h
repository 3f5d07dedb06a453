#pragma once

#include <KXWAN/foundation/CString.h>
#include <KXWAN/foundation/Export.h>
#include <KXWAN/modem/KXModemProperties.h>
#include <KXWAN/modem/ResultCode.h>
#include <KXWAN/serial/KxSerial.h>

#include <cstdint>

namespace kxwan {
struct Engine;
}

// The AT command engine (V.250): sends one command and collects its answer. It owns one serial
// port. One thread uses one object.
//
// An exchange (SendCommandGetResponse) gives a result only when it can be no other command's. A
// command that timed out leaves its answer outstanding, and what comes late is told from later
// commands' answers by a strict count. While something is outstanding, a command waits for the line
// to run dry before it goes out, and where its result cannot be told it has none. On a line that
// owes nothing the first final result decides at once.
class KXWAN_API CSModem {
 public:
  CSModem();
  virtual ~CSModem();  // closes the port
  CSModem(const CSModem&) = delete;
  CSModem& operator=(const CSModem&) = delete;

  // Writes the command as it stands; the caller ends it with "\r". False when the write failed.
  bool SendCommand(const char* command);

  // Waits up to timeoutMs for the next final result that comes, whatever was waiting included: true
  // with the result code and the text in front of it, or the error's text. False on time-out, with
  // kResultTimeout and what had come. Unlike SendCommandGetResponse it does not tell whose result
  // it is.
  // "OK": the text, trimmed. "ERROR": empty. "+CME ERROR:"/"+CMS ERROR:": what follows, trimmed.
  bool GetResponse(int& result, CString& response, unsigned long timeoutMs);

  // Sends and waits, up to m_nRetries times m_dwResponseTimeout. True for any final result, so that
  // a command succeeded only when this is true and result is kResultOk. What waits before the
  // command is written is no part of its answer. A command that got a result which may be another's
  // is not sent again, unless it only asks and the device is known to be late.
  //
  // A reply's buffer is, by CString's rules, never freed. A program that polls for months locks its
  // text (response.LockBuffer()) before the text goes out of scope.
  bool SendCommandGetResponse(const char* command, int& result, CString& response);

  // Opens the port unless it is open and finds the device's speed with "ATE0V1\r": first
  // optimumBaud, then the speeds in baudMask (0x02 19200, 0x10 115200, 0x04 38400, 0x08 57600,
  // 0x01 9600, searched in this order). A device found elsewhere is moved with "AT+IPR=". One that
  // answers with ERROR is sent "AT+CFUN=1\r". With a mask of 0 a silent device counts as opened.
  // False leaves the port open unless opening it was what failed.
  bool OpenDeviceFast(const char* port, unsigned long baudMask, unsigned long optimumBaud);

  // Sends what the device needs once ("AT!UARTONLY\r" for some cards). False when it was not
  // answered at all. port is not used.
  bool InitModemOptions(const char* port, KXModemProperties* properties);

  // The machine's serial devices; the caller owns the list. False leaves none.
  bool GetInstalledModems(ModemDescriptorArray** list);

  uint32_t m_dwLastResponseTime;  // engine milliseconds at the last final result
  int32_t m_nRetries;             // 3
  uint32_t m_dwResponseTimeout;   // milliseconds, 1500
  KxSerial* m_pSerial;            // owned

  kxwan::Engine* m_pEngine;  // owned; its inside is the library's own
};

// Makes the next open of a port wait two seconds first, for PC cards that need to settle. The flag
// is the process's; the open takes it back.
extern KXWAN_API bool pcCardOpenDelayFlag;
KXWAN_API void KXModemSetPCCardOpenDelayFlag();

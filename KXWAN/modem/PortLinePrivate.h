#pragma once

#include <KXWAN/modem/CSModem.h>
#include <KXWAN/modem/LinePrivate.h>
#include <KXWAN/serial/SerialIoPrivate.h>

#include <chrono>
#include <cstdint>
#include <string>

namespace kxwan {

// The serial port of a modem as a line. What is written, and each time-out, goes into the log.
class PortLine final : public Line {
 public:
  explicit PortLine(CSModem& modem) : modem_(modem) {}

  Seconds Now() override;
  Heard Receive(Seconds until) override;
  bool Write(std::string_view command) override;
  bool SetSpeed(unsigned long speed) override;
  bool GetSpeed(unsigned long& speed) override;
  bool TakeChange() override;
  void NoteTimeout() override;

 private:
  Arrival Take(std::chrono::milliseconds wait);

  CSModem& modem_;
  std::string buffer_;
  size_t filled_ = 0;
  uint32_t generation_ = 0;  // the port's, when it was last looked at
};

}  // namespace kxwan

#pragma once

#include <KXWAN/serial/KxSerial.h>

#include <chrono>
#include <cstddef>

namespace kxwan {

// What has come over a line.
struct Arrival {
  size_t bytes = 0;
  bool gone = false;  // the line hung up or cannot be read; nothing will come any more
  std::chrono::steady_clock::time_point at = {};  // just before the line was read
};

// Waits up to `wait` for input, whatever signals come, and takes what is there, at most room bytes
// (not 0), with one read. It reads also when the time is over, as the process may run late. With no
// wait it is that read alone. No NUL is stored. What a line still
// held when it hung up comes first. A failed read is logged and clears isOpen, as in
// KxSerial::Read.
//
// The descriptor does not block from here on until the port is opened anew.
Arrival Receive(KxSerial& port, char* buffer, size_t room, std::chrono::milliseconds wait);

}  // namespace kxwan

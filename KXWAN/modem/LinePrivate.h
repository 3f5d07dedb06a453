#pragma once

#include <KXWAN/modem/PacePrivate.h>

#include <string_view>

namespace kxwan {

// A line to a device as a conversation needs it: a serial port, or a model of one.
class Line {
 public:
  struct Heard {
    std::string_view bytes;  // good until the next call
    Seconds at = 0;          // when the line was looked at: what had come by then is here
    bool gone = false;       // the device has left
  };

  virtual ~Line() = default;

  virtual Seconds Now() = 0;

  // Gives what waits, or waits until then for something to come. A time that is over waits for
  // nothing. On a line whose device has left it gives back before long.
  virtual Heard Receive(Seconds until) = 0;

  // False when not everything could be written.
  virtual bool Write(std::string_view command) = 0;

  // Bits per second. False when the speed cannot be had; the line is then as it was.
  virtual bool SetSpeed(unsigned long speed) = 0;
  virtual bool GetSpeed(unsigned long& speed) = 0;

  // Whether the line has another speed or was opened anew since the last call.
  virtual bool TakeChange() = 0;

  // A command was written, and its time has ended without a result.
  virtual void NoteTimeout() = 0;
};

}  // namespace kxwan

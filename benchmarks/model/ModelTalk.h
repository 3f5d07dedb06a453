#pragma once

#include <KXWAN/modem/ConversationPrivate.h>
#include <benchmarks/model/ModelLine.h>

#include <string>

namespace kxmodel {

struct Verdict {
  bool answered = false;
  bool right = false;
  Seconds took = 0;
};

// A conversation with a model device that knows of each result whether it is the command's own.
class Talk {
 public:
  Talk(const DeviceTraits& device, const LineTraits& line, uint64_t seed, Timeline* timeline);

  // What the device is to say to a command, a line without its "\r".
  Question& Prepare(std::string_view line, std::string_view text, std::string_view result);

  // Exchanges what was prepared: as the classic operations do, once, or once and
  // surely.
  Verdict Exchange(Seconds timeout, int tries);
  Verdict ExchangeOnce(Seconds timeout, Seconds settlement);
  Verdict ExchangeSurely(Seconds timeout);

  Random& Numbers() { return random_; }
  ModelDevice& Device() { return device_; }
  ModelLine& Port() { return line_; }
  kxwan::Conversation& Conversation() { return conversation_; }

 private:
  Verdict Judge(bool answered, Seconds begun);
  bool IsOwn(const kxwan::Answer& answer) const;

  Random random_;
  ModelDevice device_;
  ModelLine line_;
  kxwan::Conversation conversation_;
  uint32_t exchange_ = 0;
  std::string command_;
  std::string text_;
  std::string result_;
  Question question_;
};

}  // namespace kxmodel

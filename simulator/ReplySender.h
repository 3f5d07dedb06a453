#pragma once

#include <simulator/line/FaultSet.h>
#include <simulator/line/PseudoTerminal.h>
#include <simulator/line/Sender.h>

#include <functional>
#include <string>

namespace kxsim {

// Sends replies, spoiled as the device's faults want it.
class ReplySender {
 public:
  using Gone = std::function<void(const Delivery& delivery)>;

  ReplySender(const PseudoTerminal& terminal, Sender& sender, FaultSet& faults)
      : terminal_(terminal), sender_(sender), faults_(faults) {}

  // Calls when the last byte has gone.
  void Send(Delivery delivery, Gone gone);
  // What a fault puts behind a reply: a line, a flood.
  void SendRest(const Delivery& delivery);

 private:
  void Flood(const std::string& text, size_t left, bool endless);

  const PseudoTerminal& terminal_;
  Sender& sender_;
  FaultSet& faults_;
};

}  // namespace kxsim

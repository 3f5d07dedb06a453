#pragma once

#include <profile/Profile.h>
#include <simulator/modem/EquipmentError.h>

#include <string>

namespace kxsim {

// A SIM card with its counters. What may fail gives kNoError or the error that the device reports.
class SimCard {
 public:
  explicit SimCard(const SimSettings& settings) : card_(settings), triesLeft_(settings.pinTries) {}

  SimState State() const { return card_.state; }
  bool Locked() const { return card_.lock; }
  // Why the card keeps the device from working.
  EquipmentError Obstacle() const;

  // A card that is locked asks for its PIN again.
  void PowerUp();
  EquipmentError EnterPin(const std::string& pin);
  EquipmentError Unblock(const std::string& puk, const std::string& newPin);
  EquipmentError ChangePin(const std::string& pin, const std::string& newPin);
  EquipmentError SetLock(bool lock, const std::string& pin);

 private:
  EquipmentError Verify(const std::string& pin);

  SimSettings card_;
  int triesLeft_;
};

}  // namespace kxsim

#include <simulator/modem/SimCard.h>

#include <algorithm>

namespace kxsim {
namespace {

bool IsPin(const std::string& text) {
  return text.size() >= 4 && text.size() <= 8 &&
         std::all_of(text.begin(), text.end(),
                     [](char byte) { return byte >= '0' && byte <= '9'; });
}

}  // namespace

EquipmentError SimCard::Obstacle() const {
  switch (card_.state) {
    case SimState::kNone:
      return kSimNotInserted;
    case SimState::kReady:
      return kNoError;
    case SimState::kPin:
      return kSimPinRequired;
    case SimState::kPuk:
      return kSimPukRequired;
    case SimState::kFailure:
      return kSimFailure;
  }
  return kSimFailure;
}

EquipmentError SimCard::Verify(const std::string& pin) {
  if (pin == card_.pin) {
    triesLeft_ = card_.pinTries;
    return kNoError;
  }
  if (--triesLeft_ <= 0) card_.state = SimState::kPuk;
  return kIncorrectPassword;
}

void SimCard::PowerUp() {
  if (card_.state == SimState::kReady && card_.lock) card_.state = SimState::kPin;
}

EquipmentError SimCard::EnterPin(const std::string& pin) {
  if (card_.state == SimState::kReady) return kNotAllowed;
  if (card_.state != SimState::kPin) return Obstacle();
  const EquipmentError error = Verify(pin);
  if (error == kNoError) card_.state = SimState::kReady;
  return error;
}

EquipmentError SimCard::Unblock(const std::string& puk, const std::string& newPin) {
  if (card_.state == SimState::kReady) return kNotAllowed;
  if (card_.state != SimState::kPuk) return Obstacle();
  if (!IsPin(newPin)) return kIncorrectParameters;
  if (puk != card_.puk) {
    if (--card_.pukTries <= 0) card_.state = SimState::kFailure;
    return kIncorrectPassword;
  }
  card_.pin = newPin;
  card_.state = SimState::kReady;
  triesLeft_ = card_.pinTries;
  return kNoError;
}

EquipmentError SimCard::ChangePin(const std::string& pin, const std::string& newPin) {
  if (card_.state != SimState::kReady) return Obstacle();
  if (!card_.lock) return kNotAllowed;
  if (!IsPin(newPin)) return kIncorrectParameters;
  const EquipmentError error = Verify(pin);
  if (error == kNoError) card_.pin = newPin;
  return error;
}

EquipmentError SimCard::SetLock(bool lock, const std::string& pin) {
  if (card_.state != SimState::kReady) return Obstacle();
  const EquipmentError error = Verify(pin);
  if (error == kNoError) card_.lock = lock;
  return error;
}

}  // namespace kxsim

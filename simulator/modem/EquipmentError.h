#pragma once

#include <string>

namespace kxsim {

// What +CME ERROR reports.
enum EquipmentError {
  kNoError = -1,
  kNotAllowed = 3,
  kNotSupported = 4,
  kSimNotInserted = 10,
  kSimPinRequired = 11,
  kSimPukRequired = 12,
  kSimFailure = 13,
  kIncorrectPassword = 16,
  kNoNetwork = 30,
  kIncorrectParameters = 50,
  kAttachFailed = 148,
};

// The final result for an error: plain, as a number or as a text, as AT+CMEE= wants it.
std::string ErrorResult(EquipmentError error, int reportMode);

}  // namespace kxsim

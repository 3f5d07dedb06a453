#pragma once

namespace kxwan {

// What an exchange ended with (V.250 5.7.1, 3GPP TS 27.007 9.1).
enum ResultCode {
  kResultOk = 0,
  kResultError = 4,             // "ERROR"; the response is empty
  kResultTimeout = 100,         // no final result came
  kResultEquipmentError = 101,  // "+CME ERROR:" or "+CMS ERROR:"; the response is the error's text
  kResultInDoubt = 102,         // nothing was sent: answers to earlier commands may still come
  kResultDeviceGone = 103,      // the line hung up, as it does when a device is unplugged
  kResultNotSent = 104          // the line did not take the command, or not all of it
};

}  // namespace kxwan

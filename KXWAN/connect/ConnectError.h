#pragma once

#include <KXWAN/foundation/Export.h>

namespace kxwan {

// What PrepareDeviceForConnection leaves in the last-error cell, see GetLastModemError.
enum ConnectError : unsigned long {
  kNoConnectError = 0,   // also when a device refused Mobile IP
  kNotAnswered = 100,    // no usable answer to the attach query or the CDMA mode command
  kModeRefused = 101,    // the CDMA mode command and both of its fall-backs were refused
  kAttachFailed = 102,   // no packet service
  kContextRefused = 103  // the packet-data context or its quality of service was refused
};

// One or two sentences for a user: what the code means and what to do. A static text.
KXWAN_API const char* DescribeConnectError(unsigned long code);

}  // namespace kxwan

#pragma once

#include <KXWAN/modem/ExchangePrivate.h>

namespace kxwan {

struct DeviceNames {
  Answer model;         // to "AT+GMM\r"
  Answer manufacturer;  // to "AT+GMI\r"
};

// Asks the device for both, as GetModelAndManufacturer does.
DeviceNames ReadDeviceNames(CSModem* modem);

}  // namespace kxwan

#pragma once

// All that an application includes.

#include <KXWAN/api/CSWirelessModem.h>
#include <KXWAN/api/PortEnumeration.h>
#include <KXWAN/api/ProtocolNames.h>
#include <KXWAN/connect/ConnectError.h>
#include <KXWAN/connect/Connection.h>
#include <KXWAN/connect/DialString.h>
#include <KXWAN/connect/GprsSetup.h>
#include <KXWAN/connect/OneXSetup.h>
#include <KXWAN/foundation/CString.h>
#include <KXWAN/foundation/DebugLog.h>
#include <KXWAN/foundation/Export.h>
#include <KXWAN/foundation/Host.h>
#include <KXWAN/foundation/LastError.h>
#include <KXWAN/foundation/Waiting.h>
#include <KXWAN/handset/CHandsetPlatform.h>
#include <KXWAN/handset/Detection.h>
#include <KXWAN/modem/CSModem.h>
#include <KXWAN/modem/KXModemProperties.h>
#include <KXWAN/modem/ResultCode.h>
#include <KXWAN/modem/SingleExchange.h>
#include <KXWAN/serial/KxSerial.h>
#include <KXWAN/serial/ModemDescriptorArray.h>
#include <KXWAN/serial/PortSlots.h>
#include <KXWAN/sim/EquipmentError.h>
#include <KXWAN/sim/KXDevicePassword.h>
#include <KXWAN/sim/PinEntry.h>
#include <KXWAN/sim/SimCard.h>
#include <KXWAN/sim/SimCodes.h>
#include <KXWAN/sim/SimPin.h>
#include <KXWAN/sim/SimState.h>

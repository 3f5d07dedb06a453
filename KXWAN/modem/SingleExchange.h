#pragma once

#include <KXWAN/foundation/Export.h>
#include <KXWAN/modem/CSModem.h>

namespace kxwan {

// Sends the command exactly once and waits up to timeoutMs. For what must not be tried again
// because the device was slow: a PIN, a dial. Results as CSModem::GetResponse gives them; false
// also when the command could not be written, with kResultTimeout and an empty response.
KXWAN_API bool SendOnce(CSModem* modem, const char* command, unsigned long timeoutMs, int& result,
                        CString& response);

}  // namespace kxwan

#pragma once

#include <KXWAN/foundation/Export.h>
#include <KXWAN/modem/CSModem.h>

namespace kxwan {

// Sends the command exactly once and waits up to timeoutMs. For what must not be tried again
// because the device was slow: a PIN, a dial. While answers to earlier commands may still come,
// harmless questions are asked first, for up to three seconds: registers whose values are the same
// on every device (ATS3?, ATS4?, ATS5?; V.250 6.2), or AT+GCAP, AT+CMEE?, AT+CSQ. True for a final
// result, as CSModem::GetResponse gives it. False otherwise, with kResultTimeout and what came,
// kResultInDoubt when those answers stay open, so that nothing was sent, kResultNotSent or
// kResultDeviceGone.
KXWAN_API bool SendOnce(CSModem* modem, const char* command, unsigned long timeoutMs, int& result,
                        CString& response);

}  // namespace kxwan

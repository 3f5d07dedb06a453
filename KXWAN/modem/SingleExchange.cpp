#include <KXWAN/modem/SingleExchange.h>

#include <KXWAN/foundation/TextPrivate.h>

namespace kxwan {

bool SendOnce(CSModem* modem, const char* command, unsigned long timeoutMs, int& result,
              CString& response) {
  result = kResultTimeout;
  MakeEmpty(response);
  return modem->SendCommand(command) && modem->GetResponse(result, response, timeoutMs);
}

}  // namespace kxwan

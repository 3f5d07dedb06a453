#include <KXWAN/modem/SingleExchange.h>

namespace kxwan {

bool SendOnce(CSModem* modem, const char* command, unsigned long timeoutMs, int& result,
              CString& response) {
  result = kResultTimeout;
  response.Empty();
  return modem->SendCommand(command) && modem->GetResponse(result, response, timeoutMs);
}

}  // namespace kxwan

#include <KXWAN/modem/SingleExchange.h>

#include <KXWAN/modem/EnginePrivate.h>

namespace kxwan {

bool SendOnce(CSModem* modem, const char* command, unsigned long timeoutMs, int& result,
              CString& response) {
  ConversationOf(modem).ExchangeOnce(command, SecondsOf(timeoutMs));
  return modem->m_pEngine->Give(result, response);
}

}  // namespace kxwan

#include <KXWAN/modem/Exchange.h>

#include <KXWAN/modem/EnginePrivate.h>
#include <KXWAN/modem/ExchangePrivate.h>

namespace kxwan {

Answer Exchange(CSModem* modem, const char* command) {
  ConversationOf(modem).Exchange(command, SecondsOf(modem->m_dwResponseTimeout), modem->m_nRetries);
  return modem->m_pEngine->Noted();
}

Answer ExchangeWhileThere(CSModem* modem, const char* command) {
  ConversationOf(modem).ExchangeWhileThere(command, SecondsOf(modem->m_dwResponseTimeout),
                                           modem->m_nRetries);
  return modem->m_pEngine->Noted();
}

Answer ExchangeOnce(CSModem* modem, const char* command, unsigned long timeoutMs) {
  ConversationOf(modem).ExchangeOnce(command, SecondsOf(timeoutMs));
  return modem->m_pEngine->Noted();
}

Answer ExchangeSurely(CSModem* modem, const char* command, unsigned long timeoutMs) {
  ConversationOf(modem).ExchangeSurely(command, SecondsOf(timeoutMs));
  return modem->m_pEngine->Noted();
}

bool Accepts(CSModem* modem, const char* command) { return Exchange(modem, command).IsOk(); }

bool SetPortSpeed(CSModem* modem, unsigned long speed) {
  return modem->m_pEngine->line.SetSpeed(speed);
}

bool SendOnce(CSModem* modem, const char* command, unsigned long timeoutMs, int& result,
              CString& response) {
  ConversationOf(modem).ExchangeOnce(command, SecondsOf(timeoutMs));
  return modem->m_pEngine->Give(result, response);
}

AnswerCounts CountAnswers(const CSModem* modem) {
  Engine& engine = *modem->m_pEngine;
  return {engine.unanswered, engine.conversation.Exchanges().Late()};
}

}  // namespace kxwan

#include <KXWAN/modem/AnswerCounts.h>

#include <KXWAN/modem/EnginePrivate.h>

namespace kxwan {

AnswerCounts CountAnswers(const CSModem* modem) {
  Engine& engine = *modem->m_pEngine;
  return {engine.unanswered, engine.conversation.Account().Late()};
}

}  // namespace kxwan

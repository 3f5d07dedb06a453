#pragma once

#include <KXWAN/modem/CSModem.h>
#include <KXWAN/modem/ConversationPrivate.h>
#include <KXWAN/modem/PortLinePrivate.h>

#include <cstdint>

namespace kxwan {

// The engine's inside.
struct Engine {
  explicit Engine(CSModem& owner) : modem(owner), line(owner), conversation(line) {}

  // Logs and counts what an exchange came to, and gives it.
  const Answer& Noted();

  // The same into a caller's variables. True for any final result; else the response is what came.
  bool Give(int& result, CString& response);

  CSModem& modem;
  PortLine line;
  Conversation conversation;
  uint32_t unanswered = 0;  // exchanges
};

inline Conversation& ConversationOf(CSModem* modem) { return modem->m_pEngine->conversation; }

}  // namespace kxwan

#include <KXWAN/modem/CSModem.h>

#include <KXWAN/foundation/ClockPrivate.h>
#include <KXWAN/foundation/DebugLog.h>
#include <KXWAN/foundation/TextPrivate.h>
#include <KXWAN/modem/EnginePrivate.h>

#include <new>

namespace {

void LogResult(const kxwan::Answer& answer) {
  const char* text = answer.text.c_str();
  switch (answer.result) {
    case kxwan::kResultOk:
      KXOutputDebug("CSModem::GetResponse() -> %.512s\n", *text != '\0' ? text : "OK");
      break;
    case kxwan::kResultEquipmentError:
      KXOutputDebug("CSModem::GetResponse() -> %s Error: %s\n", answer.kind, text);
      break;
    default:
      KXOutputDebug("CSModem::GetResponse() -> ERROR\n");
  }
}

}  // namespace

CSModem::CSModem()
    : m_dwLastResponseTime(0),
      m_nRetries(3),
      m_dwResponseTimeout(1500),
      m_pSerial(new (std::nothrow) KxSerial),
      m_pEngine(new (std::nothrow) kxwan::Engine(*this)) {}

CSModem::~CSModem() {
  if (m_pSerial != nullptr) m_pSerial->Close();
  delete m_pEngine;
  m_pEngine = nullptr;
  delete m_pSerial;
  m_pSerial = nullptr;
}

bool CSModem::SendCommand(const char* command) { return m_pEngine->conversation.Send(command); }

bool CSModem::GetResponse(int& result, CString& response, unsigned long timeoutMs) {
  m_pEngine->conversation.Listen(kxwan::SecondsOf(timeoutMs));
  return m_pEngine->Give(result, response);
}

bool CSModem::SendCommandGetResponse(const char* command, int& result, CString& response) {
  m_pEngine->conversation.Exchange(command, kxwan::SecondsOf(m_dwResponseTimeout), m_nRetries);
  return m_pEngine->Give(result, response);
}

const kxwan::Answer& kxwan::Engine::Noted() {
  const kxwan::Answer& answer = conversation.Result();
  if (!answer.Came()) {
    ++unanswered;
    return answer;
  }
  LogResult(answer);
  modem.m_dwLastResponseTime = kxwan::Milliseconds();
  return answer;
}

// The response gets its text once, and nothing of the caller's is freed. It is emptied only now: it
// may be the command, too.
bool kxwan::Engine::Give(int& result, CString& response) {
  const kxwan::Answer& answer = Noted();
  const bool waited = answer.result == kxwan::kResultTimeout;
  const std::string_view text = waited ? conversation.Unfinished() : answer.text;
  result = answer.result;
  kxwan::MakeEmpty(response);
  response.AssignCopy(static_cast<int>(text.size()), text.data());
  return answer.Came();
}

bool CSModem::GetInstalledModems(ModemDescriptorArray** list) {
  return m_pSerial != nullptr && m_pSerial->GetInstalledSerialDevices(list) != 0;
}

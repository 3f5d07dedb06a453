#include <KXWAN/modem/CSModem.h>

#include <KXWAN/foundation/ClockPrivate.h>
#include <KXWAN/foundation/DebugLog.h>
#include <KXWAN/foundation/TextPrivate.h>
#include <KXWAN/foundation/Waiting.h>
#include <KXWAN/modem/ReplyPrivate.h>
#include <sys/ioctl.h>

#include <algorithm>
#include <chrono>
#include <cstring>
#include <new>

namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

// When a wait ends: by the engine's clock, which may be a tick fast, and not before its full time.
class Deadline {
 public:
  explicit Deadline(uint32_t timeoutMs)
      : engineEnd_(kxwan::Milliseconds() + timeoutMs),
        end_(steady_clock::now() + milliseconds(timeoutMs)) {}

  bool Passed(milliseconds overrun = milliseconds(0)) const {
    return engineEnd_ <= kxwan::Milliseconds() && end_ + overrun <= steady_clock::now();
  }

 private:
  uint32_t engineEnd_;
  steady_clock::time_point end_;
};

// Waiting bytes that the line already holds; 0 on a line that is gone.
size_t WaitingBytes(int fd) {
  int waiting = 0;
  return ioctl(fd, FIONREAD, &waiting) == 0 && waiting > 0 ? static_cast<size_t>(waiting) : 0;
}

// Reads what is there, or waits for the first byte. Asking for no more than has arrived ends the
// read at once, where asking for more would gather until the line is quiet. A read that comes back
// with nothing and without having waited (the device is gone) is followed by a pause, which is
// longer where each read also leaves a record in the log.
size_t ReadSome(KxSerial* port, char* buffer, size_t room, size_t waiting) {
  constexpr unsigned long kPauseMs = 15;
  constexpr unsigned long kPauseAfterErrorMs = 100;
  const auto start = steady_clock::now();
  unsigned long got = 0;
  port->Read(reinterpret_cast<unsigned char*>(buffer), std::clamp<size_t>(waiting, 1, room), &got);
  const auto waited = steady_clock::now() - start;
  if (got == 0 && waited < milliseconds(10)) {
    WaitMilliSecond(port->isOpen != 0 ? kPauseMs : kPauseAfterErrorMs);
  }
  return got;
}

constexpr milliseconds kLongestOverrun(100);

// Reads until the result is there or its time is over. What has arrived is looked at as a whole,
// but a device that floods is not heard for ever.
bool Gather(KxSerial* port, const Deadline& deadline, kxwan::Reply& reply,
            kxwan::ResultFinder& finder) {
  size_t waiting = 0;
  bool expired = false;
  while (!expired) {
    char buffer[1024];
    const size_t got = ReadSome(port, buffer, sizeof buffer - 1, waiting);
    reply.Append(buffer, got);
    waiting = got > 0 ? WaitingBytes(port->fd) : 0;
    if (waiting > 0 && !deadline.Passed(kLongestOverrun)) continue;
    expired = deadline.Passed();
    if (finder.Look(reply, got == 0, expired)) return true;
  }
  return false;
}

// A fresh tty translates and interprets what comes in, so that "\r\n" would never arrive as such.
// The port puts the settings back when it closes.
void MakeInputTransparent(int fd) {
  constexpr tcflag_t kTranslations =
      INLCR | IGNCR | ICRNL | ISTRIP | INPCK | PARMRK | IXON | IXOFF | IXANY;
  struct termios attributes;
  if (tcgetattr(fd, &attributes) != 0 || (attributes.c_iflag & kTranslations) == 0) return;
  attributes.c_iflag &= ~kTranslations;
  tcsetattr(fd, TCSANOW, &attributes);
}

// What a try left that got no result. Only a text that the caller has locked stays his buffer.
void ForgetTry(CString& response) {
  if (response.GetData()->refs < 0) return kxwan::MakeEmpty(response);
  kxwan::DiscardText(response);
}

void Assign(CString& text, std::string_view characters) {
  text.AssignCopy(static_cast<int>(characters.size()), characters.data());
}

void LogResult(const kxwan::FinalResult& final, const CString& response) {
  const char* text = response.String();
  switch (final.code) {
    case kxwan::kResultOk:
      KXOutputDebug("CSModem::GetResponse() -> %.512s\n", *text != '\0' ? text : "OK");
      break;
    case kxwan::kResultEquipmentError:
      KXOutputDebug("CSModem::GetResponse() -> %s Error: %s\n", final.kind, text);
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
      m_owed(0),
      m_unsettled(false),
      m_awaiting(false),
      m_lineGeneration(0) {}

CSModem::~CSModem() {
  if (m_pSerial != nullptr) m_pSerial->Close();
  delete m_pSerial;
  m_pSerial = nullptr;
}

bool CSModem::SendCommand(const char* command) {
  NoticeNewLine();
  KXOutputDebug("CSModem::SendCommand() -> %s\n", command);
  m_awaiting =
      m_pSerial->Write(reinterpret_cast<const unsigned char*>(command), strlen(command)) != 0;
  return m_awaiting;
}

bool CSModem::GetResponse(int& result, CString& response, unsigned long timeoutMs) {
  NoticeNewLine();
  uint32_t earlier = m_owed;
  return Await(result, response, timeoutMs, earlier);
}

bool CSModem::SendCommandGetResponse(const char* command, int& result, CString& response) {
  result = kxwan::kResultTimeout;
  kxwan::MakeEmpty(response);
  NoticeNewLine();
  uint32_t earlier = m_owed;
  for (int32_t attempt = 0; attempt < m_nRetries; ++attempt) {
    if (attempt > 0) ForgetTry(response);
    if (SendCommand(command) && Await(result, response, m_dwResponseTimeout, earlier)) return true;
  }
  return false;
}

// earlier is the number of results that commands before this one are owed; those that come are
// taken off. Those of this command's own earlier tries are not among them: the first of these
// answers the same question.
bool CSModem::Await(int& result, CString& response, unsigned long timeoutMs, uint32_t& earlier) {
  result = kxwan::kResultTimeout;
  kxwan::MakeEmpty(response);
  const Deadline deadline(static_cast<uint32_t>(timeoutMs));
  const uint32_t own = m_awaiting ? 1 : 0;
  const uint32_t outstanding = m_owed + own;
  m_awaiting = false;

  kxwan::Reply reply;
  kxwan::ResultFinder finder(StateOfLine(earlier), std::max<uint32_t>(earlier + own, 1));
  const bool found = Gather(m_pSerial, deadline, reply, finder);
  m_owed = finder.StillOwed(outstanding);
  earlier -= std::min(earlier, outstanding - m_owed);
  Assign(response, finder.Text(reply));
  if (!found) {
    KXOutputDebug("CSModem::GetResponse() -> Response Timeout !\n");
    return false;
  }
  m_unsettled = false;
  result = finder.Result().code;
  LogResult(finder.Result(), response);
  m_dwLastResponseTime = kxwan::Milliseconds();
  return true;
}

kxwan::LineState CSModem::StateOfLine(uint32_t earlier) const {
  if (m_unsettled) return kxwan::LineState::kUnsettled;
  if (m_owed == 0) return kxwan::LineState::kClean;
  return m_owed > earlier ? kxwan::LineState::kOwingTries : kxwan::LineState::kOwing;
}

// A reopened port has the system's settings again. What was owed is cancelled: no answer can come
// to what a device did not understand. But where the speed means nothing, as with most USB devices,
// the answers may come all the same, which the first result on the new line then shows.
void CSModem::NoticeNewLine() {
  if (m_lineGeneration == m_pSerial->lineGeneration) return;
  m_lineGeneration = m_pSerial->lineGeneration;
  m_unsettled = m_unsettled || m_owed > 0;
  m_owed = 0;
  m_awaiting = false;
  MakeInputTransparent(m_pSerial->fd);
}

bool CSModem::GetInstalledModems(ModemDescriptorArray** list) {
  return m_pSerial != nullptr && m_pSerial->GetInstalledSerialDevices(list) != 0;
}

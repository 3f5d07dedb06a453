#include <benchmarks/model/ModelTalk.h>

#include <algorithm>

namespace kxmodel {

namespace {

bool IsUnsolicited(std::string_view line) {
  return line.empty() || line == "RING" || line == "+CREG: 1" || line == "+CMTI: \"SM\",3";
}

// The text without the lines that nobody asked for.
std::string AskedLines(std::string_view text) {
  std::string asked;
  while (!text.empty()) {
    const size_t end = std::min(text.find("\r\n"), text.size());
    if (!IsUnsolicited(text.substr(0, end))) asked += text.substr(0, end);
    text.remove_prefix(std::min(end + 2, text.size()));
  }
  return asked;
}

int CodeOf(std::string_view result) {
  if (result == "OK") return kxwan::kResultOk;
  return result == "ERROR" ? kxwan::kResultError : kxwan::kResultEquipmentError;
}

}  // namespace

Talk::Talk(const DeviceTraits& device, const LineTraits& line, uint64_t seed, Timeline* timeline)
    : random_(seed),
      device_(device, random_),
      line_(line, device_, random_, timeline),
      conversation_(line_) {}

Question& Talk::Prepare(std::string_view line, std::string_view text, std::string_view result) {
  command_.assign(line);
  command_ += '\r';
  text_.assign(text);
  result_.assign(result);
  question_ = {};
  question_.exchange = ++exchange_;
  question_.line = std::string_view(command_).substr(0, line.size());
  question_.text = text_;
  question_.result = result_;
  return question_;
}

Verdict Talk::Exchange(Seconds timeout, int tries) {
  line_.Ask(question_);
  const Seconds begun = line_.Now();
  return Judge(conversation_.Exchange(command_, timeout, tries), begun);
}

Verdict Talk::ExchangeOnce(Seconds timeout, Seconds settlement) {
  line_.Ask(question_);
  const Seconds begun = line_.Now();
  return Judge(conversation_.ExchangeOnce(command_, timeout, settlement), begun);
}

Verdict Talk::ExchangeSurely(Seconds timeout) {
  line_.Ask(question_);
  const Seconds begun = line_.Now();
  return Judge(conversation_.ExchangeSurely(command_, timeout), begun);
}

Verdict Talk::Judge(bool answered, Seconds begun) {
  const Verdict verdict{answered, answered && IsOwn(conversation_.Result()), line_.Now() - begun};
  line_.Note("verdict", verdict.right ? "right" : answered ? "WRONG" : "no answer");
  return verdict;
}

// A result without text could be anybody's: then it must be what the device said to the command,
// and the device must have said it.
bool Talk::IsOwn(const kxwan::Answer& answer) const {
  constexpr std::string_view kErrorToken = "+CME ERROR: ";
  if (!line_.SeenSince().own || answer.result != CodeOf(result_)) return false;
  if (answer.result == kxwan::kResultError) return true;
  const std::string_view expected = answer.result == kxwan::kResultOk
                                        ? std::string_view(text_)
                                        : std::string_view(result_).substr(kErrorToken.size());
  return answer.text == expected || AskedLines(answer.text) == expected;
}

}  // namespace kxmodel

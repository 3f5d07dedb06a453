#include <KXWAN/modem/AccountPrivate.h>

#include <KXWAN/foundation/TextPrivate.h>

#include <algorithm>
#include <iterator>
#include <utility>

namespace kxwan {

namespace {

// Names that devices also send by themselves (3GPP TS 27.007, 27.005, and what makers add).
constexpr std::string_view kUnsolicitedNames[] = {
    "+C5GREG", "+CALA", "+CBM",  "+CBMI", "+CCWA", "+CDS",  "+CDSI",  "+CEREG", "+CGEV",
    "+CGREG",  "+CIEV", "+CLIP", "+CMT",  "+CMTI", "+COLP", "+CRING", "+CREG",  "+CSQ",
    "+CSSI",   "+CSSU", "+CTZE", "+CTZV", "+CUSD", "+CPIN", "+CFUN",
};

constexpr std::string_view kNameMarks = "+^$%*#!&_";

bool IsNameCharacter(char c) { return IsUpper(c) || IsDigit(c); }

// The name at the begin of a text, with its mark; empty when there is none.
std::string_view NameAt(std::string_view text) {
  if (text.empty() || kNameMarks.find(text.front()) == std::string_view::npos) return {};
  const auto end = std::find_if_not(text.begin() + 1, text.end(), IsNameCharacter);
  return text.substr(0, static_cast<size_t>(end - text.begin()));
}

std::string_view RegisterAt(std::string_view text) {
  const auto end = std::find_if_not(text.begin() + 1, text.end(), IsDigit);
  return text.substr(0, static_cast<size_t>(end - text.begin()));
}

bool IsUnsolicited(std::string_view name) {
  return std::find(std::begin(kUnsolicitedNames), std::end(kUnsolicitedNames), name) !=
         std::end(kUnsolicitedNames);
}

bool AsksFor(const Asked& asked, std::string_view name) {
  const std::string& names = asked.names;
  for (size_t at = names.find(name); at != names.npos; at = names.find(name, at + 1)) {
    if ((at == 0 || names[at - 1] == ';') && names[at + name.size()] == ';') return true;
  }
  return false;
}

// The echo of the command stands in front where it is on.
std::string_view WithoutEcho(std::string_view text) {
  while (text.starts_with("AT") && text.find('\n') != std::string_view::npos) {
    text = Trimmed(text.substr(text.find('\n')));
  }
  return text;
}

std::string_view WithoutAt(std::string_view command) {
  command = Trimmed(command);
  return command.substr(command.starts_with("AT") ? 2 : command.size());
}

}  // namespace

void Account::Add(Asked asked) {
  asked_.push_back(std::move(asked));
  DropAllBut(kMost);
}

Asked Account::TakeFront() {
  Asked front = std::move(asked_.front());
  asked_.erase(asked_.begin());
  return front;
}

void Account::DropOlderThanAnsweredBy(std::string_view text) {
  const std::string_view name = NameOfAnswer(text);
  const bool named = !name.empty() && !IsUnsolicited(name);
  const std::string numbers = named ? std::string() : NumbersIn(text);
  const auto found = std::find_if(asked_.begin(), asked_.end(), [&](const Asked& asked) {
    return named ? AsksFor(asked, name) : !numbers.empty() && asked.answer == numbers;
  });
  if (found != asked_.end()) asked_.erase(asked_.begin(), found);
}

void Account::DropThrough(uint32_t exchange) {
  const auto found = std::find_if(asked_.begin(), asked_.end(),
                                  [&](const Asked& asked) { return asked.exchange == exchange; });
  if (found != asked_.end()) asked_.erase(asked_.begin(), found + 1);
}

bool Account::AskForAnyOf(std::string_view command) const {
  const std::string names = NamesIn(command);
  for (std::string_view rest = names; !rest.empty(); rest.remove_prefix(rest.find(';') + 1)) {
    const std::string_view name = rest.substr(0, rest.find(';'));
    const auto asks = [&](const Asked& asked) { return !asked.isQuestion && AsksFor(asked, name); };
    if (std::any_of(asked_.begin(), asked_.end(), asks)) return true;
  }
  return false;
}

void Account::DropQuestionsNotAnsweredBy(std::string_view text) {
  if (Trimmed(WithoutEcho(text)).empty()) return;
  const std::string numbers = NumbersIn(text);
  const auto other = std::find_if(asked_.begin(), asked_.end(), [&](const Asked& asked) {
    return !asked.isQuestion || asked.answer.empty() || asked.answer == numbers;
  });
  asked_.erase(asked_.begin(), other);
}

bool Account::IsOther(std::string_view text, const Asked& other, uint32_t exchange) const {
  const std::string_view name = NameOfAnswer(text);
  const auto isAsked = [&](const Asked& asked) {
    return asked.exchange == exchange && AsksFor(asked, name);
  };
  return !name.empty() && !IsUnsolicited(name) && AsksFor(other, name) &&
         std::none_of(asked_.begin(), asked_.end(), isAsked);
}

void Account::PutInFront(Account& others) {
  asked_.insert(asked_.begin(), std::make_move_iterator(others.asked_.begin()),
                std::make_move_iterator(others.asked_.end()));
  others.Clear();
  DropAllBut(kMost);
}

void Account::DropAllBut(size_t newest) {
  if (asked_.size() <= newest) return;
  asked_.erase(asked_.begin(), asked_.end() - static_cast<long>(newest));
}

bool Account::AreAllQuestions() const {
  return std::all_of(asked_.begin(), asked_.end(),
                     [](const Asked& asked) { return asked.isQuestion; });
}

std::string_view NameOfAnswer(std::string_view text) {
  text = WithoutEcho(text);
  const std::string_view name = NameAt(text);
  return name.size() > 1 && text.substr(name.size()).starts_with(':') ? name : "";
}

std::string NamesIn(std::string_view command) {
  std::string names;
  for (std::string_view rest = WithoutAt(command); !rest.empty();) {
    const bool isRegister = rest.size() > 1 && rest.front() == 'S' && IsDigit(rest[1]);
    const std::string_view name = isRegister ? RegisterAt(rest) : NameAt(rest);
    if (name.size() > 1) names.append(name).append(";");
    // Behind a register's "?" the next one may follow at once.
    const size_t end = rest.find(isRegister ? '?' : ';');
    rest.remove_prefix(std::min(end, rest.size() - 1) + 1);
  }
  return names;
}

bool EndsLine(std::string_view written) {
  constexpr std::string_view kEnds = "\r\n\x1A\x1B";
  return written == "+++" || (!written.empty() && kEnds.find(written.back()) != kEnds.npos);
}

bool IsQuery(std::string_view command) {
  const std::string_view body = WithoutAt(command);
  if (body == "E0V1") return true;
  if (body.starts_with('I')) return body.size() == 1 || (body.size() == 2 && IsDigit(body[1]));
  const std::string_view name = NameAt(body);
  const std::string_view behind = body.substr(name.size());
  return name.size() > 1 && name.front() == '+' &&
         (behind.empty() || behind == "?" || behind == "=?");
}

std::string NumbersIn(std::string_view text) {
  std::string numbers;
  while (!text.empty()) {
    const size_t end = std::min(text.find('\n'), text.size() - 1);
    const std::string_view line = Trimmed(text.substr(0, end + 1));
    text.remove_prefix(end + 1);
    if (!IsNumber(line)) continue;
    const size_t zeros = std::min(line.find_first_not_of('0'), line.size() - 1);
    numbers.append(numbers.empty() ? "" : " ").append(line.substr(zeros));
  }
  return numbers;
}

}  // namespace kxwan

#include <tool/Redaction.h>

#include <algorithm>
#include <cctype>
#include <iterator>

namespace kxtool {
namespace {

constexpr size_t kShortestSecret = 6;   // of a number that stands behind its name, or was asked for
constexpr size_t kLongestHarmless = 9;  // of a number that stands alone: dates and versions

bool IsDigit(char c) { return std::isdigit(static_cast<unsigned char>(c)) != 0; }
bool IsHex(char c) { return std::isxdigit(static_cast<unsigned char>(c)) != 0; }
bool IsAlphanumeric(char c) { return std::isalnum(static_cast<unsigned char>(c)) != 0; }
bool IsDigitOrHyphen(char c) { return IsDigit(c) || c == '-'; }

// The end of the run of such characters that begins at a place.
size_t EndOfRun(std::string_view text, size_t start, bool (*belongs)(char)) {
  const auto end =
      std::find_if_not(text.begin() + static_cast<std::ptrdiff_t>(start), text.end(), belongs);
  return static_cast<size_t>(end - text.begin());
}

bool HasDigit(std::string_view text) { return std::any_of(text.begin(), text.end(), IsDigit); }

void Mask(std::string& text, size_t start, size_t end, char with) {
  for (size_t i = start; i < end; ++i) {
    if (IsAlphanumeric(text[i])) text[i] = with;
  }
}

// A number that is named, wherever it stands.
constexpr std::string_view kLabels[] = {"IMEI",  "MEID", "ESN", "IMSI",
                                        "ICCID", "CCID", "S/N", "SN"};

// Replies that hold names and numbers in quotes, and how many quoted texts in front are harmless.
struct QuotedRule {
  std::string_view tag;
  size_t harmless;
  const char* what;
};

constexpr QuotedRule kQuotedRules[] = {
    {"+CNUM:", 0, "own phone number"},
    {"+CGDCONT:", 1, "access point name"},
};

bool EqualsNoCase(char a, char b) {
  return std::toupper(static_cast<unsigned char>(a)) == std::toupper(static_cast<unsigned char>(b));
}

}  // namespace

void Redaction::Learn(std::string_view reply) {
  for (size_t at = 0; at < reply.size();) {
    const size_t end = EndOfRun(reply, at, IsAlphanumeric);
    const std::string_view token = reply.substr(at, end - at);
    if (token.size() >= kShortestSecret && HasDigit(token)) learned_.emplace_back(token);
    at = std::max(end, at + 1);
  }
}

void Redaction::MaskLearned(std::string& text) {
  for (const std::string& secret : learned_) {
    for (size_t at = 0; (at = text.find(secret, at)) != text.npos; at += secret.size()) {
      Mask(text, at, at + secret.size(), '0');
      replaced_.insert("serial and subscriber numbers");
    }
  }
}

// Hyphens may part the digits, as in "35-123456-789012-3".
void Redaction::MaskLongNumbers(std::string& text) {
  for (size_t at = 0; at < text.size();) {
    const size_t end = IsDigit(text[at]) ? EndOfRun(text, at, IsDigitOrHyphen) : at;
    const auto first = text.begin() + static_cast<std::ptrdiff_t>(at);
    const auto last = text.begin() + static_cast<std::ptrdiff_t>(end);
    if (std::count_if(first, last, IsDigit) > static_cast<std::ptrdiff_t>(kLongestHarmless)) {
      Mask(text, at, end, '0');
      replaced_.insert("long numbers");
    }
    at = std::max(end, at + 1);
  }
}

void Redaction::MaskLabelled(std::string& text) {
  for (const std::string_view label : kLabels) {
    auto at = text.begin();
    while ((at = std::search(at, text.end(), label.begin(), label.end(), EqualsNoCase)) !=
           text.end()) {
      at += static_cast<std::ptrdiff_t>(label.size());
      size_t start = text.find_first_not_of(" \t:=.#", static_cast<size_t>(at - text.begin()));
      if (start == text.npos) break;
      if (text.compare(start, 2, "0x") == 0) start += 2;
      const size_t end = EndOfRun(text, start, IsHex);
      if (end - start < kShortestSecret) continue;
      Mask(text, start, end, '0');
      replaced_.insert("serial and subscriber numbers");
    }
  }
}

void Redaction::MaskQuoted(std::string& text) {
  for (const QuotedRule& rule : kQuotedRules) {
    for (size_t at = 0; (at = text.find(rule.tag, at)) != text.npos;) {
      const size_t line = std::min(text.find_first_of("\r\n", at), text.size());
      for (size_t texts = 0; (at = text.find('"', at)) < line; ++texts) {
        const size_t end = std::min(text.find('"', at + 1), line);
        if (texts >= rule.harmless && end > at + 1) {
          Mask(text, at + 1, end, 'x');
          replaced_.insert(rule.what);
        }
        at = std::min(end + 1, line);
      }
      at = line;
    }
  }
}

std::string Redaction::Apply(std::string_view reply) {
  std::string text(reply);
  MaskQuoted(text);
  MaskLearned(text);
  MaskLabelled(text);
  MaskLongNumbers(text);
  return text;
}

}  // namespace kxtool

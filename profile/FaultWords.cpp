#include <profile/CommandLine.h>
#include <profile/FaultSet.h>

#include <algorithm>
#include <charconv>
#include <iterator>

namespace kxsim {
namespace {

template <int Fault::*field>
bool Number(std::string_view value, Fault& fault) {
  const std::optional<int> number = ToNumber(value);
  if (!number || *number < 0 || *number > 1'000'000) return false;
  fault.*field = *number;
  return true;
}

bool Rate(std::string_view value, Fault& fault) {
  const char* end = value.data() + value.size();
  const auto [stop, failed] = std::from_chars(value.data(), end, fault.rate);
  return failed == std::errc() && stop == end && fault.rate >= 0 && fault.rate <= 1;
}

bool Text(std::string_view value, Fault& fault) {
  fault.text = value;
  return true;
}

struct Word {
  std::string_view name;
  bool (*read)(std::string_view value, Fault& fault);
  const char* expected;
};

constexpr Word kWords[] = {
    {"at", Number<&Fault::at>, "a number of a reply"},
    {"rate", Rate, "a number from 0 to 1"},
    {"bytes", Number<&Fault::bytes>, "a number up to 1000000"},
    {"ms", Number<&Fault::ms>, "milliseconds up to 1000000"},
    {"text", Text, "a text"},
};

bool ReadWord(std::string_view word, Fault& fault, std::string& error) {
  const size_t sign = std::min(word.find('='), word.size());
  const Word* known = std::find_if(std::begin(kWords), std::end(kWords), [&](const Word& each) {
    return each.name == word.substr(0, sign);
  });
  if (known == std::end(kWords)) {
    error = "unknown \"" + std::string(word) + "\"; expected at=, rate=, bytes=, ms= or text=";
    return false;
  }
  if (sign < word.size() && known->read(word.substr(sign + 1), fault)) return true;
  error = "\"" + std::string(word) + "\": expected " + known->expected;
  return false;
}

}  // namespace

bool ParseFault(std::string_view words, Fault& fault, std::string& error) {
  const std::vector<std::string> parts = SplitParameters(words);
  fault.kind = parts[0];
  if (!IsFaultKind(fault.kind)) {
    error = "unknown fault \"" + fault.kind + "\"; expected one of " + FaultKinds();
    return false;
  }
  return std::all_of(parts.begin() + 1, parts.end(),
                     [&](const std::string& word) { return ReadWord(word, fault, error); });
}

}  // namespace kxsim

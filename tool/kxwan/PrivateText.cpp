#include <tool/kxwan/PrivateText.h>

#include <algorithm>
#include <cctype>
#include <string_view>

namespace kxtool {
namespace {

// A line with names in quotes: which of its quoted texts they are, counted from 0.
struct NamedLine {
  std::string_view tag;
  size_t first;
  size_t last;
  const char* what;
};

constexpr NamedLine kNamedLines[] = {
    {"+CNUM:", 0, 0, "name of the owner"},
    {"+CGDCONT:", 1, 99, "access point name"},
};

bool IsWord(char c) { return std::isalnum(static_cast<unsigned char>(c)) != 0; }

// Every quote begins or ends a quoted text; the last may lack its end.
bool Mask(std::string& line, size_t from, const NamedLine& rule) {
  bool masked = false;
  size_t quotes = 0;
  for (size_t at = from; at < line.size(); ++at) {
    if (line[at] == '"') ++quotes;
    const size_t index = quotes / 2;
    if (quotes % 2 == 0 || index < rule.first || index > rule.last || !IsWord(line[at])) continue;
    line[at] = 'x';
    masked = true;
  }
  return masked;
}

}  // namespace

void MaskPrivateTexts(std::string& line, std::set<std::string>& replaced) {
  for (const NamedLine& rule : kNamedLines) {
    const size_t at = line.find(rule.tag);
    if (at != line.npos && Mask(line, at, rule)) replaced.insert(rule.what);
  }
}

}  // namespace kxtool

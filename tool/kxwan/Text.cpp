#include <tool/kxwan/Text.h>

namespace kxtool {
namespace {

std::string Escaped(char c) {
  constexpr std::string_view kNamed = "\r\n\t";
  constexpr std::string_view kNames = "rnt";
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  if (const size_t at = kNamed.find(c); at != kNamed.npos) return {'\\', kNames[at]};
  const auto byte = static_cast<unsigned char>(c);
  return {'\\', 'x', kDigits[byte / 16U], kDigits[byte % 16U]};
}

std::string_view Trimmed(std::string_view text) {
  const size_t first = text.find_first_not_of(" \t");
  if (first == text.npos) return {};
  return text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

}  // namespace

std::string Printable(std::string_view text) {
  std::string printable;
  for (const char c : text) {
    if (IsPrintable(c)) {
      printable += c;
    } else {
      printable += Escaped(c);
    }
  }
  return printable;
}

std::vector<std::string> Lines(std::string_view text) {
  std::vector<std::string> lines;
  size_t start = 0;
  while ((start = text.find_first_not_of("\r\n", start)) != text.npos) {
    const size_t end = std::min(text.find_first_of("\r\n", start), text.size());
    lines.emplace_back(text.substr(start, end - start));
    start = end;
  }
  return lines;
}

std::string Joined(const std::vector<std::string>& parts, std::string_view separator) {
  std::string joined;
  for (const std::string& part : parts) {
    if (!joined.empty() && !part.empty()) joined += separator;
    joined += part;
  }
  return joined;
}

std::vector<std::string> SplitList(std::string_view list) {
  std::vector<std::string> parts;
  while (true) {
    const size_t comma = list.find(',');
    parts.emplace_back(Trimmed(list.substr(0, comma)));
    if (comma == list.npos) return parts;
    list.remove_prefix(comma + 1);
  }
}

}  // namespace kxtool

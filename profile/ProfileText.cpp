#include <profile/ProfileValuesPrivate.h>

#include <cstdio>
#include <string_view>

namespace kxsim {
namespace {

constexpr unsigned char kHighByte = 0x80;

std::string Escaped(unsigned char byte) {
  char text[7];
  snprintf(text, sizeof text, "\\u%04X", byte);
  return text;
}

// What has a short form of its own, and what would end the text.
struct ShortEscape {
  char byte;
  const char* text;
};

constexpr ShortEscape kShortEscapes[] = {
    {'\r', "\\r"}, {'\n', "\\n"}, {'\t', "\\t"}, {'"', "\\\""}, {'\\', "\\\\"}};

std::string InQuotes(const std::string& text, bool escapeHigh) {
  std::string written = "\"";
  for (const char byte : text) {
    const auto value = static_cast<unsigned char>(byte);
    const ShortEscape* known = nullptr;
    for (const ShortEscape& each : kShortEscapes) {
      if (each.byte == byte) known = &each;
    }
    if (known != nullptr) {
      written += known->text;
    } else if (value < ' ' || value == 0x7F || (escapeHigh && value >= kHighByte)) {
      written += Escaped(value);
    } else {
      written += byte;
    }
  }
  return written + '"';
}

template <typename List, typename Write>
std::string Listed(const List& list, Write write) {
  std::string written;
  for (const auto& item : list) written += (written.empty() ? "" : ", ") + write(item);
  return written;
}

}  // namespace

std::string Written(int number) { return std::to_string(number); }

std::string Written(bool flag) { return flag ? "true" : "false"; }

std::string Written(const std::string& text) { return InQuotes(text, false); }

std::string Written(const std::vector<int>& numbers) {
  return "[" + Listed(numbers, [](int number) { return Written(number); }) + "]";
}

std::string Written(const std::vector<std::string>& texts) {
  return "[" + Listed(texts, [](const std::string& text) { return Written(text); }) + "]";
}

std::string Written(const std::vector<Step>& steps) {
  if (steps.size() == 1 && steps[0].second == 0) return Written(steps[0].value);
  return "[" +
         Listed(steps,
                [](const Step& step) {
                  return "[" + Written(step.second) + ", " + Written(step.value) + "]";
                }) +
         "]";
}

std::string Written(const std::vector<std::pair<int, std::string>>& texts) {
  return "{ " +
         Listed(
             texts,
             [](const auto& text) { return Written(text.first) + " = " + Written(text.second); }) +
         " }";
}

std::string BytesOf(const std::string& text) {
  std::string bytes;
  for (size_t i = 0; i < text.size(); ++i) {
    const auto lead = static_cast<unsigned char>(text[i]);
    // U+0080 to U+00FF take two bytes, the first of which is 0xC2 or 0xC3.
    if ((lead == 0xC2 || lead == 0xC3) && i + 1 < text.size()) {
      const auto next = static_cast<unsigned char>(text[++i]);
      bytes += static_cast<char>((lead & 3U) << 6U | (next & 0x3FU));
    } else {
      bytes += text[i];
    }
  }
  return bytes;
}

std::string WrittenBytes(const std::string& bytes) { return InQuotes(bytes, true); }

}  // namespace kxsim

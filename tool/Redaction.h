#pragma once

#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace kxtool {

// Takes what belongs to a person out of a device's replies: serial numbers, subscriber and phone
// numbers, access point names. What is replaced keeps its length, so that a reply keeps its form.
class Redaction {
 public:
  // Remembers the numbers in the answer to a question for one of them, such as AT+CGSN.
  void Learn(std::string_view reply);

  std::string Apply(std::string_view reply);

  // What Apply has replaced, in words.
  const std::set<std::string>& Replaced() const { return replaced_; }

 private:
  void MaskLearned(std::string& text);
  void MaskLongNumbers(std::string& text);
  void MaskLabelled(std::string& text);
  void MaskQuoted(std::string& text);

  std::vector<std::string> learned_;
  std::set<std::string> replaced_;
};

}  // namespace kxtool

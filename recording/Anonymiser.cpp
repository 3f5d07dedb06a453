#include <recording/Anonymiser.h>

#include <profile/Text.h>
#include <recording/Secrets.h>

#include <algorithm>
#include <map>
#include <string_view>

namespace kxsim {
namespace {

// A number is the same with and without its hyphens, in capital and in small letters.
std::string Key(std::string_view secret) {
  std::string key(secret);
  std::erase(key, '-');
  std::transform(key.begin(), key.end(), key.begin(), Upper);
  return key;
}

// Zeros and "A" in place of digits and letters, and a number of its own at the end.
std::string Substitute(std::string key, size_t number) {
  for (auto at = key.rbegin(); at != key.rend(); ++at) {
    if (IsLetter(*at)) *at = 'A';
    if (!IsDigit(*at)) continue;
    *at = static_cast<char>('0' + number % 10);
    number /= 10;
  }
  return key;
}

// Secrets of one kind and what each is replaced by.
class Substitutes {
 public:
  void Learn(std::string_view secret, const char* what) {
    const std::string key = Key(secret);
    const auto [place, isNew] = known_.emplace(key, Replacement{what, "", 0});
    if (isNew) place->second.by = Substitute(key, known_.size());
  }

  // The hyphens stay where they are, and small letters small.
  void Put(std::string& text, const SecretPlace& place) {
    const auto found = known_.find(Key(std::string_view(text).substr(place.start, place.length)));
    if (found == known_.end()) return;
    ++found->second.places;
    auto next = found->second.by.begin();
    for (size_t i = 0; i < place.length; ++i) {
      char& byte = text[place.start + i];
      if (byte == '-') continue;
      const bool small = byte != Upper(byte);
      byte = small ? Lower(*next) : *next;
      ++next;
    }
  }

  void AddTo(std::vector<Replacement>& replacements) const {
    for (const auto& [key, replacement] : known_) replacements.push_back(replacement);
  }

 private:
  std::map<std::string, Replacement> known_;
};

// Every text of a profile in which something secret may stand, each with the command that it
// answers; a command answers itself.
template <typename Visit>
void ForEachText(Profile& profile, Visit visit) {
  for (Reply& reply : profile.replies) {
    const std::string command = reply.command;
    visit(command, reply.command);
    for (Answer& answer : reply.answers) {
      visit(command, answer.text);
      visit(command, answer.result);
      for (std::string& piece : answer.raw) visit(command, piece);
    }
  }
  Identity& identity = profile.identity;
  visit("AT+CGSN", identity.serial);
  visit("AT+CIMI", identity.imsi);
  visit("AT+CNUM", identity.number);
  visit("", identity.revision);
  for (auto& [number, page] : identity.pages) visit("", page);
}

}  // namespace

std::vector<Replacement> Anonymise(Profile& profile) {
  // A code is short: what looks like it elsewhere is something else.
  Substitutes codes;
  Substitutes numbers;
  ForEachText(profile, [&](const std::string& command, const std::string& text) {
    const std::string_view view = text;
    for (const SecretPlace& place : FindCodes(text)) {
      codes.Learn(view.substr(place.start, place.length), place.what);
    }
    for (const auto& places : {FindAskedNumbers(command, text), FindSecretNumbers(text)}) {
      for (const SecretPlace& place : places) {
        numbers.Learn(view.substr(place.start, place.length), place.what);
      }
    }
  });
  ForEachText(profile, [&](const std::string&, std::string& text) {
    for (const SecretPlace& place : FindNumbers(text)) numbers.Put(text, place);
    for (const SecretPlace& place : FindCodes(text)) codes.Put(text, place);
  });
  std::vector<Replacement> replacements;
  codes.AddTo(replacements);
  numbers.AddTo(replacements);
  return replacements;
}

}  // namespace kxsim

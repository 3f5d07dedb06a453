#include <profile/Text.h>
#include <simulator/modem/Script.h>

namespace kxsim {

Script::Script(const std::vector<Reply>& replies) {
  for (const Reply& reply : replies) {
    std::string command = Normalised(reply.command);
    const bool beginning = command.size() > 1 && command.back() == '*';
    if (beginning) command.pop_back();
    (beginning ? beginnings_ : exact_).emplace(std::move(command), Entry{&reply, 0});
  }
}

Script::Entry* Script::Find(const std::string& command) {
  const auto exact = exact_.find(command);
  if (exact != exact_.end()) return &exact->second;
  Entry* longest = nullptr;
  // In the order of the map a longer beginning stands behind a shorter one.
  for (auto& [beginning, entry] : beginnings_) {
    if (command.starts_with(beginning)) longest = &entry;
  }
  return longest;
}

const Answer* Script::Next(std::string_view command) {
  Entry* entry = Find(Normalised(command));
  if (entry == nullptr || entry->reply->answers.empty()) return nullptr;
  const std::vector<Answer>& answers = entry->reply->answers;
  const Answer& answer = answers[entry->next];
  if (entry->next + 1 < answers.size()) ++entry->next;
  return &answer;
}

}  // namespace kxsim

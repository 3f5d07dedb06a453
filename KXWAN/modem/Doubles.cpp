#include <KXWAN/modem/DoublesPrivate.h>

namespace kxwan {

void Doubles::Note(const FinalResult& final, Seconds service, Seconds now) {
  at_ = now;
  service_ = service;
  code_ = final.code;
  length_ = final.text.size();
  begin_ = final.text.substr(0, kEnoughText);
}

bool Doubles::RepeatsAtOnce(const FinalResult& final, Seconds now) const {
  constexpr Seconds kLatest = .025;
  if (now - at_ >= kLatest || final.code != code_) return false;
  return final.text.empty() ||
         (final.text.size() == length_ && final.text.substr(0, kEnoughText) == begin_);
}

}  // namespace kxwan

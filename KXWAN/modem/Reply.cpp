#include <KXWAN/modem/ReplyPrivate.h>

#include <KXWAN/foundation/TextPrivate.h>

#include <algorithm>
#include <cstring>

namespace kxwan {

namespace {

constexpr FinalLine kClassicFinalLines[] = {
    {.text = "OK", .whole = true, .code = kResultOk},
    {.text = "ERROR", .whole = true, .code = kResultError},
    {.text = "+CME ERROR:", .kind = "CME"},
    {.text = "CME ERROR:", .kind = "CME"},
    {.text = "+CMS ERROR:", .kind = "CMS"},
    {.text = "CMS ERROR:", .kind = "CMS"},
};

bool Fits(const FinalLine& row, std::string_view line) {
  return row.whole ? line == row.text : line.starts_with(row.text);
}

}  // namespace

std::span<const FinalLine> ClassicFinalLines() { return kClassicFinalLines; }

void Reply::Append(std::string_view bytes) {
  DropTaken();
  bytes = bytes.substr(0, kMaximumLength - std::min(kMaximumLength, text_.size() - taken_));
  while (!bytes.empty()) {
    const size_t nul = std::min(bytes.find('\0'), bytes.size());
    text_.append(bytes, 0, nul);
    bytes.remove_prefix(std::min(nul + 1, bytes.size()));
  }
}

// The characters of taken results go when they are the greater part, so that many results in a long
// text cost in proportion to it; and a large buffer goes with them.
void Reply::DropTaken() {
  constexpr size_t kOrdinaryLength = size_t{64} << 10;
  if (taken_ == 0 || taken_ < text_.size() / 2) return;
  text_.erase(0, taken_);
  if (text_.capacity() > kOrdinaryLength && text_.size() < kOrdinaryLength) text_.shrink_to_fit();
  for (size_t* position : {&answer_, &try_, &searched_, &frontEnd_, &begin_, &findings_.frontEnd,
                           &findings_.lastLineEnd, &findings_.tokensSearched}) {
    *position -= std::min(*position, taken_);
  }
  taken_ = 0;
}

void Reply::BeginAnswer(bool earlierIsDue) {
  if (!earlierIsDue) Drop();
  DropExcess();
  answer_ = try_ = text_.size();
  findings_ = {};
}

void Reply::BeginTry(std::string_view command) {
  if (Trimmed(Range(answer_, text_.size())) == Trimmed(command)) answer_ = text_.size();
  try_ = text_.size();
}

void Reply::DropExcess() {
  constexpr size_t kLongestBegin = size_t{64} << 10;
  if (text_.size() - taken_ > kLongestBegin) Drop();
  DropTaken();
}

void Reply::Drop() { taken_ = begin_ = searched_ = text_.size(); }

bool Reply::TakeNext(FinalResult& result) {
  Line line;
  while (NextLine(line)) {
    const FinalLine* row = FindFinalLine(Range(line.begin, line.end));
    if (row == nullptr) continue;
    result.code = row->code;
    result.kind = row->kind;
    result.text = row->code == kResultOk ? Range(answer_, line.frontEnd)
                                         : Range(line.begin + row->text.size(), line.end);
    FinishResult(result, line.frontEnd);
    return true;
  }
  return false;
}

bool Reply::TakeOnly(FinalResult& result) {
  NoteLines();
  const FinalLine* row = findings_.row;
  if (row == nullptr) SearchTokens();
  if (row != nullptr) {
    const bool ok = row->code == kResultOk;
    result.code = row->code;
    result.kind = row->kind;
    result.text = ok ? Range(answer_, findings_.frontEnd) : std::string_view();
  } else if ((findings_.cmeSeen || findings_.cmsSeen) && findings_.lastLineEnd > answer_) {
    result.code = kResultEquipmentError;
    result.kind = findings_.cmeSeen ? "CME" : "CMS";
    result.text = Range(answer_, text_.size());
    begin_ = searched_ = text_.size();
  } else {
    return false;
  }
  FinishResult(result, findings_.frontEnd);
  return true;
}

// The next answer brings a line end of its own.
void Reply::FinishResult(FinalResult& result, size_t end) {
  result.text = Trimmed(result.text);
  result.whole = Trimmed(Range(taken_, end));
  result.beganEarlier = !Trimmed(Range(taken_, std::min(answer_, end))).empty();
  taken_ = answer_ = try_ = begin_;
  open_ = false;
  findings_ = {};
}

std::string_view Reply::Unfinished() {
  SearchTokens();
  return Range(std::max(answer_, try_), text_.size());
}

bool Reply::HasText() const { return !Trimmed(Range(taken_, text_.size())).empty(); }

bool Reply::NextLine(Line& line) {
  for (;;) {
    const size_t newline = text_.find('\n', searched_);
    if (newline == std::string::npos) {
      searched_ = text_.size();
      return false;
    }
    searched_ = newline + 1;
    size_t end = newline;
    while (end > begin_ && text_[end - 1] == '\r') --end;
    if (end == newline) continue;
    line = {frontEnd_, begin_, end, newline + 1};
    const bool complete = open_;
    open_ = true;
    frontEnd_ = end;
    begin_ = newline + 1;
    if (complete) return true;
  }
}

const FinalLine* Reply::FindFinalLine(std::string_view line) const {
  const auto row = std::find_if(finalLines_.begin(), finalLines_.end(),
                                [&](const FinalLine& each) { return Fits(each, line); });
  return row == finalLines_.end() ? nullptr : &*row;
}

// Both places may lie in front of what is left of the text.
std::string_view Reply::Range(size_t begin, size_t end) const {
  begin = std::min(begin, text_.size());
  return std::string_view(text_).substr(begin, std::max(begin, end) - begin);
}

// Stops behind an "OK": what follows belongs to no answer, or to another.
void Reply::NoteLines() {
  Line line;
  while ((findings_.row == nullptr || findings_.row->code != kResultOk) && NextLine(line)) {
    findings_.lastLineEnd = line.next;
    const FinalLine* row = FindFinalLine(Range(line.begin, line.end));
    if (row == nullptr || row->code == kResultEquipmentError) continue;
    if (findings_.row != nullptr && findings_.row <= row) continue;
    findings_.row = row;
    findings_.frontEnd = line.frontEnd;
  }
}

// Deliberate: a token is taken once, "+CME ERROR:" first wherever it stands, and what lies in front
// of it is given up; a second one stays in the text.
void Reply::SearchTokens() {
  constexpr size_t kLongestToken = std::string_view("\r\n+CME ERROR:").size();
  if (!findings_.cmeSeen) {
    findings_.cmeSeen = CutBehind("\r\n+CME ERROR:", "\r\nCME ERROR:");
  }
  if (!findings_.cmsSeen) {
    findings_.cmsSeen = CutBehind("\r\n+CMS ERROR:", "\r\nCMS ERROR:");
  }
  findings_.tokensSearched = text_.size() - std::min(text_.size(), kLongestToken);
}

bool Reply::CutBehind(std::string_view plusToken, std::string_view bareToken) {
  const size_t from = std::max(answer_, findings_.tokensSearched);
  for (const std::string_view token : {plusToken, bareToken}) {
    const size_t found = text_.find(token, from);
    if (found == std::string::npos) continue;
    answer_ = found + token.size();
    return true;
  }
  return false;
}

}  // namespace kxwan

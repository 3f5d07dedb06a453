#include <KXWAN/modem/ReplyPrivate.h>

#include <KXWAN/foundation/TextPrivate.h>

#include <algorithm>
#include <cstring>

namespace kxwan {

namespace {

// The lines that end a reply (V.250 5.7.1, 3GPP TS 27.007 9.1, 27.005 3.2.5).
struct FinalLine {
  std::string_view text;
  bool whole = false;  // the line is exactly this; otherwise it begins with this
  ResultCode code = kResultEquipmentError;
  const char* kind = "";
};

constexpr FinalLine kFinalLines[] = {
    {.text = "OK", .whole = true, .code = kResultOk},
    {.text = "ERROR", .whole = true, .code = kResultError},
    {.text = "+CME ERROR:", .kind = "CME"},
    {.text = "CME ERROR:", .kind = "CME"},
    {.text = "+CMS ERROR:", .kind = "CMS"},
    {.text = "CMS ERROR:", .kind = "CMS"},
};

bool Fits(const FinalLine& row, std::string_view line) {
  return row.whole ? line == row.text : line.substr(0, row.text.size()) == row.text;
}

const FinalLine* FindFinalLine(std::string_view line) {
  const FinalLine* end = std::end(kFinalLines);
  const FinalLine* row =
      std::find_if(kFinalLines, end, [&](const FinalLine& each) { return Fits(each, line); });
  return row == end ? nullptr : row;
}

std::string_view TextOf(const Reply& reply, const Reply::Line& line) {
  return reply.Text().substr(line.begin, line.end - line.begin);
}

}  // namespace

void Reply::Append(const char* data, size_t size) {
  size = std::min(size, kMaximumLength - text_.size());
  const char* end = data + size;
  while (data != end) {
    const char* nul = static_cast<const char*>(memchr(data, '\0', static_cast<size_t>(end - data)));
    text_.append(data, nul != nullptr ? nul : end);
    data = nul != nullptr ? nul + 1 : end;
  }
}

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

bool FirstResult::Look(Reply& reply, FinalResult& result) {
  NoteLines(reply);
  if (okFrontEnd_ != kNone) {
    result = {kResultOk, "", cut_, okFrontEnd_};
    return true;
  }
  if (errorSeen_) {
    result = {kResultError, "", 0, 0};
    return true;
  }
  SearchTokens(reply.Text());
  result.begin = cut_;
  if ((!cmeSeen_ && !cmsSeen_) || lastLineEnd_ <= cut_) return false;
  result = {kResultEquipmentError, cmeSeen_ ? "CME" : "CMS", cut_, reply.Text().size()};
  return true;
}

void FirstResult::NoteLines(Reply& reply) {
  Reply::Line line;
  while (reply.NextLine(line)) {
    lastLineEnd_ = line.next;
    const std::string_view text = TextOf(reply, line);
    if (text == "OK" && okFrontEnd_ == kNone) okFrontEnd_ = line.frontEnd;
    if (text == "ERROR") errorSeen_ = true;
  }
}

// Deliberate: a token is taken once, "+CME ERROR:" first wherever it stands, and what lies in front
// of it is given up; a second one stays in the text.
void FirstResult::SearchTokens(std::string_view text) {
  constexpr size_t kLongestToken = std::string_view("\r\n+CME ERROR:").size();
  if (!cmeSeen_) cmeSeen_ = CutBehind(text, "\r\n+CME ERROR:", "\r\nCME ERROR:");
  if (!cmsSeen_) cmsSeen_ = CutBehind(text, "\r\n+CMS ERROR:", "\r\nCMS ERROR:");
  tokensSearched_ = text.size() - std::min(text.size(), kLongestToken);
}

bool FirstResult::CutBehind(std::string_view text, const char* plusToken, const char* bareToken) {
  const size_t from = std::max(cut_, tokensSearched_);
  for (const char* token : {plusToken, bareToken}) {
    const size_t found = text.find(token, from);
    if (found == std::string_view::npos) continue;
    cut_ = found + strlen(token);
    return true;
  }
  return false;
}

bool ResultSequence::Look(Reply& reply, FinalResult& result) {
  Reply::Line line;
  while (reply.NextLine(line)) Note(reply, line, result);
  return Complete();
}

void ResultSequence::Note(const Reply& reply, const Reply::Line& line, FinalResult& result) {
  const FinalLine* row = FindFinalLine(TextOf(reply, line));
  if (row == nullptr) return;
  if (++count_ <= wanted_) {
    result = {row->code, row->kind, line.begin + row->text.size(), line.end};
    if (row->code == kResultOk) {
      result.begin = std::min(textBegin_, line.frontEnd);
      result.end = line.frontEnd;
    }
  }
  textBegin_ = line.next;
}

bool ResultFinder::Look(Reply& reply, bool quiet, bool expired) {
  if (line_ == LineState::kClean) {
    found_ = first_.Look(reply, result_);
  } else {
    found_ =
        sequence_.Look(reply, result_) || (sequence_.Count() > 0 && MayTakeLast(quiet, expired));
  }
  return found_;
}

// Where fewer results have come than were owed, an answer was lost on the way. Not so on a retry:
// a device that was too slow for one try may be so for the next.
bool ResultFinder::MayTakeLast(bool quiet, bool expired) const {
  if (line_ == LineState::kUnsettled) return quiet || expired;
  return line_ == LineState::kOwing && expired;
}

uint32_t ResultFinder::StillOwed(uint32_t outstanding) const {
  if (found_ && (line_ == LineState::kClean || !sequence_.Complete())) return 0;
  return outstanding - static_cast<uint32_t>(std::min<size_t>(outstanding, sequence_.Count()));
}

std::string_view ResultFinder::Text(const Reply& reply) const {
  if (found_) return Trimmed(reply.Text().substr(result_.begin, result_.end - result_.begin));
  return reply.Text().substr(line_ == LineState::kClean ? result_.begin : sequence_.TextBegin());
}

}  // namespace kxwan

#pragma once

#include <KXWAN/modem/ResultCode.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace kxwan {

// What has come in answer to a command, cut into lines as it grows. Every byte is looked at once,
// so that a reply costs in proportion to its length.
class Reply {
 public:
  // A line between two line ends. A run of "\r" in front of "\n" is one line end.
  struct Line {
    size_t frontEnd;  // where the line end in front of it begins
    size_t begin;
    size_t end;   // where its own line end begins
    size_t next;  // behind its own line end
  };

  // Appends what was read. NULs are no text and are dropped. A device that floods is heard up to
  // kMaximumLength bytes; what follows is dropped.
  void Append(const char* data, size_t size);

  // The next line that has both its line ends. What stands in front of the first line end is none.
  bool NextLine(Line& line);

  std::string_view Text() const { return text_; }

  static constexpr size_t kMaximumLength = size_t{16} << 20;

 private:
  std::string text_;
  size_t searched_ = 0;
  bool open_ = false;  // a line end was seen, so that a line has begun
  size_t frontEnd_ = 0;
  size_t begin_ = 0;
};

// A final result within a reply: its code and where its text stands.
struct FinalResult {
  ResultCode code = kResultTimeout;
  const char* kind = "";  // "CME" or "CMS" with kResultEquipmentError
  size_t begin = 0;
  size_t end = 0;
};

// The final result on a line that owes nothing: the first one decides, and in what has arrived by
// then "OK" counts before "ERROR" and "ERROR" before an equipment error.
class FirstResult {
 public:
  // Looks at what came since the last call. True when the result is complete; until then the text
  // begins at result.begin.
  bool Look(Reply& reply, FinalResult& result);

 private:
  void NoteLines(Reply& reply);
  void SearchTokens(std::string_view text);
  bool CutBehind(std::string_view text, const char* plusToken, const char* bareToken);

  static constexpr size_t kNone = static_cast<size_t>(-1);

  size_t cut_ = 0;  // behind the token of an equipment error
  size_t okFrontEnd_ = kNone;
  bool errorSeen_ = false;
  bool cmeSeen_ = false;
  bool cmsSeen_ = false;
  size_t lastLineEnd_ = 0;     // behind the last line end
  size_t tokensSearched_ = 0;  // no token begins in front of this
};

// The final results of a line that owes some, one behind another.
class ResultSequence {
 public:
  explicit ResultSequence(size_t wanted) : wanted_(wanted) {}

  // Looks at what came since the last call and gives the wanted-th result, or the last when fewer
  // have come. True when the wanted-th is there.
  bool Look(Reply& reply, FinalResult& result);

  size_t Count() const { return count_; }
  bool Complete() const { return count_ >= wanted_; }

  // Behind the last result that has come.
  size_t TextBegin() const { return textBegin_; }

 private:
  void Note(const Reply& reply, const Reply::Line& line, FinalResult& result);

  size_t wanted_;
  size_t count_ = 0;
  size_t textBegin_ = 0;
};

// What a line may still send for earlier commands.
enum class LineState {
  kClean,       // nothing
  kOwing,       // results of earlier commands
  kOwingTries,  // results of earlier tries of this command, and perhaps of earlier commands
  kUnsettled,   // an unknown number: some were owed when the line changed
};

// Finds the result of one command in what comes after it.
class ResultFinder {
 public:
  // wanted: which of the results that come on a line that owes some is the command's own, from 1.
  ResultFinder(LineState line, size_t wanted)
      : line_(line), sequence_(line == LineState::kUnsettled ? kAll : wanted) {}

  // True when the result is there. quiet: nothing has come for a tenth of a second.
  bool Look(Reply& reply, bool quiet, bool expired);

  // How many of so many outstanding results the line still owes after the last look.
  uint32_t StillOwed(uint32_t outstanding) const;

  const FinalResult& Result() const { return result_; }
  std::string_view Text(const Reply& reply) const;

 private:
  bool MayTakeLast(bool quiet, bool expired) const;

  static constexpr size_t kAll = static_cast<size_t>(-1);

  LineState line_;
  FirstResult first_;
  ResultSequence sequence_;
  bool found_ = false;
  FinalResult result_;
};

}  // namespace kxwan

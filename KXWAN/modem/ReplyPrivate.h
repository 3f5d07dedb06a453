#pragma once

#include <KXWAN/modem/ResultCode.h>

#include <cstddef>
#include <span>
#include <string>
#include <string_view>

namespace kxwan {

// A line that ends a reply. The first row that fits counts, and among several lines that have
// arrived together the one whose row stands first; an equipment error comes last.
struct FinalLine {
  std::string_view text;
  bool whole = false;  // the line is exactly this; otherwise it begins with this
  int code = kResultEquipmentError;
  const char* kind = "";
};

// What the engine's operations recognise: OK, ERROR, +CME ERROR: and +CMS ERROR:, with and without
// their "+" (V.250 5.7.1, 3GPP TS 27.007 9.1, 27.005 3.2.5).
std::span<const FinalLine> ClassicFinalLines();

// A final result and its text, which is good until more is appended to the reply.
struct FinalResult {
  int code = kResultTimeout;
  const char* kind = "";  // "CME" or "CMS" with kResultEquipmentError
  std::string_view text;
  std::string_view whole;     // with what had come before the answer began
  bool beganEarlier = false;  // something had
};

// What a device sends, cut into lines as it grows, and the final results in it. Every byte is
// looked at once, so that a reply costs in proportion to its length.
class Reply {
 public:
  // The lines that end a reply stay the caller's.
  explicit Reply(std::span<const FinalLine> finalLines) : finalLines_(finalLines) {}

  // Appends what was read. NULs are no text and are dropped. A device that floods is heard up to
  // kMaximumLength bytes; what follows is dropped.
  void Append(std::string_view bytes);

  // What has come so far is no text of the answer that begins now. It may be the begin of an
  // earlier one, unless none is due.
  void BeginAnswer(bool earlierIsDue);

  // The answer may have begun already, but what an unfinished one leaves begins here. The echo of
  // the command alone is nothing of it.
  void BeginTry(std::string_view command);

  // Drops a text that is too long for the begin of an answer.
  void DropExcess();

  // Takes the next final result, one behind another. False when there is none.
  bool TakeNext(FinalResult& result);

  // Takes the final result where all that has come answers one command: among several that have
  // arrived together "OK" counts, then "ERROR", then an equipment error.
  bool TakeOnly(FinalResult& result);

  // The text of the try so far; behind the token of an equipment error that is not complete.
  std::string_view Unfinished();

  // Whether a line has begun and not ended.
  bool HasHalfLine() const { return begin_ < text_.size(); }

  // What has come since the last result: whole lines, without the rest.
  std::string_view WholeLines() const { return Range(taken_, begin_); }

  // Whether anything has come since the last result but white space.
  bool HasText() const;

  static constexpr size_t kMaximumLength = size_t{16} << 20;

 private:
  // A line between two line ends. A run of "\r" in front of "\n" is one line end.
  struct Line {
    size_t frontEnd;  // where the line end in front of it begins
    size_t begin;
    size_t end;   // where its own line end begins
    size_t next;  // behind its own line end
  };

  // What TakeOnly has found of an answer that is not complete.
  struct Findings {
    const FinalLine* row = nullptr;  // a line that is a final result and no equipment error
    size_t frontEnd = 0;             // where the line end in front of it begins
    size_t lastLineEnd = 0;          // behind the last line end
    size_t tokensSearched = 0;       // no token begins in front of this
    bool cmeSeen = false;
    bool cmsSeen = false;
  };

  bool NextLine(Line& line);
  const FinalLine* FindFinalLine(std::string_view line) const;
  std::string_view Range(size_t begin, size_t end) const;
  void Drop();
  void DropTaken();
  void FinishResult(FinalResult& result, size_t end);
  void NoteLines();
  void SearchTokens();
  bool CutBehind(std::string_view plusToken, std::string_view bareToken);

  std::span<const FinalLine> finalLines_;
  std::string text_;     // of the answer so far, and of results that were taken
  size_t taken_ = 0;     // up to here it belongs to results that were taken
  size_t answer_ = 0;    // where the text of the answer begins
  size_t try_ = 0;       // where what came in the present try begins
  size_t searched_ = 0;  // no line end that was not seen is in front of this
  bool open_ = false;    // a line end was seen, so that a line has begun
  size_t frontEnd_ = 0;  // where the last line end begins
  size_t begin_ = 0;     // behind the last line end
  Findings findings_;
};

}  // namespace kxwan

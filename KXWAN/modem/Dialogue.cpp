#include <KXWAN/modem/DialoguePrivate.h>

#include <algorithm>
#include <limits>

// What the driver tells and asks: the course of an exchange. Who a result belongs to is decided in
// DialogueTaking.cpp.
namespace kxwan {

namespace {

// How long the line is quiet when the device has nothing more to say.
Seconds Quiet(const LineState& line) {
  constexpr Seconds kWhenUnknown = 2;  // at least
  const Seconds usual = line.pace.Quiet(std::max(kWhenUnknown, 1.25 * line.slowest + .05));
  return line.lateness.seen ? std::max(usual, 1.25 * line.lateness.Most() + .05) : usual;
}

// The exchange's time holds at least one try, and a single one at least half of it.
Seconds LastTimeToSend(const ExchangeState& exchange) {
  return exchange.end - (exchange.mostTries > 1 ? exchange.timeout : exchange.timeout / 2);
}

}  // namespace

void Dialogue::Begin(std::string_view command, Seconds now, Seconds timeout, int tries) {
  listens_ = false;
  phase_ = tries > 0 ? Phase::kReady : Phase::kUnanswered;
  answer_ = {};
  const uint32_t number = exchange_.number + 1;
  exchange_ = {};
  exchange_.number = number;
  exchange_.isQuery = IsQuery(command);
  exchange_.begun = now;
  exchange_.timeout = timeout;
  exchange_.end = now + timeout * tries;
  exchange_.mostTries = tries;
  if (line_.pace.Known()) line_.chain.ForgetDelay();
  TakeResults(now);
}

void Dialogue::BeginListening(Seconds now, Seconds timeout, bool dropsText) {
  const bool goesOn = listens_ && takesAny_ && phase_ == Phase::kAnswered;
  listens_ = true;
  takesAny_ = dropsText;
  phase_ = Phase::kListening;
  answer_ = {};
  exchange_.held.reset();
  exchange_.end = now + timeout;
  TakeResults(now);
  if (phase_ != Phase::kListening) return;
  if (dropsText && !goesOn) reply_.BeginAnswer(/*earlierIsDue=*/true);
  reply_.DropExcess();
}

bool Dialogue::TakeHeard(Seconds now, Answer& answer) {
  constexpr Seconds kForever = std::numeric_limits<Seconds>::infinity();
  const bool armed = listens_ && (phase_ == Phase::kListening || phase_ == Phase::kAnswered);
  if (!armed) BeginListening(now, kForever, /*dropsText=*/false);
  if (phase_ != Phase::kAnswered) return false;
  answer = std::move(answer_);
  BeginListening(now, kForever, /*dropsText=*/false);
  return true;
}

Step Dialogue::Next(Seconds now) {
  switch (phase_) {
    case Phase::kReady:
      if (now < TimeToSend()) return {Turn::kListen, TimeToSend()};
      phase_ = Phase::kSending;
      return {Turn::kSend};
    case Phase::kSending:
      return {Turn::kSend};
    case Phase::kTrying:
      if (exchange_.held && now >= HeldUntil()) AcceptHeld();
      if (phase_ == Phase::kAnswered) return {Turn::kAnswered};
      return now < TimeTryEnds() ? Step{Turn::kListen, TimeTryEnds()} : EndTry(now);
    case Phase::kListening:
      if (now < exchange_.end) return {Turn::kListen, exchange_.end};
      phase_ = Phase::kUnanswered;
      return {Turn::kUnanswered};
    case Phase::kAnswered:
      return {Turn::kAnswered};
    default:
      return {Turn::kUnanswered};
  }
}

// A first try goes out when the line has run dry. On a line that owes nothing that is at once.
Seconds Dialogue::TimeToSend() const {
  constexpr Seconds kRestOfOwedLine = .5;
  constexpr Seconds kRestOfLine = .1;
  constexpr Seconds kBehindForgotten = .3;
  constexpr Seconds kLongest = 3;
  constexpr Seconds kLongestBehindLate = 12;
  Seconds time = exchange_.begun;
  if (reply_.HasHalfLine()) {
    const Seconds rest = line_.out.Empty() ? kRestOfLine : kRestOfOwedLine;
    time = std::min(line_.heardAt + rest, exchange_.begun + kLongest);
  } else if (line_.out.AreAllQuestions()) {
    if (line_.unsure) time = line_.heardAt + line_.pace.Quiet(kBehindForgotten);
    if (line_.doubles.AreExpected()) time = std::max(time, line_.doubles.At() + Doubles::kBetween);
  } else if (!line_.moved || line_.lateness.seen) {
    const Seconds longest = line_.lateness.seen ? kLongestBehindLate : kLongest;
    time = std::min(exchange_.begun + longest, line_.heardAt + Quiet(line_));
  }
  return std::min(time, LastTimeToSend(exchange_));
}

void Dialogue::Written(std::string_view command, Seconds now) {
  line_.writtenAt = now;
  const bool isTry = phase_ == Phase::kSending;
  if (!isTry) ++exchange_.number;
  if (isTry && exchange_.tries == 0) BeginFirstTry(now);
  if (isTry && exchange_.tries > 0) {
    reply_.BeginTry(command);
    if (exchange_.counted == 0) line_.out.PutInFront(line_.aside);
  }
  if (EndsLine(command)) {
    line_.out.Add({.exchange = exchange_.number, .at = now, .names = NamesIn(command)});
  }
  // What is written by itself may be answered at any time, as if something had come.
  if (!isTry) line_.heardAt = now;
  if (!isTry) return;
  ++exchange_.tries;
  exchange_.triedAt = now;
  exchange_.heard = false;
  exchange_.countedBefore += exchange_.counted;
  exchange_.counted = 0;
  phase_ = Phase::kTrying;
}

void Dialogue::NotWritten() {
  if (phase_ != Phase::kSending) return;
  const int tries = ++exchange_.failedWrites + exchange_.tries;
  if (tries >= exchange_.mostTries) phase_ = Phase::kUnanswered;
}

uint32_t Dialogue::QuestionWritten(std::string_view command, std::string_view answer, Seconds now) {
  line_.writtenAt = now;
  line_.out.PutInFront(line_.aside);  // its answer tells what becomes of those, too
  line_.out.Add({.exchange = ++exchange_.number,
                 .at = now,
                 .names = NamesIn(command),
                 .isQuestion = true,
                 .answer = std::string(answer)});
  return exchange_.number;
}

// What waited before the command was written is neither its result nor text of its answer.
void Dialogue::BeginFirstTry(Seconds now) {
  constexpr size_t kMostUnasked = 4096;
  const Seconds quiet = std::max(Quiet(line_), 1.25 * line_.lateness.Most());
  exchange_.calm = now >= line_.heardAt + quiet;
  if (exchange_.calm) line_.lateness = {false, 0, line_.lateness.proven};
  exchange_.latenessThen = line_.lateness;
  exchange_.doubt = !line_.out.Empty();
  line_.unsure = false;
  // However late the process runs, a command that was sent is listened to.
  exchange_.end = std::max(exchange_.end, now + exchange_.timeout / 2);
  if (!exchange_.doubt) unasked_.append(reply_.WholeLines());
  if (unasked_.size() > kMostUnasked) unasked_.erase(0, unasked_.size() - kMostUnasked);
  reply_.BeginAnswer(exchange_.doubt);
}

void Dialogue::LineChanged() {
  if (!line_.out.Empty()) line_.moved = true;
}

void Dialogue::Settled(bool butQuestions) {
  if (!butQuestions) line_.out.Clear();
  while (!line_.out.AreAllQuestions()) line_.out.TakeFront();
  line_.aside.Clear();
  line_.lateness = {};
  line_.chain.Break();
  line_.unsure = false;
  line_.moved = false;
}

// A command that got an answer is not sent again: it is listened to for all the time that is left.
// Only a query on a device that was seen late may be.
bool Dialogue::OnlyListensOn() const {
  if (!exchange_.isQuery) return exchange_.heard;
  if (exchange_.counted == 0) return false;
  return line_.moved || !(line_.lateness.seen || line_.lateness.proven > Lateness::kLate);
}

// A further try is sent only where most of its time is left.
bool Dialogue::MaySendAgainAt(Seconds time) const {
  const bool mayTry = exchange_.tries + exchange_.failedWrites < exchange_.mostTries;
  return mayTry && (exchange_.timeout <= 0 || time + exchange_.timeout / 2 < exchange_.end);
}

Seconds Dialogue::TimeToGiveUp() const {
  constexpr Seconds kRestOfLine = .5;
  constexpr Seconds kRestAtMost = .6;
  const auto tries = static_cast<uint32_t>(exchange_.tries);
  Seconds time = exchange_.triedAt + exchange_.timeout;
  // In doubt the gaps between tries differ, or a device that is late by just one gap would look
  // like one that is prompt.
  const bool unsettled =
      exchange_.doubt && exchange_.counted > 0 && exchange_.tries < exchange_.mostTries;
  if (unsettled && line_.chain.IsOffBeat(line_.pace)) {
    time +=
        .05 + .04 * (exchange_.number / 2 % 3) + ((exchange_.number + tries) % 2 == 1 ? 0 : .27);
  }
  if (reply_.HasHalfLine()) {
    time = std::max(time, std::min(line_.heardAt + kRestOfLine, time + kRestAtMost));
  }
  return time;
}

// What has begun to come may contradict a held result when it is whole.
Seconds Dialogue::HeldUntil() const {
  constexpr Seconds kRestOfAnswer = .5;
  constexpr Seconds kRestAtMost = .6;
  const Seconds until = exchange_.held->until;
  if (!reply_.HasText()) return until;
  return std::max(until, std::min(line_.heardAt + kRestOfAnswer, until + kRestAtMost));
}

// While a result is held nothing is sent: it would be the next command that gets the answer.
Seconds Dialogue::TimeTryEnds() const {
  if (exchange_.held) return std::min(HeldUntil(), exchange_.end);
  const bool sendsAgain = !OnlyListensOn() && MaySendAgainAt(TimeToGiveUp());
  return sendsAgain ? std::min(TimeToGiveUp(), exchange_.end) : exchange_.end;
}

Step Dialogue::EndTry(Seconds now) {
  if (exchange_.counted == 0) line_.chain.Break();
  const bool again = !OnlyListensOn() && MaySendAgainAt(now);
  phase_ = again ? Phase::kSending : Phase::kUnanswered;
  return {again ? Turn::kSend : Turn::kUnanswered};
}

}  // namespace kxwan

#include <KXWAN/modem/DialoguePrivate.h>

#include <algorithm>
#include <utility>

// Who a result belongs to.
namespace kxwan {

namespace {

// No answer is thought to take longer.
constexpr Seconds kSlowest = 12;

Answer AnswerOf(const FinalResult& final) {
  return {final.code, final.kind, std::string(final.text)};
}

}  // namespace

void Dialogue::Heard(std::string_view bytes, Seconds now) {
  if (bytes.empty()) return;
  line_.heardAt = now;
  line_.resultsRead = 0;
  line_.dueBeforeRead = line_.out.Size();
  reply_.Append(bytes);
  TakeResults(now);
}

// Whoever waits for just the next result leaves those behind it to be waited for.
void Dialogue::TakeResults(Seconds now) {
  const bool onlyNext = phase_ == Phase::kListening;
  FinalResult final;
  while ((!onlyNext || phase_ == Phase::kListening) &&
         (OneAnswerIsDue() ? reply_.TakeOnly(final) : reply_.TakeNext(final))) {
    if (line_.out.Empty()) line_.out.PutInFront(line_.aside);
    const Seconds begun =
        line_.out.Empty() ? now : std::max(line_.out.Front().at, line_.doubles.At());
    Place(final, now - begun, now);
    line_.doubles.Note(final, now - begun, now);
    ++line_.resultsRead;
  }
}

// Then all that comes together is one answer, as the device gives it.
bool Dialogue::OneAnswerIsDue() const {
  if (phase_ == Phase::kListening) return line_.out.Size() <= 1;
  return phase_ == Phase::kTrying && !exchange_.doubt && line_.out.Size() == 1;
}

void Dialogue::Place(const FinalResult& final, Seconds service, Seconds now) {
  if (phase_ == Phase::kListening) return Attribute(final, service, now);
  const bool second = exchange_.held && exchange_.held->mayBeDouble;
  exchange_.heard = true;
  if (line_.out.Empty() || second) line_.doubles.NoteDouble();
  if (line_.out.Empty()) return;
  if (!second && IsDouble(final, now)) return line_.doubles.NoteDouble();
  exchange_.held.reset();
  if (!second && IsSuspicious(final, now)) {
    const Seconds wait = std::min(line_.pace.Quiet(0), exchange_.timeout);
    return Hold(final, exchange_.triedAt + wait, /*mayBeDouble=*/true);
  }
  Attribute(final, service, now);
}

// Results that are owed may be alike and come together: those of several tries of one command, and
// those that are read at once.
bool Dialogue::IsDouble(const FinalResult& final, Seconds now) const {
  constexpr Seconds kAtOnceWhenUnknown = .0005;
  const bool maybeFurtherTry = line_.out.Front().exchange == line_.answered.exchange;
  const bool expected = maybeFurtherTry || line_.resultsRead < line_.dueBeforeRead;
  if (expected || !line_.doubles.RepeatsAtOnce(final, now)) return false;
  const Seconds atOnce = line_.pace.Known() ? .5 * line_.pace.Low() : kAtOnceWhenUnknown;
  return line_.doubles.AreExpected() ||
         (exchange_.counted > 0 && now - line_.doubles.At() < atOnce);
}

// On a line that owes nothing a result may yet be the one before, come twice: it comes sooner than
// the device ever answers, or it names the command that was answered before.
bool Dialogue::IsSuspicious(const FinalResult& final, Seconds now) const {
  if (!IsCleanFirst() || !line_.pace.Known()) return false;
  // A host that is busy makes a difference of a few milliseconds.
  constexpr Seconds kNoDifference = .004;
  const Seconds usual = line_.pace.Low();
  const bool tooSoon = usual > kNoDifference && now - exchange_.triedAt < .5 * usual;
  return (tooSoon && line_.doubles.RepeatsAtOnce(final, now)) ||
         line_.out.IsOther(final.whole, line_.answered, exchange_.number);
}

// The only command that is outstanding is the one that was just sent for the first time.
bool Dialogue::IsCleanFirst() const {
  return phase_ == Phase::kTrying && !exchange_.doubt && exchange_.tries == 1 &&
         exchange_.counted == 0;
}

void Dialogue::Attribute(const FinalResult& final, Seconds service, Seconds now) {
  if (IsCleanFirst() && !line_.aside.Empty() && line_.pace.Known()) {
    // What was forgotten comes after all, or it may be forgotten for good.
    exchange_.doubt = !line_.pace.IsPlausible(now - exchange_.triedAt);
    if (exchange_.doubt) line_.out.PutInFront(line_.aside);
    line_.aside.Clear();
  }
  if (final.code == kResultOk) {
    const bool maybeOther = exchange_.doubt || phase_ != Phase::kTrying;
    if (maybeOther) line_.out.DropOlderThanAnsweredBy(final.whole);
    line_.out.DropQuestionsNotAnsweredBy(final.whole);
  }
  if (line_.out.Empty()) return Accept(final);
  line_.answered = line_.out.TakeFront();
  const bool isQuestion = line_.answered.isQuestion;
  if (phase_ == Phase::kListening) {
    if (!takesAny_ && !isQuestion) ++line_.late;
    Accept(final);
  } else if (phase_ != Phase::kTrying) {
    if (!isQuestion) ++line_.late;
    CameUnawaited(service);
  } else if (!isQuestion) {
    Count(final, service, now);
  }
  NoteIfRunDry();
}

void Dialogue::CameUnawaited(Seconds service) {
  line_.lateness.seen = true;
  line_.lateness.proven = std::max(line_.lateness.proven, std::min(service, kSlowest));
  line_.chain.Break();
  line_.chain.ForgetDelay();
}

void Dialogue::Count(const FinalResult& final, Seconds service, Seconds now) {
  const Seconds delay = now - exchange_.triedAt;
  const bool firstTry = exchange_.tries == 1;
  ++exchange_.counted;
  if (!exchange_.doubt && firstTry) line_.pace.Learn(delay);
  if (!exchange_.doubt && firstTry) line_.doubles.NoteSingle();
  if (exchange_.doubt && exchange_.counted > 1) {
    line_.chain.NoteOutOfTurn(line_.doubles.Service(), line_.lateness);
  } else if (exchange_.doubt) {
    line_.chain.Note({delay, service, exchange_.timeout, firstTry, exchange_.calm}, line_.pace,
                     line_.lateness);
  }
  // In doubt, a result whose text began before the command was sent cannot be its own.
  const bool tooEarly = exchange_.doubt && firstTry && final.beganEarlier;
  const bool counted = line_.answered.exchange == exchange_.number;
  const bool own = counted && !tooEarly;
  const bool others = !counted && line_.out.IsOther(final.whole, line_.answered, exchange_.number);
  const bool settled =
      exchange_.doubt && !others && line_.chain.IsLongEnough(line_.lateness, exchange_.timeout);
  if (own) line_.slowest = std::max(line_.slowest, std::min(service, kSlowest));
  if (own || settled) {
    Accept(final);
  } else {
    ++line_.late;
  }
  if (settled) {
    line_.out.Clear();
    line_.unsure = true;
    if (!line_.pace.Known()) line_.pace.Learn(delay);
  }
  const Seconds hold = own || settled || others ? 0 : HoldFor(delay, service);
  if (hold > 0) Hold(final, now + hold, /*mayBeDouble=*/false);
}

// How long the line must stay quiet behind a result before what is outstanding may be forgotten;
// 0: it may not.
Seconds Dialogue::HoldFor(Seconds delay, Seconds service) const {
  constexpr Seconds kBehindChange = 1.15;
  const Lateness& before = exchange_.latenessThen;
  if (before.seen || before.proven > Lateness::kLate) return 0;
  if (line_.moved) {
    return std::max(kBehindChange, exchange_.counted > 1 ? std::min(2., 1.5 * service + .05) : 0);
  }
  const bool usual = line_.pace.Known() && line_.pace.InBand(delay);
  const bool fits = exchange_.counted == 1 && exchange_.countedBefore == 0 && exchange_.calm &&
                    before.guess == 0 && line_.pace.Fits(delay);
  if (!fits || (exchange_.tries > 1 && !usual)) return 0;
  return usual ? std::clamp(line_.pace.Quiet(0), .3, 1.) : 1;
}

void Dialogue::Hold(const FinalResult& final, Seconds until, bool mayBeDouble) {
  exchange_.held = {AnswerOf(final), until, mayBeDouble};
}

void Dialogue::Accept(const FinalResult& final) {
  answer_ = AnswerOf(final);
  phase_ = Phase::kAnswered;
}

// Nothing contradicted the result. What was outstanding is put aside.
void Dialogue::AcceptHeld() {
  HeldResult held = *std::exchange(exchange_.held, std::nullopt);
  const Seconds delay = line_.doubles.At() - exchange_.triedAt;
  answer_ = std::move(held.answer);
  phase_ = Phase::kAnswered;
  if (held.mayBeDouble) {
    line_.answered = line_.out.TakeFront();
    line_.pace.Learn(delay);
    return;
  }
  --line_.late;
  if (!line_.moved && !line_.pace.Known() && exchange_.counted == 1) line_.pace.Learn(delay);
  line_.aside = std::exchange(line_.out, {});
  line_.lateness = exchange_.latenessThen;
  line_.unsure = true;
  NoteIfRunDry();
}

void Dialogue::NoteIfRunDry() {
  if (!line_.out.Empty()) return;
  line_.lateness = {false, 0, line_.lateness.proven * .98};
  line_.chain.Break();
  line_.moved = false;
}

}  // namespace kxwan

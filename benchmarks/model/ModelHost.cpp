#include <benchmarks/model/ModelHost.h>

#include <algorithm>
#include <charconv>
#include <iterator>

namespace kxmodel {

namespace {

constexpr Seconds kTimeout = 1.5;
constexpr int kTries = 3;
constexpr size_t kFaultsKept = 3;

struct ModelCommand {
  const char* line;
  const char* text;  // a number of its own follows; nullptr: no text
};

constexpr ModelCommand kNamed[] = {
    {"AT+CSQ", "+CSQ: "},      {"AT+COPS?", "+COPS: 0,0,"},
    {"AT+CBC", "+CBC: 0,"},    {"AT+CGMR", ""},
    {"AT+CICCID", "+ICCID: "}, {"AT+CREG?", "+CREG: 0,"},
    {"AT+CPWD=?", "+CPWD: "},  {"ATI3", ""},
    {"AT+CGMM", "+CGMM: M"},
};

constexpr ModelCommand kPlain[] = {
    {"ATE0V1", nullptr}, {"AT+CGEQMIN=?", nullptr}, {"AT+CGATT=?", nullptr}};

constexpr ModelCommand kSets[] = {{"AT+CPIN=\"1234\"", nullptr},
                                  {"AT+CMEE=1", nullptr},
                                  {"AT+CMEE=1;+CPIN?", "+CPIN: "},
                                  {"ATZ", nullptr},
                                  {"AT+CPIN=\"12345678\",\"1234\"", nullptr},
                                  {"AT!UARTONLY", nullptr}};

constexpr unsigned long kSpeeds[] = {115200, 9600, 57600, 19200, 38400};

template <size_t N>
const ModelCommand& Any(const ModelCommand (&rows)[N], Random& random) {
  return rows[random.Below(N)];
}

void AppendNumber(std::string& text, uint32_t number) {
  char digits[12];
  text.append(digits, std::to_chars(std::begin(digits), std::end(digits), number).ptr);
}

Names DrawNames(Names names, Random& random) {
  constexpr Names kDrawn[] = {Names::kOwn, Names::kShared, Names::kPlain};
  return names == Names::kAny ? kDrawn[random.Below(std::size(kDrawn))] : names;
}

Pauses DrawPauses(Pauses pauses, Random& random) {
  constexpr Pauses kDrawn[] = {Pauses::kNone, Pauses::kFixed, Pauses::kMixed};
  return pauses == Pauses::kAny ? kDrawn[random.Below(std::size(kDrawn))] : pauses;
}

// Neighbouring numbers must not give neighbouring sessions.
uint64_t SeedOf(const char* family, uint64_t seed, uint32_t session) {
  for (; *family != '\0'; ++family) seed = (seed ^ static_cast<uint8_t>(*family)) * 0x100000001b3u;
  return Random(seed ^ (uint64_t{session} << 20)).Next();
}

}  // namespace

Session::Session(const Family& family, uint64_t seed, uint32_t number, uint32_t exchanges,
                 Timeline* timeline)
    : family_(family),
      number_(number),
      exchanges_(exchanges),
      talk_(family.device, family.line, SeedOf(family.name, seed, number), timeline),
      random_(talk_.Numbers()),
      names_(DrawNames(family.host.names, random_)),
      pauses_(DrawPauses(family.host.pauses, random_)),
      fixedPause_(random_.Within({0, 3})) {}

void Session::Run(Tally& tally) {
  for (uint32_t exchange = 1; exchange <= exchanges_; ++exchange) {
    Pause();
    if (random_.Chance(family_.host.lineChanges)) ChangeLine();
    const Question& question = PrepareQuestion(exchange);
    calm_ = talk_.Device().Idle(talk_.Port().Now());
    Judge(talk_.Exchange(kTimeout, kTries), question, exchange, tally);
    wasIgnored_ = question.ignored;
  }
  tally.mostIdleReads = std::max(tally.mostIdleReads, talk_.Port().MostIdleReads());
}

void Session::Pause() {
  if (pauses_ == Pauses::kFixed) talk_.Port().Pause(fixedPause_);
  if (pauses_ == Pauses::kMixed && random_.Chance(.5)) talk_.Port().Pause(random_.Within({0, 3}));
}

void Session::ChangeLine() {
  if (random_.Chance(.5)) {
    talk_.Port().SetSpeed(kSpeeds[random_.Below(std::size(kSpeeds))]);
  } else {
    talk_.Port().Reopen();
  }
}

const Question& Session::PrepareQuestion(uint32_t exchange) {
  constexpr uint32_t kFirstNumber = 1000;
  set_ = random_.Chance(family_.host.sets);
  const ModelCommand& command = set_                      ? Any(kSets, random_)
                                : names_ == Names::kPlain ? Any(kPlain, random_)
                                : names_ == Names::kOwn   ? Any(kNamed, random_)
                                                          : kNamed[0];
  text_.clear();
  result_ = "OK";
  if (random_.Chance(family_.host.refused)) {
    result_ = random_.Chance(.5) ? "ERROR" : "+CME ERROR: ";
    if (result_ != "ERROR") AppendNumber(result_, kFirstNumber + exchange);
  } else if (command.text != nullptr) {
    text_ = command.text;
    AppendNumber(text_, kFirstNumber + exchange);
  }
  Question& question = talk_.Prepare(command.line, text_, result_);
  question.ignored = random_.Chance(family_.host.ignored);
  return question;
}

void Session::Judge(const Verdict& verdict, const Question& question, uint32_t exchange,
                    Tally& tally) {
  const Seen& seen = talk_.Port().SeenSince();
  const bool wrong = verdict.answered && !verdict.right;
  const bool sentAgain = set_ && seen.sentAgain > 0;
  const Seconds extra = verdict.took - seen.ownTook;
  ++tally.exchanges;
  tally.right += verdict.right ? 1 : 0;
  tally.none += verdict.answered ? 0 : 1;
  tally.wrong += wrong ? 1 : 0;
  tally.sends += seen.sends;
  tally.sets += set_ ? 1 : 0;
  tally.setsWrong += set_ && wrong ? 1 : 0;
  tally.setsSentAgain += sentAgain ? 1 : 0;
  tally.extra += verdict.right ? extra : 0;
  tally.longest = std::max(tally.longest, verdict.took);
  JudgeBehind(verdict, question, extra, tally);
  const bool fault = wrong || sentAgain;
  if (fault && tally.faults.size() < kFaultsKept) tally.faults.push_back({number_, exchange});
  if (sentAgain) talk_.Port().Note("verdict", "SENT AGAIN IN SPITE OF A RESULT");
}

void Session::JudgeBehind(const Verdict& verdict, const Question& question, Seconds extra,
                          Tally& tally) {
  constexpr Seconds kInTime = 1.0001;
  if (calm_ && !talk_.Device().WasLate() && !question.ignored) {
    ++tally.calm;
    tally.calmNone += verdict.answered ? 0 : 1;
    if (!verdict.answered) talk_.Port().Note("verdict", "ALTHOUGH THE DEVICE IS PROMPT");
  }
  if (!wasIgnored_ || question.ignored) return;
  const bool once = talk_.Port().SeenSince().sends == 1;
  const bool inTime = verdict.right && extra <= kInTime;
  ++tally.behindIgnored;
  tally.behindOnce += once ? 1 : 0;
  tally.behindInTime += inTime ? 1 : 0;
  if (!once || !inTime) talk_.Port().Note("verdict", "DISTURBED BY AN IGNORED COMMAND");
}

void Tally::Add(const Tally& other) {
  exchanges += other.exchanges;
  right += other.right;
  none += other.none;
  wrong += other.wrong;
  sends += other.sends;
  sets += other.sets;
  setsWrong += other.setsWrong;
  setsSentAgain += other.setsSentAgain;
  calm += other.calm;
  calmNone += other.calmNone;
  behindIgnored += other.behindIgnored;
  behindOnce += other.behindOnce;
  behindInTime += other.behindInTime;
  extra += other.extra;
  longest = std::max(longest, other.longest);
  mostIdleReads = std::max(mostIdleReads, other.mostIdleReads);
  faults.insert(faults.end(), other.faults.begin(), other.faults.end());
}

Tally RunFamily(const Family& family, uint64_t seed, uint64_t exchanges) {
  Tally tally;
  for (uint32_t number = 0; tally.exchanges < exchanges; ++number) {
    Session(family, seed, number, family.host.exchanges, nullptr).Run(tally);
  }
  return tally;
}

}  // namespace kxmodel

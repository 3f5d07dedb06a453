#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <recording/LogReader.h>
#include <tests/support/Host.h>

#include <random>
#include <sstream>

namespace kxsim {
namespace {

using ::testing::ElementsAreArray;
using ::testing::HasSubstr;
using ::testing::SizeIs;

constexpr const char* kStamp = "11:16:26 06:29:35 - ";
const std::string kLongText(512, 'x');
const std::string kLongCommand = "AT+X=" + std::string(972, 'y');  // fills its record

// Marks at the start of a line: ">" a command, "<" what came of it, "@" the port that is opened,
// "!" the port that is closed, "#" any other record; all else stands as it is.
std::string LogOf(const std::string& text) {
  std::istringstream lines(text);
  std::string log;
  for (std::string line; std::getline(lines, line);) {
    const std::string rest = line.empty() ? "" : line.substr(1);
    switch (line.empty() ? '\0' : line[0]) {
      case '>':
        log += kStamp + ("CSModem::SendCommand() -> " + rest) + "\r\n";
        break;
      case '<':
        log += kStamp + ("CSModem::GetResponse() -> " + rest) + "\n";
        break;
      case '@':
        log += kStamp + ("KxSerial::Open() - '" + rest) + "' Success\n";
        break;
      case '!':
        log += kStamp + ("KxSerial::DeallocatePortID() ID:0x104, path:" + rest) + "\n";
        break;
      case '#':
        log += kStamp + rest + "\n";
        break;
      default:
        log += line + "\n";
    }
  }
  return log;
}

LogReading Read(const std::string& log, const std::string& port = "") {
  std::istringstream stream(log);
  LogReading reading;
  const Result failure = ReadLog(stream, port, reading);
  EXPECT_EQ(failure.has_value(), reading.exchanges == 0);
  return reading;
}

// The profile but for what they all have in common.
std::string DeviceText(const LogReading& reading) {
  constexpr std::string_view kCommon = "description = \"Played from a log\"\nscripted = true\n\n";
  const std::string text = FormatProfile(reading.profile);
  return text.starts_with(kCommon) ? text.substr(kCommon.size()) : "";
}

// Notes but for those about what is played.
std::vector<std::string> Complaints(const LogReading& reading) {
  std::vector<std::string> texts;
  for (const LogNote& note : reading.notes) {
    if (note.text.find(" played: ") != std::string::npos && !note.text.ends_with("not")) continue;
    texts.push_back(std::to_string(note.line) + ": " + note.text);
  }
  return texts;
}

struct DialogueCase {
  std::string log;
  const char* replies;
};

const DialogueCase kDialogues[] = {
    {">AT+GMM\n<X100\n>AT+CSQ\n<OK\n", "\"AT+GMM\" = \"X100\"\n\"AT+CSQ\" = \"OK\"\n"},
    {">AT+GMM\n<ERROR\n>AT+GMM\n<CME Error: 10\n>AT+GMM\n<CMS Error: sim busy\n",
     "\"AT+GMM\" = [\"ERROR\", \"+CME ERROR: 10\", \"+CMS ERROR: sim busy\"]\n"},
    {">AT+CSQ\n<Response Timeout !\n>AT+CSQ\n<1\n>AT+CSQ\n<2\n>at+csq\n<2\n",
     "\"AT+CSQ\" = [\"(silence)\", \"1\", \"2\"]\n"},
    {">ATI\n<a\r\n\r\nb\r\nc\n", "\"ATI\" = \"a\\n\\nb\\nc\"\n"},
    {">ATI\n<a\nb\n", "\"ATI\" = { raw = \"\\r\\na\\nb\\r\\n\\r\\nOK\\r\\n\" }\n"},
    {">ATI\n<\"\x01\xFF\\\n", "\"ATI\" = \"\\\"\\u0001\\u00FF\\\\\"\n"},
    {">ATI\n<NO CARRIER\n", "\"ATI\" = { text = \"NO CARRIER\", result = \"OK\" }\n"},
    {">AT+X=\xE9\xFF\x1B\n<\xC3\n", "\"AT+X=\\u00E9\\u00FF\\u001B\" = \"\\u00C3\"\n"},
    {">\n<OK\n>AT+A=1234567890123456789012345678901234567890\n<1\n",
     "\"\" = \"OK\"\n\"AT+A=1234567890123456789012345678901234567890\" = \"1\"\n"},
    {"#Application: anything\n>AT\n#KxSerial::Read() - Error\n<OK\n", "\"AT\" = \"OK\"\n"},
    // The year 2105, and a log whose line ends were converted.
    {"11:16:105 06:29:35 - CSModem::SendCommand() -> AT\n<a\nb\n", "\"AT\" = \"a\\nb\"\n"},
};

TEST(LogReader, MakesRepliesOfTheDialogue) {
  for (const DialogueCase& row : kDialogues) {
    SCOPED_TRACE(row.log);
    const LogReading reading = Read(LogOf(row.log));
    EXPECT_THAT(DeviceText(reading), HasSubstr(std::string("[replies]\n") + row.replies));
    EXPECT_THAT(Complaints(reading), SizeIs(0));
    const std::string written = FormatProfile(reading.profile);
    EXPECT_EQ(FormatProfile(ProfileOf(written)), written);
  }
}

const DialogueCase kLines[] = {
    {">ATE0V1\n<Response Timeout !\n>ATE0V1\n<OK\n",
     "[line]\nautobaud = true\n\n[replies]\n\"ATE0V1\" = [\"(silence)\", \"OK\"]\n"},
    // Deaf at the speed that it was opened for, found at another and moved.
    {"#CSModem::AutoBaud() - Set to optimum baud - 115200\n>ATE0V1\n<Response Timeout !\n"
     "#CSModem::AutoBaud() - Searching on baud - 9600\n>ATE0V1\n<OK\n>AT+IPR=115200\n<OK\n"
     "#CSModem::AutoBaud() - Changed to optimum baud - 115200\n>ATE0V1\n<ERROR\n"
     "#CSModem::AutoBaud() - Device reset to baud - 115200\n>ATE0V1\n<Response Timeout !\n",
     "[line]\nbaud = 9600\nspeeds = [9600, 115200]\n\n[replies]\n\"ATE0V1\" = [\"OK\", \"ERROR\"]\n"
     "\"AT+IPR=115200\" = \"OK\"\n"},
    // Says OK to a new speed and stays.
    {"#CSModem::AutoBaud() - Set to optimum baud - 57600\n>ATE0V1\n<Response Timeout !\n"
     "#CSModem::AutoBaud() - Searching on baud - 19200\n>ATE0V1\n<OK\n>AT+IPR=57600\n<OK\n"
     "#CSModem::AutoBaud() - Changed to optimum baud - 57600\n>ATE0V1\n<Response Timeout !\n",
     "[line]\nspeeds = [19200]\nmoves = false\n"},
    {"#CSModem::AutoBaud() - Set to optimum baud - 99999999999\n>ATE0V1\n<Response Timeout !\n"
     "#CSModem::AutoBaud() - Searching on baud - 7\n>ATE0V1\n<OK\n",
     "[line]\nautobaud = true\n"},
    {">ATI\n<ATI\r\r\nx\n>ATE0V1\n<ATE0V1\n>ATI\n<x\n>AT\n<ATX\n",
     "[line]\nautobaud = true\necho = true\n\n[replies]\n\"ATI\" = \"x\"\n\"ATE0V1\" = \"OK\"\n"
     "\"AT\" = \"ATX\"\n"},
    // The echo cannot be switched off.
    {">ATE0V1\n<ATE0V1\n>AT+CSQ\n<AT+CSQ\r\r\n1\n",
     "\"AT+CSQ\" = \"1\"\n\n[[faults]]\nkind = \"echo\"\n"},
    {">ATI\n<a\r\r\nb\n", "line_end = \"\\r\\r\\n\"\n\n[replies]\n\"ATI\" = \"a\\nb\"\n"},
};

TEST(LogReader, TellsTheLineFromTheDialogue) {
  for (const DialogueCase& row : kLines) {
    SCOPED_TRACE(row.log);
    EXPECT_THAT(DeviceText(Read(LogOf(row.log))), HasSubstr(row.replies));
  }
}

struct DamagedLog {
  const char* what;
  std::string log;
  size_t exchanges;
  std::vector<std::string> complaints;
};

const DamagedLog kDamagedLogs[] = {
    {"nothing", "", 0, {}},
    {"no log",
     "\x7F"
     "ELF\n\n\n",
     0,
     {"1: this is no record of the log"}},
    {"begins within a record",
     ":26 06:29:35 - x\n" + LogOf("<b\n>AT\n<OK\n"),
     1,
     {"1: this is no record of the log", "2: an answer without its command"}},
    {"ends within a record",
     LogOf(">ATI\n<a\n>ATI\n") + kStamp + "CSModem::Get",
     1,
     {"3: no answer to this command", "4: the log ends within this record"}},
    {"ends behind a command", LogOf(">ATI\n<a\n>AT\n"), 1, {"3: no answer to this command"}},
    {"rubbish behind a command",
     LogOf(">AT\nrubbish\n<OK\n"),
     1,
     {"2: this is no record of the log"}},
    {"two programs at once",
     LogOf(">ATI\n>AT\n<a\n<OK\n>ATI\n<b\n"),
     1,
     {"1: no answer to this command", "3: which of the two commands this answers cannot be told",
      "4: an answer without its command"}},
    {"a command that could not be sent",
     LogOf(">AT\n#KxSerial::Write() - Error writing to modem - x(5).\n>ATI\n<a\n"),
     1,
     {"1: this command could not be sent"}},
    {"a reply that fills its record",
     LogOf(">ATI\n<" + kLongText + "\n"),
     1,
     {"2: the answer may be longer: this is all that the log keeps of it"}},
    {"lines that do not fit the reply",
     LogOf(">ATI\n<a\n" + kLongText + "\n>ATI\n<b\n"),
     2,
     {"3: this is no record of the log"}},
    {"more of them than a record",
     LogOf(">ATI\n<a\n" + kLongText + kLongText + kLongText + "\n>ATI\n<b\n"),
     2,
     {"3: this is no record of the log"}},
    {"a command without its end",
     kStamp + ("CSModem::SendCommand() -> " + kLongCommand) + LogOf("<OK\n>ATI\n<a\n"),
     1,
     {"1: the command is longer than the log keeps"}},
    {"a command cut at its end",
     kStamp + ("CSModem::SendCommand() -> " + kLongCommand.substr(1)) + "\n" +
         LogOf("<OK\n>ATI\n<a\n"),
     1,
     {"1: the command is longer than the log keeps"}},
    {"two ports open",
     LogOf("@/dev/a\n>AT\n<OK\n@/dev/b\n>AT\n<OK\n>AT\n<OK\n!/dev/a\n>AT\n<b\n"),
     1,
     {"6: several ports are open from here on; which one cannot be told"}},
};

TEST(LogReader, NamesWhatCannotBePlayed) {
  for (const DamagedLog& row : kDamagedLogs) {
    SCOPED_TRACE(row.what);
    const LogReading reading = Read(row.log);
    EXPECT_EQ(reading.exchanges, row.exchanges);
    EXPECT_THAT(Complaints(reading), ElementsAreArray(row.complaints));
  }
}

TEST(LogReader, TakesOneOfSeveralPorts) {
  const std::string run = "#KxSerial::AllocatePortID() ID:0x104, path:x\n";
  const std::string log = LogOf(">AT\n<0\n!/dev/a\n" + run + "@/dev/b\n>ATI\n<b\n" + run +
                                "@/dev/a\n>AT\n<1\n>AT\n<2\n!/dev/a\n@/dev/b\n>AT\n<3\n");
  const LogReading most = Read(log);
  EXPECT_THAT(DeviceText(most), HasSubstr("\"AT\" = [\"0\", \"1\", \"2\"]\n"));
  std::vector<std::string> notes;
  for (const LogNote& note : most.notes) notes.push_back(std::to_string(note.line) + note.text);
  EXPECT_THAT(notes, testing::ElementsAre("1from here to line 2 played: /dev/a",
                                          "6from here to line 7 not played: /dev/b",
                                          "10from here to line 13 played: /dev/a",
                                          "16from here to line 17 not played: /dev/b"));
  EXPECT_THAT(DeviceText(Read(log, "/dev/b")), HasSubstr("\"ATI\" = \"b\"\n\"AT\" = \"3\"\n"));
  EXPECT_EQ(Read(log, "/dev/c").exchanges, 0U);
}

TEST(LogReader, StaysBoundedWhateverItReads) {
  std::string log;
  for (int i = 0; i < 12'000; ++i) log += LogOf(">AT+CSQ\n<" + std::to_string(i) + "\n");
  const LogReading polled = Read(log);
  EXPECT_THAT(polled.profile.replies.at(0).answers, SizeIs(10'000));
  EXPECT_THAT(polled.notes, SizeIs(testing::Le(203U)));

  std::mt19937 engine(7);
  for (char& byte : log) byte = engine() % 50 == 0 ? static_cast<char>(engine()) : byte;
  const LogReading spoilt = Read(log);
  EXPECT_GT(spoilt.exchanges, 0U);
  EXPECT_THAT(spoilt.notes, SizeIs(testing::Le(401U)));
}

}  // namespace
}  // namespace kxsim

#include <KXWAN/info/Query.h>
#include <gtest/gtest.h>
#include <tests/support/ScriptedDevice.h>

#include <string>

namespace {

TEST(ResponseText, IsCleanedInPlace) {
  struct Case {
    void (*clean)(CString&);
    const char* text;
    const char* cleaned;
  };
  const auto all = [](CString& text) { StripQuotesfromResponse(text, 1); };
  const auto outer = [](CString& text) { StripQuotesfromResponse(text, 0); };
  const auto key = [](CString& text) {
    formatModelKey(text.GetBuffer(0));
    text.ReleaseBuffer();
  };
  const Case kCases[] = {
      {PrepareResponse, "\r\nMerlin\r\n\x1FU630\t\x7F \r", "Merlin   U630 \x7F"},
      {PrepareResponse, "caf\xE9 \x80\xFF", "caf"},
      {PrepareResponse, "", ""},
      {all, "\"one \"two\"", "one two"},
      {outer, "\"one \"two\"", "one \"two"},
      {all, "one \"two\"", "one \"two\""},
      {outer, "\"one\" two", "\"one\" two"},
      {all, "\"", ""},
      {outer, "\"", ""},
      {outer, "", ""},
      {key, "\"AC 860\" Air\"Card\" ", "AC 860 AirCard "},
      {key, " v3 RAZR", " v3 RAZR"},
  };
  for (const Case& row : kCases) {
    CString text(row.text);
    row.clean(text);
    EXPECT_STREQ(text.String(), row.cleaned) << row.text;
  }
}

struct QueryCase {
  const char* answer;
  const char* tag;
  bool answered;
  const char* out;
};

template <size_t count, class Query>
void CheckQuery(const QueryCase (&cases)[count], Query query) {
  for (const QueryCase& row : cases) {
    SCOPED_TRACE(row.answer);
    ScriptedDevice device(Answers{{"AT+CSQ", row.answer}});
    CString out("untouched");
    const CString shared(out);
    EXPECT_EQ(query(device.Modem(), "AT+CSQ\r", row.tag, out), row.answered);
    EXPECT_STREQ(out.String(), row.out);
    EXPECT_STREQ(shared.String(), "untouched");
    EXPECT_EQ(device.Commands(), std::vector<std::string>{"AT+CSQ"});
  }
}

TEST(QueryModem, GivesWhatStandsBehindThePrefix) {
  const QueryCase kCases[] = {
      {"first\n+CSQ: a\t1 +CSQ: 2", "+CSQ:", true, "a 1 +CSQ: 2"},
      {"+csq: 15\n99", "+CSQ:", true, "+csq: 15  99"},
      {"one\ntwo \xE9", nullptr, true, "one\r\ntwo \xE9"},
      {"+CSQ:", "+CSQ:", true, ""},
      {"", "+CSQ:", false, "Unknown"},
      {"+CME ERROR: 10", nullptr, false, "Error"},
  };
  CheckQuery(kCases, QueryModem);
}

TEST(QueryValue, KeepsOutWhatNobodyAskedFor) {
  const QueryCase kCases[] = {
      {"RING\n+CSQ: 15,99\n+CREG: 1", "+CSQ:", true, "15,99"},
      {"+CREG: 1,\"00C3\"\nRING\n15,99", "+CSQ:", true, "15,99"},
      {"AT+CSQ\n\nMerlin U630\nmore", nullptr, true, "Merlin U630"},
      {"^RSSI: 7\nNO CARRIER here", "+CSQ:", true, "NO CARRIER here"},
      {"^RSSI: 7\nRING", "+CSQ:", false, "untouched"},
      {"ERROR", "+CSQ:", false, "untouched"},
  };
  CheckQuery(kCases, kxwan::QueryValue);
}

}  // namespace

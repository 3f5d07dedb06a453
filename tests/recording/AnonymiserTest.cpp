#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <recording/Anonymiser.h>

namespace kxsim {
namespace {

struct SecretCase {
  const char* command;
  const char* answer;
  const char* command2;  // after
  const char* answer2;
};

const SecretCase kSecrets[] = {
    {"AT+CPIN=\"4711\"", "OK", "AT+CPIN=\"0001\"", "OK"},
    {"AT+CPIN=\"11223344\",\"4711\"", "OK", "AT+CPIN=\"00000001\",\"0002\"", "OK"},
    {"at+cpin=4711;+CLCK=\"SC\",0,\"4711\"", "OK", "at+cpin=0001;+CLCK=\"SC\",0,\"0001\"", "OK"},
    {"AT+CPWD=\"SC\",\"4711\",\"4712\"", "4711", "AT+CPWD=\"SC\",\"0001\",\"0002\"", "4711"},
    {"AT+CPIN?", "+CPIN: SIM PIN", "AT+CPIN?", "+CPIN: SIM PIN"},
    {"AT+CLCK=\"SC\",2", "+CLCK: 0", "AT+CLCK=\"SC\",2", "+CLCK: 0"},
    {"AT+CGSN", "352099001761481", "AT+CGSN", "000000000000001"},
    {"AT+GSN", "+GSN: 35-209900-176148-1", "AT+GSN", "+GSN: 00-000000-000000-1"},
    {"AT+GSN", "ESN: 0x80aBCd12", "AT+GSN", "ESN: 0x00aAAa01"},
    {"ATI", "X100\nIMEI352099001761481\nS/N 80ABCD12\n1.02.33", "ATI",
     "X100\nIMEI000000000000001\nS/N 00AAAA02\n1.02.33"},
    {"AT+GMI;+CIMI", "Maker\n\n262011234567890", "AT+GMI;+CIMI", "Maker\n\n000000000000001"},
    {"AT+CNUM", "+CNUM: \"Own\",\"+15551234567\",145", "AT+CNUM",
     "+CNUM: \"Own\",\"+00000000001\",145"},
    {"AT+CCID", "+CCID: 8944123456789012345", "AT+CCID", "+CCID: 0000000000000000001"},
    {"ATDT+15551234567", "NO CARRIER", "ATDT+00000000001", "NO CARRIER"},
    {"ATD*99***1#", "CONNECT 115200", "ATD*99***1#", "CONNECT 115200"},
    {"AT+GMR", "R2004-11-16 1190601-BVT60d 20041116", "AT+GMR",
     "R2004-11-16 1190601-BVT60d 20041116"},
};

TEST(Anonymiser, ReplacesSecretsInTheirForm) {
  for (const SecretCase& row : kSecrets) {
    SCOPED_TRACE(row.command);
    Profile profile;
    AddReply(profile, row.command, {.text = row.answer});
    Anonymise(profile);
    EXPECT_EQ(profile.replies[0].command, row.command2);
    EXPECT_EQ(profile.replies[0].answers[0].text, row.answer2);
  }
}

TEST(Anonymiser, ReplacesASecretAlikeEverywhereAndSaysSo) {
  Profile profile = ScriptedProfile({{"AT+GSN", "8081abcd"},
                                     {"ATI1", "(raw)\r\n(8081ABCD)\r\nOK\r\n"},
                                     {"AT+CPIN=\"1234\"", "+CME ERROR: 16"},
                                     {"AT+CPIN=\"9999\"", "OK"}});
  profile.identity.imsi = "262011234567890";
  std::vector<std::string> replaced;
  for (const Replacement& each : Anonymise(profile)) {
    replaced.push_back(each.what + " " + each.by + " " + std::to_string(each.places));
  }
  EXPECT_THAT(replaced,
              testing::UnorderedElementsAre("PIN or PUK 0001 1", "PIN or PUK 0002 1",
                                            "IMEI or ESN 0001AAAA 2", "IMSI 000000000000002 1"));
  EXPECT_EQ(profile.replies[0].answers[0].text, "0001aaaa");
  EXPECT_EQ(profile.replies[1].answers[0].raw[0], "\r\n(0001AAAA)\r\nOK\r\n");
  EXPECT_EQ(profile.identity.imsi, "000000000000002");
  EXPECT_NE(profile.replies[2].command, profile.replies[3].command);
}

}  // namespace
}  // namespace kxsim

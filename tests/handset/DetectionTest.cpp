#include <KXWAN/handset/Detection.h>
#include <gtest/gtest.h>
#include <tests/support/ScriptedDevice.h>

namespace {

using Lines = std::vector<std::string>;

constexpr KXModemDetectOptions kAll = {true, false, true, true, true, true};
constexpr KXModemDetectOptions kNoTdma = {true, false, true, true, false, true};
constexpr KXModemDetectOptions kNoGsm = {true, false, true, true, true, false};

struct Case {
  const char* device;
  Answers answers;  // a command that is not listed is answered with ERROR
  CHandsetPlatform platform;
  KXModemDetectOptions options = kAll;
  const char* model = "";
};

Case Of(const char* device, Answers answers, CHandsetPlatform platform,
        KXModemDetectOptions options = kAll, const char* model = "") {
  return {device, std::move(answers), platform, options, model};
}

const Case kCases[] = {
    Of("GSM phone with GPRS and 3G quality of service",
       {{"AT+GCAP", "+GCAP: +CGSM"}, {"AT+CGATT=?", "+CGATT: (0,1)"}, {"AT+CGEQMIN=?", "OK"}},
       PLATFORM_GSM | PLATFORM_GPRS | PLATFORM_EDGE),
    Of("GSM phone with GPRS", {{"AT+GCAP", "+GCAP: +CGSM"}, {"AT+CGATT=?", "+CGATT: (0,1)"}},
       PLATFORM_GSM | PLATFORM_GPRS),
    Of("attach test without its name", {{"AT+GCAP", "+GCAP: +CGSM"}, {"AT+CGATT=?", "(0,1)"}},
       PLATFORM_GSM),
    Of("lists its capabilities only when read", {{"AT+GCAP?", "+GCAP: +CGSM"}}, PLATFORM_GSM),
    Of("an equipment error is not asked again",
       {{"AT+GCAP", "+CME ERROR: 10"}, {"AT+GCAP?", "+GCAP: +CGSM"}}, PLATFORM_UNKNOWN),
    Of("CDMA counts before GSM", {{"AT+GCAP", "+GCAP: +CIS707-A, +CGSM"}}, PLATFORM_1XRTT),
    Of("CIS707A without a hyphen", {{"AT+GCAP", "+CIS707A, +CIS707-A"}}, PLATFORM_1XEVDO),
    Of("EV-DO", {{"AT+GCAP", "+CIS707-A, CIS-856"}}, PLATFORM_1XEVDO),
    Of("EV-DO by +CEVDO", {{"AT+GCAP", "+CEVDO"}}, PLATFORM_1XEVDO),
    Of("EV-DO Rev-A", {{"AT+GCAP", "+CEVDO, CIS-856-A"}}, PLATFORM_1XEVDO | PLATFORM_1XEVDO_REVA),
    Of("EV-DO card that lists 1xRTT", {{"AT+GCAP", "+CIS707-A"}, {"AT+GMM", "AC580"}},
       PLATFORM_1XRTT | PLATFORM_1XEVDO),
    Of("its model in an equipment error counts",
       {{"AT+GCAP", "+CIS707-A"}, {"AT+GMM", "+CME ERROR: 5220"}},
       PLATFORM_1XRTT | PLATFORM_1XEVDO),
    Of("IS-95", {{"AT+GCAP", "+CIS707"}, {"AT+GMM", "Model 70"}}, PLATFORM_CDMA),
    Of("1xRTT that lists IS-95", {{"AT+GCAP", "+CIS707"}, {"AT+GMM", "Model 69x"}}, PLATFORM_1XRTT),
    Of("iDEN behind +CGSM",
       {{"AT+GCAP", "+GCAP: +CGSM"}, {"AT+FMFR?", "iDEN"}, {"AT+CGATT=?", "+CGATT: (0,1)"}},
       PLATFORM_IDEN),
    Of("TDMA", {{"AT+GCAP", "TIA-136"}}, PLATFORM_TDMA),
    Of("TDMA handset with a name", {{"AT+GCAP", "IS-135"}, {"AT+CGMM", "1190501"}}, PLATFORM_TDMA,
       kAll, "Ericsson R278d"),
    Of("another one", {{"AT+GCAP", "IS-135"}, {"AT+CGMM", "1190601-BVT60d"}}, PLATFORM_TDMA, kAll,
       "Ericsson T60d"),
    Of("the name must be the whole reply", {{"AT+GCAP", "IS-135"}, {"AT+CGMM", "1190501 x"}},
       PLATFORM_TDMA),
    Of("named only by its page", {{"ATI3", "Merlin U630"}}, PLATFORM_UMTS | PLATFORM_GPRS),
    Of("TDMA by its page", {{"ATI3", "a TDMA NSW-5"}}, PLATFORM_TDMA),
    Of("a Nokia by two pages", {{"ATI3", "NSW-5 Merlin U630"}, {"ATI0", "Nokia Mobile"}},
       PLATFORM_TDMA, kAll, "Nokia 7160"),
    Of("the second page does not confirm",
       {{"ATI3", "NSW-5 Merlin U630"}, {"ATI0", "other"}, {"AT+CGATT=?", "+CGATT: (0,1)"}},
       PLATFORM_GPRS),
    Of("UMTS card by name, capabilities refused",
       {{"AT+GMI", "Novatel Wireless"}, {"AT+GMM", "Merlin TU"}, {"AT+CGATT=?", "+CGATT: (0,1)"}},
       PLATFORM_UMTS),
    Of("UMTS card by name that lists +CGSM",
       {{"AT+GCAP", "+CGSM"},
        {"AT+GMI", "Novatel"},
        {"AT+GMM", "Merlin U530"},
        {"AT+CGATT=?", "+CGATT: (0,1)"},
        {"AT+CGEQMIN=?", "OK"}},
       PLATFORM_UMTS | PLATFORM_GSM | PLATFORM_GPRS | PLATFORM_EDGE),
    Of("unknown, but attaches", {{"AT+GCAP", "+FCLASS"}, {"AT+CGATT=?", "+CGATT: (0,1)"}},
       PLATFORM_GPRS),
    Of("TDMA not wanted: no token, no page, still the attach test",
       {{"AT+GCAP", "IS-135"}, {"ATI3", "TDMA"}, {"AT+CGATT=?", "+CGATT: (0,1)"}}, PLATFORM_GPRS,
       kNoTdma),
    Of("GSM not wanted", {{"AT+GCAP", "+CGSM"}, {"AT+CGATT=?", "+CGATT: (0,1)"}}, PLATFORM_UNKNOWN,
       kNoGsm),
    Of("refuses everything", {}, PLATFORM_UNKNOWN),
};

TEST(DetectHandsetPlatform, NamesTheRadioBehindTheAnswers) {
  for (const Case& row : kCases) {
    SCOPED_TRACE(row.device);
    ScriptedDevice device(row.answers);
    KXModemDetectOptions options = row.options;
    CString model("old");
    EXPECT_EQ(DetectHandsetPlatform(device.Modem(), &options, model), row.platform);
    EXPECT_STREQ(model.String(), row.model);
  }
}

struct DialogueCase {
  const char* device;
  Answers answers;
  Lines commands;
};

const DialogueCase kDialogues[] = {
    {"GSM",
     {{"AT+GCAP", "+CGSM"}, {"AT+CGATT=?", "+CGATT: (0,1)"}},
     {"ATE0V1", "AT+GCAP", "AT+FMFR?", "AT+GMM", "AT+GMI", "AT+CGATT=?", "AT+CGEQMIN=?"}},
    {"1xRTT", {{"AT+GCAP", "+CIS707-A"}}, {"ATE0V1", "AT+GCAP", "AT+GMM", "AT+GMM", "AT+GMI"}},
    {"radio off, then unknown",
     {{"ATE0V1", "ERROR"}},
     {"ATE0V1", "AT+CFUN=1", "AT+GCAP", "AT+GCAP?", "AT+GMM", "AT+GMI", "ATI3", "AT+CGATT=?"}},
};

TEST(DetectWirelessPhone, AsksInOrder) {
  for (const DialogueCase& row : kDialogues) {
    SCOPED_TRACE(row.device);
    ScriptedDevice device(row.answers);
    CHandsetPlatform platform = 0xFFFF;
    EXPECT_TRUE(DetectWirelessPhone(device.Modem(), 57600, platform));
    EXPECT_EQ(device.Commands(), row.commands);
    unsigned long speed = 0;
    device.Modem()->m_pSerial->GetDataFormat(&speed);
    EXPECT_EQ(speed, 57600u);
  }
}

TEST(DetectWirelessPhone, FailsOnSilence) {
  ScriptedDevice device(Answers{{"ATE0V1", "(silence)"}});
  CHandsetPlatform platform = 0xFFFF;
  EXPECT_FALSE(DetectWirelessPhone(device.Modem(), 19200, platform));
  EXPECT_EQ(platform, PLATFORM_UNKNOWN);
}

TEST(GetModelAndManufacturer, TakesWhateverEachExchangeGave) {
  ScriptedDevice device(Answers{{"AT+GMM", "+CME ERROR: 4"}, {"AT+GMI", "ACME\nof Somewhere"}});
  CString model("old");
  CString manufacturer("old");
  EXPECT_TRUE(GetModelAndManufacturer(device.Modem(), model, manufacturer));
  EXPECT_STREQ(model.String(), "4");
  EXPECT_STREQ(manufacturer.String(), "ACME\r\nof Somewhere");
  CString reply("old");
  EXPECT_TRUE(SendATCommandAndGetReply(device.Modem(), "AT+X\r", reply));
  EXPECT_STREQ(reply.String(), "");
}

}  // namespace

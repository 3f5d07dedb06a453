#include <KXWAN/handset/CHandsetPlatform.h>
#include <KXWAN/info/Capabilities.h>
#include <KXWAN/info/Identity.h>
#include <KXWAN/info/Registration.h>
#include <KXWAN/info/Signal.h>
#include <gtest/gtest.h>
#include <tests/support/Dialogue.h>

namespace {

struct Case {
  Answers answers;
  std::string read;
  uint32_t flags = 0;  // these three: in the record before
  int32_t signal = 0;
  bool nonCdma = false;
};

// The answers are asked for once each, in their order, and nothing else is.
template <size_t count, class Read>
void Check(const Case (&cases)[count], Read read) {
  for (const Case& row : cases) {
    SCOPED_TRACE(row.read);
    ScriptedDevice device(row.answers);
    ModemInfo info = {};
    info.dwDeviceFlags = row.flags;
    info.nSignalLevel = row.signal;
    info.bNonCDMA = row.nonCdma;
    EXPECT_EQ(read(device.Modem(), &info), row.read);
    EXPECT_EQ(device.Commands(), CommandsOf(row.answers));
  }
}

TEST(Identity, FindsTheManufacturer) {
  const std::string kLong(70, 'm');
  const Case kCases[] = {
      {{{"ATE0V1", "ERROR"}, {"AT+GMI", "+GMI: \"A \"B\" C\""}}, "A \"B\" C"},
      {{{"ATE0V1", "OK"}, {"AT+GMI", ""}, {"AT+CGMI", "+CGMI: a GTRAN"}}, "a GTRAN!"},
      {{{"ATE0V1", "OK"}, {"AT+GMI", ""}, {"AT+CGMI", ""}, {"AT+FMFR?", "a\nb"}}, "a\r\nb"},
      {{{"ATE0V1", "OK"}, {"AT+GMI", "ERROR"}, {"AT+CGMI", ""}, {"AT+FMFR?", ""}}, "Unknown", 7},
      {{{"ATE0V1", "OK"}, {"AT+GMI", '"' + kLong + '"'}}, kLong.substr(0, 62)}};
  Check(kCases, [](CSModem* modem, ModemInfo* info) {
    EXPECT_TRUE(GetManufacturerString(modem, info));
    EXPECT_EQ(info->dwDeviceFlags, 0U);
    return info->szManufacturer + std::string(info->bIsGTRAN, '!');
  });
}

TEST(Identity, FindsTheModel) {
  const Case kCases[] = {
      {{{"AT+GMM", "+GMM: \"V\"3\" x"}}, "V3 x"},
      {{{"AT+GMM", "00"}}, "00"},
      {{{"AT+GMM", "+GMM: 0"}, {"AT+CGMM", "+CGMM: 6310i"}}, "6310i"},
      {{{"AT+GMM", "a Gipsy"}, {"AT+CGMM", ""}, {"AT+FMDL?", "i58"}}, "i58"},
      {{{"AT+GMM", "0"}, {"AT+CGMM", ""}, {"AT+FMDL?", ""}, {"ATI3", "NPV-1"}}, "NPV-1"},
      {{{"AT+GMM", "0"}, {"AT+CGMM", ""}, {"AT+FMDL?", ""}, {"ATI3", "NPW-1"}, {"ATI0", "x"}}, "x"},
      {{{"AT+GMM", ""},
        {"AT+CGMM", ""},
        {"AT+FMDL?", ""},
        {"ATI3", "NPW-1"},
        {"ATI0", "Nokia Mobile"}},
       "3360"}};
  Check(kCases, [](CSModem* modem, ModemInfo* info) {
    GetModelString(modem, info);
    return info->szModel;
  });
}

TEST(Version, FindsTheFirmware) {
  const Case kCases[] = {{{{"AT+GMR", "+GMR: \"R1\"A\""}}, "R1A"},
                         {{{"AT+GMR", "0,0"}, {"AT+CGMR", "+CGMR: 4.20"}}, "4.20"},
                         {{{"AT+GMR", "0,0"}, {"AT+CGMR", ""}, {"ATI3", "ERROR"}}, "Error"}};
  Check(kCases, [](CSModem* modem, ModemInfo* info) {
    GetModemVersion(modem, info);
    return info->szVersion;
  });
}

TEST(Signal, ScalesTheReportedStrength) {
  const Case kCases[] = {{{{"AT+CSQ?", "+CSQ: 31,99"}}, "99"},
                         {{{"AT+CSQ?", "15"}}, "48", PLATFORM_TDMA},
                         {{{"AT+CSQ", "+CSQ: 99,99"}}, "0", PLATFORM_EDGE, 77},
                         {{{"AT+CSQ", "+CSQ:\n10"}}, "0", PLATFORM_UMTS},
                         {{{"AT+CSQ", "+CSQ: ,15"}}, "0", PLATFORM_GSM},
                         {{{"AT+CSQ?", "+CSQ: 2147483647,99"}}, "2147483647"},
                         {{{"AT+CSQ?", "+CSQ: -99999999999,99"}}, "-2147483648"},
                         {{{"AT+CSQ?", "ERROR"}}, "failed 0", 0, 77}};
  Check(kCases, [](CSModem* modem, ModemInfo* info) {
    const std::string outcome = GetSignalLevelFromDevice(modem, info) ? "" : "failed ";
    return outcome + std::to_string(info->nSignalLevel);
  });
}

TEST(Coverage, FollowsTheDeviceOrTheSignal) {
  const Case kCases[] = {{{}, "Unknown", 0, 0, true},
                         {{}, "Digital", 0, 1, true},
                         {{{"AT+CAD?", "+CAD: 0"}}, "No Service"},
                         {{{"AT+CAD?", "+CAD:3,x"}}, "Analog Service"},
                         {{{"AT+CAD?", "4"}}, "Unknown Service"},
                         {{{"AT+CAD?", "-99999999999"}}, "Unknown Service"},
                         {{{"AT+CAD?", "ERROR"}}, "Unknown", 0, -3},
                         {{{"AT+CAD?", ""}}, "Digital", 0, 9}};
  Check(kCases, [](CSModem* modem, ModemInfo* info) {
    GetModemCoverage(modem, info);
    return info->szCoverage;
  });
}

TEST(Capabilities, FollowFromWhatTheDeviceLists) {
  const std::string kGprs = "2 GPRS Data";
  const Case kCases[] = {
      {{{"AT+GCAP", "+CIS707A, CIS-856-A"}}, "0 1xEVDO Digital Data"},
      {{{"AT+GCAP", "+CIS707-A, CIS-856"}}, "0 1xEVDO Digital Data"},
      {{{"AT+GCAP", "+CEVDO, CIS-856-A"}}, "0 1xEVDO (Rev-A) Digital Data"},
      {{{"AT+GCAP", "+CEVDO"}}, "0 1xEVDO Digital Data"},
      {{{"AT+GCAP", "+CGSM, +CIS707-A"}}, "0 1xRTT Digital Data"},
      {{{"AT+GCAP", "+CIS707, +MS"}}, "0 Digital Data"},
      {{{"AT+GCAP", "IS-135"}}, "256 TDMA Data"},
      {{{"AT+GCAP", "+CGSM"}, {"AT+CGATT=?", "(0)"}, {"AT+CMEE=1", "ERROR"}}, "1 GSM Data"},
      {{{"AT+GCAP", "+CGSM"},
        {"AT+CGATT=?", "1"},
        {"AT+CGQMIN=?", "+CME ERROR: 4"},
        {"AT+CMEE=1", "ERROR"}},
       kGprs},
      {{{"AT+GCAP", "+CGSM"},
        {"AT+CGATT=?", "1"},
        {"AT+CGQMIN=?", "ERROR"},
        {"AT+CGEQMIN=?", ""},
        {"AT+CMEE=1", "ERROR"}},
       "2 EDGE/GPRS/GSM Data"},
      {{{"AT+GCAP", ""}, {"AT+CGATT=?", "ERROR"}, {"AT+CMEE=1", "ERROR"}}, "1 Data"},
      {{{"AT+GCAP", "+MS"}, {"ATI3", "TDMA NSW-5"}}, "256 TDMA Data"},
      {{{"AT+GCAP", "+MS"}, {"ATI3", "NSW-5"}, {"ATI0", "Nokia Mobile"}}, "256 TDMA Data7160"},
      {{{"AT+GCAP", "+MS"},
        {"ATI3", "NSW-5"},
        {"ATI0", "x"},
        {"AT+CGATT=?", "(0,1)"},
        {"AT+CMEE=1", "ERROR"}},
       kGprs},
      {{{"AT+GCAP", "+MS"}, {"ATI3", "x"}, {"AT+CGATT=?", "(0)"}}, "0 Data"}};
  Check(kCases, [](CSModem* modem, ModemInfo* info) {
    const bool flagged = GetCapabilitiesKey(modem, info);
    EXPECT_EQ(flagged, info->dwDeviceFlags != 0);
    EXPECT_EQ(info->bNonCDMA, info->dwDeviceFlags != 0);
    return std::to_string(info->dwDeviceFlags) + " " + info->szCapabilities + info->szModel;
  });
}

TEST(Registration, AnswerCountsBeforeWhatCameUnasked) {
  const Case kCases[] = {
      {{{"AT+CGREG?", "+CGREG: 0,1"}}, "registered, home network"},
      {{{"AT+CGREG?", "+CGREG: 2,5,\"00C3\",\"A1B2\""}}, "registered, roaming"},
      {{{"AT+CGREG?", "+CGREG: 2\n+CGREG: 0,3\n+CGREG: 1"}}, "registration denied"},
      {{{"AT+CGREG?", "+CGREG: 2\nRING\n+CGREG: 1,\"00C3\""}}, "registered, home network"},
      {{{"AT+CGREG?", "+CGREG: 5,00C3,A1B2"}}, "registered, roaming"},
      {{{"AT+CGREG?", "+CGREG: 0,42"}}, "unknown"},
      {{{"AT+CGREG?", "+CREG: 0,1\n+CGREG: \"x\",-1"}}, "none"},
      {{{"AT+CGREG?", "ERROR"}}, "none"}};
  Check(kCases, [](CSModem* modem, ModemInfo*) {
    auto state = kxwan::RegistrationState::kSearching;
    const bool told = ReadRegistration(modem, kxwan::RegistrationDomain::kPacket, state);
    EXPECT_TRUE(told || state == kxwan::RegistrationState::kSearching);
    return told ? RegistrationText(state) : "none";
  });
}

}  // namespace

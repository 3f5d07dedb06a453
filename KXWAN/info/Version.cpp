#include <KXWAN/info/Version.h>

#include <KXWAN/info/QueryPrivate.h>

#include <string>

// Some devices answer AT+GMR with "0,0", which says nothing. The last text obtained is kept
// whatever it holds: an application that reads "Error" knows that all three ways failed.
void GetModemVersion(CSModem* modem, ModemInfo* info) {
  std::string version;
  if (!kxwan::Query(modem, "AT+GMR\r", "+GMR:", version) || version == "0,0") {
    if (!kxwan::Query(modem, "AT+CGMR\r", "+CGMR:", version)) {
      kxwan::Query(modem, "ATI3\r", nullptr, version);
    }
  }
  kxwan::SetField(info->szVersion, kxwan::WithoutQuotes(version, /*removeAll=*/true));
}

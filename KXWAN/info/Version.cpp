#include <KXWAN/info/Version.h>

#include <KXWAN/foundation/TextPrivate.h>
#include <KXWAN/info/Query.h>
#include <KXWAN/info/QueryPrivate.h>

// Some devices answer AT+GMR with "0,0", which says nothing. The last text obtained is kept
// whatever it holds: an application that reads "Error" knows that all three ways failed.
void GetModemVersion(CSModem* modem, ModemInfo* info) {
  kxwan::ScopedText version;
  if (!kxwan::Ask(modem, "AT+GMR\r", "+GMR:", version) || kxwan::Equals(version, "0,0")) {
    if (!kxwan::Ask(modem, "AT+CGMR\r", "+CGMR:", version)) {
      kxwan::Ask(modem, "ATI3\r", nullptr, version);
    }
  }
  StripQuotesfromResponse(version, /*removeAll=*/1);
  kxwan::SetField(info->szVersion, kxwan::View(version));
}

#include <KXWAN/info/Identity.h>

#include <KXWAN/foundation/TextPrivate.h>
#include <KXWAN/info/Query.h>
#include <KXWAN/info/QueryPrivate.h>
#include <KXWAN/modem/ExchangePrivate.h>

#include <string>

using kxwan::Contains;
using kxwan::Query;
using kxwan::SetField;
using kxwan::WithoutQuotes;

namespace {

// "0" and the name of the module inside say nothing about the model.
bool AnswersWithModel(CSModem* modem, std::string& model) {
  return Query(modem, "AT+GMM\r", "+GMM:", model) && model != "0" && !Contains(model, "Gipsy");
}

// The other ways to the model's name. The text of the last query stays, whatever it holds.
void AskFurtherForModel(CSModem* modem, std::string& model) {
  if (Query(modem, "AT+CGMM\r", "+CGMM:", model) || Query(modem, "AT+FMDL?\r", nullptr, model)) {
    return;
  }
  Query(modem, "ATI3\r", nullptr, model);
  if (!Contains(model, "NPW-1")) return;
  Query(modem, "ATI0\r", nullptr, model);
  if (Contains(model, "Nokia Mobile")) {
    model = "3360";
  }
}

}  // namespace

bool GetManufacturerString(CSModem* modem, ModemInfo* info) {
  info->dwDeviceFlags = 0;
  if (!kxwan::Exchange(modem, "ATE0V1\r").Came()) {
    info->szManufacturer[0] = '\0';
    return false;
  }
  std::string manufacturer;
  if (!Query(modem, "AT+GMI\r", "+GMI:", manufacturer) &&
      !Query(modem, "AT+CGMI\r", "+CGMI:", manufacturer)) {
    Query(modem, "AT+FMFR?\r", nullptr, manufacturer);
  }
  if (Contains(manufacturer, "GTRAN")) info->bIsGTRAN = 1;
  SetField(info->szManufacturer, WithoutQuotes(manufacturer, /*removeAll=*/false));
  return true;
}

bool GetModelString(CSModem* modem, ModemInfo* info) {
  std::string model;
  if (!AnswersWithModel(modem, model)) AskFurtherForModel(modem, model);
  SetField(info->szModel, WithoutQuotes(model, /*removeAll=*/true));
  formatModelKey(info->szModel);
  return true;
}

// Some devices answer AT+GMR with "0,0", which says nothing. The last text obtained is kept
// whatever it holds: an application that reads "Error" knows that all three ways failed.
void GetModemVersion(CSModem* modem, ModemInfo* info) {
  std::string version;
  if (!Query(modem, "AT+GMR\r", "+GMR:", version) || version == "0,0") {
    if (!Query(modem, "AT+CGMR\r", "+CGMR:", version)) {
      Query(modem, "ATI3\r", nullptr, version);
    }
  }
  SetField(info->szVersion, WithoutQuotes(version, /*removeAll=*/true));
}

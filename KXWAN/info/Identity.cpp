#include <KXWAN/info/Identity.h>

#include <KXWAN/foundation/TextPrivate.h>
#include <KXWAN/info/Query.h>
#include <KXWAN/info/QueryPrivate.h>
#include <KXWAN/modem/ResultCode.h>

using kxwan::Ask;
using kxwan::Contains;
using kxwan::Equals;
using kxwan::ScopedText;
using kxwan::SetField;

namespace {

// "0" and the name of the module inside say nothing about the model.
bool AnswersWithModel(CSModem* modem, ScopedText& model) {
  return Ask(modem, "AT+GMM\r", "+GMM:", model) && !Equals(model, "0") && !Contains(model, "Gipsy");
}

// The other ways to the model's name. The text of the last query stays, whatever it holds.
void AskFurtherForModel(CSModem* modem, ScopedText& model) {
  if (Ask(modem, "AT+CGMM\r", "+CGMM:", model) || Ask(modem, "AT+FMDL?\r", nullptr, model)) {
    return;
  }
  Ask(modem, "ATI3\r", nullptr, model);
  if (!Contains(model, "NPW-1")) {
    return;
  }
  Ask(modem, "ATI0\r", nullptr, model);
  if (Contains(model, "Nokia Mobile")) {
    kxwan::DiscardText(model);
    model = "3360";
  }
}

}  // namespace

bool GetManufacturerString(CSModem* modem, ModemInfo* info) {
  info->dwDeviceFlags = 0;
  ScopedText manufacturer;
  if (kxwan::Exchange(modem, "ATE0V1\r", manufacturer) == kxwan::kResultTimeout) {
    info->szManufacturer[0] = '\0';
    return false;
  }
  if (!Ask(modem, "AT+GMI\r", "+GMI:", manufacturer) &&
      !Ask(modem, "AT+CGMI\r", "+CGMI:", manufacturer)) {
    Ask(modem, "AT+FMFR?\r", nullptr, manufacturer);
  }
  if (Contains(manufacturer, "GTRAN")) {
    info->bIsGTRAN = 1;
  }
  StripQuotesfromResponse(manufacturer, /*removeAll=*/0);
  SetField(info->szManufacturer, kxwan::View(manufacturer));
  return true;
}

bool GetModelString(CSModem* modem, ModemInfo* info) {
  ScopedText model;
  if (!AnswersWithModel(modem, model)) {
    AskFurtherForModel(modem, model);
  }
  StripQuotesfromResponse(model, /*removeAll=*/1);
  SetField(info->szModel, kxwan::View(model));
  formatModelKey(info->szModel);
  return true;
}

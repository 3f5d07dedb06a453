#include <KXWAN/connect/OneXSetup.h>

#include <KXWAN/connect/ConnectError.h>
#include <KXWAN/foundation/LastErrorPrivate.h>
#include <KXWAN/foundation/TablePrivate.h>
#include <KXWAN/modem/ExchangePrivate.h>

#include <iterator>
#include <span>

using kxwan::Accepts;
using kxwan::Exchange;
using kxwan::Fail;

namespace {

// What a model wants to be told before its mode.
struct ModelCommand {
  const char* model;    // occurs in the model text; "" fits any
  const char* command;  // null: none
};

// The first row that fits wins.
constexpr ModelCommand kPacketDataPreparations[] = {
    {"9150", "AT$QCSCRM=1\r"},
    {"9155", "AT$QCSCRM=1\r"},
    {"TX-25B", "AT+CRM=1\r"},
    {"", nullptr},
};
constexpr ModelCommand kQuickNetConnectPreparations[] = {
    {"TX-25B", "AT+CRM=0\r"},
    {"", nullptr},
};
static_assert(*std::rbegin(kPacketDataPreparations)->model == '\0', "the last row must fit any");
static_assert(*std::rbegin(kQuickNetConnectPreparations)->model == '\0',
              "the last row must fit any");

struct Mode {
  std::span<const ModelCommand> preparations;
  const char* command;   // the chip maker's
  const char* standard;  // IS-707
  const char* mobileIp;
};

constexpr Mode kPacketData = {kPacketDataPreparations, "AT$QCMDR=3\r", "AT+CRM=1;+CSO=33\r",
                              "AT$QCMIP=2\r"};
constexpr Mode kQuickNetConnect = {kQuickNetConnectPreparations, "AT$QCMDR=2;$QCQNC=1\r",
                                   "AT+CRM=0;+CSO=12\r", "AT$QCMIP=1\r"};

void PrepareModel(CSModem* modem, const Mode& mode, const char* model) {
  const ModelCommand& row = kxwan::FirstRow(mode.preparations, [model](const ModelCommand& each) {
    return kxwan::Contains(model, each.model);
  });
  if (row.command != nullptr) Exchange(modem, row.command);
}

}  // namespace

bool SetPhoneIn1XMode(CSModem* modem, const char* model, bool oneXMode) {
  const Mode& mode = oneXMode ? kPacketData : kQuickNetConnect;
  PrepareModel(modem, mode, model);
  const kxwan::Answer answer = Exchange(modem, mode.command);
  if (answer.IsOk()) return true;
  if (answer.result != kxwan::kResultError) return Fail(kxwan::kNotAnswered);
  return Accepts(modem, mode.standard) || Accepts(modem, mode.mobileIp) ||
         Fail(kxwan::kModeRefused);
}

// Deliberate: no error code here. A refusal of Mobile IP is told by the result alone.
bool SetPhoneIn1XModeForSprint(CSModem* modem, const char*, bool oneXMode) {
  return !oneXMode || Accepts(modem, "AT$QCMIP=2\r");
}

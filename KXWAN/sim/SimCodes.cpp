#include <KXWAN/sim/SimCodes.h>

#include <KXWAN/foundation/TablePrivate.h>

namespace kxwan {
namespace {

constexpr CodeText<long> kCodeTexts[] = {
    {kSimReady, "The SIM needs no password."},
    {kSimNotExchanged, "The device did not answer, or gave an unexpected answer."},
    {kSimPukRequired, "The SIM is blocked: it needs the PUK and a new PIN."},
    {kSimWrongPassword, "The password was wrong; another try counts."},
    {kSimPukRejected, "The PUK was rejected; another try counts."},
    {kSimPinNotSaved, "The PIN was accepted, but the SIM will go on asking for it."},
    {kSimOtherError, "The device reported an error."},
    {kSimMissing, "The SIM is not inserted, or it failed."},
    {kSimPinRequired, "The SIM needs its PIN."},
    {kSimNoAnswer, "The device did not answer when it was asked for the state of its SIM."},
};

}  // namespace

const char* DescribeSimCode(long code) {
  return TextOf(kCodeTexts, code, "This code is not one of the SIM operations'.");
}

}  // namespace kxwan

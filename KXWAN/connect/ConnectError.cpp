#include <KXWAN/connect/ConnectError.h>

#include <KXWAN/foundation/TablePrivate.h>

namespace kxwan {
namespace {

constexpr CodeText<unsigned long> kErrorTexts[] = {
    {kNoConnectError,
     "No error was recorded. If the preparation failed all the same, the device refused Mobile IP: "
     "prepare it for plain 1xRTT instead."},
    {kNotAnswered,
     "The device gave no usable answer when it was asked for its packet service or told its data "
     "mode. Check that it is switched on, that its SIM is unlocked and that the platform fits it."},
    {kModeRefused,
     "The device refused every form of the CDMA data mode. Check that the platform fits the device "
     "and that its subscription allows packet data."},
    {kAttachFailed,
     "The device could not attach to the packet service. Check the coverage, the subscription and "
     "that the SIM is unlocked, then try again."},
    {kContextRefused,
     "The device refused the packet-data context or its quality of service. Check the access point "
     "name and that the manufacturer given is the device's own."},
};

}  // namespace

const char* DescribeConnectError(unsigned long code) {
  return TextOf(kErrorTexts, code, "This code is not one of the preparation's.");
}

}  // namespace kxwan

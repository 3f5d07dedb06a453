#include <simulator/modem/EquipmentError.h>

#include <algorithm>
#include <iterator>

namespace kxsim {
namespace {

struct Row {
  EquipmentError error;
  const char* text;
};

constexpr Row kTexts[] = {
    {kNotAllowed, "operation not allowed"},         {kNotSupported, "operation not supported"},
    {kSimNotInserted, "SIM not inserted"},          {kSimPinRequired, "SIM PIN required"},
    {kSimPukRequired, "SIM PUK required"},          {kSimFailure, "SIM failure"},
    {kIncorrectPassword, "incorrect password"},     {kNoNetwork, "no network service"},
    {kIncorrectParameters, "incorrect parameters"}, {kAttachFailed, "unspecified GPRS error"},
};

}  // namespace

std::string ErrorResult(EquipmentError error, int reportMode) {
  const std::string start = "+CME ERROR: ";
  if (reportMode == 1) return start + std::to_string(static_cast<int>(error));
  const Row* row = std::find_if(std::begin(kTexts), std::end(kTexts),
                                [=](const Row& each) { return each.error == error; });
  return reportMode == 2 && row != std::end(kTexts) ? start + row->text : "ERROR";
}

}  // namespace kxsim

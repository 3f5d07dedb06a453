#include <KXWAN/connect/GprsProfilePrivate.h>

#include <KXWAN/foundation/TablePrivate.h>

#include <iterator>

namespace kxwan {
namespace {

// The first row that fits wins, so a model stands above its maker.
constexpr GprsProfile kProfiles[] = {
    {.manufacturer = "Motorola", .model = "L Series", .contextId = 1},
    {.manufacturer = "Motorola", .contextId = 3},
    {.manufacturer = "GTRAN", .contextId = 1},
    {.manufacturer = "Sierra Wireless", .contextId = 1, .skipQos = true},
    {.manufacturer = "Panasonic", .contextId = 1, .qosByEdge = true},
    {.manufacturer = "Novatel", .contextId = 3, .sendNwhfun = true},
    {.manufacturer = "Nokia", .contextId = 1, .qosByEdge = true},
    {.manufacturer = "SIEMENS", .contextId = 2},
    {.contextId = 3},
};
static_assert(*std::rbegin(kProfiles)->manufacturer == '\0', "the last row must fit any device");

}  // namespace

const GprsProfile& FindGprsProfile(const char* manufacturer, const char* model) {
  return FirstRow(kProfiles, FitsDevice(manufacturer, model));
}

}  // namespace kxwan

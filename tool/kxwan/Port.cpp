#include <tool/kxwan/Port.h>

#include <profile/BuiltInProfiles.h>
#include <profile/Profile.h>
#include <simulator/SimulatedDevice.h>
#include <tool/kxwan/PortCheck.h>
#include <tool/kxwan/Text.h>

#include <algorithm>
#include <string_view>

namespace kxtool {
namespace {

constexpr std::string_view kSimulated = "sim:";

}  // namespace

std::vector<std::string> SimulatedNames() {
  std::vector<std::string> names;
  for (const kxsim::BuiltInProfile* row = kxsim::kBuiltInProfiles; row->name != nullptr; ++row) {
    names.emplace_back(row->name);
  }
  return names;
}

Port::Port(std::string name) : name_(std::move(name)) {}

Port::~Port() { Close(); }

Result Port::Load(const std::string& profileName, kxsim::Profile& profile) const {
  const std::vector<std::string> names = SimulatedNames();
  const bool isFile = profileName.find_first_of("./") != profileName.npos;
  if (!isFile && std::find(names.begin(), names.end(), profileName) == names.end()) {
    return WrongCall("There is no simulated device \"" + Printable(profileName) +
                     "\". There are: " + Joined(names, ", ") + ".");
  }
  const kxsim::Result failure = kxsim::LoadProfile(profileName, profile);
  if (!failure) return {};
  return WrongCall("The simulated device cannot be read. " + Printable(failure->sentence));
}

Result Port::OpenPath() {
  if (device_.Open(path_.c_str())) return {};
  return DeviceFailed("The port " + Printable(name_) +
                      " could not be opened; the log /tmp/zrklog.txt has the reason.");
}

Result Port::Open(kxsim::Profile profile) {
  simulated_ = std::make_unique<kxsim::SimulatedDevice>(std::move(profile));
  path_ = simulated_->Path();
  if (path_.empty()) return DeviceFailed("The system gave no pseudo-terminal for " + name_ + ".");
  return OpenPath();
}

Result Port::Open() {
  if (name_.compare(0, kSimulated.size(), kSimulated) == 0) {
    kxsim::Profile profile;
    if (Result failure = Load(name_.substr(kSimulated.size()), profile)) return failure;
    return Open(std::move(profile));
  }
  const PortCheck check = CheckPort(name_);
  if (check.state != PortState::kFree) return PortFailure(name_, check);
  path_ = name_;
  return OpenPath();
}

}  // namespace kxtool

#include <tool/Port.h>

#include <simulator/BuiltInProfiles.h>

#include <algorithm>
#include <string_view>

#include <tool/PortCheck.h>
#include <tool/Text.h>

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

Result Port::Start(const std::string& profileName) {
  const std::vector<std::string> names = SimulatedNames();
  const bool isFile = profileName.find_first_of("./") != profileName.npos;
  if (!isFile && std::find(names.begin(), names.end(), profileName) == names.end()) {
    return WrongCall("There is no simulated device \"" + Printable(profileName) +
                     "\". There are: " + Joined(names, ", ") + ".");
  }
  kxsim::Profile profile;
  std::string error;
  if (!kxsim::LoadProfile(profileName, profile, error)) return WrongCall(Printable(error));
  simulated_ = std::make_unique<kxsim::SimulatedDevice>(std::move(profile));
  path_ = simulated_->Path();
  if (path_.empty()) return DeviceFailed("The system gave no pseudo-terminal for " + name_ + ".");
  return {};
}

Result Port::Open() {
  path_ = name_;
  if (name_.compare(0, kSimulated.size(), kSimulated) == 0) {
    if (Result failure = Start(name_.substr(kSimulated.size()))) return failure;
  } else if (const PortCheck check = CheckPort(name_); check.state != PortState::kFree) {
    return PortFailure(name_, check);
  }
  if (device_.Open(path_.c_str())) return {};
  return DeviceFailed("The port " + Printable(name_) +
                      " could not be opened; the log /tmp/zrklog.txt has the reason.");
}

}  // namespace kxtool

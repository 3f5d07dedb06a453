#include <simulator/line/Link.h>
#include <unistd.h>

#include <filesystem>
#include <system_error>

namespace kxsim {

namespace fs = std::filesystem;

namespace {

// A link beside the path, under a name that nobody has. Gives that name, or an empty one.
std::string MakeFreshLink(const std::string& target, const std::string& path,
                          std::error_code& failure) {
  constexpr int kMostNames = 1000;
  for (int number = 0; number < kMostNames; ++number) {
    std::string fresh =
        path + "." + std::to_string(getpid()) + "-" + std::to_string(number) + ".new";
    fs::create_symlink(target, fresh, failure);
    if (!failure) return fresh;
    if (failure != std::errc::file_exists) break;
  }
  return "";
}

}  // namespace

Link::~Link() {
  std::error_code ignored;
  // Somebody else may have taken the name since.
  if (!target_.empty() && fs::read_symlink(path_, ignored) == target_) fs::remove(path_, ignored);
}

bool Link::PointTo(const std::string& target, std::string& error) {
  if (path_.empty()) return true;
  std::error_code failure;
  const fs::file_type type = fs::symlink_status(path_, failure).type();
  if (type != fs::file_type::not_found && type != fs::file_type::symlink) {
    error = path_ + " exists and is no link";
    return false;
  }
  // Put in its place in one step, so that the name is never missing.
  const std::string fresh = MakeFreshLink(target, path_, failure);
  if (!failure) fs::rename(fresh, path_, failure);
  if (failure) {
    std::error_code ignored;
    if (!fresh.empty()) fs::remove(fresh, ignored);
    error = path_ + ": " + failure.message();
    return false;
  }
  target_ = target;
  return true;
}

}  // namespace kxsim

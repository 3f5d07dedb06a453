#include <tool/kxwan/Report.h>

#include <cstdio>

#include <tool/kxwan/Text.h>

namespace kxtool {
namespace {

std::string AsText(const Json& value) {
  if (value.is_string()) return Printable(value.get_ref<const std::string&>());
  if (value.is_boolean()) return value.get<bool>() ? "yes" : "no";
  if (value.is_null()) return "not told";
  return value.dump();
}

}  // namespace

void Report::Line(const std::string& line) {
  if (json_) return;
  std::printf("%s\n", line.c_str());
  std::fflush(stdout);  // a step is seen when it is done, also through a pipe
}

void Report::Fact(const char* key, std::string_view label, const Json& value,
                  std::string_view unit) {
  constexpr size_t kColumn = 16;
  object_[key] = value;
  std::string line(label);
  line.resize(std::max(kColumn, line.size() + 2), ' ');
  line += AsText(value);
  if (!unit.empty() && !value.is_null()) line.append(" ").append(unit);
  Line(line);
}

void Report::Item(const char* list, const Json& element, const std::string& line) {
  object_[list].push_back(element);
  Line(line);
}

int Report::Finish(Result result) {
  if (json_) {
    Json whole = {{"ok", !result.has_value()}};
    if (result) whole["error"] = result->sentence;
    whole.update(object_);
    // A device's bytes need not be UTF-8, and a terminal may be reading this.
    const std::string text = whole.dump(2, ' ', true, Json::error_handler_t::replace);
    std::printf("%s\n", text.c_str());
  }
  const bool written = std::fflush(stdout) == 0 && std::ferror(stdout) == 0;
  if (!written && !result) result = DeviceFailed("What was to be shown could not be written.");
  if (result) std::fprintf(stderr, "kxwan: %s\n", result->sentence.c_str());
  return result ? result->status : kDone;
}

}  // namespace kxtool

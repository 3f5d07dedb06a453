#include <tool/kxwan/Report.h>

#include <tool/kxwan/Text.h>

#include <algorithm>
#include <cstdio>
#include <nlohmann/json.hpp>

namespace kxtool {
namespace {

using Json = nlohmann::ordered_json;

Json AsJson(const Value& value) {
  return std::visit([](const auto& held) { return Json(held); }, value.held);
}

std::string AsText(const Json& value) {
  if (value.is_string()) return Printable(value.get_ref<const std::string&>());
  if (value.is_boolean()) return value.get<bool>() ? "yes" : "no";
  if (value.is_null()) return "not told";
  return value.dump();
}

}  // namespace

struct Report::Object {
  Json json = Json::object();
};

Report::Report(bool json) : json_(json), object_(std::make_unique<Object>()) {}

Report::~Report() = default;

void Report::Line(const std::string& line) {
  if (json_) return;
  std::printf("%s\n", line.c_str());
  std::fflush(stdout);  // a step is seen when it is done, also through a pipe
}

void Report::Fact(const char* key, std::string_view label, const Value& value,
                  std::string_view unit) {
  constexpr size_t kColumn = 16;
  const Json json = AsJson(value);
  object_->json[key] = json;
  std::string line(label);
  line.resize(std::max(kColumn, line.size() + 2), ' ');
  line += AsText(json);
  if (!unit.empty() && !json.is_null()) line.append(" ").append(unit);
  Line(line);
}

void Report::Item(const char* list, const Element& element, const std::string& line) {
  Json object = Json::object();
  for (const auto& [key, value] : element) object[key] = AsJson(value);
  object_->json[list].push_back(object);
  Line(line);
}

void Report::Data(const char* key, const Value& value) { object_->json[key] = AsJson(value); }

Result Report::Finish(Result result) {
  if (json_) {
    Json whole = {{"ok", !result.has_value()}};
    if (result) whole["error"] = result->sentence;
    whole.update(object_->json);
    // A device's bytes need not be UTF-8, and a terminal may be reading this.
    const std::string text = whole.dump(2, ' ', true, Json::error_handler_t::replace);
    std::printf("%s\n", text.c_str());
  }
  const bool written = std::fflush(stdout) == 0 && std::ferror(stdout) == 0;
  if (!written && !result) return DeviceFailed("What was to be shown could not be written.");
  return result;
}

}  // namespace kxtool

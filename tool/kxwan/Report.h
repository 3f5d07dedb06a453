#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <string_view>

#include <tool/kxwan/Result.h>

namespace kxtool {

using Json = nlohmann::ordered_json;

// What a verb has to say: lines for people as it goes, or one JSON object at the end. Both are made
// from the same calls.
class Report {
 public:
  explicit Report(bool json) : json_(json) {}

  bool IsJson() const { return json_; }

  // One value under its key; as a line "label  value". unit stands behind the value of the line.
  void Fact(const char* key, std::string_view label, const Json& value, std::string_view unit = "");

  // One element of a list; as the line given.
  void Item(const char* list, const Json& element, const std::string& line);

  // A value or a list for the object alone, and a line for people alone.
  void Data(const char* key, const Json& value) { object_[key] = value; }
  void Line(const std::string& line);

  // Ends the report: the failure goes to standard error, as a sentence. Gives the exit status. What
  // could not be written is a failure too.
  int Finish(Result result);

 private:
  bool json_;
  Json object_ = Json::object();
};

}  // namespace kxtool

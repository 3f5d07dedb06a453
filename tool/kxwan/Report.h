#pragma once

#include <tool/kxwan/Failure.h>

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace kxtool {

// A value of a report: nothing, a truth, a number, a text or a list of texts.
struct Value {
  Value(std::nullptr_t) {}
  Value(bool truth) : held(truth) {}
  Value(std::integral auto number) : held(static_cast<int64_t>(number)) {}
  Value(double number) : held(number) {}
  Value(const char* text) : held(std::string(text)) {}
  Value(std::string_view text) : held(std::string(text)) {}
  Value(std::string text) : held(std::move(text)) {}
  Value(std::vector<std::string> texts) : held(std::move(texts)) {}

  std::variant<std::nullptr_t, bool, int64_t, double, std::string, std::vector<std::string>> held;
};

// An element of a list: values under their keys.
using Element = std::vector<std::pair<std::string, Value>>;

// What a verb has to say: lines for people as it goes, or one JSON object at the end. Both are made
// from the same calls.
class Report {
 public:
  explicit Report(bool json);
  ~Report();
  Report(const Report&) = delete;
  Report& operator=(const Report&) = delete;

  bool IsJson() const { return json_; }

  // One value under its key; as a line "label  value". unit stands behind the value of the line.
  void Fact(const char* key, std::string_view label, const Value& value,
            std::string_view unit = "");

  // One element of a list; as the line given.
  void Item(const char* list, const Element& element, const std::string& line);

  // A value for the object alone, and a line for people alone.
  void Data(const char* key, const Value& value);
  void Line(const std::string& line);

  // Ends the report of what came to this. Gives the same, or the failure to write it all.
  Result Finish(Result result);

 private:
  struct Object;

  bool json_;
  std::unique_ptr<Object> object_;
};

}  // namespace kxtool

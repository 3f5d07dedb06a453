#pragma once

#include <KXWAN/foundation/TextPrivate.h>

#include <algorithm>
#include <cstddef>
#include <iterator>

// How tables are read: the first row that fits wins.
namespace kxwan {

// The first row that fits, or null.
template <typename Table, typename Fits>
auto FindRow(const Table& table, Fits fits) {
  const auto row = std::find_if(std::begin(table), std::end(table), fits);
  return row != std::end(table) ? &*row : nullptr;
}

// The same in a table whose last row fits anything, as its static_assert says.
template <typename Table, typename Fits>
const auto& FirstRow(const Table& table, Fits fits) {
  return *std::find_if(std::begin(table), std::end(table), fits);
}

// Fits rows whose manufacturer and model occur in the texts of a device; "" occurs in any.
inline auto FitsDevice(const char* manufacturer, const char* model) {
  return [manufacturer, model](const auto& row) {
    return Contains(manufacturer, row.manufacturer) && Contains(model, row.model);
  };
}

// What a code tells a user.
template <typename Code>
struct CodeText {
  Code code;
  const char* text;
};

template <typename Code, size_t size>
const char* TextOf(const CodeText<Code> (&table)[size], Code code, const char* unknown) {
  const auto* row = FindRow(table, [code](const auto& each) { return each.code == code; });
  return row != nullptr ? row->text : unknown;
}

}  // namespace kxwan

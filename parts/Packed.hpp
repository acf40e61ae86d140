// Columns as one piece of memory, which travels from process to process.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <stdexcept>
#include <type_traits>
#include <vector>

/// Both take a list of columns from a type's `forEachColumn`: to write them one behind the other,
/// each with its length, and to read them again on a machine of the same kind.
template <class Columns>
std::vector<char> packed(Columns const& columns) {
  std::vector<char> bytes;
  Columns::forEachColumn(columns, [&]<class Value>(std::vector<Value> const& column) {
    static_assert(std::is_trivially_copyable_v<Value>);
    std::uint64_t const size = column.size();
    auto const* const length = reinterpret_cast<char const*>(&size);
    bytes.insert(bytes.end(), length, length + sizeof size);
    auto const* const values = reinterpret_cast<char const*>(column.data());
    bytes.insert(bytes.end(), values, values + column.size() * sizeof(Value));
  });
  return bytes;
}

/// Throws std::invalid_argument for bytes that `packed` did not make of such columns.
template <class Columns>
Columns unpacked(std::span<char const> bytes) {
  Columns columns;
  auto const take = [&](void* to, std::size_t size) {
    if (size > bytes.size()) throw std::invalid_argument("columns that are cut short");
    if (size > 0) std::memcpy(to, bytes.data(), size);
    bytes = bytes.subspan(size);
  };
  Columns::forEachColumn(columns, [&]<class Value>(std::vector<Value>& column) {
    std::uint64_t size = 0;
    take(&size, sizeof size);
    if (size > bytes.size() / sizeof(Value)) {
      throw std::invalid_argument("columns that are cut short");
    }
    column.resize(size);
    take(column.data(), size * sizeof(Value));
  });
  return columns;
}

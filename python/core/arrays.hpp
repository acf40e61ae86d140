// From the engine's columns to NumPy's arrays.
#pragma once

#include <nanobind/nanobind.h>
#include <nanobind/ndarray.h>

#include <cstddef>
#include <initializer_list>
#include <memory>
#include <utility>
#include <vector>

#include "export/NetworkColumns.hpp"

/// A read-only array of the values, without a copy: it owns their memory.
template <class Scalar, class Value>
nanobind::object arrayOf(std::vector<Value>&& values, std::initializer_list<std::size_t> shape) {
  auto owner = std::make_unique<std::vector<Value>>(std::move(values));
  auto const* const data = reinterpret_cast<Scalar const*>(owner->data());
  nanobind::capsule const capsule(
      owner.get(), [](void* memory) noexcept { delete static_cast<std::vector<Value>*>(memory); });
  static_cast<void>(owner.release());
  return nanobind::cast(nanobind::ndarray<nanobind::numpy, Scalar const>(data, shape, capsule));
}

template <class Value>
nanobind::object arrayOf(std::vector<Value>&& values) {
  return arrayOf<Value>(std::move(values), {values.size()});
}

inline nanobind::object arrayOf(std::vector<NetworkColumns::Point>&& points) {
  static_assert(sizeof(NetworkColumns::Point) == 3 * sizeof(double));
  return arrayOf<double>(std::move(points), {points.size(), 3});
}

inline nanobind::object arrayOf(std::vector<char>&& bytes) {
  return arrayOf<std::uint8_t>(std::move(bytes), {bytes.size()});
}

/// A tuple (offsets, values).
template <class Value>
nanobind::object tupleOf(Lists<Value>&& lists) {
  return nanobind::make_tuple(arrayOf(std::move(lists.offsets)), arrayOf(std::move(lists.values)));
}

/// A tuple (codes, offsets, bytes).
inline nanobind::object tupleOf(Texts&& texts) {
  return nanobind::make_tuple(arrayOf(std::move(texts.codes)), arrayOf(std::move(texts.offsets)),
                              arrayOf(std::move(texts.bytes)));
}

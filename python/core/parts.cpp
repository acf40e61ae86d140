#include "python/core/parts.hpp"

#include <nanobind/ndarray.h>
#include <nanobind/stl/optional.h>
#include <nanobind/stl/string.h>
#include <nanobind/stl/vector.h>

#include <cmath>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "parts/FilePart.hpp"
#include "parts/Packed.hpp"
#include "parts/RoadChains.hpp"
#include "parts/decodeElements.hpp"
#include "parts/partNetwork.hpp"
#include "parts/selectRoads.hpp"
#include "python/core/arrays.hpp"
#include "python/core/chosenOptions.hpp"
#include "tags/keys.hpp"

namespace nb = nanobind;

namespace {

template <class Value>
using Array = nb::ndarray<Value const, nb::ndim<1>, nb::c_contig, nb::device::cpu>;
using Ids = Array<std::int64_t>;
using Bytes = Array<std::uint8_t>;
using Options = std::tuple<std::string, std::string, std::optional<std::vector<std::string>>>;

template <class Value>
std::span<Value const> spanOf(Array<Value> const& array) {
  return {array.data(), array.size()};
}

template <class Columns>
Columns unpack(Bytes const& bytes) {
  return unpacked<Columns>({reinterpret_cast<char const*>(bytes.data()), bytes.size()});
}

template <class Columns>
nb::object pack(Columns const& columns) {
  std::vector<char> bytes;
  {
    nb::gil_scoped_release const others;
    bytes = packed(columns);
  }
  return arrayOf(std::move(bytes));
}

template <class Action>
auto withoutGil(Action const& action) {
  nb::gil_scoped_release const others;
  return action();
}

ImportOptions optionsOfPart(nb::tuple const& options) {
  auto result = optionsOf(nb::cast<std::string>(options[0]), nb::cast<std::string>(options[1]),
                          nb::cast<std::optional<std::vector<std::string>>>(options[2]));
  result.keptTags = {};  // a part is not written in any other format
  return result;
}

OpenStreetMap::Selection selectionOf(ImportOptions const& options) {
  auto selection = roadSelection({options.tags});
  addRestrictions(selection);
  return selection;
}

FilePart filePart(nb::tuple const& part) {
  auto const path = nb::cast<nb::bytes>(part[0]);
  auto const number = [&](int index) { return nb::cast<std::uint64_t>(part[index]); };
  return {std::string(path.c_str(), path.size()), nb::cast<std::string>(part[1]),
          number(2), number(3), number(4), number(5)};
}

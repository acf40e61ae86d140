#include "python/core/parts.hpp"

#include <nanobind/ndarray.h>
#include <nanobind/stl/optional.h>
#include <nanobind/stl/pair.h>
#include <nanobind/stl/string.h>
#include <nanobind/stl/vector.h>

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
#include "python/core/Gil.hpp"
#include "python/core/arrays.hpp"
#include "python/core/chosenOptions.hpp"
#include "python/core/columnTables.hpp"

namespace nb = nanobind;

namespace {

template <class Value>
using Array = nb::ndarray<Value const, nb::ndim<1>, nb::c_contig, nb::device::cpu>;
using Ids = Array<std::int64_t>;
using Bytes = Array<std::uint8_t>;

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
    gil::Released const others;
    bytes = packed(columns);
  }
  return arrayOf(std::move(bytes));
}

template <class Action>
auto withoutGil(Action const& action) {
  gil::Released const others;
  return action();
}

ImportOptions optionsOfPart(nb::tuple const& options) {
  auto result = optionsOf(nb::cast<std::string>(options[0]), nb::cast<std::string>(options[1]),
                          nb::cast<std::optional<std::vector<std::string>>>(options[2]));
  result.keptTags = {};  // a part is not written in any other format
  return result;
}

FilePart filePart(nb::tuple const& part) {
  auto const path = nb::cast<nb::bytes>(part[0]);
  auto const number = [&](int index) { return nb::cast<std::uint64_t>(part[index]); };
  return {std::string(path.c_str(), path.size()),
          nb::cast<std::string>(part[1]),
          number(2),
          number(3),
          number(4),
          number(5)};
}

nb::tuple findBlobsOf(nb::bytes const& path, std::string const& name) {
  std::string const bytes(path.c_str(), path.size());
  BlobPlaces places = withoutGil([&] { return findBlobs(bytes, name); });
  return nb::make_tuple(arrayOf(std::move(places.begins)), arrayOf(std::move(places.isData)),
                        places.end);
}

nb::object findSeamOf(nb::tuple const& part) {
  FilePart const file = filePart(part);
  auto const seam = withoutGil([&] { return findSeam(file); });
  if (!seam) return nb::none();
  return nb::make_tuple(static_cast<int>(seam->last.type), seam->last.id,
                        static_cast<int>(seam->first.type), seam->first.id);
}

nb::tuple decodeRelationsOf(nb::tuple const& part, nb::tuple const& options) {
  FilePart const file = filePart(part);
  ImportOptions const chosen = optionsOfPart(options);
  auto relations = withoutGil([&] { return decodeRelations(file, chosen); });
  auto& restrictions = relations.restrictions;
  return nb::make_tuple(pack(restrictions.batch()), arrayOf(std::move(restrictions.viaNodes)),
                        arrayOf(std::move(restrictions.ways)),
                        arrayOf(std::move(restrictions.viaWays)), relations.count);
}

nb::tuple decodeWaysOf(nb::tuple const& part, nb::tuple const& options, Ids const& viaWays) {
  FilePart const file = filePart(part);
  ImportOptions const chosen = optionsOfPart(options);
  auto ways = withoutGil([&] { return decodeWays(file, chosen, spanOf(viaWays)); });
  nb::object const batch = pack(ways.roads);
  std::size_t const roads = ways.roads.size();
  return nb::make_tuple(batch, arrayOf(std::move(ways.roads.nodes)), arrayOf(std::move(ways.ends)),
                        ways.count, ways.highways, roads);
}

nb::tuple decodeNodesOf(nb::tuple const& part, Ids const& wanted) {
  FilePart const file = filePart(part);
  auto positions = withoutGil([&] { return decodeNodes(file, spanOf(wanted)); });
  auto const& [south, north] = positions.latitudeLimits;
  auto const& [west, east] = positions.longitudeLimits;
  return nb::make_tuple(arrayOf(std::move(positions.latitudes)),
                        arrayOf(std::move(positions.longitudes)), positions.count,
                        nb::make_tuple(south, north, west, east), positions.hasBounds);
}

nb::tuple selectRoadsOf(Bytes const& batch, Array<double> const& latitudes,
                        Array<double> const& longitudes) {
  auto selected = withoutGil([&] {
    auto ways = unpack<WayBatch>(batch);
    ways.latitudes.assign(latitudes.data(), latitudes.data() + latitudes.size());
    ways.longitudes.assign(longitudes.data(), longitudes.data() + longitudes.size());
    return selectRoads(ways);
  });
  nb::object const roads = pack(selected.roads);
  std::size_t const count = selected.roads.size();
  return nb::make_tuple(roads, arrayOf(std::move(selected.isUsed)),
                        arrayOf(std::move(selected.uses)), count, selected.missingNodes);
}

nb::object findPlacesOf(std::size_t count, std::vector<std::pair<Ids, Bytes>> const& uses,
                        Ids const& fixed) {
  return arrayOf(withoutGil([&] {
    std::vector<PartUses> parts;
    for (auto const& [rows, use] : uses) parts.push_back({spanOf(rows), spanOf(use)});
    return findPlaces(count, parts, spanOf(fixed));
  }));
}

nb::object findRowsOf(Ids const& sorted, Ids const& ids) {
  return arrayOf(withoutGil([&] { return findRows(spanOf(sorted), spanOf(ids)); }));
}

WayBatch withPlaces(Bytes const& batch, Bytes const& places) {
  auto ways = unpack<WayBatch>(batch);
  ways.places.assign(places.data(), places.data() + places.size());
  return ways;
}

nb::tuple cutWaysOf(Bytes const& batch, Bytes const& places) {
  WayBatch ways;
  auto cut = withoutGil([&] {
    ways = withPlaces(batch, places);
    return cutWays(ways);
  });
  nb::object const packedWays = pack(ways);
  return nb::make_tuple(packedWays, arrayOf(std::move(ways.ids)), arrayOf(std::move(cut.roadEnds)),
                        cut.negative, arrayOf(std::move(cut.roots)),
                        arrayOf(std::move(cut.openNodes)), arrayOf(std::move(cut.openRoads)));
}

nb::object joinChainsOf(Ids const& nodes, Ids const& roads) {
  return arrayOf(withoutGil([&] { return joinChains(spanOf(nodes), spanOf(roads)); }));
}

nb::list waysOfRoadsOf(Bytes const& batch, Array<std::uint32_t> const& roadEnds,
                       std::vector<std::pair<Ids, Ids>> const& roads) {
  auto const ways = withoutGil([&] { return unpack<WayBatch>(batch); });
  nb::list result;
  for (auto const& [rows, ids] : roads) {
    result.append(pack(withoutGil([&, &rows = rows, &ids = ids] {
      return waysOfRoads(ways, spanOf(roadEnds), spanOf(rows), spanOf(ids));
    })));
  }
  return result;
}

std::vector<WayBatch> unpackAll(std::vector<Bytes> const& batches) {
  std::vector<WayBatch> ways;
  ways.reserve(batches.size());
  for (Bytes const& batch : batches) ways.push_back(unpack<WayBatch>(batch));
  return ways;
}

nb::tuple partNetworkOf(nb::tuple const& options, std::vector<Bytes> const& batches) {
  ImportOptions const chosen = optionsOfPart(options);
  auto network = withoutGil([&] { return partNetwork(chosen, unpackAll(batches)); });
  nb::dict roads;
  roads["numbers"] = roadTable(network.roads);
  roads["texts"] = textTables(network.roads);
  roads["lines"] = tupleOf(std::move(network.roads.centreLine));
  roads["ways"] = tupleOf(std::move(network.roads.wayIds));
  auto& ends = network.ends;
  return nb::make_tuple(
      roads, arrayOf(std::move(network.elevations)),
      nb::make_tuple(arrayOf(std::move(ends.nodes)), arrayOf(std::move(ends.lists)),
                     arrayOf(std::move(ends.ranks)), arrayOf(std::move(ends.elevations))));
}

nb::dict partRestrictionsOf(nb::tuple const& options, std::vector<Bytes> const& batches,
                            Bytes const& relations) {
  ImportOptions const chosen = optionsOfPart(options);
  auto columns = withoutGil([&] {
    return partRestrictions(chosen, unpackAll(batches), unpack<RelationBatch>(relations));
  });
  return restrictionTable(columns);
}

nb::tuple meanElevationsOf(Ids const& nodes, Bytes const& lists, Array<std::uint64_t> const& ranks,
                           Array<double> const& elevations) {
  auto means = withoutGil([&] {
    RoadEnds ends;
    ends.nodes.assign(nodes.data(), nodes.data() + nodes.size());
    ends.lists.assign(lists.data(), lists.data() + lists.size());
    ends.ranks.assign(ranks.data(), ranks.data() + ranks.size());
    ends.elevations.assign(elevations.data(), elevations.data() + elevations.size());
    return meanElevations(ends);
  });
  return nb::make_tuple(arrayOf(std::move(means.nodes)), arrayOf(std::move(means.elevations)));
}

using Lines = nb::ndarray<double const, nb::shape<-1, 3>, nb::c_contig, nb::device::cpu>;

nb::object setElevationsOf(Ids const& offsets, Lines const& lines, Array<double> const& atStart,
                           Array<double> const& onRoad, Array<double> const& atEnd) {
  return arrayOf(withoutGil([&] {
    auto const* const first = reinterpret_cast<NetworkColumns::Point const*>(lines.data());
    std::vector<NetworkColumns::Point> points(first, first + lines.shape(0));
    setElevations(spanOf(offsets), points, spanOf(atStart), spanOf(onRoad), spanOf(atEnd));
    return points;
  }));
}

nb::object lengthsOf(Ids const& offsets, Lines const& lines) {
  return arrayOf(withoutGil([&] {
    auto const* const points = reinterpret_cast<NetworkColumns::Point const*>(lines.data());
    return roadLengths(spanOf(offsets), {points, lines.shape(0)});
  }));
}

}  // namespace

void bindParts(nb::module_& module) {
  nb::module_ parts = module.def_submodule("parts");
  parts.def("find_blobs", findBlobsOf);
  parts.def("find_seam", findSeamOf);
  parts.def("decode_relations", decodeRelationsOf);
  parts.def("decode_ways", decodeWaysOf);
  parts.def("decode_nodes", decodeNodesOf);
  parts.def("select_roads", selectRoadsOf);
  parts.def("find_places", findPlacesOf);
  parts.def("find_rows", findRowsOf);
  parts.def("cut_ways", cutWaysOf);
  parts.def("join_chains", joinChainsOf);
  parts.def("ways_of_roads", waysOfRoadsOf);
  parts.def("part_network", partNetworkOf);
  parts.def("part_restrictions", partRestrictionsOf);
  parts.def("mean_elevations", meanElevationsOf);
  parts.def("set_elevations", setElevationsOf);
  parts.def("lengths", lengthsOf);
}

#include "python/core/columnTables.hpp"

#include <utility>

#include "python/core/arrays.hpp"

namespace nb = nanobind;

nb::dict roadTable(NetworkColumns::Roads& roads) {
  nb::dict table;
  table["id"] = arrayOf(std::move(roads.id));
  table["start_node"] = arrayOf(std::move(roads.startNode));
  table["end_node"] = arrayOf(std::move(roads.endNode));
  table["start"] = arrayOf(std::move(roads.start));
  table["end"] = arrayOf(std::move(roads.end));
  table["direction"] = arrayOf(std::move(roads.direction));
  table["reversed"] = arrayOf(std::move(roads.reversed));
  table["weight"] = arrayOf(std::move(roads.weight));
  return table;
}

nb::dict textTables(NetworkColumns::Roads& roads) {
  nb::dict tables;
  for (auto& [name, column] : roads.texts) {
    tables[nb::str(name.data(), name.size())] = tupleOf(std::move(column));
  }
  return tables;
}

nb::dict restrictionTable(RestrictionColumns& restrictions) {
  nb::dict table;
  table["osm_relation_id"] = arrayOf(std::move(restrictions.relationId));
  table["restriction"] = tupleOf(std::move(restrictions.kind));
  table["vehicles"] = tupleOf(std::move(restrictions.vehicles));
  table["condition"] = tupleOf(std::move(restrictions.condition));
  table["except"] = tupleOf(std::move(restrictions.except));
  table["from_road_id"] = arrayOf(std::move(restrictions.fromRoad));
  table["from_direction"] = arrayOf(std::move(restrictions.fromDirection));
  table["via_nodes"] = tupleOf(std::move(restrictions.viaNodes));
  table["via_roads"] = tupleOf(std::move(restrictions.viaRoads));
  table["to_road_id"] = arrayOf(std::move(restrictions.toRoad));
  table["to_direction"] = arrayOf(std::move(restrictions.toDirection));
  return table;
}

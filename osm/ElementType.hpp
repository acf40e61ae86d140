// The three kinds of OSM element.
#pragma once

#include <string>
#include <unordered_map>

namespace OpenStreetMap {

enum class ElementType { node = 0, way = 1, relation = 2 };

/// The element names of the OSM XML format (https://wiki.openstreetmap.org/wiki/OSM_XML).
inline std::unordered_map<std::u16string, ElementType> const elementTypeByName{
    {u"node", ElementType::node}, {u"way", ElementType::way}, {u"relation", ElementType::relation}};

inline std::unordered_map<ElementType, std::u16string> const elementNameByType = [] {
  std::unordered_map<ElementType, std::u16string> names;
  names.reserve(3);
  names.emplace(ElementType::node, u"node");
  names.emplace(ElementType::way, u"way");
  names.emplace(ElementType::relation, u"relation");
  return names;
}();

}  // namespace OpenStreetMap

// Tables to decode into, and a look at all that is in them.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <string>

#include "osm/decode/TableFiller.hpp"
#include "osm/decode/WayFiller.hpp"
#include "osm/records.hpp"
#include "support/ustring.hpp"

struct Tables {
  OpenStreetMap::RecordStorage storage;
  OpenStreetMap::NodeTable nodes;
  OpenStreetMap::WayTable ways;
  OpenStreetMap::RelationTable relations;
  OpenStreetMap::TableFiller filler{storage, nodes, ways, relations};

  /// Ends the process when something is in them that must not be.
  void check() const noexcept {
    for (auto const& node : nodes) {
      require(std::abs(node.first) <= 90 && std::abs(node.second) <= 180);
      require(nodes.find(node.id) == &node);
      checkTags(node.tags);
    }
    for (auto const& way : ways) {
      require(ways.find(way.id) == &way);
      checkTags(way.tags);
    }
    for (auto const& relation : relations) {
      require(relations.find(relation.id) == &relation);
      for (auto const& member : relation.members) checkText(*member.role);
      checkTags(relation.tags);
    }
  }

  /// The same for what `roads` put into these tables, and has still to give, of a file that `all`
  /// holds.
  void checkKept(OpenStreetMap::WayFiller& roads, Tables const& all) const {
    auto const wayNodes = roads.takeNodes({});
    require(isSame(roads.latitudeLimits(), all.filler.latitudeLimits()));
    require(isSame(roads.longitudeLimits(), all.filler.longitudeLimits()));
    require(roads.counts().nodes == all.nodes.size() && roads.counts().ways == all.ways.size());
    require(roads.counts().relations == all.relations.size());
    auto kept = ways.begin();
    for (auto const& way : all.ways) {
      if (!way.tags.contains(u"highway")) continue;
      require(kept != ways.end() && kept->id == way.id);
      auto const& references = kept->nodeReferences;
      require(std::equal(references.begin(), references.end(), way.nodeReferences.begin(),
                         way.nodeReferences.end()));
      for (auto const* const key : {u"highway", u"name", u"oneway", u"layer"}) {
        auto const value = way.tags.find(key);
        require(value == way.tags.end() ? !kept->tags.contains(key)
                                        : kept->tags.has(key, value->second));
      }
      for (std::size_t i = 0; i < references.size(); ++i) {
        auto const* const node = all.nodes.find(references[i]);
        auto const number = wayNodes.numbersOf(*kept)[i];
        require(wayNodes.has(number) == (node != nullptr));
        if (node == nullptr) continue;
        require(isSame({wayNodes[number].latitude, wayNodes[number].longitude},
                       {node->first, node->second}));
      }
      ++kept;
    }
    require(kept == ways.end());
    checkKeptRelations(all);
  }

 private:
  void checkKeptRelations(Tables const& all) const {
    auto kept = relations.begin();
    for (auto const& relation : all.relations) {
      auto const type = relation.tags.find(u"type");
      if (type == relation.tags.end()) continue;
      if (type->second != u"restriction" && type->second.find(u"restriction:") != 0) continue;
      require(kept != relations.end() && kept->id == relation.id);
      auto const isSameMember = [](auto const& one, auto const& other) {
        return one.type == other.type && one.reference == other.reference &&
               *one.role == *other.role;
      };
      require(std::equal(kept->members.begin(), kept->members.end(), relation.members.begin(),
                         relation.members.end(), isSameMember));
      for (auto const& [key, value] : relation.tags) {
        bool const matters = key == u"type" || key == u"except" || key == u"restriction" ||
                             key.find(u"restriction:") == 0;
        require(!matters || kept->tags.has(key, value));
      }
      ++kept;
    }
    require(kept == relations.end());
  }

  static bool isSame(OpenStreetMap::Limits a, OpenStreetMap::Limits b) {  // to the last bit
    return std::memcmp(&a, &b, sizeof a) == 0;
  }
  static void require(bool holds) {
    if (!holds) std::abort();
  }
  static void checkTags(OpenStreetMap::Tags const& tags) {
    for (auto const& [key, value] : tags) {
      checkText(key);
      checkText(value);
      require(&tags.at(key) == &value);  // each key once
    }
  }
  static void checkText(std::u16string const& text) {
    static support::codecvt_ustring_to_string const utf8("UTF-8", 1);
    utf8.do_convert(text.data(), text.size());  // throws when it is ill-formed
  }
};

#include "osm/decode/TableFiller.hpp"

namespace OpenStreetMap {

void TableFiller::storeNode(Id id, Position const& position) {
  if (Node* const node = nodes_.insert({id, Tags(), position.latitude, position.longitude})) {
    if (!tags().empty()) node->tags = Tags(storage().keep(tags()));
    extend(position);
  }
}

void TableFiller::storeWay(Id id) {
  if (Way* const way = ways_.insert({id, Tags(), {}})) {
    way->tags = Tags(storage().keep(tags()));
    way->nodeReferences = storage().keep(references());
  }
}

void TableFiller::storeRelation(Id id) {
  if (Relation* const relation = relations_.insert({id, Tags(), {}})) {
    relation->tags = Tags(storage().keep(tags()));
    relation->members = storage().keep(members());
  }
}

}  // namespace OpenStreetMap

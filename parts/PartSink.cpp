#include "parts/PartSink.hpp"

#include <stdexcept>
#include <utility>

#include "osm/decode/WayFiller.hpp"
#include "parts/fileOrder.hpp"
#include "support/ustring.hpp"

using OpenStreetMap::ElementType;
using OpenStreetMap::RecordStorage;

PartSink::PartSink(Wanted wanted)
    : PartSink(std::move(wanted), std::make_unique<RecordStorage>()) {}

PartSink::PartSink(Wanted wanted, std::unique_ptr<RecordStorage> storage)
    : ElementSink(*storage),
      wanted_(std::move(wanted)),
      strings_(std::move(storage)),
      relationType_(support::to_ustring(wanted_.selection.relationType)) {}

bool PartSink::keepsDetails(ElementType type) const noexcept {
  return isInPart_ && ((type == ElementType::way && wanted_.way) ||
                       (type == ElementType::relation && wanted_.relation));
}

void PartSink::storeNode(Id id, Position const& position) {
  if (!isNewInPart({ElementType::node, id})) return;
  ++counts_.nodes;
  extend(position);
  if (wanted_.node) wanted_.node(id, position.latitude, position.longitude);
}

void PartSink::storeWay(Id id) {
  if (!isNewInPart({ElementType::way, id})) return;
  ++counts_.ways;
  if (wanted_.way) wanted_.way(id, Tags(tags()), references());
}

void PartSink::storeRelation(Id id) {
  if (!isNewInPart({ElementType::relation, id})) return;
  ++counts_.relations;
  if (wanted_.relation && OpenStreetMap::isOfType(Tags(tags()), relationType_)) {
    wanted_.relation(id, Tags(tags()), members());
  }
}

bool PartSink::isNewInPart(Element const& element) {
  if (last_ && last_->type == element.type && last_->id == element.id) return false;
  if (last_ && (element.type < last_->type ||
                (element.type == last_->type && fileOrder(element.id) < fileOrder(last_->id)))) {
    auto const named = [](Element const& which) {
      return support::ustring_to_utf8(OpenStreetMap::elementNameByType.at(which.type)) + ' ' +
             std::to_string(which.id);
    };
    throw std::runtime_error(named(element) + " stands behind " + named(*last_) +
                             ": only a sorted file can be read in parts; \"osmium sort\" sorts it");
  }
  last_ = element;
  if (isInPart_ && !first_) first_ = element;
  return isInPart_;
}

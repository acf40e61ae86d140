#include "parts/WayBatch.hpp"

#include <algorithm>
#include <cmath>
#include <limits>
#include <stdexcept>
#include <utility>

#include "parts/fileOrder.hpp"

using OpenStreetMap::ElementSink;
using OpenStreetMap::ElementType;
using OpenStreetMap::Id;

void WayBatch::tellTo(ElementSink& sink) const {
  for (std::size_t row = 0; row < latitudes.size(); ++row) {
    if (std::isnan(latitudes[row])) continue;
    sink.begin({ElementType::node, nodes[row]});
    sink.setPosition(latitudes[row], longitudes[row]);
    sink.end();
  }
  auto const strings = texts.tellTo(sink);
  for (std::size_t way = 0; way < size(); ++way) {
    sink.begin({ElementType::way, ids[way]});
    auto const ofWay = tagsOf(way);
    for (std::size_t i = 0; i < ofWay.size(); i += 2) {
      sink.addTag(strings[ofWay[i]], strings[ofWay[i + 1]]);
    }
    for (Row const row : referencesOf(way)) sink.addReference(nodes[row]);
    sink.end();
  }
}

void WayBatchMaker::add(Id id, OpenStreetMap::TagMap const& tags, std::span<Id const> references) {
  batch_.ids.push_back(id);
  for (auto const& [key, value] : tags) {
    batch_.tags.push_back(texts_.of(&key));
    batch_.tags.push_back(texts_.of(&value));
  }
  batch_.tagEnds.push_back(batch_.tags.size());
  references_.insert(references_.end(), references.begin(), references.end());
  batch_.referenceEnds.push_back(references_.size());
}

WayBatch WayBatchMaker::take() {
  auto& nodes = batch_.nodes;
  nodes = references_;
  std::sort(nodes.begin(), nodes.end(), InFileOrder());
  nodes.erase(std::unique(nodes.begin(), nodes.end()), nodes.end());
  nodes.shrink_to_fit();
  if (nodes.size() > std::numeric_limits<WayBatch::Row>::max()) {
    throw std::length_error("more nodes than a part of a file can have; it takes smaller parts");
  }
  batch_.references.reserve(references_.size());
  for (Id const id : references_) {
    auto const found = std::lower_bound(nodes.begin(), nodes.end(), id, InFileOrder());
    batch_.references.push_back(static_cast<WayBatch::Row>(found - nodes.begin()));
  }
  return std::move(batch_);
}

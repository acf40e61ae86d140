#include "parts/RelationBatch.hpp"

using OpenStreetMap::ElementSink;
using OpenStreetMap::ElementType;
using OpenStreetMap::Id;
using OpenStreetMap::Member;

void RelationBatch::tellTo(ElementSink& sink) const {
  auto const strings = texts.tellTo(sink);
  std::uint64_t tag = 0;
  std::uint64_t member = 0;
  for (std::size_t relation = 0; relation < ids.size(); ++relation) {
    sink.begin({ElementType::relation, ids[relation]});
    for (; tag < tagEnds[relation]; tag += 2)
      sink.addTag(strings[tags[tag]], strings[tags[tag + 1]]);
    for (; member < memberEnds[relation]; ++member) {
      sink.addMember(
          {static_cast<ElementType>(memberTypes[member]), members[member], strings[roles[member]]});
    }
    sink.end();
  }
}

void RelationBatchMaker::add(Id id, OpenStreetMap::TagMap const& tags,
                             std::span<Member const> members) {
  batch_.ids.push_back(id);
  for (auto const& [key, value] : tags) {
    batch_.tags.push_back(texts_.of(&key));
    batch_.tags.push_back(texts_.of(&value));
  }
  batch_.tagEnds.push_back(batch_.tags.size());
  for (Member const& member : members) {
    batch_.memberTypes.push_back(static_cast<std::uint8_t>(member.type));
    batch_.members.push_back(member.reference);
    batch_.roles.push_back(texts_.of(member.role));
    bool const isVia = *member.role == u"via";
    if (member.type == ElementType::node && isVia) viaNodes.push_back(member.reference);
    if (member.type != ElementType::way) continue;
    ways.push_back(member.reference);
    if (isVia) viaWays.push_back(member.reference);
  }
  batch_.memberEnds.push_back(batch_.members.size());
}

#include "osm/decode/PbfElement.hpp"

#include <string>

#include "osm/decode/pbfFieldNumbers.hpp"
#include "support/ustring.hpp"

namespace OpenStreetMap {

void PbfElement::read(pbf::pbf_reader& field) {
  switch (ElementField{field.tag()}) {
    case ElementField::id:
      id_ = type_ == ElementType::node ? pbf::sint64(field) : pbf::int64(field);
      break;
    case ElementField::keys:
      pbf::readPacked(field, keys);
      break;
    case ElementField::values:
      pbf::readPacked(field, values);
      break;
    case ElementField::info:
      readInfo(pbf::message(field));
      break;
    default:
      field.skip();
  }
}

void PbfElement::readInfo(pbf::pbf_reader info) {
  while (info.next()) {
    switch (InfoField{info.tag()}) {
      case InfoField::version:
        version_ = pbf::int32(info);
        break;
      case InfoField::visible:
        visible_ = pbf::boolean(info);
        break;
      default:
        info.skip();
    }
  }
}

ElementSink::Head PbfElement::head() const {
  if (!id_) {
    throw pbf::InvalidData(support::ustring_to_utf8(elementNameByType.at(type_)) + " without id");
  }
  return {type_, *id_, version_, visible_};
}

}  // namespace OpenStreetMap

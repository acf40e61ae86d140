#include "osm/decode/decodeXml.hpp"

#include <expat.h>

#include <algorithm>
#include <charconv>
#include <cstring>
#include <exception>
#include <memory>
#include <new>
#include <stdexcept>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

#include "osm/decode/DecodeError.hpp"
#include "osm/decode/XmlAttributes.hpp"
#include "osm/decode/parseNumber.hpp"
#include "support/printable.hpp"

namespace OpenStreetMap {
namespace {

using namespace std::string_view_literals;

constexpr int readSize = 64 * 1024;

std::runtime_error failure(std::string const& reason) {
  return std::runtime_error(reason);
}

std::string tagName(char const* name) {
  return "<" + std::string(name) + ">";
}

char const* required(char const* value, char const* element, char const* name) {
  if (value == nullptr) throw failure(tagName(element) + " without " + name);
  return value;
}

class XmlDecoder {
 public:
  explicit XmlDecoder(ElementSink& sink) : sink_(sink), parser_(XML_ParserCreate(nullptr)) {
    if (!parser_) throw std::bad_alloc();
    XML_SetUserData(parser_.get(), this);
    XML_SetElementHandler(parser_.get(), &onStart, &onEnd);
    XML_SetStartDoctypeDeclHandler(parser_.get(), &onDoctype);
  }

  void decode(ByteSource& source) {
    for (bool atEnd = false; !atEnd;) {
      void* const buffer = XML_GetBuffer(parser_.get(), readSize);
      if (buffer == nullptr) throw std::bad_alloc();
      std::size_t const count = source.read(static_cast<char*>(buffer), readSize);
      atEnd = count == 0;
      sink_.tell();  // what is unpacked may be far more than what is read
      if (XML_ParseBuffer(parser_.get(), static_cast<int>(count), atEnd) != XML_STATUS_OK) fail();
    }
  }

 private:
  enum class Context { document, osm, element, remark };

  // What goes wrong inside a handler waits here: an exception must not pass through the parser.
  template <class Action>
  static void guarded(void* self, Action const& action) {
    auto* const decoder = static_cast<XmlDecoder*>(self);
    if (decoder->error_) return;
    try {
      action(*decoder);
      return;
    } catch (std::runtime_error const& error) {
      decoder->error_ = std::make_exception_ptr(DecodeError{decoder->place(), error.what()});
    } catch (...) {
      decoder->error_ = std::current_exception();
    }
    XML_StopParser(decoder->parser_.get(), XML_FALSE);
  }
  static void XMLCALL onStart(void* self, XML_Char const* name, XML_Char const** attributes) {
    guarded(self, [&](XmlDecoder& decoder) { decoder.start(name, attributes); });
  }
  static void XMLCALL onEnd(void* self, XML_Char const*) {
    guarded(self, [](XmlDecoder& decoder) { decoder.end(); });
  }
  static void XMLCALL onText(void* self, XML_Char const* text, int length) {
    guarded(self, [&](XmlDecoder& decoder) {
      decoder.remark_.append(text, static_cast<std::size_t>(length));
    });
  }
  // Declarations could change the data: entities that expand without end or are passed over,
  // attributes with default values.
  static void XMLCALL onDoctype(void* self, XML_Char const*, XML_Char const* externalSubset,
                                XML_Char const*, int hasInternalSubset) {
    if (externalSubset == nullptr && hasInternalSubset == 0) return;
    guarded(self, [](XmlDecoder&) {
      throw failure("a DOCTYPE with declarations (entities, attributes) is refused");
    });
  }

  [[noreturn]] void fail() const {
    if (error_) std::rethrow_exception(error_);
    XML_Error const code = XML_GetErrorCode(parser_.get());
    if (code == XML_ERROR_NO_MEMORY) throw std::bad_alloc();
    throw DecodeError{place(), std::string("XML: ") + XML_ErrorString(code)};
  }

  std::string place() const {
    return "line " + std::to_string(XML_GetCurrentLineNumber(parser_.get())) + ", column " +
           std::to_string(XML_GetCurrentColumnNumber(parser_.get()) + 1);
  }

  void start(char const* name, XML_Char const** attributes) {
    if (ignoredDepth_ > 0) {
      ++ignoredDepth_;
      return;
    }
    switch (context_) {
      case Context::document:
        return startDocument(name, attributes);
      case Context::osm:
        return startAtTop(name, attributes);
      case Context::remark:
        ++ignoredDepth_;
        return;
      case Context::element:
        return startInElement(name, attributes);
    }
  }

  void startDocument(std::string_view name, XML_Char const** list) {
    if (name == "osmChange") throw failure("this is a change file (osmChange), not a map");
    if (name == "osmAugmentedDiff") throw failure("this is an augmented diff, not a map");
    if (name != "osm") {
      throw failure("this is not an OSM file: its root element is " + tagName(name.data()));
    }
    char const* const version = XmlAttributes(list).version;
    if (version != nullptr && version != "0.6"sv) {
      throw failure("OSM version " + support::quoted(version) + " is not supported, only 0.6");
    }
    context_ = Context::osm;
  }

  void startAtTop(std::string_view name, XML_Char const** list) {
    if (name == "node") {
      begin(ElementType::node, "node", list);
    } else if (name == "way") {
      begin(ElementType::way, "way", list);
    } else if (name == "relation") {
      begin(ElementType::relation, "relation", list);
    } else if (name == "bounds" || name == "bound") {
      addBounds(name.data(), XmlAttributes(list));
      ++ignoredDepth_;
    } else if (name == "remark") {
      context_ = Context::remark;
      remark_.clear();
      XML_SetCharacterDataHandler(parser_.get(), &onText);
    } else if (name == "action" || name == "create" || name == "modify" || name == "delete") {
      throw failure("this is a change file (" + tagName(name.data()) + "), not a map");
    } else if (name == "nd" || name == "tag" || name == "member") {
      throw failure(tagName(name.data()) + " outside an element");
    } else {
      ++ignoredDepth_;
    }
  }

  void begin(ElementType type, char const* name, XML_Char const** list) {
    XmlAttributes const attributes(list);
    Id const id = parseId("id", required(attributes.id, name, "id"));
    bool const visible = !(attributes.visible != nullptr && attributes.visible == "false"sv) &&
                         !(attributes.action != nullptr && attributes.action == "delete"sv);
    sink_.begin({type, id, versionOf(attributes), visible});
    context_ = Context::element;
    type_ = type;
    // A node without a position was deleted, or is a placeholder. Of one that is not stored, the
    // position may be anything.
    if (type == ElementType::node && visible &&
        (attributes.lat != nullptr || attributes.lon != nullptr)) {
      sink_.setPosition(parseDegrees("lat", required(attributes.lat, name, "lat"), maxLatitude),
                        parseDegrees("lon", required(attributes.lon, name, "lon"), maxLongitude));
    }
  }

  // Versions only tell neighbours with one id apart; what is no number is no version.
  static std::int64_t versionOf(XmlAttributes const& attributes) {
    std::int64_t version = ElementSink::noVersion;
    if (attributes.version != nullptr) {
      std::string_view const text = attributes.version;
      std::from_chars(text.data(), text.data() + text.size(), version);
    }
    return version;
  }

  void startInElement(std::string_view name, XML_Char const** list) {
    ++ignoredDepth_;  // none of these has content of its own
    if (name == "nd" && type_ == ElementType::way) {
      sink_.addReference(parseId("ref", required(XmlAttributes(list).ref, "nd", "ref")));
    } else if (name == "tag") {
      XmlAttributes const tag(list);
      char const* const key = required(tag.k, "tag", "k");
      char const* const value = required(tag.v, "tag", "v");
      if (!sink_.keepsDetails(type_) || !sink_.keepsKey(key)) return;
      std::u16string const* const internedKey = sink_.intern(key);
      sink_.addTag(internedKey, sink_.intern(value));
    } else if (name == "member" && type_ == ElementType::relation) {
      addMember(XmlAttributes(list));
    } else if (name == "nd" || name == "member" || name == "node" || name == "way" ||
               name == "relation") {
      throw failure(tagName(name.data()) + " inside another element, where it has no meaning");
    }
  }

  void addMember(XmlAttributes const& member) {
    std::string_view const type = required(member.type, "member", "type");
    ElementType kind = ElementType::node;
    if (type == "way") {
      kind = ElementType::way;
    } else if (type == "relation") {
      kind = ElementType::relation;
    } else if (type != "node") {
      throw failure("member type " + support::quoted(type) + " is unknown");
    }
    Id const reference = parseId("ref", required(member.ref, "member", "ref"));
    if (!sink_.keepsDetails(type_)) return;
    sink_.addMember({kind, reference, sink_.intern(member.role == nullptr ? "" : member.role)});
  }

  void addBounds(char const* name, XmlAttributes const& bounds) {
    std::string_view sides[4];    // south, west, north, east
    if (bounds.box != nullptr) {  // <bound box="south,west,north,east"/>, as older tools wrote it
      std::string_view rest = bounds.box;
      for (std::string_view& side : sides) {
        side = &side == &sides[3] ? rest : rest.substr(0, rest.find(','));
        rest.remove_prefix(std::min(rest.size(), side.size() + 1));
      }
    } else {
      sides[0] = required(bounds.minlat, name, "minlat");
      sides[1] = required(bounds.minlon, name, "minlon");
      sides[2] = required(bounds.maxlat, name, "maxlat");
      sides[3] = required(bounds.maxlon, name, "maxlon");
    }
    sink_.addBounds(parseDegrees("minlat", sides[0], maxLatitude),
                    parseDegrees("minlon", sides[1], maxLongitude),
                    parseDegrees("maxlat", sides[2], maxLatitude),
                    parseDegrees("maxlon", sides[3], maxLongitude));
  }

  void end() {
    if (ignoredDepth_ > 0) {
      --ignoredDepth_;
      return;
    }
    switch (std::exchange(context_, Context::osm)) {
      case Context::document:
      case Context::osm:
        context_ = Context::document;
        return;
      case Context::remark:
        return endRemark();
      case Context::element:
        return sink_.end();
    }
  }

  // The Overpass server reports in a remark that it gave up half-way.
  void endRemark() {
    XML_SetCharacterDataHandler(parser_.get(), nullptr);
    if (remark_.find("runtime error") == std::string::npos) return;
    throw failure("the server cut this answer short: " + remark_);
  }

  struct FreeParser {
    void operator()(XML_Parser parser) const noexcept { XML_ParserFree(parser); }
  };

  ElementSink& sink_;
  std::unique_ptr<std::remove_pointer_t<XML_Parser>, FreeParser> parser_;
  std::exception_ptr error_;
  Context context_ = Context::document;
  std::size_t ignoredDepth_ = 0;          // how many elements deep we are in something passed over
  ElementType type_ = ElementType::node;  // of the element that we are in
  std::string remark_;
};

}  // namespace

void decodeXml(ByteSource& source, ElementSink& sink) {
  XmlDecoder(sink).decode(source);
}

}  // namespace OpenStreetMap

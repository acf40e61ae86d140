// The attributes of an XML element that mean something in OSM XML.
#pragma once

#include <string_view>

namespace OpenStreetMap {

/// Each is null where it is absent. The text belongs to the list.
struct XmlAttributes {
  /// Gathers them in one walk over the list, which has a null after the last name and value.
  explicit XmlAttributes(char const** list) {
    for (; *list != nullptr; list += 2) {
      if (char const** const known = slot(list[0])) *known = list[1];
    }
  }

  char const* id = nullptr;
  char const* lat = nullptr;
  char const* lon = nullptr;
  char const* visible = nullptr;
  char const* action = nullptr;
  char const* version = nullptr;
  char const* k = nullptr;
  char const* v = nullptr;
  char const* ref = nullptr;
  char const* type = nullptr;
  char const* role = nullptr;
  char const* minlat = nullptr;
  char const* minlon = nullptr;
  char const* maxlat = nullptr;
  char const* maxlon = nullptr;
  char const* box = nullptr;

 private:
  char const** slot(std::string_view name) {
    switch (name[0]) {  // most attributes (timestamp, user, ...) end here
      case 'i':
        return name == "id" ? &id : nullptr;
      case 'l':
        return name == "lat" ? &lat : name == "lon" ? &lon : nullptr;
      case 'v':
        return name == "v"         ? &v
               : name == "visible" ? &visible
               : name == "version" ? &version
                                   : nullptr;
      case 'a':
        return name == "action" ? &action : nullptr;
      case 'k':
        return name == "k" ? &k : nullptr;
      case 'r':
        return name == "ref" ? &ref : name == "role" ? &role : nullptr;
      case 't':
        return name == "type" ? &type : nullptr;
      case 'b':
        return name == "box" ? &box : nullptr;
      case 'm':
        return name == "minlat"   ? &minlat
               : name == "minlon" ? &minlon
               : name == "maxlat" ? &maxlat
               : name == "maxlon" ? &maxlon
                                  : nullptr;
      default:
        return nullptr;
    }
  }
};

}  // namespace OpenStreetMap

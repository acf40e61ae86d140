#include "export/exportedTags.hpp"

#include <algorithm>
#include <boost/algorithm/string/trim.hpp>
#include <stdexcept>

std::vector<std::string> usualTags() {
  return {"oneway", "lanes", "maxspeed", "ref",   "surface", "access", "bridge",
          "tunnel", "layer", "junction", "width", "service", "area"};
}

std::vector<std::string> checkedTags(std::vector<std::string> keys) {
  for (std::string& key : keys) boost::algorithm::trim(key);
  std::erase(keys, "");
  for (auto key = keys.begin(); key != keys.end(); ++key) {
    if (std::find(keys.begin(), key, *key) != key) {
      throw std::invalid_argument('"' + *key + "\" stands there twice");
    }
    if (*key == "highway" || *key == "name") {
      throw std::invalid_argument('"' + *key + "\" is always there");
    }
  }
  return keys;
}

#include "cli/Place.hpp"

#include <system_error>

namespace fs = std::filesystem;

Place::Place(std::string const& name) {
  std::error_code error;
  path_ = fs::absolute(name, error);
  if (error) path_ = name;
  // An absolute path: of a relative one that leads to nothing, no more than the name would come
  // back.
  fs::path const known = fs::weakly_canonical(path_, error);
  if (!error) path_ = known;
  if (!path_.has_filename()) path_ = path_.parent_path();  // after a slash
}

bool operator==(Place const& one, Place const& other) {
  if (one.path_ == other.path_) return true;
  std::error_code error;
  // By two names a terminal is fine for two outputs.
  bool const isDevice = fs::is_character_file(one.path_, error);
  return !isDevice && fs::equivalent(one.path_, other.path_, error);
}

bool Place::liesIn(Place const& folder) const {
  for (Place place = *this; place.path_.has_relative_path();) {
    place.path_ = place.path_.parent_path();
    if (place == folder) return true;
  }
  return false;
}

// Where a name of a file leads.
#pragma once

#include <filesystem>
#include <string>

/// Two places are the same when they are one file, however their names are spelt and whichever
/// links lead there. Nothing need exist there yet.
class Place {
 public:
  explicit Place(std::string const& name);

  friend bool operator==(Place const& one, Place const& other);
  /// Whether it lies in that folder, at any depth.
  bool liesIn(Place const& folder) const;

 private:
  std::filesystem::path path_;
};

// What goes wrong with an input file.
#pragma once

#include <memory>
#include <stdexcept>
#include <string>

namespace OpenStreetMap {

/// Thrown for a file that can't be opened, read or understood. The message joins the file, the
/// place in it and the reason to one line: "town.osm: line 3, column 14: ...".
class ReadError : public std::runtime_error {
 public:
  /// `place` may be empty where the file as a whole is meant.
  ReadError(std::string const& file, std::string const& place, std::string const& reason);

  /// The name under which the file was opened, UTF-8, whole and unchanged; in the message, control
  /// characters are replaced and what is very long is cut.
  std::string const& file() const noexcept { return parts_->file; }
  /// "line 3, column 14" in XML, "blob 2 at byte 158" in PBF, "byte 120" of a packed stream or of
  /// the file; empty where the file as a whole is meant.
  std::string const& place() const noexcept { return parts_->place; }
  /// What is wrong, as one line of well-formed UTF-8, in English.
  std::string const& reason() const noexcept { return parts_->reason; }

 private:
  struct Parts {
    std::string file;
    std::string place;
    std::string reason;
  };
  std::shared_ptr<Parts const> parts_;  // shared, so that copying the exception can't throw
};

}  // namespace OpenStreetMap

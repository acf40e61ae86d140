// Reads an OpenStreetMap file into tables of nodes, ways and relations.
#pragma once

#include <algorithm>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "osm/FileHandler.hpp"
#include "osm/PbfRunner.hpp"
#include "osm/RecordStorage.hpp"
#include "osm/Selection.hpp"
#include "osm/WayNodes.hpp"
#include "osm/records.hpp"
#include "support/Progress.hpp"

namespace OpenStreetMap {

class ElementSink;

/// One file: OSM XML or PBF, plain or in gzip or bzip2, told apart by content.
///
/// The first `populate` reads the whole file in one pass and fills the three tables, or what a
/// selection asks for; every later one returns at once. All of it happens on the caller's thread,
/// unless `setPbfRunner` says otherwise. Not stored are elements with visible="false" or
/// action="delete", and nodes without a position. Of two elements of a kind with one id the first
/// stays, but where a newer version stands right after an older one, the file is refused: it would
/// give an old map. Of two tags with one key the first stays.
class Reader {
  // Declared first: destroyed last, after the tables that point into the buffer.
  FileHandle file_;
  std::unique_ptr<RecordStorage> buffer_;

 public:
  NodeTable nodes;
  WayTable ways;
  RelationTable relations;
  /// The nodes under the ways, which come in the place of `nodes` unless everything is kept.
  WayNodes wayNodes;

  Reader();
  Reader(Reader const&) = delete;
  Reader& operator=(Reader const&) = delete;

  /// Opens a file; `path` is UTF-16. Whatever was read before is dropped. Throws ReadError.
  void setFile(std::u16string const& path);
  /// The same with the bytes of a path.
  void setFile(std::string const& path);
  /// The same with what is open already, see useOpenFile.
  void setOpenFile(int descriptor, std::string const& name);

  /// Elements that somebody hands over, in the place of a file's.
  void setElements(std::function<void(ElementSink& sink)> elements);

  /// What to keep of the files that are read from now on; everything, unless something else is
  /// said. Whatever that is, a file is checked as a whole, and counts and limits are those of all
  /// of it.
  void setSelection(Selection selection) { selection_ = std::move(selection); }

  /// Who decodes PBF files: on the caller's thread, unless something else is said.
  void setPbfRunner(PbfRunner runner) { runPbf_ = std::move(runner); }

  /// Whom to tell how far the reading has come, and all that follows it.
  void setProgress(support::Progress progress) { progress_ = std::move(progress); }
  support::Progress const& progress() const noexcept { return progress_; }

  /// Fills this reader's own tables, as far as they are selected; `table` is one of them. Pointers
  /// to records stay valid. Throws ReadError when the file is not what it should be, std::bad_alloc
  /// when memory runs out, and what the progress throws: then the tables are empty and the file is
  /// closed, and the reader can be given another one.
  void populate(NodeTable& /*table*/) { readOnce(); }
  void populate(WayTable& /*table*/) { readOnce(); }
  void populate(RelationTable& /*table*/) { readOnce(); }

  /// The union of the file's bounds, else the extent of its nodes, else NaN; known once the file
  /// has been read.
  Limits getLatitudeLimits() const noexcept { return latitudeLimits_; }
  Limits getLongitudeLimits() const noexcept { return longitudeLimits_; }

  /// How many elements the file has; known once it has been read.
  ElementCounts const& counts() const noexcept { return counts_; }

  /// The records that carry the tag, with any value, by ascending id.
  template <class Table>
  static std::vector<typename Table::mapped_type const*> getElementsWithTag(std::u16string key,
                                                                            Table const& table) {
    std::vector<typename Table::mapped_type const*> result;
    for (auto const& record : table) {
      if (record.tags.contains(key)) result.push_back(&record);
    }
    if (!result.empty()) {
      std::sort(result.begin(), result.end(),
                [](auto const* a, auto const* b) { return a->id < b->id; });
    }
    return result;
  }

  /// The records with these ids, in their order. Throws std::out_of_range("_Map_base::at") for an
  /// id that the table lacks.
  template <class Table>
  static std::vector<typename Table::mapped_type const*> getElements(Table const& table,
                                                                     std::vector<Id> const& ids) {
    std::vector<typename Table::mapped_type const*> result;
    result.reserve(ids.size());
    for (Id const id : ids) result.push_back(&table.at(id));
    return result;
  }

 private:
  void readOnce() {
    if (!populated_) readFile();
  }
  void readFile();
  void decode(ElementSink& sink, support::Progress const& progress);
  void takeLimits(ElementSink const& sink);
  void clear() noexcept;

  std::function<void(ElementSink& sink)> elements_;
  Selection selection_;
  ElementCounts counts_;
  bool populated_ = false;
  Limits latitudeLimits_ = unknownLimits;
  Limits longitudeLimits_ = unknownLimits;
  support::Progress progress_;
  PbfRunner runPbf_;
};

}  // namespace OpenStreetMap

// How far a long piece of work has come, and how it is ended early.
#pragma once

#include <cstdint>
#include <functional>
#include <string_view>

namespace support {

/// What is done with a file and its network, mostly in this order.
enum class Stage : std::uint8_t {
  reading,  ///< counted in bytes; all others in elements of what they go through
  placingNodes,
  selectingWays,
  namingWays,
  findingJunctions,
  makingNodes,
  makingRoads,
  findingJoins,
  planningJoins,
  joiningRoads,
  makingSegments,
  settingElevations,
  checkingWays,
  checkingTags,
  checkingSharedNodes,
  checkingJoins,
  checkingSlopes,
  connecting,
  cuttingLines,
  findingCrossings,
  checkingCrossings,
  findingIslands,
  findingTraps,
  mappingRestrictions,
  makingColumns,
  writing,
  writingRestrictions,
  writingReport,
};

/// A few words for people, such as "joining roads".
std::string_view nameOf(Stage stage);

/// Is told how far a stage has come: when the stage begins, at least every few thousand elements,
/// and when it is done. Within a stage `done` never falls, and at its end it is `total`; as long as
/// the total is not known, it is 0. Called on the thread that asked for the work. A stage may come
/// twice, for different elements.
///
/// Whatever this throws ends the work, passes through as it is, and leaves what any other failure
/// at that place leaves. It is not called again after that.
using Progress = std::function<void(Stage stage, std::uint64_t done, std::uint64_t total)>;

/// One stage, as the stage itself sees it: counts what is done and tells a Progress now and then.
class Steps {
 public:
  /// Tells of the beginning. `progress` may be empty, and must outlive this.
  Steps(Progress const& progress, Stage stage, std::uint64_t total)
      : progress_(progress), stage_(stage), total_(total) {
    tell();
  }
  Steps(Steps const&) = delete;
  Steps& operator=(Steps const&) = delete;

  /// One more of the total is done; tells of the last.
  void step() {
    if (++done_ == total_) return tell();
    poll();
  }
  /// Something else that takes as long is done.
  void poll() {
    if (--left_ == 0) tell();
  }
  /// So much is done, of what is known so far.
  void reach(std::uint64_t done, std::uint64_t total) {
    done_ = done;
    total_ = total;
    tell();
  }
  /// The rest need not be done.
  void finish() {
    if (done_ != total_) reach(total_, total_);
  }
  /// Tells at once.
  void tell() {
    left_ = between;
    if (progress_) progress_(stage_, done_, total_);
  }

  /// The comparison for a long sort, which is ended with the rest.
  template <class Less>
  auto polling(Less less) {
    return [this, less](auto const& a, auto const& b) {
      poll();
      return less(a, b);
    };
  }

 private:
  static constexpr unsigned between = 1024;

  Progress const& progress_;
  Stage stage_;
  unsigned left_ = between;
  std::uint64_t done_ = 0;
  std::uint64_t total_;
};

}  // namespace support

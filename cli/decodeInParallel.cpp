#include "cli/decodeInParallel.hpp"

#include <sys/resource.h>
#include <tbb/global_control.h>
#include <tbb/parallel_pipeline.h>
#include <tbb/task_arena.h>
#include <tbb/task_scheduler_observer.h>

#include <csignal>

#include <cstddef>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "osm/decode/DecodeError.hpp"
#include "osm/decode/PbfFile.hpp"

using OpenStreetMap::PbfFile;
using Blob = PbfFile::Blob;

namespace {

// Signals are the main thread's: where it keeps them waiting, no other may take them. The workers
// stay, asleep, when the file is read.
class SignalsToMainThread final : public tbb::task_scheduler_observer {
 public:
  explicit SignalsToMainThread(tbb::task_arena& arena) : tbb::task_scheduler_observer(arena) {
    observe(true);
  }
  ~SignalsToMainThread() override { observe(false); }

  void on_scheduler_entry(bool isWorker) override {
    sigset_t all;
    sigfillset(&all);
    if (isWorker) ::pthread_sigmask(SIG_BLOCK, &all, nullptr);
  }
};

// They live as long as the runner: TBB lets go of an observer only when no worker needs it any
// more.
struct Workers {
  explicit Workers(unsigned threads)
      : allowed(tbb::global_control::max_allowed_parallelism, threads),
        arena(static_cast<int>(threads)) {}

  tbb::global_control allowed;
  tbb::task_arena arena;
  SignalsToMainThread observer{arena};
};

// Each thread takes some, and TBB does not bear to get none.
bool isAddressSpaceLimited() {
  rlimit limit{};
  return ::getrlimit(RLIMIT_AS, &limit) == 0 && limit.rlim_cur != RLIM_INFINITY;
}

void run(PbfFile& file, unsigned threads) {
  // The next blob is read while one is decoded, and those between them are unpacked.
  std::vector<Blob> blobs(2 * threads);
  std::size_t next = 0;
  auto const read = [&](tbb::flow_control& flow) -> Blob* {
    // As many are under way at most, and they leave in their order, so this one is free.
    Blob& blob = blobs[next++ % blobs.size()];
    if (file.read(blob)) return &blob;
    flow.stop();
    return nullptr;
  };
  auto const unpack = [](Blob* blob) {
    PbfFile::unpack(*blob);
    return blob;
  };
  auto const decode = [&](Blob* blob) { file.decode(*blob); };
  using tbb::filter_mode;
  using tbb::make_filter;
  tbb::parallel_pipeline(blobs.size(),
                         make_filter<void, Blob*>(filter_mode::serial_in_order, read) &
                             make_filter<Blob*, Blob*>(filter_mode::parallel, unpack) &
                             make_filter<Blob*, void>(filter_mode::serial_in_order, decode));
}

}  // namespace

OpenStreetMap::PbfRunner decodeInParallel(unsigned threads) {
  if (threads <= 1 || isAddressSpaceLimited()) return OpenStreetMap::decodeOneByOne;
  return [workers = std::shared_ptr<Workers>(), threads](PbfFile& file) mutable {
    try {
      workers = std::make_shared<Workers>(threads);
      workers->arena.execute([&] { run(file, threads); });
    } catch (std::runtime_error const& error) {  // a blob throws DecodeError
      throw OpenStreetMap::DecodeError{"", std::string("--threads: ") + error.what()};
    }
  };
}

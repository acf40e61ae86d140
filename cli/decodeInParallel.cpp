#include "cli/decodeInParallel.hpp"

#include <sys/resource.h>

#include <boost/asio/packaged_task.hpp>
#include <boost/asio/post.hpp>
#include <boost/asio/thread_pool.hpp>
#include <csignal>
#include <cstddef>
#include <future>
#include <memory>
#include <string>
#include <system_error>
#include <vector>

#include "osm/decode/DecodeError.hpp"
#include "osm/decode/PbfFile.hpp"

using OpenStreetMap::PbfFile;

namespace {

// As long as it lives, threads that start take no signals: those are the main thread's.
class NoSignals {
 public:
  NoSignals() {
    sigset_t all;
    sigfillset(&all);
    ::pthread_sigmask(SIG_SETMASK, &all, &before_);
  }
  NoSignals(NoSignals const&) = delete;
  NoSignals& operator=(NoSignals const&) = delete;
  ~NoSignals() { ::pthread_sigmask(SIG_SETMASK, &before_, nullptr); }

 private:
  sigset_t before_{};
};

std::unique_ptr<boost::asio::thread_pool> startWorkers(unsigned count) {
  NoSignals const inThem;
  return std::make_unique<boost::asio::thread_pool>(count);
}

// Each thread takes some.
bool isAddressSpaceLimited() {
  rlimit limit{};
  return ::getrlimit(RLIMIT_AS, &limit) == 0 && limit.rlim_cur != RLIM_INFINITY;
}

// This thread reads and decodes; the others unpack the blobs ahead of it.
void run(PbfFile& file, unsigned threads) {
  struct Ahead {
    PbfFile::Blob blob;
    std::future<void> isUnpacked;
  };
  std::vector<Ahead> ring(2 * std::size_t{threads});
  auto const workers = startWorkers(threads - 1);  // end before what they work on
  std::size_t read = 0;
  bool isMore = true;
  for (std::size_t decoded = 0; isMore || decoded < read; ++decoded) {
    for (; isMore && read < decoded + ring.size(); ++read) {
      Ahead& next = ring[read % ring.size()];
      isMore = file.read(next.blob);
      if (!isMore) break;
      next.isUnpacked = boost::asio::post(
          *workers, std::packaged_task<void()>([&blob = next.blob] { PbfFile::unpack(blob); }));
    }
    if (decoded == read) return;
    Ahead& next = ring[decoded % ring.size()];
    next.isUnpacked.get();
    file.decode(next.blob);
  }
}

}  // namespace

OpenStreetMap::PbfRunner decodeInParallel(unsigned threads) {
  if (threads <= 1 || isAddressSpaceLimited()) return OpenStreetMap::decodeOneByOne;
  return [threads](PbfFile& file) {
    try {
      run(file, threads);
    } catch (std::system_error const& error) {  // a blob throws DecodeError
      throw OpenStreetMap::DecodeError{"", std::string("--threads: ") + error.what()};
    }
  };
}

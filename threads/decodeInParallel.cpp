#include "threads/decodeInParallel.hpp"

#include <sys/resource.h>

#include <algorithm>
#include <boost/asio/packaged_task.hpp>
#include <boost/asio/post.hpp>
#include <boost/asio/thread_pool.hpp>
#include <boost/system/system_error.hpp>
#include <chrono>
#include <cstddef>
#include <future>
#include <memory>
#include <thread>
#include <vector>

#include "osm/decode/PbfFile.hpp"
#include "threads/NoSignals.hpp"

using OpenStreetMap::PbfFile;
using namespace std::chrono_literals;

namespace {

// A pool each, because a pool does not come to an end when it can't start all of its threads.
using Workers = std::vector<std::unique_ptr<boost::asio::thread_pool>>;

// As many as there are to be had.
Workers startWorkers(std::size_t count) {
  NoSignals const inThem;
  Workers workers;
  workers.reserve(count);
  try {
    while (workers.size() < count) {
      workers.push_back(std::make_unique<boost::asio::thread_pool>(1));
    }
  } catch (boost::system::system_error const&) {  // it is only faster with more
  }
  return workers;
}

// Each thread takes some.
bool isAddressSpaceLimited() {
  rlimit limit{};
  return ::getrlimit(RLIMIT_AS, &limit) == 0 && limit.rlim_cur != RLIM_INFINITY;
}

// This thread reads and decodes; the others unpack the blobs ahead of it.
void run(PbfFile& file, std::size_t threads) {
  struct Ahead {
    PbfFile::Blob blob;
    std::future<void> isUnpacked;
  };
  std::vector<Ahead> ring(2 * threads);
  Workers const workers = startWorkers(threads - 1);  // end before what they work on
  if (workers.empty()) return OpenStreetMap::decodeOneByOne(file);
  std::size_t read = 0;
  bool isMore = true;
  for (std::size_t decoded = 0; isMore || decoded < read; ++decoded) {
    for (; isMore && read < decoded + ring.size(); ++read) {
      Ahead& next = ring[read % ring.size()];
      isMore = file.read(next.blob);
      if (!isMore) break;
      next.isUnpacked = boost::asio::post(
          *workers[read % workers.size()],
          std::packaged_task<void()>([&blob = next.blob] { PbfFile::unpack(blob); }));
    }
    if (decoded == read) return;
    Ahead& next = ring[decoded % ring.size()];
    while (next.isUnpacked.wait_for(20ms) == std::future_status::timeout) file.tell();
    next.isUnpacked.get();
    file.decode(next.blob);
  }
}

}  // namespace

unsigned usefulThreads() {
  constexpr unsigned most = 16;
  return std::clamp(std::thread::hardware_concurrency(), 1U, most);
}

OpenStreetMap::PbfRunner decodeInParallel(unsigned threads) {
  if (threads <= 1 || isAddressSpaceLimited()) return OpenStreetMap::decodeOneByOne;
  return [threads](PbfFile& file) { run(file, threads); };
}

// Bytes become nodes and ways, which are written to a file and imported. What must hold after every
// import holds, and the network is that of the second, simple implementation.
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <unistd.h>

#include <array>
#include <cstdint>
#include <iostream>
#include <set>
#include <string>

#include "tests/fixture/SimpleNetwork.hpp"

namespace {

using OpenStreetMap::Id;

class Bytes {
 public:
  Bytes(std::uint8_t const* data, std::size_t size) : data_(data), size_(size) {}
  bool empty() const { return size_ == 0; }
  /// 0 to `limit` - 1; 0 at the end.
  std::size_t below(std::size_t limit) {
    if (size_ == 0) return 0;
    --size_;
    return *data_++ % limit;
  }

 private:
  std::uint8_t const* data_;
  std::size_t size_;
};

// A file without a place on the disk.
class MemoryFile {
 public:
  explicit MemoryFile(std::string const& bytes) : descriptor_(memfd_create("graph", 0)) {
    if (write(descriptor_, bytes.data(), bytes.size()) != static_cast<ssize_t>(bytes.size()))
      abort();
  }
  MemoryFile(MemoryFile const&) = delete;
  MemoryFile& operator=(MemoryFile const&) = delete;
  ~MemoryFile() { close(descriptor_); }
  std::string path() const { return "/proc/self/fd/" + std::to_string(descriptor_); }

 private:
  int descriptor_;
};

std::vector<SimpleNode> readNodes(Bytes& bytes) {
  std::vector<SimpleNode> nodes;
  for (std::size_t i = 0, n = 1 + bytes.below(40); i < n; ++i) {
    // In no order, some of them negative.
    nodes.push_back({static_cast<Id>(i * 37 % 101) - 20, static_cast<double>(i % 7),
                     static_cast<double>(i) / 8});
  }
  return nodes;
}

std::vector<SimpleWay> readWays(Bytes& bytes, std::vector<SimpleNode> const& nodes) {
  static constexpr std::array<char const*, 8> names = {"", "", "a", "b", "ab", "a-b", "", "bab"};
  static constexpr std::array<char const*, 8> oneways = {"", "", "", "yes", "-1", "1", "no", "yes"};
  static constexpr std::array<double, 4> layers = {0, 1, -1, 0.1};
  std::vector<SimpleWay> ways;
  std::set<Id> ids;
  while (!bytes.empty()) {
    SimpleWay way{static_cast<Id>(bytes.below(250)) - 9, {}, "", "", "", 0.0};
    way.highway = bytes.below(16) == 15 ? "path" : "road";
    way.name = names[bytes.below(8)];
    way.oneway = oneways[bytes.below(8)];
    way.layer = layers[bytes.below(4)];
    std::size_t const missing = bytes.below(32) == 31 ? 1 : 0;
    std::size_t const count = bytes.below(6);
    for (std::size_t i = 0; i < count; ++i) {
      std::size_t const k = bytes.below(nodes.size() + missing);
      way.nodes.push_back(k < nodes.size() ? nodes[k].id : 1000);
    }
    if (ids.insert(way.id).second) ways.push_back(way);
  }
  return ways;
}

std::string xml(std::vector<SimpleNode> const& nodes, std::vector<SimpleWay> const& ways) {
  std::ostringstream text;
  text << "<osm version='0.6'>";
  for (SimpleNode const& node : nodes) {
    text << "<node id='" << node.id << "' lat='" << node.first << "' lon='" << node.second << "'/>";
  }
  for (SimpleWay const& way : ways) {
    text << "<way id='" << way.id << "'>";
    for (Id const id : way.nodes) text << "<nd ref='" << id << "'/>";
    text << "<tag k='highway' v='" << way.highway << "'/>";
    if (!way.name.empty()) text << "<tag k='name' v='" << way.name << "'/>";
    if (!way.oneway.empty()) text << "<tag k='oneway' v='" << way.oneway << "'/>";
    if (way.layer != 0.0) text << "<tag k='layer' v='" << way.layer << "'/>";
    text << "</way>";
  }
  text << "</osm>";
  return text.str();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
  [[maybe_unused]] static bool const ready = [] {
    GTEST_FLAG_SET(throw_on_failure, true);  // of what Import checks
    testing::InitGoogleTest();
    return true;
  }();
  Bytes bytes(data, size);
  auto const nodes = readNodes(bytes);
  auto const ways = readWays(bytes, nodes);
  {
    Import const import(MemoryFile(xml(nodes, ways)).path());
    std::string const found = describeSimply(import);
    std::string const expected = describeSimply(nodes, ways);
    if (found != expected) {
      std::cerr << "found" << found << "\nexpected" << expected << '\n';
      std::abort();
    }
  }
  if (kb::zero::ModelElementImpl::liveCount() != 0) std::abort();
  return 0;
}

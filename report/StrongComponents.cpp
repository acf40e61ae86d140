#include "report/StrongComponents.hpp"

#include <boost/graph/compressed_sparse_row_graph.hpp>
#include <boost/graph/strong_components.hpp>
#include <boost/graph/visitors.hpp>
#include <utility>

using Number = RoadGraph::Number;

namespace {

using Graph = boost::compressed_sparse_row_graph<boost::directedS, boost::no_property,
                                                 boost::no_property, boost::no_property, Number>;

Graph graphOf(std::size_t count, std::span<OneWayEdge const> edges) {
  std::vector<std::pair<Number, Number>> pairs;
  pairs.reserve(edges.size());
  for (OneWayEdge const& edge : edges) pairs.emplace_back(edge.from, edge.to);
  return {boost::edges_are_unsorted_multi_pass, pairs.begin(), pairs.end(),
          static_cast<Number>(count)};
}

}  // namespace

std::vector<Number> strongComponents(std::size_t count, std::span<OneWayEdge const> edges) {
  Graph const graph = graphOf(count, edges);
  std::vector<Number> components(count);
  boost::strong_components(graph, boost::make_iterator_property_map(
                                      components.begin(), boost::get(boost::vertex_index, graph)));
  return components;
}

std::vector<bool> reachableFrom(Number first, std::size_t count,
                                std::span<OneWayEdge const> edges) {
  Graph const graph = graphOf(count, edges);
  std::vector<bool> isReached(count);
  std::vector<Number> next{first};
  isReached[first] = true;
  while (!next.empty()) {
    Number const vertex = next.back();
    next.pop_back();
    for (auto [edge, end] = boost::out_edges(vertex, graph); edge != end; ++edge) {
      Number const to = boost::target(*edge, graph);
      if (isReached[to]) continue;
      isReached[to] = true;
      next.push_back(to);
    }
  }
  return isReached;
}

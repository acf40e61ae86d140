// What is connected with what, whatever the directions.

/** @param {number} size */
function disjointSets(size) {
  const parents = Int32Array.from({ length: size }, (_, i) => i);
  /** @param {number} member */
  const find = (member) => {
    while (parents[member] !== member) {
      parents[member] = parents[parents[member]];
      member = parents[member];
    }
    return member;
  };
  return {
    find,
    /** @param {number} a @param {number} b */
    join: (a, b) => {
      a = find(a);
      b = find(b);
      parents[Math.max(a, b)] = Math.min(a, b);
    },
  };
}

/**
 * Of each road the rank of its component: 0 is that of the most Nodes.
 * @param {Network} network
 * @returns {{rankOf: Int32Array, roads: number[]}} also how many roads each rank has
 */
function findComponents(network) {
  const sets = disjointSets(network.nodeCount);
  for (let road = 0; road < network.roadCount; ++road) {
    sets.join(network.startOf(road), network.endOf(road));
  }
  /** @type {Map<number, number>} */
  const nodesOf = new Map();
  for (let node = 0; node < network.nodeCount; ++node) {
    const set = sets.find(node);
    nodesOf.set(set, (nodesOf.get(set) ?? 0) + 1);
  }
  const ranks = new Map([...nodesOf].sort((a, b) => b[1] - a[1]).map(([set], i) => [set, i]));
  const roads = Array.from(ranks, () => 0);
  const rankOf = Int32Array.from({ length: network.roadCount }, (_, road) => {
    const rank = ranks.get(sets.find(network.startOf(road))) ?? 0;
    ++roads[rank];
    return rank;
  });
  return { rankOf, roads };
}

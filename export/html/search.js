// Finding streets by their names, and roads, ways and Nodes by their ids.

/**
 * @typedef {{kind: "street", name: string, roads: number[]}
 *   | {kind: "way", way: bigint, roads: number[]}
 *   | {kind: "road", road: number}
 *   | {kind: "node", node: number}} Found
 */

/** @type {Record<string, string>} letters that are one with a mark for people, but not in Unicode */
const plainLetters = { ß: "ss", æ: "ae", œ: "oe", ø: "o", ł: "l", đ: "d", ð: "d", þ: "th", ı: "i" };

/**
 * Without case, diacritics, points for vowels, apostrophes, full stops and odd spaces.
 * @param {string} text
 */
function folded(text) {
  return text.replace(/['’ʼ‘´`.]/g, "").normalize("NFKD")
    .replace(/[\u0300-\u036f\u0591-\u05c7\u064b-\u065f\u0670]/g, "")
    .toLowerCase().replace(/[ßæœøłđðþı]/g, (letter) => plainLetters[letter])
    .replace(/[\s\u2010-\u2015-]+/gu, " ").trim();
}

/**
 * Where an id stands among ascending ids, or -1. Node ids ascend as unsigned numbers.
 * @param {BigInt64Array} ids
 * @param {bigint} id
 */
function placeOfId(ids, id) {
  let low = 0;
  let high = ids.length;
  while (low < high) {
    const middle = (low + high) >> 1;
    if (BigInt.asUintN(64, ids[middle]) < BigInt.asUintN(64, id)) low = middle + 1;
    else high = middle;
  }
  return low < ids.length && ids[low] === id ? low : -1;
}

class Search {
  /** @param {Network} network @param {NetworkDetails} details */
  constructor(network, details) {
    this.network = network;
    this.details = details;
    const { texts } = network.names;
    const { compare } = new Intl.Collator();
    this.foldedNames = texts.map(folded);
    this.namesInOrder = [...texts.keys()].sort((a, b) => compare(texts[a], texts[b]));
    /** @type {Found[][]} of each name, made when they are first found */
    this.streetsNamed = [];
    /** @type {number[][]} the roads of each name */
    this.roadsNamed = texts.map(() => []);
    network.names.numbers.forEach((name, road) => this.roadsNamed[name].push(road));
    /** @type {Map<bigint, number[]> | null} */
    this.roadsOfWay = null;
  }

  /** The best first. @param {string} query @returns {Found[]} */
  find(query) {
    return [...this.byId(query), ...this.byName(query)];
  }

  /** @param {string} query @returns {Found[]} */
  byId(query) {
    const match = /^\s*(road|way|node|w|n)?\s*[#/]?\s*(-?\d{1,19})\s*$/i.exec(query);
    if (!match) return [];
    const [, word, digits] = match;
    const kind = word?.[0].toLowerCase();
    const id = BigInt.asIntN(64, BigInt(digits));
    /** @type {Found[]} */
    const found = [];
    const road = placeOfId(this.details.roadIds, id);
    if (road >= 0 && (!kind || kind === "r")) found.push({ kind: "road", road });
    const roads = this.waysToRoads().get(id);
    if (roads && (!kind || kind === "w")) found.push({ kind: "way", way: id, roads });
    const node = placeOfId(this.details.nodeIds, id);
    if (node >= 0 && (!kind || kind === "n")) found.push({ kind: "node", node });
    return found;
  }

  /** @param {string} query @returns {Found[]} */
  byName(query) {
    const wanted = folded(query);
    const words = wanted.split(" ").filter(Boolean);
    if (words.length === 0) return [];
    /** @type {Found[][]} by how well the name fits */
    const found = [[], [], [], []];
    for (const i of this.namesInOrder) {
      const name = this.foldedNames[i];
      if (!name || !words.every((word) => name.includes(word))) continue;
      const at = name.indexOf(wanted);
      const rank = name === wanted ? 0 : at === 0 ? 1 : at > 0 && name[at - 1] === " " ? 2 : 3;
      found[rank].push(...(this.streetsNamed[i] ??= this.streets(i)));
    }
    return found.flat();
  }

  /** The roads of a name, as many streets as are not connected. @param {number} name @returns {Found[]} */
  streets(name) {
    const roads = this.roadsNamed[name];
    const sets = disjointSets(roads.length);
    /** @type {Map<number, number>} */
    const atNode = new Map();
    roads.forEach((road, i) => {
      for (const node of [this.network.startOf(road), this.network.endOf(road)]) {
        const other = atNode.get(node);
        if (other === undefined) atNode.set(node, i);
        else sets.join(i, other);
      }
    });
    /** @type {Map<number, number[]>} */
    const streets = new Map();
    roads.forEach((road, i) => {
      const set = sets.find(i);
      streets.set(set, [...(streets.get(set) ?? []), road]);
    });
    return [...streets.values()].sort((a, b) => b.length - a.length)
      .map((street) => ({ kind: "street", name: this.network.names.texts[name], roads: street }));
  }

  waysToRoads() {
    if (!this.roadsOfWay) {
      this.roadsOfWay = new Map();
      const { starts, values } = this.details.ways;
      for (let road = 0; road < this.network.roadCount; ++road) {
        for (let i = starts[road]; i < starts[road + 1]; ++i) {
          const roads = this.roadsOfWay.get(values[i]);
          if (roads) roads.push(road);
          else this.roadsOfWay.set(values[i], [road]);
        }
      }
    }
    return this.roadsOfWay;
  }
}

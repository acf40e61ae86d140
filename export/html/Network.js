// The network and the report, as columns; roads, Nodes, restrictions and findings are numbers.

/**
 * @typedef {object} About what the page says of the import as a whole
 * @property {string[]} tags
 * @property {string[]} kinds
 * @property {string[]} severities
 * @property {number} highwayWays
 * @property {number} imported
 * @property {number} notARoad
 * @property {number} missingNodes
 * @property {number} fewerThanTwoNodes
 * @property {boolean} crossingsAreAll
 */

/**
 * @typedef {object} Texts texts of which many are the same
 * @property {Float64Array} numbers
 * @property {string[]} texts
 */

/** @param {string} id @returns {Promise<Texts>} */
async function readTextColumn(id) {
  const [numbers, texts] = await Promise.all([readNumbers(id), readTexts(`${id}.texts`)]);
  return { numbers, texts };
}

/** Lists of numbers or ids, one behind the other. @template Values */
class Lists {
  /** @param {Float64Array} sizes @param {Values} values */
  constructor(sizes, values) {
    this.starts = startsOf(sizes);
    this.values = values;
  }

  /** @param {number} i @returns {any[]} */
  at(i) {
    const { starts, values } = /** @type {{starts: Float64Array, values: any}} */ (this);
    return Array.from(values.subarray(starts[i], starts[i + 1]));
  }
}

/** @param {string} id @returns {Promise<Lists<Float64Array>>} */
async function readNumberLists(id) {
  return new Lists(await readNumbers(`${id}.sizes`), await readNumbers(id));
}
/** @param {string} id @returns {Promise<Lists<BigInt64Array>>} */
async function readIdLists(id) {
  return new Lists(await readNumbers(`${id}.sizes`), await readIds(id));
}

/** Directions of travel. */
const forward = 1;
const backward = 2;
const bothWays = forward + backward;

class Network {
  /** What the map shows; the rest is `NetworkDetails`. */
  static async read() {
    const network = new Network();
    await Promise.all([network.readShape(), network.readClasses()]);
    return network;
  }

  constructor() {
    /** @type {About} */
    this.about = JSON.parse(blockElement("about").textContent ?? "");
    this.nodeCount = Number(blockElement("nodes.id").dataset.size);
    this.roadCount = Number(blockElement("roads.id").dataset.size);
    /** @type {Float64Array} */
    this.latitudes = new Float64Array();
    /** @type {Float64Array} */
    this.longitudes = new Float64Array();
    /** @type {Float64Array} */
    this.nodeElevations = new Float64Array();
    this.ends = new Float64Array();
    this.directions = new Float64Array();
    /** @type {Texts} */
    this.highways = { numbers: new Float64Array(), texts: [] };
    /** @type {Texts} */
    this.names = this.highways;
    this.pieces = new Float64Array();
    /**
     * The centre lines, one behind the other: longitude and latitude in turns. No two points of a
     * line are more than 180 degrees apart, so that longitudes may be beyond 180.
     */
    this.points = new Float64Array();
    /** @type {Float64Array} */
    this.elevations = new Float64Array();  // of the same points
    this.starts = new Float64Array();  // of the centre lines among the points
  }

  async readShape() {
    const [latitudes, longitudes, ends, sizes, innerY, innerX, elevations] = await Promise.all([
      readNumbers("nodes.latitude"), readNumbers("nodes.longitude"), readNumbers("roads.ends"),
      readNumbers("roads.sizes"), readDifferences("roads.latitude"),
      readDifferences("roads.longitude"), readDecimals("roads.elevation")]);
    let next = 0;
    for (let road = 0; road < this.roadCount; ++road) {
      let y = latitudes[ends[2 * road]];
      let x = longitudes[ends[2 * road]];
      for (const last = next + sizes[road] - 2; next < last; ++next) {
        y = innerY[next] += y;
        x = innerX[next] += x;
      }
    }
    this.ends = ends;
    this.latitudes = await finishDecimals("nodes.latitude", latitudes);
    this.longitudes = await finishDecimals("nodes.longitude", longitudes);
    await finishDecimals("roads.latitude", innerY);
    await finishDecimals("roads.longitude", innerX);
    this.starts = startsOf(sizes);
    this.points = new Float64Array(2 * this.starts[this.roadCount]);
    let to = 0;
    let near = 0;
    /** @param {number} x @param {number} y */
    const add = (x, y) => {
      this.points[to++] = near = unwrapped(x, near);
      this.points[to++] = y;
    };
    next = 0;
    for (let road = 0; road < this.roadCount; ++road) {
      const [start, end] = [ends[2 * road], ends[2 * road + 1]];
      near = this.longitudes[start];
      add(near, this.latitudes[start]);
      for (const last = next + sizes[road] - 2; next < last; ++next) add(innerX[next], innerY[next]);
      add(this.longitudes[end], this.latitudes[end]);
    }
    this.elevations = elevations;
  }

  async readClasses() {
    [this.directions, this.highways, this.names, this.pieces] = await Promise.all([
      readNumbers("roads.direction"), readTextColumn("roads.highway"),
      readTextColumn("roads.name"), readNumbers("roads.pieces")]);
  }

  /** @param {number} node @returns {Place} */
  placeOf(node) {
    return [this.longitudes[node], this.latitudes[node]];
  }
  /** @param {number} road */
  startOf(road) {
    return this.ends[2 * road];
  }
  /** @param {number} road */
  endOf(road) {
    return this.ends[2 * road + 1];
  }
  /** @param {number} road */
  nameOf(road) {
    return this.names.texts[this.names.numbers[road]];
  }
  /** @param {number} road */
  highwayOf(road) {
    return this.highways.texts[this.highways.numbers[road]];
  }
  /** The centre line. @param {number} road */
  lineOf(road) {
    /** @type {Place[]} */
    const line = [];
    for (let i = this.starts[road]; i < this.starts[road + 1]; ++i) {
      line.push([this.points[2 * i], this.points[2 * i + 1]]);
    }
    return line;
  }
  /** Of the points of its centre line. @param {number} road */
  elevationsOf(road) {
    return this.elevations.subarray(this.starts[road], this.starts[road + 1]);
  }
  /** Metres. @param {number} road */
  lengthOf(road) {
    return distancesAlong(this.lineOf(road)).pop() ?? 0;
  }
}

/** What only a question about something asks for. */
class NetworkDetails {
  /** @param {Network} network */
  static async read(network) {
    const details = new NetworkDetails();
    const tags = network.about.tags.map((_, i) => readTextColumn(`roads.tag${i}`));
    const restrictionTexts = ["kind", "vehicles", "condition", "except"];
    [details.nodeIds, details.roadIds, details.ways, network.nodeElevations, details.tags] =
      await Promise.all([readIds("nodes.id"), readIds("roads.id"), readIdLists("roads.ways"),
                         readDecimals("nodes.elevation"), Promise.all(tags)]);
    details.restrictions = new Restrictions(
      await Promise.all(restrictionTexts.map((text) => readTextColumn(`restrictions.${text}`))),
      await readNumberLists("restrictions.roads"), await readNumberLists("restrictions.nodes"),
      await readIds("restrictions.relation"));
    details.findings = await Findings.read();
    details.roadsAt = roadsAtNodes(network);
    return details;
  }

  constructor() {
    this.nodeIds = new BigInt64Array();
    this.roadIds = new BigInt64Array();
    /** @type {Lists<BigInt64Array>} */
    this.ways = new Lists(new Float64Array(), this.nodeIds);
    /** @type {Texts[]} by tag */
    this.tags = [];
    this.restrictions = new Restrictions([], noLists(), noLists(), this.nodeIds);
    this.findings = new Findings();
    /** @type {Lists<Float64Array>} of each Node */
    this.roadsAt = noLists();
  }
}

function noLists() {
  return new Lists(new Float64Array(), new Float64Array());
}

class Restrictions {
  /**
   * @param {Texts[]} texts kind, vehicles, condition, except
   * @param {Lists<Float64Array>} roads from, via, to
   * @param {Lists<Float64Array>} nodes via
   * @param {BigInt64Array} relations
   */
  constructor(texts, roads, nodes, relations) {
    this.texts = texts;
    this.roads = roads;
    this.nodes = nodes;
    this.relations = relations;
  }

  /** @param {number} i */
  at(i) {
    const [kind, vehicles, condition, except] = this.texts.map(
      ({ numbers, texts }) => texts[numbers[i]]);
    return { kind, vehicles, condition, except, roads: this.roads.at(i), nodes: this.nodes.at(i),
             relation: this.relations[i] };
  }
}

class Findings {
  static async read() {
    const findings = new Findings();
    [findings.kinds, findings.severities, findings.texts] = await Promise.all([
      readNumbers("findings.kind"), readNumbers("findings.severity"),
      readTexts("findings.texts")]);
    [findings.ways, findings.nodes] = await Promise.all([
      readIdLists("findings.ways"), readIdLists("findings.nodes")]);
    findings.roads = await readNumberLists("findings.roads");
    const parts = await readNumberLists("findings.parts");
    const [latitudes, longitudes] = await Promise.all([
      readDecimals("findings.latitude"), readDecimals("findings.longitude")]);
    let next = 0;
    findings.places = findings.texts.map((_, i) => parts.at(i).map((size) => {
      /** @type {Place[]} */
      const line = [];
      for (const last = next + size; next < last; ++next) {
        const near = line.length > 0 ? line[line.length - 1][0] : longitudes[next];
        line.push([unwrapped(longitudes[next], near), latitudes[next]]);
      }
      return line;
    }));
    return findings;
  }

  constructor() {
    this.kinds = new Float64Array();
    this.severities = new Float64Array();
    /** @type {string[]} */
    this.texts = [];
    /** @type {Lists<BigInt64Array>} */
    this.ways = new Lists(this.kinds, new BigInt64Array());
    this.nodes = this.ways;
    /** @type {Lists<Float64Array>} */
    this.roads = noLists();
    /** @type {Place[][][]} of each the lines, or points as lines of one point */
    this.places = [];
  }

  get size() {
    return this.texts.length;
  }
}

/**
 * The roads that start or end at each Node; a loop is there once.
 * @param {Network} network
 */
function roadsAtNodes(network) {
  const { ends, nodeCount, roadCount } = network;
  const sizes = new Float64Array(nodeCount);
  for (let end = 0; end < ends.length; ++end) {
    if (end % 2 === 0 || ends[end] !== ends[end - 1]) ++sizes[ends[end]];
  }
  const lists = new Lists(sizes, new Float64Array(2 * roadCount));
  const next = lists.starts.slice();
  for (let end = 0; end < ends.length; ++end) {
    if (end % 2 === 0 || ends[end] !== ends[end - 1]) {
      lists.values[next[ends[end]]++] = Math.floor(end / 2);
    }
  }
  return lists;
}

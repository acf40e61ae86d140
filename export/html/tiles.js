// The network as vector tiles, made when the map asks for them. The map could cut tiles itself, of
// GeoJSON, but would first copy all of it, object by object, to another thread.
//
// The format is Mapbox Vector Tile 2.1, which is protocol buffers: a tile has layers, a layer has
// features, keys and values; a feature has the numbers of its keys and values, and its geometry.

const tileExtent = 8192;
const tileMargin = 1024;  // for what is as wide as a road there
const finestTile = 16;
const nodesFrom = 15;
const namesFrom = 12;
const numbersFrom = 9;
const servicesFrom = 10;

/** Takes what protocol buffers are made of. */
class ByteWriter {
  constructor() {
    this.bytes = new Uint8Array(1 << 12);
    this.size = 0;
  }

  /** @param {number} more */
  reserve(more) {
    if (this.size + more <= this.bytes.length) return;
    const bytes = new Uint8Array(2 * (this.size + more));
    bytes.set(this.bytes);
    this.bytes = bytes;
  }
  /** @param {number} value a whole number below 2^32 */
  varint(value) {
    this.reserve(5);
    for (; value > 127; value >>>= 7) this.bytes[this.size++] = (value & 127) | 128;
    this.bytes[this.size++] = value;
  }
  /** @param {number} value a whole number of 31 bits with a sign */
  signed(value) {
    this.varint(((value << 1) ^ (value >> 31)) >>> 0);
  }
  /** @param {number} field @param {number} value */
  number(field, value) {
    this.varint(field << 3);
    this.varint(value);
  }
  /** @param {number} field @param {Uint8Array} content */
  content(field, content) {
    this.varint((field << 3) | 2);
    this.varint(content.length);
    this.reserve(content.length);
    this.bytes.set(content, this.size);
    this.size += content.length;
  }
  /** What was written, until more is. */
  written() {
    return this.bytes.subarray(0, this.size);
  }
}

class TileLayer {
  /** @param {string} name */
  constructor(name) {
    this.writer = new ByteWriter();
    this.writer.number(15, 2);
    this.writer.content(1, new TextEncoder().encode(name));
    this.writer.number(5, tileExtent);
    /** @type {Map<string, number>} */
    this.keys = new Map();
    /** @type {Map<string | number | boolean, number>} */
    this.values = new Map();
    this.feature = new ByteWriter();
    this.tags = new ByteWriter();
    this.geometry = new ByteWriter();
  }

  /** For the feature that is next. @param {string} key @param {string | number | boolean} value */
  tag(key, value) {
    for (const [table, entry] of /** @type {[Map<any, number>, any][]} */ ([
      [this.keys, key], [this.values, value]])) {
      let number = table.get(entry);
      if (number === undefined) table.set(entry, (number = table.size));
      this.tags.varint(number);
    }
  }
  /**
   * Ends a feature with the tags and the geometry that were written.
   * @param {number} id
   * @param {1 | 2} type a point or lines
   */
  add(id, type) {
    const { feature, tags, geometry } = this;
    feature.size = 0;
    feature.number(1, id);
    feature.content(2, tags.written());
    feature.number(3, type);
    feature.content(4, geometry.written());
    this.writer.content(2, feature.written());
    tags.size = geometry.size = 0;
  }
  /** @param {ByteWriter} tile */
  end(tile) {
    const encoder = new TextEncoder();
    for (const key of this.keys.keys()) this.writer.content(3, encoder.encode(key));
    for (const value of this.values.keys()) {
      const { feature } = this;
      feature.size = 0;
      if (typeof value === "string") feature.content(1, encoder.encode(value));
      else if (typeof value === "boolean") feature.number(7, Number(value));
      else feature.content(3, new Uint8Array());
      if (typeof value === "number") {
        feature.size = 0;
        feature.varint((3 << 3) | 1);
        feature.reserve(8);
        new DataView(feature.bytes.buffer).setFloat64(feature.size, value, true);
        feature.size += 8;
      }
      this.writer.content(4, feature.written());
    }
    tile.content(3, this.writer.written());
  }
}

/**
 * Writes lines as commands: go to, and so many lines on.
 * @param {ByteWriter} writer
 * @param {number[][]} parts x and y in turns
 */
function writeLines(writer, parts) {
  let [x, y] = [0, 0];
  for (const part of parts) {
    for (let i = 0; i < part.length; i += 2) {
      if (i === 0) writer.varint((1 << 3) | 1);
      if (i === 2) writer.varint(((part.length / 2 - 1) << 3) | 2);
      writer.signed(part[i] - x);
      writer.signed(part[i + 1] - y);
      [x, y] = [part[i], part[i + 1]];
    }
  }
}

/**
 * What of the way from 0 to 1 lies within limits, going from `from` by `by`.
 * @param {[number, number]} share in and out
 * @param {number} from
 * @param {number} by
 */
function clipShare(share, from, by) {
  for (const [start, step] of [[from + tileMargin, by], [tileExtent + tileMargin - from, -by]]) {
    if (step === 0) {
      if (start < 0) share[1] = -1;
    } else if (step > 0) {
      share[0] = Math.max(share[0], -start / step);
    } else {
      share[1] = Math.min(share[1], -start / step);
    }
  }
}

/** On the square map of the world, from 0 to 1. @param {number} longitude */
function mercatorX(longitude) {
  return longitude / 360 + 0.5;
}
/** The same from the north. @param {number} latitude */
function mercatorY(latitude) {
  const most = 85.051129;
  const y = Math.max(-most, Math.min(latitude, most)) * radians;
  return 0.5 - Math.log(Math.tan(Math.PI / 4 + y / 2)) / (2 * Math.PI);
}

/**
 * @typedef {object} Stretch a part of a road on one level
 * @property {number} road
 * @property {number} first of its points among all
 * @property {number} last
 * @property {number} level
 * @property {number} elevation in metres, in the mean
 */

class TileMaker {
  /**
   * @param {Network} network
   * @param {Int32Array} components
   * @param {string[]} numbers of the roads, "" for none
   */
  constructor(network, components, numbers) {
    this.network = network;
    this.components = components;
    this.numbers = numbers;
    this.written = network.names.texts.map(isWrittenLetterByLetter);
    this.classes = network.highways.texts.map(roadClass);
    /** Of the network's points, x and y in turns. */
    this.points = network.points.map((degrees, i) =>
      i % 2 === 0 ? mercatorX(degrees) : mercatorY(degrees));
    this.nodesX = network.longitudes.map(mercatorX);
    this.nodesY = network.latitudes.map(mercatorY);
    /** @type {Stretch[]} */
    this.stretches = [];
    this.cutAtLevels();
    this.boxes = new Float64Array(4 * this.stretches.length);
    this.stretches.forEach(({ first, last }, i) => {
      const [west, north, east, south] = [4 * i, 4 * i + 1, 4 * i + 2, 4 * i + 3];
      this.boxes[west] = this.boxes[north] = Infinity;
      this.boxes[east] = this.boxes[south] = -Infinity;
      for (let j = 2 * first; j <= 2 * last; j += 2) {
        this.boxes[west] = Math.min(this.boxes[west], this.points[j]);
        this.boxes[north] = Math.min(this.boxes[north], this.points[j + 1]);
        this.boxes[east] = Math.max(this.boxes[east], this.points[j]);
        this.boxes[south] = Math.max(this.boxes[south], this.points[j + 1]);
      }
    });
    this.levels = [...new Set(this.stretches.map(({ level }) => level))].sort((a, b) => a - b);
  }

  cutAtLevels() {
    const { elevations, roadCount, starts } = this.network;
    for (let road = 0; road < roadCount; ++road) {
      const end = starts[road + 1] - 1;
      for (let first = starts[road]; first < end;) {
        const level = levelOf((elevations[first] + elevations[first + 1]) / 2);
        let last = first;
        let sum = 0;
        for (; last < end; ++last) {
          const middle = (elevations[last] + elevations[last + 1]) / 2;
          if (levelOf(middle) !== level) break;
          sum += middle;
        }
        const elevation = sum / (last - first) || 0;
        this.stretches.push({ road, first, last, level, elevation });
        first = last;
      }
    }
  }

  /** @param {number} z @param {number} x @param {number} y @returns {ArrayBuffer} */
  tile(z, x, y) {
    const tiles = 2 ** z;
    const margin = tileMargin / tileExtent;
    const [west, north] = [(x - margin) / tiles, (y - margin) / tiles];
    const [east, south] = [(x + 1 + margin) / tiles, (y + 1 + margin) / tiles];
    const roads = new TileLayer("roads");
    const nodes = new TileLayer("nodes");
    const { boxes, stretches } = this;
    // A line across the antimeridian goes on beyond the map's edge, which is also at the other edge.
    for (const around of [0, -1, 1]) {
      for (let i = 0; i < stretches.length; ++i) {
        if (boxes[4 * i] + around <= east && boxes[4 * i + 2] + around >= west &&
            boxes[4 * i + 1] <= south && boxes[4 * i + 3] >= north) {
          this.addStretch(roads, z, x / tiles - around, y / tiles, stretches[i]);
        }
      }
      if (z < nodesFrom) continue;
      for (let node = 0; node < this.network.nodeCount; ++node) {
        const nodeX = this.nodesX[node] + around;
        const nodeY = this.nodesY[node];
        if (nodeX > east || nodeX < west || nodeY > south || nodeY < north) continue;
        writeLines(nodes.geometry, [[Math.round((nodeX * tiles - x) * tileExtent),
                                     Math.round((nodeY * tiles - y) * tileExtent)]]);
        nodes.add(node, 1);
      }
    }
    const tile = new ByteWriter();
    roads.end(tile);
    nodes.end(tile);
    return tile.bytes.slice(0, tile.size).buffer;
  }

  /**
   * @param {TileLayer} layer
   * @param {number} z
   * @param {number} west
   * @param {number} north
   * @param {Stretch} stretch
   */
  addStretch(layer, z, west, north, { road, first, last, level, elevation }) {
    const { network } = this;
    const kind = this.classes[network.highways.numbers[road]];
    if (z < servicesFrom && kind.class === "service") return;
    const parts = this.clipped(this.points.subarray(2 * first, 2 * last + 2), z, west, north);
    if (parts.length === 0) return;
    layer.tag("class", kind.class);
    if (kind.link) layer.tag("link", true);
    if (level !== 0) layer.tag("level", level);
    if (elevation !== 0) layer.tag("elevation", elevation);
    if (network.pieces[road] > 1) layer.tag("pieces", network.pieces[road]);
    if (this.components[road] > 0) layer.tag("component", this.components[road]);
    if (network.directions[road] !== bothWays) layer.tag("direction", network.directions[road]);
    if (z >= numbersFrom && this.numbers[road]) {
      layer.tag("number", this.numbers[road].replaceAll(";", " · "));
    }
    const name = network.nameOf(road);
    if (z >= namesFrom && name) {
      layer.tag("name", name);
      if (!this.written[network.names.numbers[road]]) layer.tag("image", true);
    }
    writeLines(layer.geometry, parts);
    layer.add(road, 2);
  }

  /**
   * The parts of a line in a tile, in its units, without points that are too close to see.
   * @param {Float64Array} line
   * @param {number} z
   * @param {number} west
   * @param {number} north
   */
  clipped(line, z, west, north) {
    const scale = tileExtent * 2 ** z;
    const nearest = z < finestTile ? tileExtent / 512 : 0;  // a pixel
    /** @type {number[][]} */
    const parts = [];
    /** @type {number[] | null} */
    let part = null;
    let fromX = (line[0] - west) * scale;
    let fromY = (line[1] - north) * scale;
    for (let i = 2; i < line.length; i += 2) {
      const toX = (line[i] - west) * scale;
      const toY = (line[i + 1] - north) * scale;
      const isLast = i === line.length - 2;
      if (part && !isLast && Math.abs(toX - fromX) < nearest && Math.abs(toY - fromY) < nearest) continue;
      /** @type {[number, number]} */
      const share = [0, 1];
      clipShare(share, fromX, toX - fromX);
      clipShare(share, fromY, toY - fromY);
      if (share[0] > share[1]) {
        part = null;
      } else {
        const at = (/** @type {number} */ t) => [Math.round(fromX + t * (toX - fromX)),
                                                 Math.round(fromY + t * (toY - fromY))];
        if (!part) parts.push((part = at(share[0])));
        part.push(...at(share[1]));
        if (share[1] < 1) part = null;
      }
      fromX = toX;
      fromY = toY;
    }
    return parts;
  }
}

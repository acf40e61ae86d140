// The network as vector tiles, made when the map asks for them. The map could cut tiles itself, of
// GeoJSON, but would first copy all of it, object by object, to another thread.

/** For what is as wide as a road there: as many pixels as the widest at the zoom of the next tiles. */
const tileMargin = tileExtent / 32;
const finestTile = 16;
const nodesFrom = 15;
const namesFrom = 12;
const minorNamesFrom = 14;
const numbersFrom = 9;
const servicesFrom = 10;

/** @param {RoadClass} kind @param {number} zoom */
function isDrawn(kind, zoom) {
  return kind.class !== "service" || zoom >= servicesFrom;
}

/**
 * What of the way from 0 to 1 lies within limits, going from `from` by `by`.
 * @param {[number, number]} share in and out
 * @param {number} from
 * @param {number} by
 */
function clipShare(share, from, by) {
  const low = -tileMargin - from;
  const high = tileExtent + tileMargin - from;
  if (by === 0) {
    if (low > 0 || high < 0) share[1] = -1;
    return;
  }
  share[0] = Math.max(share[0], Math.min(low / by, high / by));
  share[1] = Math.min(share[1], Math.max(low / by, high / by));
}

/**
 * The parts of a line in a tile, in its units, without points that are too close to see.
 * @param {Float64Array} line
 * @param {number} z
 * @param {number} west
 * @param {number} north
 */
function clippedLine(line, z, west, north) {
  const scale = tileExtent * 2 ** z;
  const nearest = z < finestTile ? tileExtent / 512 : 0;  // a pixel
  /** @type {Part[]} */
  const parts = [];
  /** @type {Part | null} */
  let part = null;
  let fromX = (line[0] - west) * scale;
  let fromY = (line[1] - north) * scale;
  /** @type {[number, number]} */
  const share = [0, 1];
  for (let i = 2; i < line.length; i += 2) {
    const toX = (line[i] - west) * scale;
    const toY = (line[i + 1] - north) * scale;
    const isLast = i === line.length - 2;
    if (part && !isLast && Math.abs(toX - fromX) < nearest && Math.abs(toY - fromY) < nearest) continue;
    share[0] = 0;
    share[1] = 1;
    clipShare(share, fromX, toX - fromX);
    clipShare(share, fromY, toY - fromY);
    const start = share[0];
    const end = share[1];
    if (start <= end) {
      if (!part) {
        parts.push((part = [Math.round(fromX + start * (toX - fromX)),
                            Math.round(fromY + start * (toY - fromY))]));
      }
      part.push(Math.round(fromX + end * (toX - fromX)), Math.round(fromY + end * (toY - fromY)));
    }
    if (start > end || end < 1) part = null;
    fromX = toX;
    fromY = toY;
  }
  return parts;
}

/**
 * @typedef {object} Stretch a part of a road on one level
 * @property {number} road
 * @property {number} first of its points among all
 * @property {number} last
 * @property {number} look what looks the same has the same
 */

class TileMaker {
  /**
   * @param {Network} network
   * @param {Float64Array} points the network's on the square map of the world, x and y in turns
   * @param {Int32Array} components
   * @param {string[]} numbers of the roads, "" for none
   */
  constructor(network, points, components, numbers) {
    this.network = network;
    this.components = components;
    this.numbers = numbers;
    this.written = network.names.texts.map(isWrittenLetterByLetter);
    this.classes = network.highways.texts.map(roadClass);
    this.points = points;
    this.nodesX = network.longitudes.map(mercatorX);
    this.nodesY = network.latitudes.map(mercatorY);
    /** @type {Tags[]} */
    this.looks = [];
    /** That there are roads on, and the ground. @type {Set<number>} */
    this.levels = new Set([0]);
    /** @type {Stretch[]} */
    this.stretches = [];
    this.cutAtLevels();
    this.boxes = new Float64Array(4 * this.stretches.length);
    this.stretches.forEach(({ first, last }, i) =>
      this.boxes.set(mercatorBox(this.points.subarray(2 * first, 2 * last + 2)), 4 * i));
    this.bounds = mercatorBox(this.points);
  }

  cutAtLevels() {
    const { elevations, roadCount, starts } = this.network;
    /** @type {Map<string, number>} */
    const looks = new Map();
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
        this.levels.add(level);
        const values = this.lookOf(road, level, sum / (last - first) || 0);
        const look = numberOf(looks, values.join());
        if (look === this.looks.length) this.looks.push(this.tagsOf(values));
        this.stretches.push({ road, first, last, look });
        first = last;
      }
    }
  }

  /**
   * All that widths, colours, order and arrows go by.
   * @param {number} road
   * @param {number} level
   * @param {number} elevation in metres, in the mean
   */
  lookOf(road, level, elevation) {
    const { network } = this;
    return [network.highways.numbers[road], level, network.directions[road],
            scales.height.numberOf(elevation), scales.pieces.numberOf(network.pieces[road]),
            scales.component.numberOf(this.components[road])];
  }
  /** The same as tags, but for what is as usual. @param {number[]} look */
  tagsOf([highway, level, direction, height, pieces, component]) {
    const kind = this.classes[highway];
    /** @type {[key: string, value: string | number, usual?: number][]} */
    const tags = [...Object.entries(lookOfClass(kind)), ["level", level, 0],
                  ["direction", direction, bothWays], ["height", height, scales.height.usual],
                  ["pieces", pieces, scales.pieces.usual],
                  ["component", component, scales.component.usual]];
    return tags.filter(([, value, usual]) => value !== usual)
      .map(([key, value]) => /** @type {[string, string | number]} */ ([key, value]));
  }

  /** What is written along a road at a zoom, if anything. @param {number} road @param {number} z */
  labelOf(road, z) {
    const { network, numbers, written } = this;
    const kind = this.classes[network.highways.numbers[road]];
    const isMajor = majorClasses.includes(kind.class);
    /** @type {Tags} */
    const tags = [];
    if (isMajor && z >= numbersFrom && numbers[road]) {
      tags.push(["number", numbers[road].replaceAll(";", " · ")]);
    }
    const name = z >= (isMajor ? namesFrom : minorNamesFrom) ? network.nameOf(road) : "";
    if (name) tags.push([written[network.names.numbers[road]] ? "name" : "image", name]);
    if (tags.length > 0) tags.push(["rank", rankOf(kind)]);
    return tags;
  }

  /**
   * The stretches that may cross a box, and how often around the world they do. A line across the
   * antimeridian goes on beyond the map's edge, which is also at the other edge.
   * @param {MercatorBox} box
   * @param {number} z the zoom that they are drawn at
   * @returns {[stretch: Stretch, around: number][]}
   */
  stretchesIn([west, north, east, south], z) {
    const { bounds, boxes, classes, stretches } = this;
    const { numbers } = this.network.highways;
    /** @type {[Stretch, number][]} */
    const found = [];
    for (const around of [0, -1, 1]) {
      if (bounds[0] + around > east || bounds[2] + around < west) continue;
      for (let i = 0; i < stretches.length; ++i) {
        if (boxes[4 * i] + around <= east && boxes[4 * i + 2] + around >= west &&
            boxes[4 * i + 1] <= south && boxes[4 * i + 3] >= north &&
            isDrawn(classes[numbers[stretches[i].road]], z)) {
          found.push([stretches[i], around]);
        }
      }
    }
    return found;
  }

  /**
   * @param {MercatorBox} box
   * @returns {[node: number, around: number][]}
   */
  nodesIn([west, north, east, south]) {
    /** @type {[number, number][]} */
    const found = [];
    for (const around of [0, -1, 1]) {
      for (let node = 0; node < this.network.nodeCount; ++node) {
        const x = this.nodesX[node] + around;
        const y = this.nodesY[node];
        if (x <= east && x >= west && y <= south && y >= north) found.push([node, around]);
      }
    }
    return found;
  }

  /** @param {number} z @param {number} x @param {number} y @returns {ArrayBuffer} */
  tile(z, x, y) {
    const tiles = 2 ** z;
    const margin = tileMargin / tileExtent;
    /** @type {MercatorBox} */
    const box = [(x - margin) / tiles, (y - margin) / tiles,
                 (x + 1 + margin) / tiles, (y + 1 + margin) / tiles];
    /** What looks the same is one feature. @type {Map<number, Part[]>} */
    const lines = new Map();
    const labels = new TileLayer("labels");
    for (const [{ road, first, last, look }, around] of this.stretchesIn(box, z)) {
      const line = this.points.subarray(2 * first, 2 * last + 2);
      const parts = clippedLine(line, z, x / tiles - around, y / tiles);
      if (parts.length === 0) continue;
      const others = lines.get(look);
      if (others) others.push(...parts);
      else lines.set(look, [...parts]);
      const label = this.labelOf(road, z);
      if (label.length > 0) labels.add(featureType.lines, label, parts);
    }
    const roads = new TileLayer("roads");
    for (const [look, parts] of lines) roads.add(featureType.lines, this.looks[look], parts);
    const nodes = new TileLayer("nodes");
    if (z >= nodesFrom) {
      for (const [node, around] of this.nodesIn(box)) {
        nodes.add(featureType.points, [],
                  [[Math.round(((this.nodesX[node] + around) * tiles - x) * tileExtent),
                    Math.round((this.nodesY[node] * tiles - y) * tileExtent)]]);
      }
    }
    return tileOf([roads, labels, nodes]);
  }
}

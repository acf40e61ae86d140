// On the WGS 84 ellipsoid, and on the map.

/** @typedef {[number, number]} Place longitude, latitude in degrees; the longitude may be beyond 180 */
/** @typedef {[number, number, number, number]} Box west, south, east, north in degrees */

const radians = Math.PI / 180;

/**
 * Metres between two places, along the ellipsoid where they are near each other.
 * @param {Place} a
 * @param {Place} b
 */
function distanceBetween([x1, y1], [x2, y2]) {
  const axis = 6378137;
  const eccentricity = 0.0066943799901413165;  // squared
  const sine = Math.sin(((y1 + y2) / 2) * radians);
  const flat = 1 - eccentricity * sine * sine;
  const normal = axis / Math.sqrt(flat);
  const east = normal * Math.cos(((y1 + y2) / 2) * radians) * (x2 - x1) * radians;
  const north = ((normal * (1 - eccentricity)) / flat) * (y2 - y1) * radians;
  return Math.hypot(east, north);
}

/**
 * The longitude, or that of the same place once around, that is nearest to `near`.
 * @param {number} longitude
 * @param {number} near
 */
function unwrapped(longitude, near) {
  return longitude + 360 * Math.round((near - longitude) / 360);
}

/**
 * Metres from the start of a line to each of its points.
 * @param {Place[]} line
 */
function distancesAlong(line) {
  const distances = [0];
  for (let i = 1; i < line.length; ++i) {
    distances.push(distances[i - 1] + distanceBetween(line[i - 1], line[i]));
  }
  return distances;
}

/**
 * The smallest box around points; none around nothing.
 * @param {ArrayLike<number>} points longitude and latitude in turns
 * @returns {Box | null}
 */
function boxAround(points) {
  if (points.length === 0) return null;
  /** @type {Box} */
  const box = [points[0], points[1], points[0], points[1]];
  for (let i = 0; i < points.length; i += 2) {
    const x = unwrapped(points[i], (box[0] + box[2]) / 2);
    box[0] = Math.min(box[0], x);
    box[1] = Math.min(box[1], points[i + 1]);
    box[2] = Math.max(box[2], x);
    box[3] = Math.max(box[3], points[i + 1]);
  }
  return box;
}

/** @typedef {[west: number, north: number, east: number, south: number]} MercatorBox */

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
/** @param {number} x */
function degreesOfX(x) {
  return 360 * (x - 0.5);
}
/** @param {number} y */
function degreesOfY(y) {
  return (2 * Math.atan(Math.exp((0.5 - y) * 2 * Math.PI)) - Math.PI / 2) / radians;
}
/** @param {Float64Array} points longitude and latitude in turns */
function mercatorPoints(points) {
  return points.map((degrees, i) => (i % 2 === 0 ? mercatorX(degrees) : mercatorY(degrees)));
}

/** @param {Float64Array} points x and y in turns @returns {MercatorBox} */
function mercatorBox(points) {
  /** @type {MercatorBox} */
  const box = [Infinity, Infinity, -Infinity, -Infinity];
  for (let i = 0; i < points.length; i += 2) {
    box[0] = Math.min(box[0], points[i]);
    box[1] = Math.min(box[1], points[i + 1]);
    box[2] = Math.max(box[2], points[i]);
    box[3] = Math.max(box[3], points[i + 1]);
  }
  return box;
}

/**
 * How far a point is from a line.
 * @param {number} x
 * @param {number} y
 * @param {Float64Array} line x and y in turns
 */
function distanceToLine(x, y, line) {
  let nearest = Infinity;
  for (let i = 0; i < line.length; i += 2) {
    const from = Math.max(i - 2, 0);
    const dx = line[i] - line[from];
    const dy = line[i + 1] - line[from + 1];
    const along = ((x - line[from]) * dx + (y - line[from + 1]) * dy) / (dx * dx + dy * dy);
    const t = along > 0 ? Math.min(along, 1) : 0;  // also for a line without a length
    nearest = Math.min(nearest, Math.hypot(x - line[from] - t * dx, y - line[from + 1] - t * dy));
  }
  return nearest;
}

/** @param {number} metres */
function lengthText(metres) {
  if (metres < 1000) return `${metres.toFixed(metres < 100 ? 1 : 0)} m`;
  return `${(metres / 1000).toFixed(metres < 100000 ? 2 : 0)} km`;
}

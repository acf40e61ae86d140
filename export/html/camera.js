// What of the network the map shows at first.

const closest = 18;  // the zoom of a flight
const closestZoom = 22;
const worldSize = 512;  // pixels of the map of the world at zoom 0

/** What lies over the map. */
function mapPadding() {
  const margin = 48;
  const panel = document.getElementById("panel")?.getBoundingClientRect();
  const bar = document.getElementById("bar")?.getBoundingClientRect();
  const padding = { top: margin, bottom: margin, left: margin, right: margin };
  if (narrowWindow.matches) {
    padding.top += bar?.height ?? 0;
    padding.left = padding.right = 24;
    if (panel?.height) padding.bottom = Math.min(innerHeight - panel.top, innerHeight / 2) + 24;
  } else if (panel?.width) {
    padding.left += panel.right;
  }
  return padding;
}

/**
 * @typedef {object} Camera
 * @property {Place} center
 * @property {number} zoom
 * @property {boolean} isOfAddress
 * @property {boolean} isLevel and has north at the top
 */

/** That of the address, or all of the network. @param {Network} network @returns {Camera} */
function firstCamera(network) {
  const [zoom, latitude, longitude, bearing = 0, pitch = 0] =
    (address.read().get("map") ?? "").split("/").map(Number);
  if (Math.abs(latitude) <= 90 && zoom >= 0 && zoom <= closestZoom && Number.isFinite(longitude)) {
    return { center: [longitude, latitude], zoom, isOfAddress: true,
             isLevel: bearing === 0 && pitch === 0 };
  }
  const [west, south, east, north] = boxAround(network.points) ?? [-180, -60, 180, 60];
  const { top, bottom, left, right } = mapPadding();
  const [width, height] = [mercatorX(east) - mercatorX(west), mercatorY(south) - mercatorY(north)];
  const [wide, high] = [innerWidth - left - right, innerHeight - top - bottom].map(
    (pixels) => Math.log2(Math.max(pixels, 1) / worldSize));
  const fitting = Math.min(closest, wide - Math.log2(width), high - Math.log2(height));
  const scale = worldSize * 2 ** fitting;
  return { center: [degreesOfX(mercatorX(west) + width / 2 - (left - right) / 2 / scale),
                    degreesOfY(mercatorY(north) + height / 2 - (top - bottom) / 2 / scale)],
           zoom: fitting, isOfAddress: false, isLevel: true };
}

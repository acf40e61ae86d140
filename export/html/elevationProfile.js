// The heights along a road as a small picture.

const svgNamespace = "http://www.w3.org/2000/svg";

/** @param {string} tag @param {Record<string, any>} attributes @param {...(Node | string)} children */
function svgElement(tag, attributes, ...children) {
  const made = document.createElementNS(svgNamespace, tag);
  for (const [name, value] of Object.entries(attributes)) made.setAttribute(name, String(value));
  made.append(...children);
  return made;
}

/** @param {number} elevation */
function elevationText(elevation) {
  return Number.isFinite(elevation) ? `${elevation.toFixed(1).replace(/^-(0\.0)$/, "$1")} m`
                                    : "unknown";
}

/**
 * @param {Place[]} line
 * @param {ArrayLike<number>} elevations of its points
 * @param {(place: Place | null) => void} onPoint called with the place under the pointer
 * @returns {Node} text alone where the road is level, or its heights are not known
 */
function elevationProfile(line, elevations, onPoint) {
  const values = Array.from(elevations);
  const lowest = Math.min(...values);
  const highest = Math.max(...values);
  if (!Number.isFinite(lowest) || !Number.isFinite(highest)) return document.createTextNode("unknown");
  if (lowest === highest) return document.createTextNode(`level, ${elevationText(lowest)}`);
  const [width, height, top, bottom] = [300, 84, 12, 18];
  const distances = distancesAlong(line);
  const length = distances[distances.length - 1] || 1;
  const low = Math.min(lowest, 0);
  const high = Math.max(highest, 0);
  /** @param {number} metres */
  const x = (metres) => (metres / length) * width;
  /** @param {number} elevation */
  const y = (elevation) => top + ((high - elevation) / (high - low)) * (height - top - bottom);
  const points = values.map((value, i) => `${x(distances[i]).toFixed(1)},${y(value).toFixed(1)}`);
  const mark = svgElement("circle", { r: 4, class: "mark", visibility: "hidden" });
  const label = `Elevation from ${elevationText(lowest)} to ${elevationText(highest)} over ` +
    lengthText(length);
  const svg = svgElement("svg", { viewBox: `-4 0 ${width + 8} ${height}`, class: "profile", role: "img",
                                  "aria-label": label },
    svgElement("polygon", { class: "area",
                            points: `0,${y(0)} ${points.join(" ")} ${width},${y(0)}` }),
    svgElement("line", { class: "ground", x1: 0, x2: width, y1: y(0), y2: y(0) }),
    svgElement("polyline", { class: "line", points: points.join(" ") }), mark,
    svgElement("text", { x: 0, y: height - 4 }, `${elevationText(values[0])} at the start`),
    svgElement("text", { x: width, y: height - 4, "text-anchor": "end" },
               `${elevationText(values[values.length - 1])} at the end`),
    svgElement("text", { x: width / 2, y: 9, "text-anchor": "middle" },
               `${elevationText(lowest)} to ${elevationText(highest)}`));
  svg.addEventListener("pointermove", (event) => {
    const box = svg.getBoundingClientRect();
    const share = (/** @type {PointerEvent} */ (event).clientX - box.left) / box.width;
    const wanted = Math.max(0, Math.min(share, 1)) * length;
    let i = distances.findIndex((metres, j) => j > 0 && metres >= wanted);
    if (i < 0) i = distances.length - 1;
    const t = (wanted - distances[i - 1]) / (distances[i] - distances[i - 1] || 1);
    /** @param {number} a @param {number} b */
    const between = (a, b) => a + (b - a) * t;
    mark.setAttribute("cx", String(x(wanted)));
    mark.setAttribute("cy", String(y(between(values[i - 1], values[i]))));
    mark.setAttribute("visibility", "visible");
    onPoint([between(line[i - 1][0], line[i][0]), between(line[i - 1][1], line[i][1])]);
  });
  svg.addEventListener("pointerleave", () => {
    mark.setAttribute("visibility", "hidden");
    onPoint(null);
  });
  return svg;
}

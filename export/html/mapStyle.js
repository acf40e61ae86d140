// How the map looks: its layers from the ground up.

/** @typedef {maplibregl.LayerSpecification} Layer */
/** @typedef {any} Expression */

/** Half the height from one layer of bridges or tunnels to the next, in metres. */
const levelHeight = 2.45;
const lowestLevel = -3;
const highestLevel = 6;

/**
 * Where a stretch of road stands in the order of drawing.
 * @param {number} elevation
 */
function levelOf(elevation) {
  const level = Math.round(elevation / levelHeight);
  return Number.isNaN(level) ? 0 : Math.max(lowestLevel, Math.min(level, highestLevel));
}

/** Pixels across a road by class, at the zooms of `widthZooms`. */
const widthZooms = [9, 12, 14, 16, 19];
/** @type {Record<string, number[]>} */
const roadWidths = {
  motorway: [1.3, 2.8, 5.5, 12, 38],
  trunk: [1.2, 2.5, 5, 11, 35],
  primary: [1.1, 2.2, 4.6, 10.5, 32],
  secondary: [0.8, 1.8, 4.1, 9.5, 29],
  tertiary: [0.6, 1.4, 3.5, 8.5, 26],
  service: [0.15, 0.35, 1.4, 4.2, 13],
  other: [0.3, 0.7, 2.6, 7, 22],
};
const linkWidth = 0.7;
/** How much wider both edges are together. */
const edgeWidths = [0.3, 0.8, 1.3, 2, 3];
const widthBase = 1.5;  // of the curve between zooms
const widthScale = 1000;  // of widths as whole numbers
const nodesVisibleFrom = 15.5;
/** Up to which zoom roads have the colours from afar, and from which those from near. */
const farTo = 12.5;
const nearFrom = 14;
/** The zoom from which minor roads have edges. */
const edgesFrom = 12.5;
/** From afar there are two levels alone: the ground, with all above it, and what is below. */
const levelsFrom = 12;

/**
 * @param {(kind: string) => any} valueOf of a class; of "other" for those that are none of `kinds`
 * @param {string[]} kinds
 * @returns {Expression}
 */
function byClass(valueOf, kinds) {
  return ["match", ["get", "class"], ...kinds.flatMap((kind) => [kind, valueOf(kind)]),
          valueOf("other")];
}

/** Pixels across a road, and as much more. @param {number[]} more at each zoom @returns {Expression} */
function widthExpression(more = [0, 0, 0, 0, 0]) {
  return ["interpolate", ["exponential", widthBase], ["zoom"], ...widthZooms.flatMap((zoom, i) => [
    zoom, ["+", more[i], ["/", ["get", `width ${zoom}`], widthScale]]])];
}

/** @param {RoadClass} kind */
function widthsOf(kind) {
  return (roadWidths[kind.class] ?? roadWidths.other).map(
    (width) => width * (kind.link ? linkWidth : 1));
}

/** What lies at a zoom between values at `widthZooms`. @param {number[]} values @param {number} zoom */
function atZoom(values, zoom) {
  const next = widthZooms.findIndex((end) => zoom < end);
  if (next <= 0) return next === 0 ? values[0] : values[values.length - 1];
  const [start, end] = [widthZooms[next - 1], widthZooms[next]];
  const share = (widthBase ** (zoom - start) - 1) / (widthBase ** (end - start) - 1);
  return values[next - 1] + share * (values[next] - values[next - 1]);
}

/** @typedef {{class: string, link: boolean}} RoadClass */

/** The first of the classes along a road. @param {string} highway @returns {RoadClass} */
function roadClass(highway) {
  const first = highway.split(";")[0];
  const link = first.endsWith("_link");
  return { class: link ? first.slice(0, -"_link".length) : first, link };
}

/** What matters more has the higher one. @param {RoadClass} kind */
function rankOf(kind) {
  const place = roadClasses.indexOf(kind.class);
  return place < 0 ? 0 : 2 * (roadClasses.length - place) - Number(kind.link);
}

/** The properties that all layers of roads go by. @param {RoadClass} kind */
function lookOfClass(kind) {
  const widths = widthsOf(kind).map((width, i) => [`width ${widthZooms[i]}`,
                                                   Math.round(width * widthScale)]);
  return { class: kind.class, rank: rankOf(kind), ...Object.fromEntries(widths) };
}

/** @typedef {"class" | "direction" | "elevation" | "pieces" | "component"} Colouring */

/**
 * Numbers of colours; what has no number on the map has the usual one.
 * @typedef {{usual: number, numberOf: (value: number) => number}} Scale
 */

/** @param {number[]} steps ascending @returns {(value: number) => number} */
function stepNumber(steps) {
  return (value) => steps.filter((step) => value >= step).length;
}

const otherGroups = themes.light.groups.length - 1;
const scales = {
  /** @type {Scale} */
  height: { usual: 2, numberOf: stepNumber([-4, -1, 1, 4]) },
  /** @type {Scale} */
  pieces: { usual: 0, numberOf: stepNumber([2, 3, 5, 9]) },
  /** @type {Scale} */
  component: { usual: 0, numberOf: (rank) => (rank === 0 ? 0 : 1 + ((rank - 1) % otherGroups)) },
};

/** @param {keyof typeof scales} key @param {string[]} colours by number @returns {Expression} */
function scaleExpression(key, colours) {
  const { usual } = scales[key];
  return ["match", ["get", key],
          ...colours.flatMap((colour, i) => (i === usual ? [] : [i, colour])), colours[usual]];
}

/**
 * What each colour means, for the key.
 * @typedef {{title: string, entries: [label: string, colour: string][]}} Key
 */

/** @param {Theme} theme @returns {Record<Colouring, Key>} */
function keysOf(theme) {
  const { heights, scale, groups, calm } = theme;
  return {
    class: { title: "Class of road", entries: [
      ["Motorway", theme.roads.motorway], ["Trunk", theme.roads.trunk],
      ["Primary", theme.roads.primary], ["Secondary", theme.roads.secondary],
      ["Tertiary", theme.roads.tertiary], ["Other", theme.minor]] },
    direction: { title: "Direction of travel", entries: [
      ["Both ways", calm], ["One-way", theme.accent]] },
    elevation: { title: "Elevation above the ground", entries: [
      ["Below −4 m", heights[0]], ["−4 to −1 m", heights[1]], ["On the ground", heights[2]],
      ["1 to 4 m", heights[3]], ["Above 4 m", heights[4]]] },
    pieces: { title: "Pieces of ways joined", entries: [
      ["1", scale[0]], ["2", scale[1]], ["3 or 4", scale[2]], ["5 to 8", scale[3]],
      ["9 and more", scale[4]]] },
    component: { title: "What is connected", entries: [
      ["Largest part", groups[0]], ...groups.slice(1).map((colour, i) => (
        /** @type {[string, string]} */ ([`Parts ${i + 2}, ${i + 1 + groups.length}, …`, colour])))] },
  };
}

/** From afar, minor roads are all the same. @param {Theme} theme @param {string} kind @param {boolean} isFar */
function colourOf(theme, kind, isFar) {
  const isMinor = isFar && (!majorClasses.includes(kind) || kind === "tertiary");
  return isMinor ? theme.minorFar : theme.roads[kind] ?? theme.minor;
}

/** The colours of roads. @param {Theme} theme @param {Colouring} colouring @returns {Expression} */
function colourExpression(theme, colouring) {
  switch (colouring) {
    case "direction":
      return ["case", ["has", "direction"], theme.accent, theme.calm];
    case "elevation":
      return scaleExpression("height", theme.heights);
    case "pieces":
      return scaleExpression("pieces", theme.scale);
    case "component":
      return scaleExpression("component", theme.groups);
    default: {
      /** @param {boolean} isFar */
      const colours = (isFar) => byClass((kind) => colourOf(theme, kind, isFar), roadClasses);
      return ["interpolate", ["linear"], ["zoom"], farTo, colours(true), nearFrom, colours(false)];
    }
  }
}

/**
 * The two layers of the roads of a level: their edges, and what is between them.
 * @param {Theme} theme
 * @param {Colouring} colouring
 * @param {number} level
 * @param {boolean} isLowest
 * @returns {Layer[]}
 */
function roadLayers(theme, colouring, level, isLowest) {
  const isRaised = level > 0;
  const isBelow = level < 0;
  const isSeenFromAfar = level === 0 || (isBelow && isLowest);
  const common = { type: /** @type {const} */ ("line"), source: "network", "source-layer": "roads" };
  /** @type {any} */
  const levelOfRoad = ["coalesce", ["get", "level"], 0];
  /** @type {any} */
  const fromAfar = isSeenFromAfar && [isBelow ? "<" : ">=", levelOfRoad, 0];
  // By the zoom of the tile, unlike `minzoom`: tiles from near are drawn until others take their place.
  /** @type {any} */
  const onLevel = ["step", ["zoom"], fromAfar, levelsFrom, ["==", levelOfRoad, level]];
  /** @type {any} */
  const isMajor = ["in", ["get", "class"], ["literal", majorClasses]];
  // From afar nobody sees what ends and corners look like.
  /** @type {any} */
  const shape = { "line-cap": ["step", ["zoom"], "butt", edgesFrom, "round"],
                  "line-join": ["step", ["zoom"], "miter", edgesFrom, "round"],
                  "line-sort-key": ["get", "rank"] };
  const edges = colouring === "class"
    ? byClass((kind) => theme.edges[kind] ?? theme.minorEdge, Object.keys(theme.edges))
    : theme.minorEdge;
  return [
    { id: `edges ${level}`, ...common,
      // Without edges, thin roads from afar look calmer.
      filter: ["all", onLevel, ["step", ["zoom"], isMajor, edgesFrom, true]],
      layout: { ...shape, ...(level === 0 ? {} : { "line-cap": "butt" }) },
      paint: {
        "line-color": isRaised ? theme.bridgeEdge : edges,
        "line-opacity": ["interpolate", ["linear"], ["zoom"], edgesFrom, ["case", isMajor, 0.8, 0],
                         edgesFrom + 1, isRaised ? 0.85 : 1],
        // Dashes beside the road: across it they would look like the ties of a railway.
        ...(isBelow ? { "line-gap-width": widthExpression(), "line-dasharray": [4, 3],
                        "line-width": ["interpolate", ["linear"], ["zoom"], 12, 0.6, 19, 1.6] }
                    : { "line-width": widthExpression(isRaised ? [0.6, 1.2, 2, 3, 4.5]
                                                               : edgeWidths) }),
      } },
    { id: `roads ${level}`, ...common, filter: onLevel,
      layout: { ...shape, ...(isBelow ? { "line-cap": "butt" } : {}) },
      paint: { "line-color": colourExpression(isBelow ? paler(theme) : theme, colouring),
               "line-width": widthExpression() } },
  ];
}

/** @param {Theme} theme @returns {Layer[]} */
function selectionLayers(theme) {
  return [
    { id: "selected roads", type: "line", source: "selection",
      filter: ["==", ["geometry-type"], "LineString"],
      // Round ends would lie over each other where roads meet, and be darker there.
      layout: { "line-join": "round", "line-cap": "butt" },
      paint: { "line-color": theme.accent, "line-width": widthExpression([3, 3, 3, 3, 3]),
               "line-opacity": 0.28 } },
    { id: "selected edges", type: "line", source: "selection",
      filter: ["==", ["geometry-type"], "LineString"],
      layout: { "line-join": "round" },
      paint: { "line-color": theme.accent, "line-gap-width": widthExpression([1, 1, 2, 3, 4]),
               "line-width": 2.5 } },
  ];
}

/** @param {Theme} theme @returns {Layer[]} */
function placeLayers(theme) {
  const severity = /** @type {any} */ (["match", ["get", "severity"], 0, theme.severities[0], 1,
                                        theme.severities[1], theme.severities[2]]);
  return [
    { id: "nodes", type: "circle", source: "network", "source-layer": "nodes",
      minzoom: nodesVisibleFrom,
      paint: { "circle-color": theme.paper, "circle-stroke-color": theme.node,
               "circle-radius": ["interpolate", ["linear"], ["zoom"], nodesVisibleFrom, 1.6, 17, 3.2, 20, 6],
               "circle-stroke-width": ["interpolate", ["linear"], ["zoom"], nodesVisibleFrom, 0.8, 18, 1.8] } },
    { id: "finding lines", type: "line", source: "findings",
      filter: ["literal", false],  // none yet
      layout: { "line-cap": "round", "line-join": "round",
                "line-sort-key": ["-", ["get", "severity"]] },
      paint: { "line-color": severity, "line-width": 5, "line-opacity": 0.55 } },
    { id: "finding points", type: "circle", source: "findings",
      filter: ["literal", false],
      layout: { "circle-sort-key": ["-", ["get", "severity"]] },
      paint: { "circle-color": severity, "circle-stroke-color": theme.halo,
               "circle-radius": ["interpolate", ["linear"], ["zoom"], 10, 3.5, 16, 7],
               "circle-stroke-width": 1.5 } },
    { id: "selected points", type: "circle", source: "selection",
      filter: ["==", ["geometry-type"], "Point"],
      paint: { "circle-color": theme.accent, "circle-opacity": 0.25, "circle-radius": 11,
               "circle-stroke-color": theme.accent, "circle-stroke-width": 2.5 } },
  ];
}

/** Arrows, numbers and names. @param {Theme} theme @returns {Layer[]} */
function labelLayers(theme) {
  const labels = { type: /** @type {const} */ ("symbol"), source: "network", "source-layer": "labels" };
  const onLine = { "symbol-placement": /** @type {const} */ ("line") };
  const font = ["Medium", ...labelFonts];  // the map takes the weight from the first name
  return [
    { id: "arrows", ...labels, "source-layer": "roads", minzoom: 15,
      filter: ["has", "direction"],
      layout: { ...onLine, "symbol-spacing": 110, "icon-image": "arrow",
                "icon-rotate": ["case", ["==", ["get", "direction"], forward], 0, 180],
                "icon-keep-upright": false, "icon-padding": 1,
                "icon-size": ["interpolate", ["linear"], ["zoom"], 15, 0.55, 18, 1] } },
    { id: "names", ...labels, minzoom: namesFrom,
      filter: ["has", "name"],
      layout: { ...onLine, "symbol-spacing": 320, "symbol-sort-key": ["-", ["get", "rank"]],
                "text-field": ["get", "name"], "text-font": font, "text-max-angle": 35,
                "text-padding": 3, "text-letter-spacing": 0.01,
                "text-size": ["interpolate", ["linear"], ["zoom"], 12, 10.5, 16, 12.5, 19, 15] },
      paint: { "text-color": theme.text, "text-halo-color": theme.halo, "text-halo-width": 1.6 } },
    { id: "name images", ...labels, minzoom: 14.5,
      filter: ["has", "image"],
      layout: { ...onLine, "symbol-spacing": 320, "symbol-sort-key": ["-", ["get", "rank"]],
                "icon-padding": [12, 4],  // the map makes room for them as if they lay level
                "icon-image": ["concat", isDark() ? "dark:" : "light:", ["get", "image"]] } },
    { id: "numbers", ...labels, minzoom: numbersFrom,
      filter: ["has", "number"],
      layout: { ...onLine, "symbol-spacing": 420, "text-field": ["get", "number"],
                "text-font": font, "text-size": 10, "text-rotation-alignment": "viewport",
                "icon-rotation-alignment": "viewport", "icon-image": "shield",
                "icon-text-fit": "both", "text-padding": 12, "icon-padding": 12 },
      paint: { "text-color": theme.text } },
  ];
}

/**
 * All layers, from the lowest to the highest.
 * @param {Theme} theme
 * @param {Colouring} colouring
 * @param {Iterable<number>} levels that there are roads on
 * @returns {Layer[]}
 */
function mapLayers(theme, colouring, levels) {
  return [
    { id: "paper", type: "background", paint: { "background-color": theme.paper } },
    ...[...levels].sort((a, b) => a - b).flatMap(
      (level, i) => roadLayers(theme, colouring, level, i === 0)),
    ...selectionLayers(theme),
    ...placeLayers(theme),
    ...labelLayers(theme),
  ];
}

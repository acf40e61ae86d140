// The map: what is drawn, and what is under a pointer.

/** @typedef {{kind: "road" | "node" | "finding", index: number}} Thing */

const longestFlight = 1200;  // milliseconds
const closest = 18;  // the zoom of a flight
const closestToPoint = 16.75;  // for what is around it to be seen

/** @param {any[]} features @returns {GeoJSON.FeatureCollection} */
function collection(features) {
  return { type: "FeatureCollection", features };
}
/** @param {Place[]} line @param {Record<string, any>} properties */
function lineFeature(line, properties) {
  return { type: "Feature", properties, geometry: { type: "LineString", coordinates: line } };
}
/** @param {Place} place @param {Record<string, any>} properties */
function pointFeature(place, properties) {
  return { type: "Feature", properties, geometry: { type: "Point", coordinates: place } };
}

/** @param {Findings} findings */
function findingFeatures(findings) {
  return findings.places.flatMap((lines, finding) => {
    const properties = { finding, severity: findings.severities[finding] };
    return lines.flatMap((line, i) => {
      if (line.length === 1) return [pointFeature(line[0], properties)];
      const feature = lineFeature(line, properties);
      if (i > 0) return [feature];
      return [feature, pointFeature(line[Math.floor(line.length / 2)], properties)];
    });
  });
}

class MapView {
  /** @param {HTMLElement} container */
  constructor(container) {
    /** @type {Colouring} */
    this.colouring = "class";
    /** @type {number[]} */
    this.levels = [];
    /** @type {Network | null} */
    this.network = null;
    this.showsFindings = false;
    /** @type {(thing: Thing | null, place: Place) => void} */
    this.onChoose = () => {};
    const empty = { type: /** @type {const} */ ("geojson"), data: collection([]) };
    this.isPlaced = address.read().has("map");  // which the map adds to the address, too
    this.map = new maplibregl.Map({
      container, hash: "map", attributionControl: false, maxZoom: 22, maxPitch: 60,
      style: { version: 8, sources: { findings: empty, selection: { ...empty, tolerance: 0.1 } },
               layers: [], transition: { duration: 0, delay: 0 } },
      fadeDuration: 0, clickTolerance: 5, trackResize: true,
    });
    this.isReady = this.map.once("style.load");
    this.map.addControl(new maplibregl.ScaleControl({ maxWidth: 110 }), "bottom-right");
    this.map.addControl(new maplibregl.NavigationControl({ visualizePitch: true }),
                        "bottom-right");
    this.map.on("styleimagemissing", ({ id }) => this.addNameImage(id));
    this.map.on("click", ({ point, lngLat }) =>
      this.onChoose(this.thingAt(point), [lngLat.lng, lngLat.lat]));
    if (matchMedia("(hover: hover)").matches) {
      this.map.on("mousemove", (event) => {
        if (this.map.isMoving()) return;
        this.map.getCanvas().style.cursor = this.thingAt(event.point) ? "pointer" : "";
      });
    }
  }

  /**
   * @param {Network} network
   * @param {Int32Array} components
   * @param {string[]} numbers
   */
  async show(network, components, numbers) {
    this.network = network;
    const box = boxAround(network.points);
    if (box && !this.isPlaced) {
      this.map.fitBounds(box, { padding: this.padding(), maxZoom: closest, animate: false });
    }
    const tiles = new TileMaker(network, components, numbers);
    this.levels = tiles.levels;
    maplibregl.addProtocol("network", async ({ url }) => {
      const [z, x, y] = url.split("/").slice(-3).map(Number);
      return { data: tiles.tile(z, x, y) };
    });
    await this.isReady;
    this.addImages();
    this.map.addSource("network", { type: "vector", tiles: ["network://{z}/{x}/{y}"],
                                    maxzoom: finestTile });
    const layers = mapLayers(currentTheme(), this.colouring, this.levels);
    for (const layer of layers) this.map.addLayer(layer);
  }

  /** @param {Findings} findings */
  setFindings(findings) {
    this.source("findings").setData(collection(findingFeatures(findings)));
  }

  /** @param {string} id */
  source(id) {
    return /** @type {maplibregl.GeoJSONSource} */ (this.map.getSource(id));
  }

  addImages() {
    const theme = currentTheme();
    for (const [id, image, options] of /** @type {[string, ImageData, object][]} */ ([
      ["arrow", arrowImage(theme), { pixelRatio: imageScale }],
      ["shield", shieldImage(theme), shieldOptions]])) {
      if (this.map.hasImage(id)) this.map.updateImage(id, image);
      else this.map.addImage(id, image, options);
    }
  }

  /** @param {string} id a theme, ":" and a name */
  addNameImage(id) {
    const colon = id.indexOf(":");
    if (colon < 0) return;
    const theme = id.slice(0, colon) === "dark" ? themes.dark : themes.light;
    this.map.addImage(id, nameImage(id.slice(colon + 1), theme), { pixelRatio: imageScale });
  }

  /** Draws all layers as the theme, the colouring and the list of findings ask for. */
  restyle() {
    if (!this.network) return;
    this.addImages();
    for (const layer of mapLayers(currentTheme(), this.colouring, this.levels)) {
      for (const [name, value] of Object.entries(layer.paint ?? {})) {
        this.map.setPaintProperty(layer.id, name, value);
      }
      if (layer.type !== "symbol") continue;
      this.map.setLayoutProperty(layer.id, "icon-image", layer.layout?.["icon-image"]);
    }
  }

  /** @param {Colouring} colouring */
  colourBy(colouring) {
    this.colouring = colouring;
    this.restyle();
  }

  /**
   * Those of these severities.
   * @param {Iterable<number>} severities
   */
  showFindings(severities) {
    const shown = [...severities];
    this.showsFindings = shown.length > 0;
    for (const [layer, shape] of [["finding lines", "LineString"], ["finding points", "Point"]]) {
      this.map.setFilter(layer, ["all", ["==", ["geometry-type"], shape],
                                 ["in", ["get", "severity"], ["literal", shown]]]);
    }
  }

  /**
   * Lines and points, as lines of one point, to stand out; `roads` tells their widths.
   * @param {Place[][]} lines
   * @param {number[]} roads
   */
  select(lines, roads = []) {
    this.source("selection")?.setData(collection(lines.map((line, i) => {
      if (line.length === 1) return pointFeature(line[0], {});
      const kind = roads.length > i ? this.network?.highwayOf(roads[i]) : undefined;
      return lineFeature(line, roadClass(kind ?? "other"));
    })));
  }

  /** @param {Place[][]} lines */
  flyTo(lines) {
    const box = boxAround(lines.flat(2));
    if (!box) return;
    const [west, south, east, north] = box;
    const maxZoom = west === east && south === north ? closestToPoint : closest;
    const camera = this.map.cameraForBounds(box, { padding: this.padding(), maxZoom });
    if (camera) this.map.flyTo({ ...camera, maxDuration: longestFlight, curve: 1.2 });
    // In a window with no room beside the panel.
    else this.map.jumpTo({ center: [(west + east) / 2, (south + north) / 2] });
  }

  /** Moves the map if something lies over the place. @param {Place} place */
  reveal(place) {
    const { x, y } = this.map.project(place);
    const { top, bottom, left, right } = this.padding();
    const isHidden = narrowWindow.matches ? y > innerHeight - bottom : x < left;
    if (!isHidden) return;
    this.map.easeTo({ center: place, offset: [(left - right) / 2, (top - bottom) / 2],
                      duration: 400 });
  }

  /** What lies over the map. */
  padding() {
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
   * The nearest within reach of a finger, or of a mouse.
   * @param {maplibregl.Point} point
   * @returns {Thing | null}
   */
  thingAt(point) {
    if (!this.network) return null;
    const reach = coarsePointer.matches ? 14 : 7;
    const layers = ["nodes", ...this.levels.map((level) => `roads ${level}`),
                    ...(this.showsFindings ? ["finding points", "finding lines"] : [])];
    const found = this.map.queryRenderedFeatures(
      [[point.x - reach, point.y - reach], [point.x + reach, point.y + reach]],
      { layers: layers.filter((layer) => this.map.getLayer(layer)) });
    /** @type {Thing | null} */
    let best = null;
    let nearest = Infinity;
    for (const { layer, id, properties } of found) {
      /** @type {[Thing, number]} */
      let [thing, away] = [{ kind: "road", index: Number(id) }, 0];
      if (layer.id === "nodes") {
        thing = { kind: "node", index: Number(id) };
        away = this.pixelsTo(point, [this.network.placeOf(thing.index)]) - reach;
      } else if (layer.source === "findings") {
        thing = { kind: "finding", index: properties.finding };
        away = -2 * reach;
      } else {
        away = this.pixelsTo(point, this.network.lineOf(thing.index));
      }
      if (away >= nearest) continue;
      nearest = away;
      best = thing;
    }
    return best;
  }

  /** @param {maplibregl.Point} point @param {Place[]} line */
  pixelsTo(point, line) {
    const { lng } = this.map.unproject(point);
    const around = unwrapped(line[0][0], lng) - line[0][0];
    return distanceToLine(point, line.map(([x, y]) => this.map.project([x + around, y])));
  }
}

// The map: what is drawn, and what is under a pointer.

/** @typedef {{kind: "road" | "node" | "finding", index: number}} Thing */

const longestFlight = 1200;  // milliseconds
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
  /**
   * Throws where there is no WebGL.
   * @param {HTMLElement} container
   * @param {Network} network
   * @param {TileMaker} tiles
   * @param {Camera} camera
   */
  constructor(container, network, tiles, { center, zoom }) {
    this.network = network;
    this.tiles = tiles;
    /** @type {Colouring} */
    this.colouring = "class";
    this.showsFindings = false;
    /** @type {(thing: Thing | null, place: Place) => void} */
    this.onChoose = () => {};
    maplibregl.addProtocol("network", async ({ url }) => {
      const [z, x, y] = url.split("/").slice(-3).map(Number);
      return { data: tiles.tile(z, x, y) };
    });
    this.map = new maplibregl.Map({
      container, center, zoom, hash: "map", attributionControl: false, maxZoom: closestZoom, maxPitch: 60,
      style: this.style(), validateStyle: false, fadeDuration: 0, clickTolerance: 5,
    });
    this.map.addControl(new maplibregl.ScaleControl({ maxWidth: 110 }), "bottom-right");
    this.map.addControl(new maplibregl.NavigationControl({ visualizePitch: true }),
                        "bottom-right");
    this.map.on("styleimagemissing", ({ id }) => this.addImage(id));
    this.map.on("click", ({ point, lngLat }) =>
      this.onChoose(this.thingAt(point), [lngLat.lng, lngLat.lat]));
    if (matchMedia("(hover: hover)").matches) {
      this.map.on("mousemove", (event) => {
        if (this.map.isMoving()) return;
        this.map.getCanvas().style.cursor = this.thingAt(event.point) ? "pointer" : "";
      });
    }
  }

  /** @returns {maplibregl.StyleSpecification} */
  style() {
    const empty = { type: /** @type {const} */ ("geojson"), data: collection([]) };
    return {
      version: 8, transition: { duration: 0, delay: 0 },
      sources: {
        network: { type: "vector", tiles: ["network://{z}/{x}/{y}"], maxzoom: finestTile },
        findings: empty, selection: { ...empty, tolerance: 0.1 },
      },
      layers: this.layers(),
    };
  }
  layers() {
    this.theme = currentTheme();
    return mapLayers(this.theme, this.colouring, this.tiles.levels);
  }

  /** @param {Findings} findings */
  setFindings(findings) {
    this.source("findings").setData(collection(findingFeatures(findings)));
  }

  /** @param {string} id */
  source(id) {
    return /** @type {maplibregl.GeoJSONSource} */ (this.map.getSource(id));
  }

  /** @param {string} id what a picture shows; of a name, a theme, ":" and the name */
  addImage(id) {
    const colon = id.indexOf(":");
    if (id === "arrow") {
      this.map.addImage(id, arrowImage(currentTheme()), { pixelRatio: imageScale });
    } else if (id === "shield") {
      this.map.addImage(id, shieldImage(currentTheme()), shieldOptions);
    } else if (colon >= 0) {
      const theme = id.slice(0, colon) === "dark" ? themes.dark : themes.light;
      this.map.addImage(id, nameImage(id.slice(colon + 1), theme), { pixelRatio: imageScale });
    }
  }

  /** Draws all layers as the theme, the colouring and the list of findings ask for. */
  restyle() {
    for (const [id, image] of Object.entries({ arrow: arrowImage, shield: shieldImage })) {
      if (this.map.hasImage(id)) this.map.updateImage(id, image(currentTheme()));
    }
    for (const layer of this.layers()) {
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
    this.source("selection").setData(collection(lines.map((line, i) => {
      if (line.length === 1) return pointFeature(line[0], {});
      const highway = roads.length > i ? this.network.highwayOf(roads[i]) : "other";
      return lineFeature(line, lookOfClass(roadClass(highway)));
    })));
  }

  /** @param {Place[][]} lines */
  flyTo(lines) {
    const box = boxAround(lines.flat(2));
    if (!box) return;
    const [west, south, east, north] = box;
    const maxZoom = west === east && south === north ? closestToPoint : closest;
    const padding = mapPadding();
    const { clientWidth, clientHeight } = this.map.getCanvas();  // later than the window's, if that changes
    const fits = padding.left + padding.right < clientWidth && padding.top + padding.bottom < clientHeight;
    const camera = fits && this.map.cameraForBounds(box, { padding, maxZoom });
    if (camera) this.map.flyTo({ ...camera, maxDuration: longestFlight, curve: 1.2 });
    // In a window with no room beside the panel.
    else this.map.jumpTo({ center: [(west + east) / 2, (south + north) / 2] });
  }

  /** Moves the map if something lies over the place. @param {Place} place */
  reveal(place) {
    const { x, y } = this.map.project(place);
    const { top, bottom, left, right } = mapPadding();
    const isHidden = narrowWindow.matches ? y > innerHeight - bottom : x < left;
    if (!isHidden) return;
    this.map.easeTo({ center: place, offset: [(left - right) / 2, (top - bottom) / 2],
                      duration: 400 });
  }

  /**
   * The nearest within reach of a finger, or of a mouse. Roads and Nodes are measured on the ground,
   * where a pixel is as wide as the view makes it there, and a road as wide as the style says.
   * @param {maplibregl.Point} point
   * @returns {Thing | null}
   */
  thingAt(point) {
    const pixels = coarsePointer.matches ? 14 : 7;
    const zoom = this.map.getZoom();
    const { map, network, tiles } = this;
    /** @type {Thing | null} */
    let best = null;
    let nearest = Infinity;
    /** @param {Thing} thing @param {number} away */
    const take = (thing, away) => {
      if (away >= nearest) return;
      nearest = away;
      best = thing;
    };
    const findings = !this.showsFindings ? [] : map.queryRenderedFeatures(
      [[point.x - pixels, point.y - pixels], [point.x + pixels, point.y + pixels]],
      { layers: ["finding points", "finding lines"] });
    for (const { properties } of findings) {
      take({ kind: "finding", index: properties.finding }, -Infinity);
    }
    const { lng, lat } = map.unproject(point);
    const beside = map.unproject([point.x + 1, point.y]);
    const around = 360 * Math.round(lng / 360);
    const [x, y] = [mercatorX(lng - around), mercatorY(lat)];
    const reach = pixels * Math.hypot(mercatorX(beside.lng - around) - x, mercatorY(beside.lat) - y);
    if (zoom >= nodesVisibleFrom) {
      for (const [index, aroundWorld] of tiles.nodesIn([x - reach, y - reach, x + reach, y + reach])) {
        const away = Math.hypot(tiles.nodesX[index] + aroundWorld - x, tiles.nodesY[index] - y);
        if (away <= reach) take({ kind: "node", index }, away - reach);
      }
    }
    /** @param {RoadClass} kind */
    const reachTo = (kind) => reach + atZoom(widthsOf(kind), zoom) / 2 / (worldSize * 2 ** zoom);
    const most = reachTo({ class: "motorway", link: false });
    for (const [{ road, first, last }, aroundWorld] of tiles.stretchesIn(
      [x - most, y - most, x + most, y + most], Math.floor(zoom))) {
      const line = tiles.points.subarray(2 * first, 2 * last + 2);
      const away = distanceToLine(x - aroundWorld, y, line);
      const kind = tiles.classes[network.highways.numbers[road]];
      if (away <= reachTo(kind)) take({ kind: "road", index: road }, away);
    }
    return best;
  }
}

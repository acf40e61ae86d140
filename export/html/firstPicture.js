// The roads, drawn on a canvas at once, until the map is ready: that takes several times as long.

/**
 * As the map will show the roads, but for what is above and what below, and without labels.
 * @param {Network} network
 * @param {Float64Array} points the network's on the square map of the world
 * @param {Camera} camera which is level
 */
function drawFirstPicture(network, points, { center, zoom }) {
  const canvas = document.createElement("canvas");
  canvas.id = "first-picture";
  [canvas.width, canvas.height] = [innerWidth * devicePixelRatio, innerHeight * devicePixelRatio];
  const context = /** @type {CanvasRenderingContext2D} */ (
    // Without a graphics card, which may not be there, or is needed for the map.
    canvas.getContext("2d", { willReadFrequently: true }));
  const theme = currentTheme();
  context.fillStyle = theme.paper;
  context.fillRect(0, 0, canvas.width, canvas.height);
  context.scale(devicePixelRatio, devicePixelRatio);
  const scale = worldSize * 2 ** zoom;
  const [centerX, centerY] = [mercatorX(center[0]), mercatorY(center[1])];
  const classes = network.highways.texts.map((text) => ({ ...roadClass(text), path: new Path2D() }));
  for (let road = 0; road < network.roadCount; ++road) {
    const { path } = classes[network.highways.numbers[road]];
    const first = network.starts[road];
    const middle = centerX - Math.round(centerX - points[2 * first]);  // once around the world, maybe
    for (let i = first; i < network.starts[road + 1]; ++i) {
      const x = innerWidth / 2 + (points[2 * i] - middle) * scale;
      const y = innerHeight / 2 + (points[2 * i + 1] - centerY) * scale;
      if (i === first) path.moveTo(x, y);
      else path.lineTo(x, y);
    }
  }
  classes.sort((a, b) => rankOf(a) - rankOf(b));
  /** @param {number} from @param {number} to */
  const shareOf = (from, to) => Math.max(0, Math.min((zoom - from) / (to - from), 1));
  const edges = shareOf(edgesFrom, edgesFrom + 1);
  const near = shareOf(farTo, nearFrom);
  for (const isEdge of [true, false]) {
    for (const kind of classes) {
      const isMajor = majorClasses.includes(kind.class);
      if (!isDrawn(kind, zoom)) continue;
      if (isEdge && !isMajor && Math.floor(zoom) < edgesFrom) continue;
      context.globalAlpha = !isEdge ? 1 : isMajor ? 0.8 + 0.2 * edges : edges;
      context.lineWidth = atZoom(widthsOf(kind), zoom) + (isEdge ? atZoom(edgeWidths, zoom) : 0);
      context.strokeStyle = isEdge ? theme.edges[kind.class] ?? theme.minorEdge
                                   : between(colourOf(theme, kind.class, true),
                                             colourOf(theme, kind.class, false), near);
      context.stroke(kind.path);
    }
  }
  return canvas;
}

/** There may be none, or none any more. */
function endFirstPicture() {
  const canvas = /** @type {HTMLCanvasElement | null} */ (document.getElementById("first-picture"));
  if (!canvas) return;
  canvas.remove();
  canvas.width = 0;  // its memory goes, too
}

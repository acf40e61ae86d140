// The roads, drawn on a canvas at once, until the map is ready: that takes several times as long.

/** From so near on, minor roads have the colours that they have nearby. */
const nearFrom = 13.25;

/**
 * As the map will show the roads, without what is written on it.
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
    const west = centerX - Math.round(centerX - points[2 * first]);  // once around the world, maybe
    for (let i = first; i < network.starts[road + 1]; ++i) {
      const x = innerWidth / 2 + (points[2 * i] - west) * scale;
      const y = innerHeight / 2 + (points[2 * i + 1] - centerY) * scale;
      if (i === first) path.moveTo(x, y);
      else path.lineTo(x, y);
    }
  }
  classes.sort((a, b) => rankOf(a) - rankOf(b));
  const isFar = zoom < nearFrom;
  for (const hasEdges of zoom < edgesFrom ? [false] : [true, false]) {
    for (const kind of classes) {
      if (kind.class === "service" && zoom < servicesFrom) continue;
      context.lineWidth = widthAt(kind, zoom) + (hasEdges ? 1.5 : 0);
      context.strokeStyle = hasEdges ? theme.edges[kind.class] ?? theme.minorEdge
                                     : colourOf(theme, kind.class, isFar);
      context.stroke(kind.path);
    }
  }
  return canvas;
}

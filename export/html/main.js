// From the file to the map.

/** In such windows the panel lies below; page.css has the same. */
const narrowWindow = matchMedia("(max-width: 719px) and (orientation: portrait)");
const coarsePointer = matchMedia("(pointer: coarse)");

/** @param {string} text what went wrong, or nothing */
function say(text) {
  const message = blockElement("message");
  message.textContent = text;
  message.hidden = text === "";
}

/** Text that has to be in the page as a style or script of its own; its policy knows both. */
async function addLibrary() {
  for (const [tag, id] of [["style", "library.style"], ["script", "library.script"]]) {
    document.head.append(element(tag, {}, await readText(id)));
  }
}

/**
 * No map where the browser has no WebGL.
 * @param {Network} network
 * @param {TileMaker} tiles
 * @param {Camera} camera
 */
function openMap(network, tiles, camera) {
  const container = blockElement("map");
  try {
    return new MapView(container, network, tiles, camera);
  } catch (error) {
    if (!String(error).includes("WebGL")) throw error;
    container.replaceChildren();  // what the map began with
    return null;
  }
}

/** When what is there now has been shown; a page in the background shows nothing. */
function nextFrame() {
  return new Promise((resolve) => {
    if (document.hidden) resolve(null);
    else requestAnimationFrame(() => setTimeout(resolve));
  });
}

/** The name of the file, which need not be UTF-8. */
function nameOfFile() {
  const name = location.pathname.split("/").pop() ?? "";
  try {
    return decodeURIComponent(name);
  } catch {
    return name;
  }
}

/** @type {Page | undefined} */
let page;

async function openPage() {
  const fileName = nameOfFile().replace(/\.html?$/i, "");
  if (fileName && location.protocol === "file:") document.title = `${fileName} – road network`;
  if (typeof DecompressionStream === "undefined") {
    say("This browser is too old for the map: it needs one from 2023 on.");
    return;
  }
  try {
    const network = await Network.read();
    const points = mercatorPoints(network.points);
    const camera = firstCamera(network);
    if (camera.isLevel) {
      blockElement("map").after(drawFirstPicture(network, points, camera));
      for (const event of ["pointerdown", "keydown"]) {
        addEventListener(event, endFirstPicture, { once: true });
      }
      await nextFrame();
    }
    await addLibrary();
    maplibregl.prewarm();  // the threads behind the map start in the meantime
    const components = findComponents(network);
    const numbers = await readNumbersOfRoads(network);
    const tiles = new TileMaker(network, points, components.rankOf, numbers);
    const view = openMap(network, tiles, camera);
    page = new Page(network, components, view);
    if (view) {
      view.map.once("movestart", endFirstPicture);
      await view.map.once("style.load");
      say(network.roadCount === 0 ? "There are no roads in this network." : "");
      page.start(!camera.isOfAddress);
      await view.map.once("idle");
      endFirstPicture();
      document.documentElement.dataset.drawn = "true";
    } else {
      say("This browser has no WebGL, which the map needs: it may be switched off, or the " +
          "computer too old. Search and report work without it.");
      endFirstPicture();
      page.start(true);
    }
    await page.read();
  } catch (error) {
    endFirstPicture();
    say(`The map can't be opened: ${error instanceof Error ? error.message : error}`);
    throw error;
  }
}

/** The numbers that roads bear, as far as they are in the page. @param {Network} network */
async function readNumbersOfRoads(network) {
  const tag = network.about.tags.indexOf("ref");
  if (tag < 0) return Array.from({ length: network.roadCount }, () => "");
  const { numbers, texts } = await readTextColumn(`roads.tag${tag}`);
  return Array.from(numbers, (number) => texts[number]);
}

openPage();

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

function hasWebGl() {
  const canvas = document.createElement("canvas");
  const context = /** @type {WebGLRenderingContext | WebGL2RenderingContext | null} */ (
    canvas.getContext("webgl2") ?? canvas.getContext("webgl"));
  // Browsers allow few at a time, and the map needs one of its own.
  context?.getExtension("WEBGL_lose_context")?.loseContext();
  return context !== null;
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
    await addLibrary();
    // First, for the threads behind it to start in the meantime.
    const view = hasWebGl() ? new MapView(blockElement("map")) : null;
    const network = await Network.read();
    page = new Page(network, view);
    if (view) {
      const numbers = await readNumbersOfRoads(network);
      await view.show(network, page.components.rankOf, numbers);
      say(network.roadCount === 0 ? "There are no roads in this network." : "");
      page.start();
      await view.map.once("idle");
      document.documentElement.dataset.drawn = "true";
    } else {
      say("This browser has no WebGL, which the map needs: it may be switched off, or the " +
          "computer too old. Search and report work without it.");
      page.start();
    }
    await page.read();
  } catch (error) {
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

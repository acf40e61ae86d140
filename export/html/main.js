// From the file to the map.

/** Narrower windows have the panel below. */
const narrowest = 720;

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

/** @returns {MapView | null} none where there is no WebGL */
function makeView() {
  try {
    return new MapView(blockElement("map"));
  } catch {
    blockElement("map").replaceChildren();
    return null;
  }
}

/** @type {Page | undefined} */
let page;

async function openPage() {
  const fileName = decodeURIComponent(location.pathname).split("/").pop()?.replace(/\.html?$/i, "");
  if (fileName && location.protocol === "file:") document.title = `${fileName} – road network`;
  if (typeof DecompressionStream === "undefined") {
    say("This browser is too old for the map: it needs one from 2023 on.");
    return;
  }
  try {
    await addLibrary();
    const view = makeView();  // first, for the threads behind it to start in the meantime
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

// page.mjs FOLDER PAGE...: how long map pages take to open in Debian's Chromium, which draws with software
// alone. FOLDER has playwright-core, as build/release/tests/html_page after the tests. Prints, as medians
// of five openings of each page in a browser that runs already: the milliseconds until the first picture
// and until the whole map; then, while the map moves by 600 pixels a second at several zooms, the most
// frames in a row that lacked a tile.
import { createRequire } from "node:module";
import { join, resolve } from "node:path";
import { pathToFileURL } from "node:url";

const [folder, ...pages] = process.argv.slice(2);
const { chromium } = createRequire(join(resolve(folder), "/"))("playwright-core");

/** Notes when the first picture is there and has been shown, and when the map is whole. */
function watch() {
  globalThis.times = {};
  const note = (name) => requestAnimationFrame(() => (times[name] ??= performance.now()));
  new MutationObserver(() => {
    if (document.getElementById("first-picture")) note("picture");
    if (document.documentElement?.dataset.drawn) note("map");
  }).observe(document, { childList: true, subtree: true, attributes: true });
}

async function open(browser, page) {
  const view = await browser.newPage({ viewport: { width: 1280, height: 800 } });
  await view.addInitScript(watch);
  await view.goto(pathToFileURL(resolve(page)).href);
  await view.waitForFunction(() => times.map, null, { timeout: 120_000 });
  return view;
}

/** Across the middle of the network. */
function framesWithoutTile(zoom) {
  const { map } = page.view;
  const box = boxAround(page.network.points);
  map.jumpTo({ center: [(box[0] + box[2]) / 2, (box[1] + box[3]) / 2], zoom });
  return map.once("idle").then(async () => {
    let [frames, lacking, most] = [0, 0, 0];
    map.on("render", () => {
      ++frames;
      lacking = map.areTilesLoaded() ? 0 : lacking + 1;
      most = Math.max(most, lacking);
    });
    map.panBy([1200, 0], { duration: 2000, easing: (t) => t });
    await map.once("moveend");
    return `${most} of ${frames} at zoom ${zoom}`;
  });
}

const browser = await chromium.launch({
  executablePath: "/usr/bin/chromium",
  args: ["--no-sandbox", "--use-gl=angle", "--use-angle=swiftshader", "--enable-unsafe-swiftshader"],
});
for (const page of pages) {
  const rounds = [];
  for (let round = 0; round < 6; ++round) {
    const view = await open(browser, page);
    if (round > 0) rounds.push(await view.evaluate("times"));  // the browser itself starts in the first
    await view.close();
  }
  const median = (name) => Math.round(rounds.map((times) => times[name]).sort((a, b) => a - b)[2]);
  const view = await open(browser, page);
  const pans = [];
  for (const zoom of [12, 14, 16]) pans.push(await view.evaluate(framesWithoutTile, zoom));
  console.log(`${page}: picture ${median("picture")} ms, map ${median("map")} ms; without a tile: ` +
              pans.join(", "));
  await view.close();
}
await browser.close();

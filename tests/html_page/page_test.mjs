// page_test.mjs PROGRAM FOLDER: the map page in a browser. FOLDER has playwright-core.
import assert from "node:assert/strict";
import { execFileSync } from "node:child_process";
import { mkdtempSync, readFileSync, rmSync, statSync, writeFileSync } from "node:fs";
import { createRequire } from "node:module";
import { tmpdir } from "node:os";
import { join } from "node:path";
import { after, before, test } from "node:test";
import { fileURLToPath, pathToFileURL } from "node:url";
import { gunzipSync } from "node:zlib";

const [program, modules] = process.argv.slice(-2);
const { chromium } = createRequire(join(modules, "/"))("playwright-core");
const root = fileURLToPath(new URL("../..", import.meta.url));
const example = join(root, "examples/harbour-town.osm");
const folder = mkdtempSync(join(tmpdir(), "map-page-"));
const software = ["--use-gl=angle", "--use-angle=swiftshader", "--enable-unsafe-swiftshader"];
const paper = [0xf4, 0xf1, 0xea];

/** All that text, ids and places can do to a page. */
const odd = `<osm version="0.6">
<node id="9007199254740993" lat="0.1" lon="-179.999"/><node id="-7" lat="0.1" lon="179.998"/>
<node id="3" lat="0.103" lon="179.999"/><node id="4" lat="0.1000000001" lon="-179.9975"/>
<node id="5" lat="-0.0" lon="-179.9985"/>
<way id="9223372036854775807"><nd ref="-7"/><nd ref="9007199254740993"/><tag k="highway" v="primary"/>
<tag k="name" v="&lt;/script>&lt;script>document.title='run'&lt;/script>"/><tag k="layer" v="1e308"/></way>
<way id="2"><nd ref="9007199254740993"/><nd ref="4"/><tag k="highway" v="service"/><tag k="layer" v="2e8"/>
<tag k="name" v="شارع &quot;الميناء&quot; 東京 &amp; '\`"/></way>
<way id="3"><nd ref="-7"/><nd ref="3"/><tag k="highway" v="x"/></way>
<way id="4"><nd ref="4"/><nd ref="5"/><tag k="highway" v="residential"/><tag k="oneway" v="-1"/>
<tag k="name" v="\u0130stiklal\u0308 Cad."/></way></osm>`;

/** Streets that cross, bent in the middle, each of many roads; and beside them `islands` streets. */
function grid(size, islands) {
  let random = 1;
  const shift = () => (random = (random * 48271) % 0x7fffffff) / 0x7fffffff / 1000;
  const nodes = [];
  const ways = [];
  const street = (name, places) => {
    const refs = places.map(([id, x, y]) => {
      nodes[id] ??= `<node id="${id + 1}" lat="${(50 + y / 500 + shift()).toFixed(7)}" ` +
                    `lon="${(8 + x / 500 + shift()).toFixed(7)}"/>`;
      return `<nd ref="${id + 1}"/>`;
    });
    ways.push(`<way id="${700000 + 13 * ways.length}">${refs.join("")}<tag k="highway" ` +
              `v="residential"/><tag k="name" v="${name}"/></way>`);
  };
  const steps = [...Array(2 * size - 1).keys()];
  for (let i = 0; i < size; ++i) {
    street(`Row ${i}`, steps.map((j) => [2 * i * 2 * size + j, j / 2, i]));
    street(`Column ${i}`, steps.map((j) => [j * 2 * size + 2 * i, i, j / 2]));
  }
  for (let i = 0; i < islands; ++i) {
    const first = 4 * size * size + 4 * i;
    street(`St. O'Isle ${i}`, [0, 1, 2].map((j) => [first + j, size + j, i]));
    street(`St. O'Isle ${i}`, [1, 3].map((j) => [first + j, size + 1, i + (j - 1) / 4]));
  }
  return `<osm version="0.6">${nodes.join("")}${ways.join("")}</osm>`;
}

let browser;
before(async () => {
  browser = await chromium.launch({ executablePath: "/usr/bin/chromium",
                                    args: ["--no-sandbox", ...software] });
});
after(async () => {
  await browser?.close();
  rmSync(folder, { recursive: true });
});

function run(...args) {
  return execFileSync(program, args, { encoding: "utf8", maxBuffer: 1 << 28 });
}

/** The page of some OSM data, or of a file. */
function pageOf(name, source) {
  const input = source.includes("<") ? join(folder, `${name}.osm`) : source;
  if (input !== source) writeFileSync(input, source);
  const output = join(folder, `${name}.html`);
  run(input, "-q", "--overwrite", "-o", output);
  return output;
}

/** Opens it, and fails at the end if it asked for something, or complained. */
async function opened(t, file, { hash = "", from = browser, onPage = () => {}, ...options } = {}) {
  const view = await from.newPage({ viewport: { width: 1000, height: 700 }, ...options });
  await view.addInitScript(onPage);
  const wrong = [];
  view.on("request", (request) => {
    if (!/^(file|blob|data):/.test(request.url())) wrong.push(request.url());
  });
  view.on("console", (message) => {
    if (["error", "warning"].includes(message.type())) wrong.push(message.text());
  });
  view.on("pageerror", (error) => wrong.push(error.message));
  await view.goto(file.startsWith("file:") ? file : pathToFileURL(file).href + hash);
  await view.waitForSelector("html[data-drawn]", { state: "attached" });
  await view.evaluate(() => page.read().then(() => null));  // so that answers come at once
  t.after(async () => {
    await view.close();
    assert.deepEqual(wrong, []);
  });
  return view;
}

/** The colour of a point of the screen. */
async function colourAt(view, x, y) {
  const picture = await view.screenshot({ clip: { x: Math.round(x), y: Math.round(y), width: 1,
                                                  height: 1 } });
  const blank = await browser.newPage();
  const colour = await blank.evaluate(async (data) => {
    const image = new Image();
    image.src = `data:image/png;base64,${data}`;
    await image.decode();
    const context = document.createElement("canvas").getContext("2d");
    context.drawImage(image, 0, 0);
    return [...context.getImageData(0, 0, 1, 1).data.slice(0, 3)];
  }, picture.toString("base64"));
  await blank.close();
  return colour;
}

const text = (view, selector) => view.locator(selector).innerText();
// Draws once more, as it may be idle already.
const idle = (view) => view.evaluate(() => {
  page.view.map.triggerRepaint();
  return page.view.map.once("idle").then(() => null);
});

test("roads stand where they should, bridges over what they cross", async (t) => {
  const [latitude, longitude, zoom] = [54.8060, 13.8976624, 17];
  const view = await opened(t, pageOf("example", example),
                            { hash: `#map=${zoom}/${latitude}/${longitude}` });
  const osm = readFileSync(example, "utf8");
  const place = (id) => [...new RegExp(`<node id="${id}" [^>]*lat="([^"]*)" lon="([^"]*)"`)
    .exec(osm).slice(1)].map(Number);
  // Web Mercator, 512 pixels around the world at zoom 0.
  const project = ([lat, lon]) => {
    const mercator = (y) => Math.log(Math.tan(Math.PI / 4 + (y * Math.PI) / 360));
    const size = 512 * 2 ** zoom;
    return [500 + ((lon - longitude) / 360) * size,
            350 - ((mercator(lat) - mercator(latitude)) / (2 * Math.PI)) * size];
  };
  // A bridge of a yellow road, from 1075 to 1076, over a red motorway, from 1003 to 1004.
  const [[x1, y1], [x2, y2], [x3, y3], [x4, y4]] = [1075, 1076, 1003, 1004].map(place).map(project);
  const share = ((x3 - x1) * (y4 - y3) - (y3 - y1) * (x4 - x3)) /
                ((x2 - x1) * (y4 - y3) - (y2 - y1) * (x4 - x3));
  const [x, y] = [x1 + share * (x2 - x1), y1 + share * (y2 - y1)];
  assert.deepEqual(await colourAt(view, x, y), [0xf9, 0xc9, 0x76]);
  const along = (80 * (y4 - y3)) / (x4 - x3);
  assert.deepEqual(await colourAt(view, x + 80, y + along), [0xec, 0x8a, 0x68]);
  assert.deepEqual(await colourAt(view, x + 80, y + along + 30), paper);
});

/** How many pixels of a picture are none of the paper, and how dark they are in all. */
async function inkOf(png) {
  const blank = await browser.newPage();
  const ink = await blank.evaluate(async ([data, paper]) => {
    const image = new Image();
    image.src = data;
    await image.decode();
    const canvas = document.createElement("canvas");
    [canvas.width, canvas.height] = [image.width, image.height];
    const context = canvas.getContext("2d");
    context.drawImage(image, 0, 0);
    const { data: bytes } = context.getImageData(400, 150, 500, 500);
    let sum = 0;
    for (let i = 0; i < bytes.length; ++i) if (i % 4 < 3) sum += Math.abs(bytes[i] - paper[i % 4]);
    return sum;
  }, [png, paper]);
  await blank.close();
  return ink;
}

test("at once there is a picture of what the map shows then", async (t) => {
  const file = pageOf("town", grid(12, 0).replaceAll("residential", "tertiary")
    .replace(/tertiary(?="\/><tag k="name" v="Column)/g, "residential"));
  for (const zoom of ["", 12.2, 12.7, 13.3, 14]) {
    const hash = zoom ? `#map=${zoom}/50.0112/8.0112` : "";
    const view = await opened(t, file, { hash, onPage: () => {
      new MutationObserver(() => {
        const canvas = document.getElementById("first-picture");
        if (canvas) globalThis.picture ??= canvas.toDataURL();
      }).observe(document, { childList: true, subtree: true });
    } });
    assert.equal(await view.locator("#first-picture").count(), 0);
    await view.evaluate(() => {  // the picture has no labels
      for (const layer of ["names", "name images", "numbers"]) {
        page.view.map.setLayoutProperty(layer, "visibility", "none");
      }
    });
    await idle(view);
    const shot = (await view.screenshot()).toString("base64");
    const [early, late] = [await inkOf(await view.evaluate("picture")),
                           await inkOf(`data:image/png;base64,${shot}`)];
    assert.ok(early / late > 0.85 && early / late < 1.18, `zoom ${zoom}: ${early} / ${late}`);
    if (zoom !== 14) continue;
    // Complaints about the style go to the console.
    await view.evaluate("page.view.map.setStyle(page.view.style(), { validate: true, diff: false })");
    await idle(view);
  }
});

test("addresses that no map has show all of the network", async (t) => {
  const file = pageOf("example", example);
  const zooms = [];
  for (const hash of ["", "#map=12/95/13", "#map=30/54.8/13.9", "#map=x/y/z"]) {
    const view = await opened(t, file, { hash });
    zooms.push(await view.evaluate("page.view.map.getZoom()"));
  }
  assert.ok(zooms.every((zoom) => Math.abs(zoom - zooms[0]) < 0.01 && zoom > 13), `${zooms}`);
});

test("what lies under a pointer, however the map is turned", async (t) => {
  const view = await opened(t, pageOf("example", example));
  for (const camera of [{ zoom: 17 }, { zoom: 19, pitch: 60, bearing: 40 }, { zoom: 20.5, pitch: 60 }]) {
    const wrong = await view.evaluate((camera) => {
      const { network, view: { map } } = page;
      const wrong = [];
      for (let road = 0; road < network.roadCount; ++road) {
        const [[x1, y1], [x2, y2]] = network.lineOf(road);
        const [x, y] = [(x1 + 3 * x2) / 4, (y1 + 3 * y2) / 4];
        map.jumpTo({ center: [x, y], ...camera });
        const { kind, index } = page.view.thingAt(map.project([x, y])) ?? {};
        if (kind !== "road" || index !== road) wrong.push([road, kind, index]);
      }
      return wrong;
    }, camera);
    assert.deepEqual(wrong, []);
  }
  // Beside a motorway, which is 38 pixels wide there and has its edges beyond that.
  const hits = await view.evaluate(() => {
    const { network, view: { map } } = page;
    const road = Array.from({ length: network.roadCount }, (_, road) => road).find((road) =>
      network.highwayOf(road) === "motorway");
    const [[x1, y1], [x2, y2]] = network.lineOf(road);
    map.jumpTo({ center: [(x1 + x2) / 2, (y1 + y2) / 2], zoom: 19, pitch: 0, bearing: 0 });
    const [a, b] = [map.project([x1, y1]), map.project([x2, y2])];
    const [dx, dy] = [b.x - a.x, b.y - a.y].map((d) => d / Math.hypot(b.x - a.x, b.y - a.y));
    return [18, 25, 27].map((away) => page.view.thingAt(
      { x: (a.x + b.x) / 2 - away * dy, y: (a.y + b.y) / 2 + away * dx })?.index === road);
  });
  assert.deepEqual(hits, [true, true, false]);
});

test("bridges stay when one zooms out", async (t) => {
  const view = await opened(t, pageOf("example", example), { hash: "#map=12.6/54.805/13.9" });
  const places = await view.evaluate(async () => {
    const { map, tiles: { looks, stretches, points } } = page.view;
    maplibregl.addProtocol("network", () => new Promise(() => {}));  // no tiles for a while
    map.jumpTo({ zoom: 11.9 });
    await map.once("render");
    const middle = (i) => (points[i] + points[i + 2]) / 2;
    return stretches.filter(({ look }) =>
      looks[look].some(([key, value]) => key === "level" && value > 0))
      .map(({ first: i }) => map.project([degreesOfX(middle(2 * i)), degreesOfY(middle(2 * i + 1))]));
  });
  assert.ok(places.length > 0);
  for (const { x, y } of places) assert.notDeepEqual(await colourAt(view, x, y), paper);
});

test("the page has the network, to the last bit", async (t) => {
  for (const [name, source] of [["example", example], ["odd", odd]]) {
    const file = pageOf(name, source);
    const view = await opened(t, file);
    // In JSON, ids as texts: numbers would lose digits.
    const json = run(name === "odd" ? join(folder, "odd.osm") : example, "-o", "-", "--join",
                     "compatible", "--oneway", "implied").replace(/"id": (\d+)/g, '"id": "$1"');
    const network = JSON.parse(json.replaceAll("1e999", '"inf"'));
    const found = await view.evaluate(async () => {
      const { network, details } = await page.read();
      const wrap = (x) => (x > 180 ? x - 360 : x < -180 ? x + 360 : x);
      return {
        nodes: Array.from(details.nodeIds, (id, i) => [String(BigInt.asUintN(64, id)),
                                                       network.latitudes[i], network.longitudes[i]]),
        roads: Array.from(details.roadIds, (id, i) => [String(id), network.directions[i],
          network.lineOf(i).map(([x]) => wrap(x)), network.lineOf(i).map(([, y]) => y),
          Array.from(network.elevationsOf(i), (z) => (z === Infinity ? "inf" : z))]),
      };
    });
    assert.deepEqual(found.nodes, network.nodes.map(({ id, position: [y, x] }) => [id, y, x]));
    const near = (line) => line.map((x) => Number(x.toFixed(9)));  // once around and back
    assert.deepEqual(found.roads.map(([id, way, xs, ...rest]) => [id, way, near(xs), ...rest]),
      network.roads.map(({ id, direction, centersX, centersY, segments: [{ elevations }] }) =>
        [id, direction, near(centersY), centersX, elevations.map((z) => z ?? NaN)]));
  }
});

test("names are shown and never run, ids keep their digits, the antimeridian is no edge", async (t) => {
  const view = await opened(t, pageOf("odd", odd), { hash: "#road=3" });
  assert.equal(await text(view, "#panel-title"), "</script><script>document.title='run'</script>");
  assert.equal(await view.title(), "odd – road network");
  assert.equal(await view.locator('a[href$="/way/9223372036854775807"]').count(), 1);
  assert.match(await text(view, "#panel-body"), /9007199254740993/);
  for (const [query, title] of [["istiklal", "\u0130stiklal\u0308 Cad."], ["الميناء", "شارع"],
                                ["9007199254740993", "Node 9007199254740993"], ["-7", "Node -7"]]) {
    await view.fill("#search", query);
    await view.press("#search", "Enter");
    await view.waitForFunction(([start]) => document.getElementById("panel-title")
      .textContent.startsWith(start), [title]);
  }
  const { lng } = await view.evaluate("page.view.map.getCenter()");
  assert.ok(Math.abs(Math.abs(lng) - 180) < 0.1, `the map is at ${lng}`);
});

test("search, keyboard, click, and the elevation of a road", async (t) => {
  const view = await opened(t, pageOf("example", example));
  await view.keyboard.press("/");
  await view.keyboard.type("ULICA zeglarzy");
  await view.waitForSelector("#panel:visible");
  assert.match(await text(view, "#panel-body"), /ulica Żeglarzy Północy/);
  await view.fill("#search", "str");
  await view.keyboard.press("Enter");
  await view.waitForSelector("#search-count:has-text('1 of ')");
  const first = await text(view, "#panel-title");
  await view.keyboard.press("Enter");
  await view.waitForSelector("#search-count:has-text('2 of ')");
  await view.waitForFunction(([title]) => document.getElementById("panel-title")
    .textContent !== title, [first]);
  await view.keyboard.press("Escape");
  await view.waitForSelector("#panel", { state: "hidden" });
  // The longest road with a rise, and what is said of it.
  const [x, y, name] = await view.evaluate(async () => {
    const { network } = page;
    const road = Array.from(network.directions).findIndex((_, i) =>
      network.nameOf(i) === "Lindenallee" && new Set(network.elevationsOf(i)).size > 1);
    const [a, b] = network.lineOf(road);
    page.view.map.jumpTo({ center: b, zoom: 18 });
    await page.view.map.once("idle");
    const { x, y } = page.view.map.project([(a[0] + 2 * b[0]) / 3, (a[1] + 2 * b[1]) / 3]);
    return [x, y, network.nameOf(road)];
  });
  await view.mouse.click(x, y);
  await view.waitForSelector("#panel:visible .profile");
  assert.equal(await text(view, "#panel-title"), name);
  const body = await text(view, "#panel-body");
  for (const part of [/both ways/, /\d m/, /highway/i, /Neighbours \(\d/, /largest connected part/]) {
    assert.match(body, part);
  }
  assert.equal(new URL(view.url()).hash.includes("road="), true);
});

test("a large network: bytes for each road, islands, and what the report says of a street", async (t) => {
  const file = pageOf("grid", grid(40, 8));
  const view = await opened(t, file);
  const empty = statSync(pageOf("nothing", "<osm version='0.6'/>")).size;
  const each = (statSync(file).size - empty) / (await view.evaluate("page.network.roadCount"));
  assert.ok(each < 12, `${each} bytes for each road`);
  await view.fill("#search", "st o’isle");
  await view.waitForSelector("#panel-title:has-text('8 found')");
  await view.press("#search", "Enter");
  assert.match(await text(view, "#panel-body"), /What the report says \(1\)/);
  assert.doesNotMatch(view.url(), /road=/);
  // The sixth island has the last of the colours in the key; its name is farther on.
  await view.click("#key-button");
  await view.check("input[value=component]");
  const colour = await view.locator(".key li:last-child .swatch").evaluate(
    ({ style }) => style.backgroundColor.match(/\d+/g).map(Number));
  await view.evaluate(() => {
    const [a, b] = page.network.lineOf(page.components.rankOf.indexOf(6));
    page.view.map.jumpTo({ center: [0, 1].map((i) => (7 * a[i] + b[i]) / 8), zoom: 18 });
  });
  await idle(view);
  assert.deepEqual(await colourAt(view, 500, 350), colour);
});

test("an address that names a road alone leads there, in a file of any name", async (t) => {
  const file = Buffer.concat([Buffer.from(join(folder, "a")), Buffer.from([0xff]), Buffer.from(".html")]);
  writeFileSync(file, readFileSync(pageOf("example", example)));
  const url = `${pathToFileURL(folder).href}/a%FF.html#road=20`;
  const view = await opened(t, url);
  await view.waitForSelector("#panel:visible");
  await idle(view);
  assert.ok((await view.evaluate("page.view.map.getZoom()")) > 15);
  await view.click("#report-button");
  assert.doesNotMatch(view.url(), /road=/);
});

test("the report: by kind and severity, each entry leads to its place", async (t) => {
  const report = JSON.parse(run(example, "-r", "-", "--join", "compatible", "--oneway", "implied"));
  const count = Object.values(report.toCheck).flat().length;
  const view = await opened(t, pageOf("example", example));
  await view.click("#report-button");
  assert.equal(await text(view, "#panel-title"), `${count} places to check`);
  const [trap] = report.toCheck.traps.filter(({ severity }) => severity === "high");
  await view.click("summary:has-text('Traps')");
  await view.click(".chip.low");
  assert.equal(await view.locator(".finding.low").count(), 0);
  await view.click(".finding.high >> nth=0");
  await idle(view);
  assert.match(await text(view, "#panel-body"), new RegExp(trap.text.slice(0, 40)));
  const away = await view.evaluate(({ latitude, longitude }) => {
    const { x, y } = page.view.map.project([longitude, latitude]);
    return x > 0 && x < innerWidth && y > 0 && y < innerHeight ? 0 : [x, y];
  }, trap);
  assert.equal(away, 0);
  assert.match(view.url(), /finding=/);
  await view.click("#back-button");
  assert.equal(await text(view, "#panel-title"), `${count} places to check`);
  assert.ok(await view.locator("details[open] .finding.high").first().isVisible());
  assert.doesNotMatch(view.url(), /finding=/);
  await view.click("#close-button");
  assert.equal(await view.evaluate("document.activeElement.id"), "report-button");
});

test("light and dark, colours, and a narrow phone", async (t) => {
  const view = await opened(t, pageOf("example", example), {
    colorScheme: "dark", viewport: { width: 360, height: 640 }, isMobile: true, hasTouch: true });
  const [dark] = await colourAt(view, 10, 500);
  await view.tap("#theme-button");
  await idle(view);
  const [light] = await colourAt(view, 10, 500);
  assert.ok(dark < 60 && light > 200, `${dark}, ${light}`);
  await view.tap("#key-button");
  for (const name of ["direction", "elevation", "pieces", "component", "class"]) {
    await view.check(`input[value=${name}]`);
    await idle(view);
  }
  const widths = await view.evaluate(() => [document.documentElement.scrollWidth,
    ...["bar", "panel", "attribution"].map((id) =>
      document.getElementById(id).getBoundingClientRect().right)]);
  assert.ok(Math.max(...widths) <= 360, String(widths));
  assert.match(await text(view, "#attribution"), /© OpenStreetMap contributors, ODbL/);
  await view.setViewportSize({ width: 480, height: 270 });  // sideways, where no camera may fit
  await view.fill("#search", "lindenallee");
  await view.press("#search", "Enter");
  await view.waitForSelector("#panel-title:has-text('Lindenallee')");
  await idle(view);
  const seen = await view.evaluate(() => {
    const { right } = document.getElementById("panel").getBoundingClientRect();
    const { x, y } = page.view.map.project(page.network.lineOf(page.network.names.numbers.indexOf(
      page.network.names.texts.indexOf("Lindenallee")))[0]);
    return [right < 300, document.activeElement.id, x > 0 && x < 480 && y > 0 && y < 270];
  });
  assert.deepEqual(seen, [true, "", true]);
});

test("no roads; and no WebGL, where search and report still work", async (t) => {
  const empty = await opened(t, pageOf("empty", "<osm version='0.6'/>"));
  assert.match(await text(empty, "#message"), /no roads/);
  const bare = await chromium.launch({ executablePath: "/usr/bin/chromium",
    args: ["--no-sandbox", "--disable-gpu", "--disable-3d-apis"] });
  t.after(() => bare.close());
  const view = await bare.newPage({ viewport: { width: 1000, height: 700 } });
  await view.goto(pathToFileURL(pageOf("example", example)).href);
  await view.waitForSelector("#message:has-text('WebGL')");
  await view.fill("#search", "hafenstrasse");
  await view.press("#search", "Enter");
  await view.waitForSelector("#panel-title:has-text('Hafenstraße')");
  const [message, panel] = await Promise.all(["#message", "#panel"].map((id) =>
    view.locator(id).boundingBox()));
  assert.ok(message.x >= panel.x + panel.width);
});

test("the same input gives the same bytes; docs/ has the example's page as it is now", () => {
  const page = readFileSync(pageOf("example", example), "utf8");
  assert.equal(readFileSync(pageOf("again", example), "utf8"), page);
  // Another version of the library that compresses may give other bytes.
  const unpacked = (html) => html.replace(/(<script type="application\/octet-stream"[^>]*>)([^<]*)/g,
    (_, start, data) => start + gunzipSync(Buffer.from(data, "base64")).toString("latin1"));
  const kept = readFileSync(join(root, "docs/harbour-town.html"), "utf8");
  assert.ok(unpacked(kept) === unpacked(page),
            "build/release/bin/osm2roadnet examples/harbour-town.osm --overwrite -o docs/harbour-town.html");
});

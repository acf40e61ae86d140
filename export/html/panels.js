// What stands beside the map: one panel, whose content changes.

/**
 * @typedef {object} View
 * @property {string} name which it is; not shown
 * @property {string} title
 * @property {(Node | string | null)[]} content
 * @property {() => void} [onShow] called each time that it comes to be shown
 * @property {number} [scrollTop] where one was in it when something else came to be shown
 */

class Panel {
  constructor() {
    this.root = blockElement("panel");
    this.title = blockElement("panel-title");
    this.body = blockElement("panel-body");
    this.back = blockElement("back-button");
    /** @type {View[]} the last is shown, the others are those to go back to */
    this.views = [];
    /** @type {Element | null} what had the focus before the panel */
    this.before = null;
    /** Called when nothing is shown any more. */
    this.onClose = () => {};
    blockElement("close-button").addEventListener("click", () => this.close());
    this.back.addEventListener("click", () => this.replaceViews(this.views.slice(0, -1)));
  }

  /** @param {View} view */
  show(view) {
    this.replaceViews([...this.views, view]);
  }
  /** The first of a new row of views. @param {View} view */
  start(view) {
    this.replaceViews([view]);
  }
  /** Shows the last of these. @param {View[]} views */
  replaceViews(views) {
    const left = this.views.at(-1);
    if (left) left.scrollTop = this.body.scrollTop;
    const { name, title, content, onShow, scrollTop = 0 } = views[views.length - 1];
    const hadFocus = this.root.contains(document.activeElement);
    if (!hadFocus) this.before = document.activeElement;
    this.views = views;
    onShow?.();
    this.title.textContent = title;
    this.body.replaceChildren(...content.filter((part) => part !== null));
    this.back.hidden = views.length < 2;
    this.root.hidden = false;
    this.root.dataset.name = name;
    this.body.scrollTop = scrollTop;
    if (hadFocus) this.title.focus({ preventScroll: true });
  }
  /** @param {string} name of a view */
  shows(name) {
    return !this.root.hidden && this.root.dataset.name === name;
  }
  close() {
    if (this.root.hidden) return;
    const hadFocus = this.root.contains(document.activeElement);
    this.views = [];
    this.root.hidden = true;
    if (hadFocus && this.before instanceof HTMLElement) this.before.focus({ preventScroll: true });
    this.onClose();
  }
}

/**
 * Findings of a kind, made when one opens the group: there may be thousands.
 * @param {Context} context
 * @param {number} kind
 * @param {Set<number>} severities
 */
function findingGroup(context, kind, severities) {
  const { findings } = context.details;
  const name = context.network.about.kinds[kind];
  const count = element("span", { class: "count" });
  const list = element("div");
  const root = /** @type {HTMLDetailsElement} */ (element("details", {},
    element("summary", {}, element("span", {}, findingTitle(name)), count),
    element("p", { class: "note" }, findingExplanation(name)), list));
  const fill = () => {
    const members = numbersWhere(findings.size, (i) => findings.kinds[i] === kind &&
                                                       severities.has(findings.severities[i]));
    count.textContent = members.length.toLocaleString("en");
    root.hidden = members.length === 0;
    list.replaceChildren(...(root.open
      ? [longList(members.length, (i) => findingLink(context, members[i]))] : []));
  };
  root.addEventListener("toggle", () => {
    if (root.open && !list.firstChild) fill();
  });
  fill();
  return { root, fill };
}

/**
 * @param {Context} context
 * @param {Set<number>} severities that are shown
 * @param {() => void} onChange
 * @returns {View}
 */
function reportView(context, severities, onChange) {
  const { about } = context.network;
  const { findings } = context.details;
  const counts = about.severities.map(() => 0);
  findings.severities.forEach((severity) => ++counts[severity]);
  const groups = about.kinds.map((_, kind) => findingGroup(context, kind, severities));
  const nothing = element("p", { class: "note" }, "Nothing to check.");
  const sayIfEmpty = () => (nothing.hidden = groups.some(({ root }) => !root.hidden));
  const chips = about.severities.map((name, severity) => {
    const chip = element("button", {
      type: "button", class: `chip ${name}`, "aria-pressed": severities.has(severity),
      onclick: () => {
        if (!severities.delete(severity)) severities.add(severity);
        chip.ariaPressed = String(severities.has(severity));
        groups.forEach(({ fill }) => fill());
        sayIfEmpty();
        onChange();
      },
    }, `${asWords(name)} ${counts[severity]}`);
    return chip;
  });
  sayIfEmpty();
  return { name: "report", title: `${counted(findings.size, "place")} to check`, content: [
    element("div", { class: "chips", role: "group", "aria-label": "Severities" }, ...chips),
    about.crossingsAreAll ? null
      : element("p", { class: "note" }, "So much overlaps here that the search for crossings " +
                                        "ended early."),
    nothing, ...groups.map(({ root }) => root)] };
}

/**
 * @param {Colouring} chosen
 * @param {(colouring: Colouring) => void} onChoose
 * @returns {View}
 */
function keyView(chosen, onChoose) {
  const keys = keysOf(currentTheme());
  const names = /** @type {Colouring[]} */ (Object.keys(keys));
  return { name: "key", title: "Colours", content: [
    element("div", { role: "radiogroup", "aria-label": "Colour the roads by" },
      ...names.map((name) => element("label", { class: "choice" },
        element("input", { type: "radio", name: "colouring", value: name, checked: name === chosen || undefined,
                           onchange: () => onChoose(name) }), keys[name].title))),
    element("ul", { class: "key" }, ...keys[chosen].entries.map(([label, colour]) => {
      const swatch = element("span", { class: "swatch" });
      swatch.style.backgroundColor = colour;
      return element("li", {}, swatch, label);
    }))] };
}

/** @param {Network} network @returns {View} */
function aboutView(network) {
  const { about } = network;
  const lost = [[about.notARoad, "no road"], [about.missingNodes, "with nodes missing"],
                [about.fewerThanTwoNodes, "with fewer than two nodes"]];
  const licences = element("pre", { tabindex: 0 });
  const details = element("details", {}, element("summary", {}, "Licences of libraries"), licences);
  details.addEventListener("toggle", async () => {
    licences.textContent = await readText("library.licences");
  }, { once: true });
  let metres = 0;
  for (let road = 0; road < network.roadCount; ++road) metres += network.lengthOf(road);
  return { name: "about", title: "About this map", content: [
    element("dl", {},
      row("Nodes", network.nodeCount.toLocaleString("en")),
      row("Roads", network.roadCount.toLocaleString("en")),
      row("Length", lengthText(metres)),
      row("Ways", `${about.imported.toLocaleString("en")} of ` +
                  `${about.highwayWays.toLocaleString("en")} with a highway tag became roads`),
      row("Others", lost.map(([count, why]) => `${count.toLocaleString("en")} ${why}`).join(", "))),
    section("Keys", element("dl", { class: "keys" },
      row("/", "search; Enter goes to the next that was found"),
      row("Esc", "close the panel"),
      row("← ↑ → ↓", "move the map, when it has the focus; with Shift turn and tilt it"),
      row("+ −", "closer, farther"))),
    element("p", { class: "note" }, "This page is one file. It asks the network for nothing; only " +
      "links to openstreetmap.org, when you follow them, leave it. Elevations are metres above " +
      "the ground, from the layers of bridges and tunnels."),
    section("Licences", element("p", {}, "The map data is © ", element("a", {
      href: "https://www.openstreetmap.org/copyright", target: "_blank", rel: "noopener noreferrer" },
      "OpenStreetMap contributors"), " under the Open Database License (ODbL) 1.0."),
      element("p", {}, "Made by osm2roadnet. The map is drawn by MapLibre GL JS."), details)] };
}

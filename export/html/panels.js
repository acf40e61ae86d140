// What stands beside the map: one panel, whose content changes.

/**
 * @typedef {() => {name: string, title: string, content: (Node | string | null)[]}} View
 * `name` says which it is, and is not shown
 */

class Panel {
  constructor() {
    this.root = blockElement("panel");
    this.title = blockElement("panel-title");
    this.body = blockElement("panel-body");
    this.back = blockElement("back-button");
    /** @type {View[]} those below the one that is shown */
    this.views = [];
    /** Called when nothing is shown any more. */
    this.onClose = () => {};
    blockElement("close-button").addEventListener("click", () => this.close());
    this.back.addEventListener("click", () => {
      this.views.pop();
      const view = this.views.pop();
      if (view) this.show(view);
    });
  }

  /** @param {View} view */
  show(view) {
    this.views.push(view);
    const hadFocus = this.root.contains(document.activeElement);
    const { name, title, content } = view();
    this.title.textContent = title;
    this.body.replaceChildren(...content.filter((part) => part !== null));
    this.body.scrollTop = 0;
    this.back.hidden = this.views.length < 2;
    this.root.hidden = false;
    this.root.dataset.name = name;
    if (hadFocus) this.title.focus({ preventScroll: true });
  }
  /** The first of a new row of views. @param {View} view */
  start(view) {
    this.views = [];
    this.show(view);
  }
  /** @param {string} name of a view */
  shows(name) {
    return !this.root.hidden && this.root.dataset.name === name;
  }
  close() {
    if (this.root.hidden) return;
    this.views = [];
    this.root.hidden = true;
    this.onClose();
  }
}

/** @param {Context} context @param {Set<number>} severities that are shown @param {() => void} onChange @returns {View} */
function reportView(context, severities, onChange) {
  return () => {
    const { about } = context.network;
    const { findings } = context.details;
    const counts = about.severities.map(() => 0);
    findings.severities.forEach((severity) => ++counts[severity]);
    const chips = about.severities.map((name, severity) => element("button", {
      type: "button", class: `chip ${name}`, "aria-pressed": severities.has(severity),
      onclick: () => {
        if (!severities.delete(severity)) severities.add(severity);
        onChange();
      },
    }, `${asWords(name)} ${counts[severity]}`));
    const groups = about.kinds.map((kind, number) => {
      const members = numbersWhere(findings.size, (i) => findings.kinds[i] === number &&
                                                         severities.has(findings.severities[i]));
      if (members.length === 0) return null;
      const group = element("details", {},
        element("summary", {}, element("span", {}, findingTitle(kind)),
                element("span", { class: "count" }, members.length.toLocaleString("en"))),
        element("p", { class: "note" }, findingExplanation(kind)));
      // Made when it is wanted: there may be thousands.
      group.addEventListener("toggle", () => {
        group.append(longList(members.length, (i) => findingLink(context, members[i])));
      }, { once: true });
      return group;
    });
    const isEmpty = groups.every((group) => group === null);
    return { name: "report", title: `${counted(findings.size, "place")} to check`, content: [
      element("div", { class: "chips", role: "group", "aria-label": "Severities" }, ...chips),
      about.crossingsAreAll ? null
        : element("p", { class: "note" }, "So much overlaps here that the search for crossings " +
                                          "ended early."),
      isEmpty ? element("p", { class: "note" }, "Nothing to check.") : null, ...groups] };
  };
}

/**
 * @param {Colouring} chosen
 * @param {(colouring: Colouring) => void} onChoose
 * @returns {View}
 */
function keyView(chosen, onChoose) {
  return () => {
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
  };
}

/** @param {Network} network @returns {View} */
function aboutView(network) {
  return () => {
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
  };
}

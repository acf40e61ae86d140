// The page as a whole: what is chosen, and what is shown of it.

/** What the address names beside the view of the map: "road=5". */
const address = {
  /** @returns {URLSearchParams} */
  read: () => new URLSearchParams(location.hash.slice(1)),
  /** @param {string} kind @param {string} id */
  write: (kind, id) => {
    const rest = location.hash.slice(1).split("&")
      .filter((part) => part && !/^(road|node|finding)=/.test(part));
    const hash = `#${[...rest, ...(kind ? [`${kind}=${id}`] : [])].join("&")}`;
    if (hash === (location.hash || "#")) return;  // browsers allow few changes in a time
    try {
      history.replaceState(history.state, "", hash);
    } catch {
      // A page inside another one may have no address of its own.
    }
  },
};

class Page {
  /**
   * @param {Network} network
   * @param {ReturnType<typeof findComponents>} components
   * @param {MapView | null} view
   */
  constructor(network, components, view) {
    this.network = network;
    this.view = view;
    this.panel = new Panel();
    this.components = components;
    /** @type {Colouring} */
    this.colouring = "class";
    this.severities = new Set(network.about.severities.keys());
    /** @type {Promise<Context> | null} */
    this.context = null;
    /** @type {Thing | undefined} */
    this.selected = undefined;
  }

  /** @param {boolean} flies whether to go to what the address names */
  start(flies) {
    const { panel, view } = this;
    if (view) {
      view.onChoose = async (thing, place) => {
        if (!thing) return panel.close();
        await this.choose(thing);
        view.reveal(place);
      };
    }
    panel.onClose = () => this.select({});
    blockElement("report-button").addEventListener("click", () => this.toggle("report"));
    blockElement("key-button").addEventListener("click", () => this.toggle("key"));
    blockElement("about-button").addEventListener("click", () => this.toggle("about"));
    blockElement("theme-button").addEventListener("click", () => {
      switchTheme();
      this.themeChanged();
    });
    darkQuery.addEventListener("change", () => this.themeChanged());
    new SearchBox(this).start();
    addEventListener("keydown", ({ key }) => {
      if (key === "Escape") panel.close();
    });
    addEventListener("hashchange", () => this.openAddress(!address.read().has("map")));
    if (view && view.theme !== currentTheme()) view.restyle();  // changed while the map was made
    this.openAddress(flies);
  }

  /**
   * What stands out on the map, of what the address tells, and whether the map shows the report.
   * @param {{thing?: Thing, id?: string, lines?: Place[][], roads?: number[], hasReport?: boolean}} what
   */
  select({ thing, id = "", lines = [], roads = [], hasReport = false }) {
    this.selected = thing;
    this.view?.select(lines, roads);
    this.view?.showFindings(hasReport ? this.severities : []);
    address.write(thing?.kind ?? "", id);
  }

  /** All that questions need; read when the first is asked. */
  read() {
    this.context ??= NetworkDetails.read(this.network).then((details) => {
      this.view?.setFindings(details.findings);
      blockElement("report-count").textContent = details.findings.size.toLocaleString("en");
      return { network: this.network, details, components: this.components,
               /** @param {Thing} thing */
               choose: (thing) => this.choose(thing, { flies: true, goesBack: true }),
               /** @param {Place | null} place */
               mark: (place) => this.mark(place) };
    });
    return this.context;
  }

  /** @param {Thing} thing */
  async choose(thing, { flies = false, goesBack = false } = {}) {
    const context = await this.read();
    const lines = this.linesOf(thing, context);
    const view = { ...describe(context, thing), onShow: () => this.select({
      thing, id: this.addressOf(thing, context), lines, hasReport: thing.kind === "finding",
      roads: thing.kind === "road" ? [thing.index] : [] }) };
    if (goesBack) this.panel.show(view);
    else this.panel.start(view);
    if (flies) this.view?.flyTo(lines);
  }

  /** @param {number[]} roads @param {View} view */
  chooseRoads(roads, view) {
    const lines = roads.map((road) => this.network.lineOf(road));
    this.panel.show({ ...view, onShow: () => this.select({ lines, roads }) });
    this.view?.flyTo(lines);
  }

  /** @param {Thing} thing @param {Context} context @returns {Place[][]} */
  linesOf({ kind, index }, { details }) {
    if (kind === "road") return [this.network.lineOf(index)];
    if (kind === "node") return [[this.network.placeOf(index)]];
    return details.findings.places[index];
  }

  /** @param {Thing} thing @param {Context} context */
  addressOf({ kind, index }, { details }) {
    const ids = kind === "road" ? details.roadIds : details.nodeIds;
    return kind === "finding" ? String(index) : String(ids[index]);
  }

  /** Chooses what the address names. @param {boolean} flies */
  async openAddress(flies) {
    const parts = address.read();
    const kind = /** @type {Thing["kind"] | undefined} */ (
      ["road", "node", "finding"].find((name) => /^-?\d{1,19}$/.test(parts.get(name) ?? "")));
    if (!kind) return;
    const id = BigInt(parts.get(kind) ?? "");
    const { details } = await this.read();
    const index = kind === "finding" ? (id < details.findings.size ? Number(id) : -1)
                                     : placeOfId(kind === "road" ? details.roadIds : details.nodeIds, id);
    const isShown = this.selected?.kind === kind && this.selected.index === index;
    if (index >= 0 && !isShown) this.choose({ kind, index }, { flies });
  }

  /** @param {Place | null} place */
  mark(place) {
    if (!this.selected || this.selected.kind !== "road") return;
    const line = this.network.lineOf(this.selected.index);
    this.view?.select(place ? [line, [place]] : [line], [this.selected.index]);
  }

  /** Opens a view of the page as a whole, or closes it. @param {"report" | "key" | "about"} name */
  async toggle(name) {
    const { panel, network } = this;
    if (panel.shows(name)) {
      panel.close();
      return;
    }
    const context = await this.read();
    const onShow = () => this.select({ hasReport: name === "report" });
    const views = {
      report: () => reportView(context, this.severities, onShow),
      key: () => keyView(this.colouring, (colouring) => {
        this.colouring = colouring;
        this.view?.colourBy(colouring);
        this.showKey();
      }),
      about: () => aboutView(network),
    };
    panel.start({ ...views[name](), onShow });
    panel.title.focus({ preventScroll: true });
  }

  /** Once more, with other colours. */
  async showKey() {
    this.panel.root.hidden = true;
    await this.toggle("key");
    /** @type {HTMLElement | null} */ (this.panel.body.querySelector("input:checked"))?.focus();
  }

  themeChanged() {
    this.view?.restyle();
    if (this.panel.shows("key")) this.showKey();
  }
}

// The box in which one types what to look for.

class SearchBox {
  /** @param {Page} page */
  constructor(page) {
    this.page = page;
    this.input = /** @type {HTMLInputElement} */ (blockElement("search"));
    /** @type {Search | null} */
    this.search = null;
    /** @type {Found[]} */
    this.found = [];
    this.current = -1;  // of what was found
    /** @type {View | null} */
    this.list = null;  // of what was found
    this.lastQuery = "";
  }

  start() {
    const { input } = this;
    blockElement("search-form").addEventListener("submit", (event) => {
      event.preventDefault();
      if (coarsePointer.matches) input.blur();  // which takes the keyboard from the screen
      this.find(input.value, 1);
    });
    input.addEventListener("input", () => this.find(input.value, 0));
    input.addEventListener("keydown", (event) => {
      if (event.key === "Escape") input.blur();
      if (event.key !== "Enter" || !event.shiftKey) return;
      event.preventDefault();
      this.find(input.value, -1);
    });
    addEventListener("keydown", (event) => {
      if (event.key !== "/" || event.target === input) return;
      event.preventDefault();
      input.focus();
      input.select();
    });
  }

  /**
   * Shows what is found, and goes on by `step` in it.
   * @param {string} query
   * @param {number} step
   */
  async find(query, step) {
    const context = await this.page.read();
    this.search ??= new Search(context.network, context.details);
    const count = blockElement("search-count");
    if (query !== this.lastQuery) {
      this.found = this.search.find(query);
      this.current = -1;
      this.lastQuery = query;
      this.list = this.foundView(context);
    }
    const { length } = this.found;
    count.textContent = query.trim() === "" ? "" : length === 0 ? "nothing found"
      : `${length.toLocaleString("en")} found`;
    if (!this.list || length === 0) {
      if (this.page.panel.shows("found")) this.page.panel.close();
      return;
    }
    if (step === 0) {
      this.page.panel.start(this.list);
      return;
    }
    this.current = (this.current + step + length + (this.current < 0 && step < 0 ? 1 : 0)) % length;
    count.textContent = `${this.current + 1} of ${length}`;
    this.page.panel.replaceViews([this.list]);
    this.goTo(this.found[this.current], context);
  }

  /** @param {Context} context @returns {View} */
  foundView(context) {
    const { found } = this;
    const title = `${found.length.toLocaleString("en")} found`;
    return { name: "found", title, onShow: () => this.page.select({}), content: [
      longList(found.length, (i) => {
        const [title, note] = foundTexts(context, found[i]);
        const button = textButton("", () => {
          this.current = i;
          this.goTo(found[i], context);
        }, { class: "card" });
        button.append(element("span", { class: "card-title", dir: "auto" }, title),
                      element("span", { class: "card-note" }, note));
        return button;
      })] };
  }

  /** @param {Found} found @param {Context} context */
  goTo(found, context) {
    const { page } = this;
    if (found.kind === "node" || found.kind === "road" || found.roads.length === 1) {
      const thing = /** @type {Thing} */ (
        found.kind === "node" ? { kind: "node", index: found.node }
          : { kind: "road", index: found.kind === "road" ? found.road : found.roads[0] });
      page.choose(thing, { flies: true, goesBack: true });
    } else {
      page.chooseRoads(found.roads, describeRoads(context, found));
    }
  }
}

// Elements of the page. Text is never taken for markup.

/**
 * @param {string} tag
 * @param {Record<string, any>} properties attributes, or handlers as "onclick"
 * @param {...(Node | string | null | undefined)} children
 * @returns {HTMLElement}
 */
function element(tag, properties = {}, ...children) {
  const made = document.createElement(tag);
  for (const [name, value] of Object.entries(properties)) {
    if (typeof value === "function") made.addEventListener(name.slice(2), value);
    else if (value !== undefined) {
      made.setAttribute(name, String(value));
    }
  }
  made.append(...children.filter((child) => child !== null && child !== undefined));
  return made;
}

/** Something inside a text that one can choose. @param {string} text @param {() => void} onclick */
function textButton(text, onclick, properties = {}) {
  return element("button", { type: "button", class: "link", dir: "auto", onclick, ...properties },
                 text);
}

/**
 * On OpenStreetMap: only who follows it asks the network for something. Ids that an editor gave to
 * what was never uploaded are below 0, and are not there.
 * @param {"way" | "node" | "relation"} kind
 * @param {bigint} id
 */
function osmLink(kind, id) {
  if (id < 0n) return String(id);
  return element("a", { href: `https://www.openstreetmap.org/${kind}/${id}`, target: "_blank",
                        rel: "noopener noreferrer", title: `${kind} ${id} on openstreetmap.org` },
                 String(id));
}

/**
 * With commas between.
 * @param {(Node | string)[]} items
 * @returns {(Node | string)[]}
 */
function listed(items) {
  return items.flatMap((item, i) => (i > 0 ? [", ", item] : [item]));
}

/**
 * A row of a table of properties, or nothing where there is no value.
 * @param {string} label
 * @param {...(Node | string)} value
 */
function row(label, ...value) {
  if (value.length === 0 || value[0] === "") return null;
  return element("div", { class: "row" }, element("dt", {}, label),
                 element("dd", { dir: "auto" }, ...value));
}

/** @param {string} title @param {...(Node | string | null)} content */
function section(title, ...content) {
  return element("section", {}, element("h3", {}, title), ...content);
}

/**
 * Items as a list, a hundred at first and the next when asked for.
 * @param {number} size
 * @param {(i: number) => Node} makeItem
 */
function longList(size, makeItem) {
  const step = 100;
  const list = element("ul", { class: "items" });
  let shown = 0;
  const more = () => {
    for (const last = Math.min(shown + step, size); shown < last; ++shown) {
      list.append(element("li", {}, makeItem(shown)));
    }
    if (shown === size) return;
    const button = textButton(`Show more of ${size.toLocaleString("en")}`, () => {
      const item = button.parentElement;
      more();
      const next = item?.nextElementSibling?.querySelector("button");
      item?.remove();
      next?.focus();
    }, { class: "link more" });
    list.append(element("li", {}, button));
  };
  more();
  return list;
}

/** @param {number} count @param {string} one */
function counted(count, one) {
  return `${count.toLocaleString("en")} ${one}${count === 1 ? "" : "s"}`;
}

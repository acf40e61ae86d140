// All that is known of a road, a Node or a finding, as the content of the panel.

/**
 * @typedef {object} Context
 * @property {Network} network
 * @property {NetworkDetails} details
 * @property {ReturnType<typeof findComponents>} components
 * @property {(thing: Thing) => void} choose
 * @property {(place: Place | null) => void} mark on the map
 */

/** @param {string} text */
function asWords(text) {
  const words = text.replaceAll("_", " ");
  return words.charAt(0).toUpperCase() + words.slice(1);
}

/** @param {Context} context @param {number} road */
function roadTitle({ network }, road) {
  return network.nameOf(road) || `${asWords(network.highwayOf(road))} without a name`;
}

/** @param {Context} context @param {number} road */
function roadLink(context, road) {
  const { network, details } = context;
  const button = textButton("", () => context.choose({ kind: "road", index: road }),
                            { class: "card" });
  button.append(
    element("span", { class: "card-title", dir: "auto" }, roadTitle(context, road)),
    element("span", { class: "card-note" }, `${asWords(network.highwayOf(road))} · ` +
      `${lengthText(network.lengthOf(road))} · road ${details.roadIds[road]}`));
  return button;
}

/** @param {Context} context @param {number} node */
function nodeLink(context, node) {
  return textButton(String(context.details.nodeIds[node]),
                    () => context.choose({ kind: "node", index: node }));
}

/** @param {Context} context @param {number} finding */
function findingLink(context, finding) {
  const { findings } = context.details;
  const severity = context.network.about.severities[findings.severities[finding]];
  const button = textButton("", () => context.choose({ kind: "finding", index: finding }),
                            { class: `card finding ${severity}` });
  button.append(element("span", { class: "card-note" }, `${asWords(severity)} · ` +
    findingTitle(context.network.about.kinds[findings.kinds[finding]])),
    element("span", { class: "card-title" }, findings.texts[finding]));
  return button;
}

/** @param {Context} context @param {number} i */
function restrictionText(context, i) {
  const { kind, vehicles, condition, except, roads, nodes, relation } =
    context.details.restrictions.at(i);
  /** @param {number} road */
  const link = (road) => textButton(roadTitle(context, road),
                                    () => context.choose({ kind: "road", index: road }));
  const via = roads.slice(1, -1).map(link);
  return element("div", { class: "card" },
    element("span", { class: "card-title" }, asWords(kind)),
    element("span", {}, "from ", link(roads[0]),
            ...(via.length > 0 ? [" over ", ...listed(via)] : []),
            " to ", link(roads[roads.length - 1]), " at Node ",
            ...listed(nodes.map((node) => nodeLink(context, node)))),
    element("span", { class: "card-note" },
            ...listed([vehicles && `for ${vehicles}`, condition && `when ${condition}`,
                       except && `except ${except}`].filter(Boolean)),
            ...(vehicles || condition || except ? [" · "] : []), "relation ",
            osmLink("relation", relation)));
}

/** @param {string} title @param {Node[]} items */
function cards(title, items) {
  if (items.length === 0) return null;
  return section(`${title} (${items.length})`, longList(items.length, (i) => items[i]));
}

/** The numbers below `size` for which `isWanted` holds. @param {number} size @param {(i: number) => boolean} isWanted */
function numbersWhere(size, isWanted) {
  const numbers = [];
  for (let i = 0; i < size; ++i) {
    if (isWanted(i)) numbers.push(i);
  }
  return numbers;
}

/** @param {Context} context @param {(findings: Findings, finding: number) => boolean} isWanted */
function findingCards(context, isWanted) {
  const { findings } = context.details;
  return cards("What the report says", numbersWhere(findings.size, (i) => isWanted(findings, i))
    .map((i) => findingLink(context, i)));
}

/**
 * What the report says of roads and ways. A finding that names roads is theirs alone; one that names
 * none is its ways'.
 * @param {Context} context
 * @param {number[]} roads
 * @param {bigint[]} ways
 */
function findingCardsOf(context, roads, ways) {
  const [ownRoads, ownWays] = [new Set(roads), new Set(ways)];
  return findingCards(context, (findings, i) => {
    const named = findings.roads.at(i);
    return named.length > 0 ? named.some((road) => ownRoads.has(road))
                            : findings.ways.at(i).some((way) => ownWays.has(way));
  });
}

/** @param {Context} context @param {number} rank of a component */
function componentText({ components }, rank) {
  const roads = counted(components.roads[rank], "road");
  return rank === 0 ? `the largest connected part, ${roads}`
                    : `an island, ${roads}, number ${rank + 1} by size`;
}

/** @param {Context} context @param {number} road @returns {(Node | null)[]} */
function describeRoad(context, road) {
  const { network, details, components } = context;
  const [start, end] = [network.startOf(road), network.endOf(road)];
  const direction = network.directions[road];
  const ways = /** @type {bigint[]} */ (details.ways.at(road));
  const neighbours = [...new Set([...details.roadsAt.at(start), ...details.roadsAt.at(end)])]
    .filter((other) => other !== road);
  const restrictions = numbersWhere(details.restrictions.relations.length,
                                    (i) => details.restrictions.roads.at(i).includes(road));
  const tags = details.tags.map(({ numbers, texts }, i) =>
    row(network.about.tags[i], texts[numbers[road]]));
  return [
    element("dl", {},
      row("Highway", network.highwayOf(road)),
      row("Direction", direction === forward ? "one-way, from start to end"
                     : direction === backward ? "one-way, from end to start" : "both ways"),
      row("Length", lengthText(network.lengthOf(road))),
      row("Start", nodeLink(context, start)), row("End", nodeLink(context, end)),
      row(ways.length > 1 ? "OSM ways" : "OSM way", ...listed(ways.map((way) => osmLink("way", way)))),
      network.pieces[road] > 1 ? row("Joined from", counted(network.pieces[road], "piece")) : null,
      row("Belongs to", componentText(context, components.rankOf[road])),
      row("Road id", String(details.roadIds[road])), ...tags),
    section("Elevation", elevationProfile(network.lineOf(road), network.elevationsOf(road),
                                          context.mark)),
    findingCardsOf(context, [road], ways),
    cards("Turn restrictions", restrictions.map((i) => restrictionText(context, i))),
    cards("Neighbours", neighbours.map((other) => roadLink(context, other))),
  ];
}

/** @param {Context} context @param {number} node @returns {(Node | null)[]} */
function describeNode(context, node) {
  const { network, details } = context;
  const id = details.nodeIds[node];
  const roads = details.roadsAt.at(node);
  const restrictions = numbersWhere(details.restrictions.relations.length,
                                    (i) => details.restrictions.nodes.at(i).includes(node));
  const arrivals = roads.filter((road) =>
    (network.endOf(road) === node && network.directions[road] & forward) ||
    (network.startOf(road) === node && network.directions[road] & backward));
  const departures = roads.filter((road) =>
    (network.startOf(road) === node && network.directions[road] & forward) ||
    (network.endOf(road) === node && network.directions[road] & backward));
  return [
    element("dl", {},
      row("OSM node", osmLink("node", id)),
      row("Latitude", `${Number(network.latitudes[node].toFixed(9))}°`),
      row("Longitude", `${Number(network.longitudes[node].toFixed(9))}°`),
      row("Elevation", elevationText(network.nodeElevations[node])),
      row("Traffic", `arrives by ${counted(arrivals.length, "road")}, leaves by ${departures.length}`),
      roads.length > 0 ? row("Belongs to", componentText(context, context.components.rankOf[roads[0]]))
                       : null),
    findingCards(context, (findings, i) => findings.nodes.at(i).includes(id)),
    cards("Turn restrictions", restrictions.map((i) => restrictionText(context, i))),
    cards("Roads", roads.map((road) => roadLink(context, road))),
  ];
}

/** @param {Context} context @param {number} finding @returns {(Node | null)[]} */
function describeFinding(context, finding) {
  const { network, details } = context;
  const { findings } = details;
  const kind = network.about.kinds[findings.kinds[finding]];
  const severity = network.about.severities[findings.severities[finding]];
  const ways = findings.ways.at(finding);
  const nodes = findings.nodes.at(finding);
  const roads = findings.roads.at(finding);
  return [
    element("p", { class: `sentence finding ${severity}` }, findings.texts[finding]),
    element("p", { class: "note" }, findingExplanation(kind)),
    element("dl", {},
      row("Severity", severity),
      ways.length > 0 ? row("OSM ways", ...listed(ways.map((way) => osmLink("way", way)))) : null,
      nodes.length > 0
        ? row("OSM nodes", ...listed(nodes.map((id) => {
            const node = placeOfId(details.nodeIds, id);
            return node < 0 ? osmLink("node", id) : nodeLink(context, node);
          }))) : null,
      findings.places[finding].length === 0 ? row("Place", "not in this map") : null),
    cards("Roads", roads.map((road) => roadLink(context, road))),
  ];
}

/** @param {Context} context @param {Found} found @returns {[title: string, note: string]} */
function foundTexts(context, found) {
  const { network, details } = context;
  /** @param {number[]} roads */
  const extent = (roads) => `${counted(roads.length, "road")} · ` +
    lengthText(roads.reduce((metres, road) => metres + network.lengthOf(road), 0));
  switch (found.kind) {
    case "street":
      return [found.name, `${asWords(network.highwayOf(found.roads[0]))} · ${extent(found.roads)}`];
    case "way":
      return [`Way ${found.way}`, extent(found.roads)];
    case "road":
      return [`Road ${details.roadIds[found.road]}`, roadTitle(context, found.road)];
    default:
      return [`Node ${details.nodeIds[found.node]}`,
              counted(details.roadsAt.at(found.node).length, "road")];
  }
}

/**
 * A street or way of several roads.
 * @param {Context} context
 * @param {Found & {roads: number[]}} found
 * @returns {View}
 */
function describeRoads(context, found) {
  const { roads } = found;
  const ways = found.kind === "way" ? [found.way]
                                    : roads.flatMap((road) => context.details.ways.at(road));
  const [title, note] = foundTexts(context, found);
  return { name: found.kind, title, content: [
    element("p", { class: "note" }, note),
    findingCardsOf(context, roads, ways),
    cards("Roads", roads.map((road) => roadLink(context, road))),
  ] };
}

/** @param {Context} context @param {Thing} thing @returns {View} */
function describe(context, { kind, index }) {
  const { network, details } = context;
  switch (kind) {
    case "road":
      return { name: kind, title: roadTitle(context, index),
               content: describeRoad(context, index) };
    case "node":
      return { name: kind, title: `Node ${details.nodeIds[index]}`,
               content: describeNode(context, index) };
    default:
      return { name: kind, title: findingTitle(network.about.kinds[details.findings.kinds[index]]),
               content: describeFinding(context, index) };
  }
}

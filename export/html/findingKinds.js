// What each kind of finding is, for people; docs/report.md says more.

/** @type {Record<string, [title: string, explanation: string]>} */
const findingTexts = {
  droppedDirections: ["Directions lost in joining",
    "Roads with different directions of travel were joined, and the whole has that of one of them."],
  traps: ["Traps",
    "By the directions of travel one can't leave these Nodes, or can't reach them: a one-way that " +
    "is wrong, a missing link, or the edge of the extract."],
  crossings: ["Crossings without a node",
    "Two roads cross on one level, or nearly so, without a common node: the node is missing, or a " +
    "bridge with its layer."],
  islands: ["Islands", "Roads that are not connected with the rest of the network."],
  impliedOneway: ["One-ways that are implied",
    "A roundabout or motorway without a oneway tag, imported as two-way."],
  unknownOneway: ["One-ways not understood",
    "A value of oneway that has no effect on the network, such as reversible."],
  unmappedRestrictions: ["Turn restrictions without a place",
    "Turn restrictions that could not be applied to the roads of the network."],
  sharedNodes: ["Nodes on two layers",
    "A node in the middle of two ways on different layers connects them."],
  oddLayers: ["Odd layers", "A layer that is no number from -5 to 5."],
  levelBridges: ["Bridges and tunnels on the ground",
    "A bridge or tunnel without a layer lies at the height of the ground."],
  lowClearance: ["Low clearances", "Two roads cross too close above each other for a lorry."],
  areas: ["Areas", "An area that was imported as a road around it."],
  steep: ["Steep roads", "Often a bridge without a ramp."],
  differentNames: ["Different names", "Roads of different names were joined."],
  nameAndNone: ["Names lost or spread", "A road with a name was joined with one without."],
};

/** @param {string} kind */
function findingTitle(kind) {
  return findingTexts[kind]?.[0] ?? kind.replace(/([A-Z])/g, " $1").toLowerCase();
}
/** @param {string} kind */
function findingExplanation(kind) {
  return findingTexts[kind]?.[1] ?? "";
}

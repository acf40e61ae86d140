// Light and dark: the colours of the map, and which of them it is.

const roadClasses = ["motorway", "trunk", "primary", "secondary", "tertiary", "unclassified",
                     "residential", "living_street", "service", "raceway", "road"];
/** The classes that matter from afar. */
const majorClasses = roadClasses.slice(0, 5);

/**
 * @typedef {object} Theme
 * @property {string} paper
 * @property {Record<string, string>} roads by class
 * @property {Record<string, string>} edges of roads by class
 * @property {string} minor roads that no other colour is for
 * @property {string} minorEdge
 * @property {string} minorFar the same from afar, where they are thin
 * @property {string} bridgeEdge
 * @property {string} text
 * @property {string} halo
 * @property {string} arrow
 * @property {string} node
 * @property {string} accent
 * @property {string[]} severities
 * @property {string} calm where nothing is to be said
 * @property {string[]} scale from low to high
 * @property {string[]} heights from below the ground to above
 * @property {string[]} groups
 */

/** @type {{light: Theme, dark: Theme}} */
const themes = {
  light: {
    paper: "#f4f1ea",
    roads: { motorway: "#ec8a68", trunk: "#f4a579", primary: "#f9c976", secondary: "#fbe29a",
             tertiary: "#fffdf5", service: "#fffefb", living_street: "#f1eef8", raceway: "#f6d5dc" },
    edges: { motorway: "#b9502f", trunk: "#c46f3d", primary: "#c8913a", secondary: "#c3a650",
             tertiary: "#aea591" },
    minor: "#ffffff", minorEdge: "#c9c2b3", minorFar: "#cbc4b6", bridgeEdge: "#5d5a55",
    text: "#33302b", halo: "#fffdf8", arrow: "#6a6357", node: "#3f4a59",
    accent: "#1459d9", severities: ["#cf2233", "#d97800", "#2f74c9"], calm: "#c9c4ba",
    scale: ["#c9c4ba", "#9ecae1", "#4f9fce", "#1f6fb3", "#123f7c"],
    heights: ["#3b5fc0", "#8fa6dd", "#c9c4ba", "#ea9a76", "#c23b22"],
    groups: ["#c9c4ba", "#d1495b", "#2a9d8f", "#8e5bb5", "#e08e1b", "#3a7ca5", "#6a994e"],
  },
  dark: {
    paper: "#15191f",
    roads: { motorway: "#c2633f", trunk: "#b5703f", primary: "#a8823c", secondary: "#857441",
             tertiary: "#5b6470", service: "#39414c", living_street: "#454a63", raceway: "#6a4652" },
    edges: { motorway: "#5f2a17", trunk: "#5a3418", primary: "#533e17", secondary: "#453b1c",
             tertiary: "#272d36" },
    minor: "#4a535f", minorEdge: "#20262e", minorFar: "#58636f", bridgeEdge: "#8d98a5",
    text: "#e6eaf0", halo: "#12161b", arrow: "#a3adb9", node: "#b9c4d2",
    accent: "#6ea8ff", severities: ["#ff6b78", "#ffb04d", "#6cb0ff"], calm: "#4a535f",
    scale: ["#4a535f", "#3f7396", "#4f9fce", "#86c5ea", "#d2ecfa"],
    heights: ["#6f93ff", "#5a6ea3", "#4a535f", "#b9785c", "#ff7a5c"],
    groups: ["#4a535f", "#ff7a8a", "#4fd1c1", "#c08fe6", "#f2b04e", "#70b5e0", "#9ccf7e"],
  },
};

/** The dark colours of page.css, in one rule for media. */
const darkRule = /** @type {CSSMediaRule} */ ([...document.styleSheets[0].cssRules].find(
  (rule) => rule instanceof CSSMediaRule && rule.conditionText.includes("prefers-color-scheme")));
const darkQuery = matchMedia("(prefers-color-scheme: dark)");

function isDark() {
  return matchMedia(darkRule.media.mediaText).matches;
}

function currentTheme() {
  return isDark() ? themes.dark : themes.light;
}

/** Turns from light to dark, or back, whatever the system prefers. */
function switchTheme() {
  darkRule.media.mediaText = isDark() ? "not all" : "all";
}

/** A colour so far from one to the other. @param {string} from @param {string} to @param {number} share */
function between(from, to, share) {
  return "#" + [1, 3, 5].map((i) => {
    const [a, b] = [from, to].map((text) => parseInt(text.slice(i, i + 2), 16));
    return Math.round(a + share * (b - a)).toString(16).padStart(2, "0");
  }).join("");
}

/** What lies below the ground, halfway to the paper. @param {Theme} theme @returns {Theme} */
function paler(theme) {
  /** @param {string} colour */
  const mixed = (colour) => between(colour, theme.paper, 0.5);
  const { roads, minor, minorFar, accent, calm, scale, heights, groups } = theme;
  return { ...theme, minor: mixed(minor), minorFar: mixed(minorFar), accent: mixed(accent),
           calm: mixed(calm), scale: scale.map(mixed), heights: heights.map(mixed),
           groups: groups.map(mixed),
           roads: Object.fromEntries(Object.entries(roads).map(([kind, colour]) =>
             [kind, mixed(colour)])) };
}

// The pictures in the map, drawn here: there is nobody to ask for any.

const imageScale = 2;

/**
 * @param {number} width
 * @param {number} height
 * @param {(context: CanvasRenderingContext2D) => void} draw
 */
function drawImage(width, height, draw) {
  const canvas = document.createElement("canvas");
  canvas.width = Math.ceil(width * imageScale);
  canvas.height = Math.ceil(height * imageScale);
  const context = /** @type {CanvasRenderingContext2D} */ (
    // It is read back once; a graphics card would only be slower in that.
    canvas.getContext("2d", { willReadFrequently: true }));
  context.scale(imageScale, imageScale);
  draw(context);
  return context.getImageData(0, 0, canvas.width, canvas.height);
}

/** Along a one-way street. @param {Theme} theme */
function arrowImage(theme) {
  return drawImage(18, 9, (context) => {
    context.fillStyle = context.strokeStyle = theme.arrow;
    context.lineWidth = 1.4;
    context.lineCap = "round";
    context.beginPath();
    context.moveTo(1.5, 4.5);
    context.lineTo(12, 4.5);
    context.stroke();
    context.beginPath();
    context.moveTo(17, 4.5);
    context.lineTo(11, 1);
    context.lineTo(12.2, 4.5);
    context.lineTo(11, 8);
    context.fill();
  });
}

/** Behind the number of a road. @param {Theme} theme */
function shieldImage(theme) {
  return drawImage(20, 16, (context) => {
    context.beginPath();
    context.roundRect(0.75, 0.75, 18.5, 14.5, 3.5);
    context.fillStyle = theme.halo;
    context.fill();
    context.strokeStyle = theme.minorFar;
    context.lineWidth = 1;
    context.stroke();
  });
}

/** How the shield stretches behind a longer number. */
const shieldOptions = {
  pixelRatio: imageScale,
  stretchX: /** @type {[number, number][]} */ ([[10, 30]]),
  stretchY: /** @type {[number, number][]} */ ([[10, 22]]),
  content: /** @type {[number, number, number, number]} */ ([6, 5, 34, 27]),
};

const labelFonts = ["system-ui", "Segoe UI", "Roboto", "Noto Sans", "sans-serif"];

/**
 * A name as a picture. The map's own labels put letter after letter; scripts that run from the
 * right, join their letters or stack them need the browser for that.
 * @param {string} name
 * @param {Theme} theme
 */
function nameImage(name, theme) {
  const font = `500 13px ${labelFonts.map((font) => (/ /.test(font) ? `"${font}"` : font))}`;
  const measuring = /** @type {CanvasRenderingContext2D} */ (
    document.createElement("canvas").getContext("2d"));
  measuring.font = font;
  const width = Math.min(measuring.measureText(name).width, 600) + 6;
  return drawImage(width, 22, (context) => {
    context.font = font;
    context.textBaseline = "middle";
    context.textAlign = "center";
    context.lineJoin = "round";
    context.lineWidth = 3;
    context.strokeStyle = theme.halo;
    context.fillStyle = theme.text;
    context.strokeText(name, width / 2, 11, width);
    context.fillText(name, width / 2, 11, width);
  });
}

const lettersOnTheirOwn = new RegExp(
  "^[" + ["Latin", "Greek", "Cyrillic", "Armenian", "Georgian", "Han", "Hiragana", "Katakana",
          "Hangul", "Bopomofo", "Common"].map((script) => `\\p{Script=${script}}`).join("") + "]*$",
  "u");

/**
 * Whether the map can write the name letter by letter.
 * @param {string} name
 */
function isWrittenLetterByLetter(name) {
  return lettersOnTheirOwn.test(name.normalize("NFC")) && !/\p{Emoji_Presentation}/u.test(name);
}

"use strict";

// The blocks of data in the page: base64 of gzip; see docs/map-page.md.

/** @param {string} id */
function blockElement(id) {
  const element = document.getElementById(id);
  if (!element) throw new Error(`the page lacks its block "${id}"`);
  return element;
}

/** @param {string} text @returns {Uint8Array<ArrayBuffer>} */
function fromBase64(text) {
  const constructor = /** @type {any} */ (Uint8Array);
  if (constructor.fromBase64) return constructor.fromBase64(text);
  const binary = atob(text);  // for browsers before 2025
  const bytes = new Uint8Array(binary.length);
  for (let i = 0; i < bytes.length; ++i) bytes[i] = binary.charCodeAt(i);
  return bytes;
}

/**
 * The bytes of a block.
 * @param {string} id
 */
async function readBlock(id) {
  const packed = fromBase64(blockElement(id).textContent ?? "");
  const stream = new Blob([packed]).stream().pipeThrough(new DecompressionStream("gzip"));
  return new Uint8Array(await new Response(stream).arrayBuffer());
}

/** @param {string} id */
async function readText(id) {
  return new TextDecoder().decode(await readBlock(id));
}

/**
 * Texts, each of which has U+0000 behind it.
 * @param {string} id
 */
async function readTexts(id) {
  return (await readText(id)).split("\0").slice(0, -1);
}

/**
 * A column of whole numbers, as the differences from each to the next. Numbers beyond 2^53 lose
 * digits in this; `readIds` keeps them.
 * @param {string} id
 */
async function readDifferences(id) {
  const { size = "0", bytes = "0" } = blockElement(id).dataset;
  const count = Number(size);
  const planes = await readBlock(id);
  const differences = new Float64Array(count);
  for (let plane = Number(bytes) - 1; plane >= 0; --plane) {
    const first = plane * count;
    for (let i = 0; i < count; ++i) differences[i] = differences[i] * 256 + planes[first + i];
  }
  for (let i = 0; i < count; ++i) {
    const value = differences[i];
    differences[i] = value % 2 ? -(value + 1) / 2 : value / 2;
  }
  return differences;
}

/** @param {string} id */
async function readNumbers(id) {
  const numbers = await readDifferences(id);
  for (let i = 1; i < numbers.length; ++i) numbers[i] += numbers[i - 1];
  return numbers;
}

/**
 * A column of whole numbers of 64 bits.
 * @param {string} id
 */
async function readIds(id) {
  const { size = "0", bytes = "0" } = blockElement(id).dataset;
  const count = Number(size);
  const planes = await readBlock(id);
  const ids = new BigInt64Array(count);
  let previous = 0n;
  for (let i = 0; i < count; ++i) {
    let low = 0;
    let high = 0;
    for (let plane = Math.min(Number(bytes), 4) - 1; plane >= 0; --plane) {
      low = low * 256 + planes[plane * count + i];
    }
    for (let plane = Number(bytes) - 1; plane >= 4; --plane) {
      high = high * 256 + planes[plane * count + i];
    }
    const value = high === 0 ? BigInt(low) : (BigInt(high) << 32n) | BigInt(low);
    previous += value & 1n ? -((value + 1n) >> 1n) : value >> 1n;
    ids[i] = previous;
    previous = ids[i];  // modulo 2^64, as it was written
  }
  return ids;
}

const decimalScale = 1e7;

/**
 * What makes numbers of a few decimals exact: `numbers` come in as whole numbers of 1e-7.
 * @param {string} id
 * @param {Float64Array} numbers
 */
async function finishDecimals(id, numbers) {
  for (let i = 0; i < numbers.length; ++i) numbers[i] /= decimalScale;
  if (!document.getElementById(`${id}.exceptionPlaces`)) return numbers;
  const places = await readNumbers(`${id}.exceptionPlaces`);
  const values = new Float64Array((await readIds(`${id}.exceptionBits`)).buffer);
  places.forEach((place, i) => (numbers[place] = values[i]));
  return numbers;
}

/** @param {string} id */
async function readDecimals(id) {
  return finishDecimals(id, await readNumbers(id));
}

/**
 * Where lists of these sizes begin, and at last where they end.
 * @param {Float64Array} sizes
 */
function startsOf(sizes) {
  const starts = new Float64Array(sizes.length + 1);
  for (let i = 0; i < sizes.length; ++i) starts[i + 1] = starts[i] + sizes[i];
  return starts;
}

// Vector tiles as bytes. The format is Mapbox Vector Tile 2.1, which is protocol buffers: a tile has
// layers, a layer has features, keys and values; a feature has the numbers of its keys and values, and
// its geometry.

const tileExtent = 8192;

/** @typedef {number[]} Part of a line, or a point: x and y in turns */
/** @typedef {[key: string, value: string | number][]} Tags numbers are whole ones */

/** As protocol buffers have numbers with a sign. @param {number} value a whole number of 31 bits */
function zigzag(value) {
  return ((value << 1) ^ (value >> 31)) >>> 0;
}

/** Takes what protocol buffers are made of. */
class ByteWriter {
  constructor() {
    this.bytes = new Uint8Array(1 << 12);
    this.size = 0;
  }

  /** @param {number} more */
  reserve(more) {
    if (this.size + more <= this.bytes.length) return;
    const bytes = new Uint8Array(2 * (this.size + more));
    bytes.set(this.bytes);
    this.bytes = bytes;
  }
  /** @param {number} value a whole number below 2^32 */
  varint(value) {
    this.reserve(5);
    for (; value > 127; value >>>= 7) this.bytes[this.size++] = (value & 127) | 128;
    this.bytes[this.size++] = value;
  }
  /** @param {number} field @param {number} value */
  number(field, value) {
    this.varint(field << 3);
    this.varint(value);
  }
  /** @param {number} field @param {Uint8Array} content */
  content(field, content) {
    this.varint((field << 3) | 2);
    this.varint(content.length);
    this.reserve(content.length);
    this.bytes.set(content, this.size);
    this.size += content.length;
  }
  /** What was written, until more is. */
  written() {
    return this.bytes.subarray(0, this.size);
  }
}

/**
 * Writes lines as commands: go to, and so many lines on.
 * @param {ByteWriter} writer
 * @param {Part[]} parts
 */
function writeLines(writer, parts) {
  let x = 0;
  let y = 0;
  for (const part of parts) {
    for (let i = 0; i < part.length; i += 2) {
      if (i === 0) writer.varint((1 << 3) | 1);
      if (i === 2) writer.varint(((part.length / 2 - 1) << 3) | 2);
      writer.varint(zigzag(part[i] - x));
      writer.varint(zigzag(part[i + 1] - y));
      x = part[i];
      y = part[i + 1];
    }
  }
}

const featureType = { points: 1, lines: 2 };

class TileLayer {
  /** @param {string} name */
  constructor(name) {
    this.writer = new ByteWriter();
    this.writer.number(15, 2);
    this.writer.content(1, new TextEncoder().encode(name));
    this.writer.number(5, tileExtent);
    /** @type {Map<string, number>} */
    this.keys = new Map();
    /** @type {Map<string | number, number>} */
    this.values = new Map();
    this.feature = new ByteWriter();
    this.content = new ByteWriter();
  }

  /**
   * @param {number} type one of `featureType`
   * @param {Tags} tags
   * @param {Part[]} parts
   */
  add(type, tags, parts) {
    const { feature, content } = this;
    feature.size = content.size = 0;
    for (const [key, value] of tags) {
      content.varint(numberOf(this.keys, key));
      content.varint(numberOf(this.values, value));
    }
    feature.content(2, content.written());
    feature.number(3, type);
    content.size = 0;
    writeLines(content, parts);
    feature.content(4, content.written());
    this.writer.content(2, feature.written());
  }

  /** Keys and values stand at the end. */
  end() {
    const encoder = new TextEncoder();
    for (const key of this.keys.keys()) this.writer.content(3, encoder.encode(key));
    for (const value of this.values.keys()) {
      const { content } = this;
      content.size = 0;
      if (typeof value === "string") content.content(1, encoder.encode(value));
      else content.number(6, zigzag(value));
      this.writer.content(4, content.written());
    }
    return this.writer.written();
  }
}

/**
 * The number of an entry, which gets the next if it has none.
 * @template Entry
 * @param {Map<Entry, number>} table
 * @param {Entry} entry
 */
function numberOf(table, entry) {
  const number = table.get(entry) ?? table.size;
  if (number === table.size) table.set(entry, number);
  return number;
}

/** @param {TileLayer[]} layers @returns {ArrayBuffer} */
function tileOf(layers) {
  const tile = new ByteWriter();
  for (const layer of layers) tile.content(3, layer.end());
  return tile.bytes.slice(0, tile.size).buffer;
}

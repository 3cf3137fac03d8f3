// Bytes and characters. The engine counts bytes of UTF-8; the page's fields
// hold UTF-16. A lone surrogate (half of a pair, pasted or typed alone) has
// no UTF-8 form: it becomes U+FFFD (EF BF BD), as TextEncoder writes it, on
// every path to the engine, and the index mapping counts it as those three
// bytes, so ranges the engine reports land on the characters shown.

const encoder = new TextEncoder();

// The UTF-8 bytes the engine receives for a text.
export function utf8Bytes(text) {
  return encoder.encode(text);
}

// The bytes of one UTF-16 position's character, and how many units it spans.
function characterAt(text, i) {
  const code = text.charCodeAt(i);
  if (code < 0x80) return [1, 1];
  if (code < 0x800) return [2, 1];
  if (code >= 0xD800 && code < 0xDC00 && i + 1 < text.length) {
    const next = text.charCodeAt(i + 1);
    if (next >= 0xDC00 && next < 0xE000) return [4, 2];
  }
  return [3, 1];  // the rest of the BMP, and a lone surrogate as U+FFFD
}

// The UTF-16 position where byte byteOffset of the text's UTF-8 falls: the
// start of the character that holds it, or text.length past the end.
export function charIndex(text, byteOffset) {
  let bytes = 0;
  for (let i = 0; i < text.length;) {
    if (bytes >= byteOffset) return i;
    const [size, units] = characterAt(text, i);
    bytes += size;
    i += units;
  }
  return text.length;
}

// A byte range of the engine's as [start, end) in UTF-16 positions.
export function charRange(text, offset, length) {
  return [charIndex(text, offset), charIndex(text, offset + length)];
}

// The lines of the scans box as nrv-edit reads a file: a last line without
// a newline counts, an empty last line does not.
export function scanLines(text) {
  if (text === '') return [];
  const lines = text.split('\n');
  if (lines[lines.length - 1] === '') lines.pop();
  return lines;
}

// The first `most` lines of a text, as scanLines cuts them: {text, lines,
// total}, text being the part that holds those lines.
export function firstLines(text, most) {
  const lines = scanLines(text);
  if (lines.length <= most) return {text, lines, total: lines.length};
  let end = -1;
  for (let n = 0; n < most; n++) end = text.indexOf('\n', end + 1);
  return {text: text.slice(0, end + 1), lines: lines.slice(0, most), total: lines.length};
}

export function escapeHtml(text) {
  return text.replace(/[&<>"]/g, (c) => ({'&': '&amp;', '<': '&lt;', '>': '&gt;', '"': '&quot;'}[c]));
}

// A byte count for a person: "812 bytes", "3.4 KiB", "4 MiB" (whole
// units without a decimal).
export function formatSize(bytes) {
  if (bytes < 1024) return `${bytes} byte${bytes === 1 ? '' : 's'}`;
  // Past 1023.95 KiB, "1024.0 KiB" would be shown: MiB from there.
  const [value, unit] = bytes < 1023.95 * 1024 ? [bytes / 1024, 'KiB'] : [bytes / (1024 * 1024), 'MiB'];
  return `${Number.isInteger(value) ? value : value.toFixed(1)} ${unit}`;
}

// A count with thousands separated: 100000 -> "100,000".
export function formatCount(n) {
  return String(n).replace(/\B(?=(\d{3})+(?!\d))/g, ',');
}

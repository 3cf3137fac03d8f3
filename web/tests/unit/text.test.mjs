// Bytes and characters: the index mapping must agree with the bytes the
// engine receives (TextEncoder's UTF-8, a lone surrogate as U+FFFD).
import {test} from 'node:test';
import assert from 'node:assert/strict';
import {charIndex, charRange, escapeHtml, firstLines, formatCount, formatSize, scanLines, utf8Bytes} from '../../src/text.mjs';

// For each byte offset: the first UTF-16 position whose UTF-8 prefix reaches it.
function expectedIndex(text, offset) {
  for (let i = 0; i <= text.length; i++) {
    if (utf8Bytes(text.slice(0, i)).length >= offset) {
      // A position inside a pair is not a character boundary.
      const inPair = i > 0 && i < text.length && /[\uD800-\uDBFF]/.test(text[i - 1]) && /[\uDC00-\uDFFF]/.test(text[i]);
      return inPair ? i + 1 : i;
    }
  }
  return text.length;
}

test('byte offsets map onto the characters shown, for every offset', () => {
  const texts = [
    '', 'abc', 'é{x}', '€', '\u{1F600}z', '\uD800{DecodedData()}', 'a\uDC00\nb', '\uDC00\uD800', 'x\uD83D',
    '\uD83D\uDE00\uD83D', 'é\u{10FFFF}\u0800\u07FF\u007F',
  ];
  for (const text of texts) {
    const size = utf8Bytes(text).length;
    for (let offset = 0; offset <= size + 2; offset++) {
      assert.equal(charIndex(text, offset), expectedIndex(text, offset), `${JSON.stringify(text)} at byte ${offset}`);
    }
  }
});

test('a lone surrogate is sent as U+FFFD and takes nothing after it', () => {
  const cases = [
    ['\uD800{', [0xEF, 0xBF, 0xBD, 0x7B]],
    ['a\uDC00\nb', [0x61, 0xEF, 0xBF, 0xBD, 0x0A, 0x62]],
    ['\uD83D\uDE00', [0xF0, 0x9F, 0x98, 0x80]],
    ['\uDE00\uD83D', [0xEF, 0xBF, 0xBD, 0xEF, 0xBF, 0xBD]],
    ['a\0b', [0x61, 0x00, 0x62]],
  ];
  for (const [text, bytes] of cases) assert.deepEqual([...utf8Bytes(text)], bytes, JSON.stringify(text));
  assert.deepEqual(charRange('\uD800{Trunc(x)}', 4, 5), [2, 7]);
});

test('lines as the tool reads a file, and the first lines of many', () => {
  const cases = [
    // text, most, lines, the text kept, total
    ['', 3, [], '', 0],
    ['a', 3, ['a'], 'a', 1],
    ['a\n', 1, ['a'], 'a\n', 1],
    ['\n', 1, [''], '\n', 1],
    ['a\n\nb', 3, ['a', '', 'b'], 'a\n\nb', 3],
    ['a\nb\nc', 2, ['a', 'b'], 'a\nb\n', 3],
    ['a\nb\nc\n', 2, ['a', 'b'], 'a\nb\n', 3],
    ['a\nb\n\n', 1, ['a'], 'a\n', 3],
    ['A\nB\0C\nD', 3, ['A', 'B\0C', 'D'], 'A\nB\0C\nD', 3],
  ];
  for (const [text, most, lines, kept, total] of cases) {
    assert.deepEqual(firstLines(text, most), {text: kept, lines, total}, JSON.stringify(text));
    if (total <= most) assert.deepEqual(scanLines(text), lines);
  }
});

test('sizes, counts and markup for a person', () => {
  const sizes = [[0, '0 bytes'], [1, '1 byte'], [1023, '1023 bytes'], [1024, '1 KiB'], [1536, '1.5 KiB'],
                 [1048524, '1023.9 KiB'], [1048575, '1.0 MiB'], [1048576, '1 MiB'], [1048577, '1.0 MiB'], [69206016, '66 MiB']];
  for (const [bytes, shown] of sizes) assert.equal(formatSize(bytes), shown);
  const counts = [[0, '0'], [999, '999'], [1000, '1,000'], [50001, '50,001'], [1234567, '1,234,567']];
  for (const [n, shown] of counts) assert.equal(formatCount(n), shown);
  assert.equal(escapeHtml('<a href="x">&amp;</a>\''), '&lt;a href=&quot;x&quot;&gt;&amp;amp;&lt;/a&gt;\'');
});

// How long the page takes to show the edit of 10,000 scans after a
// keystroke in the expression. Real scans (the shared corpus, repeated) are
// pasted once with escapes on; then an expression is typed one character at
// a time, and for each keystroke the page measures from the input event to
// the next frame (the results in view drawn). Prints the median and the
// slowest, and for one more keystroke the time until every row is drawn.
//
//   node bench/render.js SCANS.tsv [COUNT]
//
// SCANS.tsv: a table of decoded scans with a header line and three
// tab-separated columns (symbology, sample, the scan's bytes in hex).
'use strict';
const fs = require('node:fs');
const path = require('node:path');
const h = require('../tests/harness.js');

if (process.argv.length < 3) {
  console.error('usage: node bench/render.js SCANS.tsv [COUNT]');
  process.exit(2);
}
const corpus = process.argv[2];
const count = Number(process.argv[3] || 10000);

function loadScans() {
  const rows = fs.readFileSync(corpus, 'utf8').split('\n').slice(1).filter(Boolean)
    .map((line) => Buffer.from(line.split('\t')[2], 'hex'));
  // The escaped form, as nrv-edit -e writes it (the page's escapes switch).
  const escaped = rows.map((bytes) => [...bytes].map((b) => {
    if (b === 0x5c) return '\\\\';
    if (b >= 0x20 && b < 0x7f) return String.fromCharCode(b);
    return {0x0d: '\\r', 0x0a: '\\n', 0x09: '\\t'}[b] || '\\x' + b.toString(16).toUpperCase().padStart(2, '0');
  }).join(''));
  return Array.from({length: count}, (_, i) => escaped[i % escaped.length]).join('\n');
}

const quantile = (values, q) => [...values].sort((a, b) => a - b)[Math.min(values.length - 1, Math.floor(q * values.length))];

(async () => {
  const scans = loadScans();
  const {browser, close} = await h.launch();
  const page = await h.openPage(browser);
  await page.setChecked('#escapes', true);
  await page.evaluate((text) => {
    const field = document.getElementById('scans');
    field.value = text;
    field.dispatchEvent(new Event('input'));
  }, scans);
  const typed = '[{TruncateFromBeginning({DecodedDataWithoutTrailer()},1)}]';
  const times = await page.evaluate(async (text) => {
    const field = document.getElementById('expression');
    // The frame's paint follows its animation callbacks; a message posted
    // there runs right after it, before any idle work of the page.
    const channel = new MessageChannel();
    const nextFrame = () => new Promise((resolve) => {
      channel.port1.onmessage = resolve;
      requestAnimationFrame(() => channel.port2.postMessage(0));
    });
    field.value = '';
    field.dispatchEvent(new Event('input'));
    await nextFrame();
    const handler = [];
    const frame = [];
    for (const c of text) {
      const start = performance.now();
      field.value += c;
      field.dispatchEvent(new Event('input'));
      handler.push(performance.now() - start);
      await nextFrame();
      frame.push(performance.now() - start);
    }
    // One more keystroke, timed until the last row is drawn as well.
    const start = performance.now();
    field.value += ' ';
    field.dispatchEvent(new Event('input'));
    const list = document.getElementById('results');
    while (list.hasAttribute('aria-busy')) await new Promise((resolve) => setTimeout(resolve, 1));
    return {handler, frame, all: performance.now() - start};
  }, typed);
  const rows = await page.$$eval('#results [data-scan-index]', (items) => items.length);
  const bytes = ['index.html', 'playground.css', 'playground.js', 'nrv-engine.js']
    .reduce((sum, file) => sum + fs.statSync(path.join(h.pageDir, file)).size, 0);
  console.log(`${rows} scans, ${typed.length} keystrokes typed into the expression`);
  console.log(`input handler (parse, edit, draw): median ${quantile(times.handler, 0.5).toFixed(1)} ms, ` +
              `slowest ${Math.max(...times.handler).toFixed(1)} ms`);
  console.log(`keystroke to next frame:           median ${quantile(times.frame, 0.5).toFixed(1)} ms, ` +
              `slowest ${Math.max(...times.frame).toFixed(1)} ms`);
  console.log(`keystroke to every row drawn:      ${times.all.toFixed(1)} ms`);
  console.log(`page and scripts: ${bytes} bytes`);
  await close();
})();

// Whether the page stays responsive under scans that cost much: for each
// case, how long the page takes to answer once it has the scans, the
// longest gap between two frames while it edits them (a frame is the page
// answering), and how long a new expression then takes to replace them.
//
//   node bench/hostile.js [SECONDS]    (SECONDS: how long frames are watched, default 10)
'use strict';
const h = require('../tests/harness.js');

const seconds = Number(process.argv[2] || 10);

function grown(levels) {
  let e = '{DecodedData()}';
  for (let i = 0; i < 5; i++) e = `{Substitute(${e},A,AAAAAAAAAAAAAAAA)}`;
  for (let i = 0; i < levels; i++) e = `{MakeUpperCase(${e})}`;
  return e;
}

// A link with this expression and `count` scans 'A', or as many as make
// the fragment `bytes` long.
function link(expression, {count, bytes}) {
  const head = new URLSearchParams({e: expression}).toString() + '&s=';
  const n = count || Math.floor((bytes - head.length + 3) / 4);
  return '#' + head + Array(n).fill('A').join('%0A');
}

const CASES = [
  // name, how the scans arrive
  ['50,000 scans pasted into the page as it opens', {paste: Array.from({length: 50000}, (_, i) => `P${i}`).join('\n')}],
  ['a link of 400 scans of about 45 ms each', {link: link(`{TruncateFromBeginning(${grown(40)},1048575)}`, {count: 400})}],
  ['a 56 KB link whose scans each use up the work budget', {link: link(grown(80), {bytes: 56 * 1024})}],
];

(async () => {
  const {browser, close} = await h.launch();
  for (const [name, how] of CASES) {
    const started = Date.now();
    const page = await h.openPage(browser, how.link || '');
    if (how.paste) {
      await page.evaluate((text) => {
        const field = document.getElementById('scans');
        const start = performance.now();
        field.value = text;
        field.dispatchEvent(new Event('input'));
        window.pasteMs = performance.now() - start;
      }, how.paste);
    }
    const answered = Date.now() - started;
    const gaps = await page.evaluate((ms) => new Promise((resolve) => {
      let last = performance.now();
      let longest = 0;
      const end = last + ms;
      const frame = (now) => {
        longest = Math.max(longest, now - last);
        last = now;
        if (now < end && document.getElementById('results').hasAttribute('aria-busy')) requestAnimationFrame(frame);
        else resolve({longest, pasteMs: window.pasteMs});
      };
      requestAnimationFrame(frame);
    }), seconds * 1000);
    const typed = Date.now();
    await page.fill('#expression', '<{DecodedData()}>');
    await page.waitForSelector('#results:not([aria-busy])', {state: 'attached', timeout: 600000});
    const replaced = Date.now() - typed;
    const rows = await page.$$eval('#results [data-scan-index]', (r) => r.length);
    console.log(`${name} (${rows} rows):`);
    if (gaps.pasteMs !== undefined) console.log(`  the paste's input handler: ${gaps.pasteMs.toFixed(0)} ms`);
    else console.log(`  page answering after ${answered} ms`);
    console.log(`  longest gap between frames while editing (first ${seconds} s): ${gaps.longest.toFixed(0)} ms`);
    console.log(`  a new expression typed, every row edited with it: ${replaced} ms`);
    await page.close();
  }
  await close();
})();

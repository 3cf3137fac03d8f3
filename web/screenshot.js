// Takes the picture of the page shown in the README: node screenshot.js [OUT.png]
'use strict';
const path = require('node:path');
const h = require('./tests/harness.js');

const out = process.argv[2] || path.join(__dirname, '..', 'docs', 'playground.png');

(async () => {
  const {browser, close} = await h.launch();
  const state = new URLSearchParams({
    e: 'Item {TruncateFromBeginning({DecodedDataWithoutTrailer()},2)}',
    s: 'AB1234\\r\\n\nLOT[A17]EXP\nX\n10567\\x1D1101010113010101\n9780735619937\\r\nAB\n',
    x: '1',
  });
  const page = await h.openPage(browser, '#' + state.toString());
  await page.click('#results [data-scan-index="1"]');
  await page.hover('#explain .node >> nth=0').catch(() => {});
  await page.screenshot({path: out, clip: {x: 0, y: 0, width: 1280, height: 960}});
  await close();
  console.log(out);
})();

// Every module of the page links: each name imported is exported where it
// is imported from (the joined playground.js would fail only when the page
// reaches the name). main.mjs starts the page: here with an engine that
// never loads.
import {test} from 'node:test';
import assert from 'node:assert/strict';
import {readdirSync} from 'node:fs';

const src = new URL('../../src/', import.meta.url);

test('every module of the page links', async () => {
  const modules = readdirSync(src).filter((name) => name.endsWith('.mjs'));
  assert.ok(modules.includes('page.mjs') && modules.includes('main.mjs'));
  let started = 0;
  globalThis.window = {NrvEngine: () => (started++, new Promise(() => {}))};
  try {
    for (const name of modules) await assert.doesNotReject(import(new URL(name, src).href), name);
  } finally {
    delete globalThis.window;
  }
  assert.equal(started, 1, 'main.mjs loads the engine once');
});

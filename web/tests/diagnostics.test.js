// Diagnostics and explain trees as the engine gives them: the culprit's byte
// range, the command and its sentence, and the tree of what every node
// yielded, compared with nrv-edit's --check --json and --explain --json.
// These pass once the engine reports exact ranges, commands and trees; with
// a first cut that reports the whole expression and no tree, they fail.
'use strict';
const {describe, test, before, after} = require('node:test');
const assert = require('node:assert/strict');
const {spawnSync} = require('node:child_process');
const h = require('./harness.js');

const tool = (...args) => spawnSync(h.nrvEdit, args);

describe('diagnostics and explain: exact ranges, commands and trees from the engine', () => {
  let page;
  h.usePage(before, after, (opened) => ({page} = opened));

  test('the culprit named by the engine is the one underlined', async () => {
    const cases = [
      // expression, code, offset, length, command
      ['{TruncateFromBeginning({DecodedData()},2,3)}', -84, 1, 21, 'TruncateFromBeginning'],
      ['Code: {Trunc({DecodedData()},2)}', -83, 7, 5, null],
      ['é {TruncateFromBeginning({DecodedData()},2,3)}', -84, 4, 21, 'TruncateFromBeginning'],
      ['{TruncateFromEnd({DecodedData()},{DecodedData()})}', -18, null, null, 'TruncateFromEnd'],
      ['{MakeUpperCase({DecodedData()}', -52, null, null, null],
    ];
    for (const [expression, code, offset, length, command] of cases) {
      await page.fill('#expression', expression);
      const d = await page.$eval('#diagnostic', (e) => ({...e.dataset, text: e.textContent}));
      assert.equal(Number(d.code), code, expression);
      if (offset !== null) assert.deepEqual([Number(d.offset), Number(d.length)], [offset, length], expression);
      if (command) assert.match(d.text, new RegExp(`^${command}: `), expression);
      const bytes = Buffer.from(expression, 'utf8');
      const underlined = await page.$$eval('#expression-backdrop .error-mark', (m) => m.map((e) => e.textContent).join(''));
      assert.equal(underlined, bytes.subarray(Number(d.offset), Number(d.offset) + Number(d.length)).toString('utf8'));
      assert.ok(Number(d.length) < bytes.length, `${expression}: a part, not the whole expression`);
      // The same diagnostic as the tool's.
      const json = JSON.parse(tool('--check', '--json', '--', expression).stdout.toString());
      assert.deepEqual([json.code, json.offset, json.length], [code, Number(d.offset), Number(d.length)], expression);
      assert.ok(d.text.includes(json.message), `${expression}: the tool's sentence`);
    }
  });

  test('a failed scan names the command and the values, as the tool does', async () => {
    const expression = '{TruncateFromBeginning({DecodedData()},20)}';
    await h.fill(page, {escapes: false, expression, scans: 'ABC\nABCDEFGHIJKLMNOPQRSTUVWXYZ'});
    const rows = await h.readResults(page);
    assert.match(rows[0].status, /^failed: TruncateFromBeginning: .*20.*3/);
    const said = /^nrv-edit: scan 1: (.*) \(NRV_/.exec(tool('--', expression, 'ABC').stderr.toString());
    assert.ok(said, 'the tool names the failure');
    assert.ok(rows[0].status.startsWith(`failed: ${said[1]}`), rows[0].status);
    assert.equal(rows[1].status, 'edited');
  });

  test('the explain tree is the tool\'s, and hovering a node marks its range', async () => {
    const cases = [
      ['[{TruncateFromBeginning({DecodedData()},2)}]', 'AB1234'],
      ['{Substring({DecodedData()},{FindFirstFromIndex({DecodedData()},-1,-,1)},' +
       '{FindLastFromIndex({DecodedData()},-1,-,0)})}', 'AB-CD-EF'],
      ['{TruncateFromBeginning({DecodedData()},20)}{MakeUpperCase({DecodedData()})}', 'abc'],
    ];
    for (const [expression, scan] of cases) {
      await h.fill(page, {escapes: false, expression, scans: scan});
      await page.click('#results [data-scan-index="1"]');
      const shown = await page.$$eval('#explain .node', (nodes) => nodes.map((n) => ({
        kind: n.dataset.kind, name: n.dataset.name, offset: Number(n.dataset.offset), length: Number(n.dataset.length),
        run: n.dataset.run === 'true', code: Number(n.dataset.code)})));
      const explained = JSON.parse(tool('--explain', '--json', '--', expression, scan).stdout.toString().split('\n')[0]);
      const flat = [];
      const walk = (nodes) => nodes.forEach((n) => {
        flat.push({kind: n.kind, name: n.name, offset: n.offset, length: n.length});
        walk(n.params || []);
      });
      walk(explained.nodes);
      assert.deepEqual(shown.map(({kind, name, offset, length}) => ({kind, name, offset, length})), flat, expression);
      const bytes = Buffer.from(expression, 'utf8');
      for (let i = 0; i < shown.length; i++) {
        await page.hover(`#explain .node >> nth=${i}`);
        const marked = await page.$$eval('#expression-backdrop .hover-mark', (m) => m.map((e) => e.textContent).join(''));
        assert.equal(marked, bytes.subarray(shown[i].offset, shown[i].offset + shown[i].length).toString('utf8'));
      }
      if (explained.code < 0) {
        assert.ok(shown.some((n) => n.run && n.code === explained.code), 'the failing node is marked');
        assert.ok(shown.some((n) => !n.run), 'nodes after the failure are not run');
      }
    }
  });
});

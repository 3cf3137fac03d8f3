// What the page says about a row, a diagnostic and a command, and the
// markup it builds: every outcome of the engine's replies, and texts that
// must not become markup.
import {test} from 'node:test';
import assert from 'node:assert/strict';
import {backdropHtml, explainHtml, rowHtml} from '../../src/html.mjs';
import {commandTemplate, diagnosticText, rowCell, summaryText} from '../../src/status.mjs';

test('each row of an edit as the page shows it', () => {
  const failure = {command: 'TruncateFromEnd', message: 'count 9 is past the text'};
  const cases = [
    // row, parsed, triggers taken, class, status
    [[0, 'out'], true, true, 'edited', 'edited'],
    [[1, 'in'], true, true, 'not-triggered', 'not triggered'],
    [[null, '\\q', 'unknown escape \\q'], true, true, 'bad-line', 'not read: unknown escape \\q'],
    [[-43, 'in', failure], true, true, 'failed', 'failed: TruncateFromEnd: count 9 is past the text (-43)'],
    [[-43, 'in', {command: 'X', message: 'X: says its name'}], true, true, 'failed', 'failed: X: says its name (-43)'],
    [[-60, 'in', {command: null, message: 'too large'}], true, true, 'failed', 'failed: too large (-60)'],
    [[-52, 'in'], false, true, 'failed', 'not edited: the expression does not parse (-52)'],
    [[-18, 'in'], true, false, 'failed', 'not edited: a trigger is refused (-18)'],
  ];
  for (const [row, parsed, triggersOk, cls, status] of cases) {
    const cell = rowCell(row, 'line', parsed, triggersOk);
    assert.deepEqual(cell, {cls, code: row[0] === null ? '' : String(row[0]), line: 'line', output: row[1], status});
  }
  const cells = cases.map(([row, parsed, ok]) => rowCell(row, '', parsed, ok));
  assert.equal(summaryText(cells), '1 edited, 1 not triggered, 5 failed, 1 not read');
  assert.equal(summaryText(cells.slice(0, 2)), '1 edited, 1 not triggered, 0 failed');
});

test('diagnostics and command templates', () => {
  assert.equal(diagnosticText({ok: true}), '');
  assert.equal(diagnosticText({ok: false, code: -84, name: 'NRV_ERR_PARAMETER_COUNT', offset: 1, length: 21,
                               command: 'TruncateFromBeginning', message: 'takes 2 parameters, not 3'}),
               'TruncateFromBeginning: takes 2 parameters, not 3 (NRV_ERR_PARAMETER_COUNT, -84, at byte 1)');
  const cases = [
    [{name: 'DecodedData', parameters: []}, '{DecodedData()}'],
    [{name: 'Substring', parameters: [{name: 'text', kind: 'text'}, {name: 'start', kind: 'number'},
                                      {name: 'stop', kind: 'number'}]}, '{Substring({DecodedData()},0,0)}'],
    [{name: 'EscapeCharacter', parameters: [{name: 'hex', kind: 'text'}]}, '{EscapeCharacter(hex)}'],
  ];
  for (const [command, template] of cases) assert.equal(commandTemplate(command), template);
});

test('marks behind the expression and texts in the markup', () => {
  const cases = [
    // text, marks, markup
    ['ab<c', [], 'ab&lt;c\n'],
    ['abcd', [{range: [1, 3], cls: 'error-mark'}], 'a<mark class="error-mark">bc</mark>d\n'],
    ['abcd', [{range: [0, 3], cls: 'error-mark'}, {range: [2, 4], cls: 'hover-mark'}],
     '<mark class="error-mark">ab</mark><mark class="error-mark hover-mark">c</mark><mark class="hover-mark">d</mark>\n'],
    ['{a', [{range: [2, 2], cls: 'error-mark'}], '{a<mark class="error-mark caret">&nbsp;</mark>\n'],
    ['{a', [{range: [2, 2], cls: 'hover-mark'}], '{a\n'],
  ];
  for (const [text, marks, html] of cases) assert.equal(backdropHtml(text, marks), html);
  const row = rowHtml(4, {cls: 'edited', code: '0', line: '<img src=x>', output: '"&"', status: 'edited'});
  assert.ok(row.includes('data-scan-index="5"') && row.includes('&lt;img src=x&gt;') && row.includes('&quot;&amp;&quot;'));
  const explained = explainHtml(2, {code: 0, output: '<b>', nodes: [
    {kind: 'command', name: 'X<', offset: 0, length: 3, code: 0, value: '<i>', params: [
      {kind: 'integer', name: '7', offset: 1, length: 1, code: null, value: null, params: []}],
    gs1: [{ai: '10<', title: 'BATCH/LOT', data: '<b>'}], gs1More: true}]});
  assert.ok(!/<(b|i)>/.test(explained), explained);
  assert.match(explained, /<li class="gs1-element" data-ai="10&lt;">AI \(10&lt;\) .*&lt;b&gt;.*<li class="gs1-element">…<\/li><\/ul>/);
  assert.match(explained, /data-name="X&lt;".*→ <span class="node-value">&lt;i&gt;<\/span>.*<span class="not-run">not run/);
  assert.equal(explainHtml(0, null), '<p class="hint">No scan selected.</p>');
});

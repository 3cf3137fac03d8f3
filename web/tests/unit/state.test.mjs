// The state a link carries, and the caps on what a link, a file and the
// scans box bring in: at each cap and one past it.
import {test} from 'node:test';
import assert from 'node:assert/strict';
import {LIMITS, defaultInput, fileRefusal, fragmentOf, inputFromFragment, scansCutNotice} from '../../src/state.mjs';

const input = (fields, triggers = {}) => ({...defaultInput(), ...fields, triggers: {...defaultInput().triggers, ...triggers}});

test('a link gives back the input it was made from', () => {
  const cases = [
    input({expression: '{DecodedData()}'}),
    input({expression: '{GS1Element({DecodedData()},10)}', seedOnly: true}),
    input({expression: 'a&b=c#d%e+f ?', scans: 'x\ny\n', escapes: true, symbology: 'Ean13'},
          {min: '2', max: '30', startsWith: '97', endsWith: '\\x0D', contains: ' ', only: ['Ean13', 'QRCode']}),
    input({expression: '{DecodedData()}\0{Frobnicate()}', scans: 'A\nB\0C\nD'}, {startsWith: 'A\0X'}),
    input({expression: 'é\u{1F600}', scans: 'x'.repeat(LIMITS.linkScans)}),
  ];
  for (const sent of cases) assert.deepEqual(inputFromFragment(fragmentOf(sent)), {input: sent});
});

test('what a link leaves out or changes', () => {
  const base = input({scans: 'kept'});
  const cases = [
    // what the link was made from, what opens
    [input({scans: 'x'.repeat(LIMITS.linkScans + 1)}), input({scans: 'kept'})],
    [input({expression: '\uD800{DecodedData()}', scans: 'a\uDC00'}), input({expression: '\uFFFD{DecodedData()}', scans: 'a\uFFFD'})],
  ];
  for (const [sent, opened] of cases) assert.deepEqual(inputFromFragment(fragmentOf(sent), base).input, opened);
  assert.deepEqual(inputFromFragment('#e=x&only=', base).input.triggers.only, []);
});

test('a link, a file and the scans at their caps and one past', () => {
  const at = 'e=' + 'x'.repeat(LIMITS.linkBytes - 2);
  assert.equal(inputFromFragment('#' + at).input.expression.length, LIMITS.linkBytes - 2);
  const past = inputFromFragment('#' + at + 'x');
  assert.equal(past.input, undefined);
  assert.equal(past.notice, 'This link is 1.0 MiB; the page opens links of up to 1 MiB. Nothing was taken from it.');

  const files = [
    [LIMITS.fileBytes, null],
    [LIMITS.fileBytes + 1, 'The file "a.txt" is 4.0 MiB; the page reads files of up to 4 MiB (nrv-edit reads any size). ' +
                           'The scans were left as they were.'],
  ];
  for (const [size, refusal] of files) assert.equal(fileRefusal('a.txt', size), refusal, `${size} bytes`);
  assert.match(fileRefusal('a"<b>.txt', 66 << 20), /^The file "a\\"<b>.txt" is 66 MiB;/);

  assert.equal(scansCutNotice(LIMITS.scans), '');
  assert.equal(scansCutNotice(LIMITS.scans + 1),
               'Only the first 50,000 of 50,001 scans are edited here (nrv-edit edits any number).');
});

// The playground in a real browser: what a person types, what the page
// shows, and whether it agrees with nrv-edit on the same inputs.
'use strict';
const {test, before, after} = require('node:test');
const assert = require('node:assert/strict');
const h = require('./harness.js');

let browser;
let page;
h.usePage(before, after, (opened) => ({browser, page} = opened));

// The fields as a fresh page has them, triggers unset.
const DEFAULTS = {escapes: false, symbology: 'NotSpecified', only: [], min: '', max: '', startsWith: '', endsWith: '',
                  contains: '', seedOnly: false};

// Runs one case on the page and on the tool, and checks that they agree.
async function compareWithTool(state) {
  await h.fill(page, {...DEFAULTS, ...state});
  const shown = await h.readResults(page);
  const tool = h.runTool(state);
  assert.equal(shown.length, tool.lines.length, `${state.expression}: one result per scan`);
  shown.forEach((row, i) => {
    assert.equal(row.index, i + 1);
    assert.equal(row.output, tool.lines[i], `${state.expression}: scan ${i + 1}`);
    if (tool.failures.has(i + 1)) assert.equal(row.code, tool.failures.get(i + 1), `scan ${i + 1}'s code`);
    else assert.ok(row.code === 0 || row.code === 1, `scan ${i + 1} succeeds as in the tool, got ${row.code}`);
  });
  return shown;
}

test('edits agree with nrv-edit, byte for byte in the escaped form', async () => {
  const cases = [
    {expression: 'Code: {TruncateFromBeginning({DecodedData()},2)}', scans: 'AB1234\nXY\nABC'},
    {expression: '{Extract({DecodedData()},[,])}', scans: 'LOT[A17]EXP\n[]\nno markers'},
    {expression: '{DecodedDataWithoutTrailer()}', scans: '12345\\r\\n\nABC\\x1D\\x1D\n\\xFF\\x00', escapes: true},
    {expression: '{DecodedData()}', scans: '01\\x1d17\\r\\n\n\\\\\n\\t', escapes: true},
    {expression: '{Substitute({DecodedData()},{EscapeCharacter(1D)},|)}', scans: '10567\\x1D1101010113010101',
     escapes: true},
    {expression: '{TruncateFromEnd({DecodedData()},20)}', scans: 'short\n' + 'x'.repeat(21)},
    {expression: '{MakeUpperCase({DecodedData()})}', scans: 'a\\xC3\\xA9z\n', escapes: true},
    {expression: '{Substring({DecodedData()},{FindFirstFromIndex({DecodedData()},-1,-,1)},' +
                 '{FindLastFromIndex({DecodedData()},-1,-,0)})}', scans: 'AB-CD-EF\nABCDEF\n-\n\n'},
    {expression: 'plain text, no command', scans: 'one\ntwo'},
    {expression: '{GS1Element({DecodedData()},10)}|{GS1HumanReadable({DecodedData()})}',
     scans: ']C1010950110153000317141120\\x1D10AB-123\\x1D21SER42\n0109501101530004\n10LOT\\xC3\\xA9', escapes: true},
  ];
  for (const state of cases) await compareWithTool(state);
});

test('a failed edit shows the scan unchanged, with its status', async () => {
  const rows = await compareWithTool({expression: '{TruncateFromBeginning({DecodedData()},3)}', scans: 'ABC\nABCD'});
  assert.equal(rows[0].code, -43);
  assert.equal(rows[0].output, 'ABC');
  assert.match(rows[0].status, /^failed: .*\(-43\)$/);
  assert.equal(rows[1].status, 'edited');
});

test('control bytes are drawn visibly without escapes and written as the tool does with them', async () => {
  await h.fill(page, {escapes: true, expression: '{DecodedData()}', scans: 'A\\tB\\r\\n\\x7F\\xC3\\xA9\\xFF'});
  assert.equal((await h.readResults(page))[0].output, 'A\\tB\\r\\n\\x7F\\xC3\\xA9\\xFF');
  await page.setChecked('#escapes', false);
  // The same line read as it stands: backslashes are plain bytes now.
  assert.equal((await h.readResults(page))[0].output, 'A\\tB\\r\\n\\x7F\\xC3\\xA9\\xFF');
  await h.fill(page, {expression: '{EscapeCharacter(41090D0A7FC3A9FF)}', scans: 'x'});
  assert.equal((await h.readResults(page))[0].output, 'A\u2409\u240D\u240A\u2421\u00E9\\xFF');
});

test('a line with a malformed escape is not read, and the others still are', async () => {
  await h.fill(page, {escapes: true, expression: '<{DecodedData()}>', scans: 'ok\n\\q\nbad\\x4\nend\\'});
  const rows = await h.readResults(page);
  assert.deepEqual(rows.map((r) => r.code), [0, null, null, null]);
  assert.equal(rows[0].output, '<ok>');
  rows.slice(1).forEach((row) => assert.match(row.status, /^not read: /));
});

test('triggers and symbologies select the scans the tool edits', async () => {
  const scans = 'AB12\nXY34\nAB\nABCDEFGH\nXYAB';
  const cases = [
    [{min: 4}, [1, 2, 4, 5]],
    [{max: 4}, [1, 2, 3, 5]],
    [{min: 3, max: 4}, [1, 2, 5]],
    [{min: 8, max: 8}, [4]],
    [{startsWith: 'AB'}, [1, 3, 4]],
    [{endsWith: 'AB'}, [3, 5]],
    [{contains: 'Y3'}, [2]],
    [{contains: 'ABCDEFGHI'}, []],
    [{symbology: 'Code128', only: ['Code128']}, [1, 2, 3, 4, 5]],
    [{symbology: 'QRCode', only: ['Code128', 'Ean13']}, []],
    [{symbology: 'Code128', only: ['Code128'], startsWith: 'AB', max: 4}, [1, 3]],
    [{escapes: true, startsWith: '\\x41B'}, [1, 3, 4]],
  ];
  for (const [triggers, expected] of cases) {
    const rows = await compareWithTool({expression: 'Code: {DecodedData()}', scans, ...triggers});
    assert.deepEqual(rows.filter((r) => r.code === 0).map((r) => r.index), expected, JSON.stringify(triggers));
    rows.filter((r) => r.code !== 0).forEach((r) => {
      assert.equal(r.code, 1);
      assert.equal(r.status, 'not triggered');
    });
  }
});

test('a malformed escape in a trigger text is reported beside the triggers', async () => {
  await h.fill(page, {escapes: true, expression: '{DecodedData()}', scans: 'AB', startsWith: '\\x4'});
  assert.match(await page.textContent('#trigger-error'), /^starts with '\\x4': /);
  await page.fill('#starts-with', '');
  assert.equal(await page.textContent('#trigger-error'), '');
});

test('a parse error sets the diagnostic to the tool\'s code and underlines its range', async () => {
  const expressions = [
    '{TruncateFromBeginning({DecodedData()},2,3)}',
    'Code: {Trunc({DecodedData()},2)}',
    '{TruncateFromEnd({DecodedData()},{DecodedData()})}',
    '{MakeUpperCase({DecodedData()}',
    '{'.repeat(101) + 'DecodedData()' + '}'.repeat(101),
    'é {MakeUpperCase({DecodedData()},x)}',
  ];
  for (const expression of expressions) {
    await page.fill('#expression', expression);
    const diagnostic = await page.$eval('#diagnostic', (d) => ({...d.dataset, text: d.textContent}));
    assert.equal(Number(diagnostic.code), h.toolParseCode(expression), expression);
    assert.ok(Number(diagnostic.code) < 0, `${expression} does not parse`);
    assert.ok(diagnostic.text.length > 0, 'a sentence beside it');
    // The underline covers exactly the bytes the diagnostic names.
    const bytes = Buffer.from(expression, 'utf8');
    const culprit = bytes.subarray(Number(diagnostic.offset), Number(diagnostic.offset) + Number(diagnostic.length));
    const underlined = await page.$$eval('#expression-backdrop .error-mark', (m) => m.map((e) => e.textContent));
    assert.equal(underlined.join(''), culprit.toString('utf8') || '\u00A0', expression);
    // A failed parse fails every scan with the parse's code.
    assert.ok((await h.readResults(page)).every((r) => r.code === Number(diagnostic.code)));
  }
  await page.fill('#expression', '{DecodedData()}');
  assert.deepEqual(await page.$eval('#diagnostic', (d) => ({...d.dataset, text: d.textContent})), {text: ''});
  assert.equal(await page.$$eval('#expression-backdrop .error-mark', (m) => m.length), 0);
});

test('selecting a result explains that scan', async () => {
  await h.fill(page, {escapes: false, expression: '[{TruncateFromBeginning({DecodedData()},2)}]',
                      scans: 'AB1234\nXY'});
  await page.click('#results [data-scan-index="1"]');
  assert.match(await page.textContent('#explain'), /Scan 1: \[1234\]/);
  await page.click('#results [data-scan-index="2"]');
  assert.match(await page.textContent('#explain'), /Scan 2: .*\(NRV_ERR_OUT_OF_RANGE, -43\)/);
  assert.equal(await page.$$eval('#results .selected', (s) => s.map((e) => e.dataset.scanIndex).join()), '2');
});

test('the command reference is the command table, and inserts at the cursor', async () => {
  const names = await page.$$eval('#commands [data-command]', (b) => b.map((e) => e.dataset.command));
  const listed = h.toolListCommands();
  assert.ok(names.length >= 18);
  names.forEach((name) => assert.match(listed, new RegExp(`^${name}\\(`, 'm')));
  await page.fill('#expression', 'A-B');
  await page.focus('#expression');
  await page.evaluate(() => document.getElementById('expression').setSelectionRange(2, 2));
  await page.click('#commands [data-command="MakeLowerCase"]');
  assert.equal(await page.inputValue('#expression'), 'A-{MakeLowerCase({DecodedData()})}B');
  // Every inserted template parses, or fails only on its placeholders (-18, -43 at edit time).
  for (const name of names) {
    await page.fill('#expression', '');
    await page.click(`#commands [data-command="${name}"]`);
    const code = await page.$eval('#diagnostic', (d) => d.dataset.code);
    assert.equal(code, undefined, `${name}'s template parses`);
  }
});

test('an example fills the fields and the tool agrees with its results', async () => {
  const titles = await page.$$eval('#examples button', (b) => b.length);
  assert.ok(titles >= 5);
  await page.click('#examples button:has-text("Code 128")');
  const state = {
    expression: await page.inputValue('#expression'), scans: await page.inputValue('#scans'),
    symbology: 'Code128', only: ['Code128'], startsWith: await page.inputValue('#starts-with'),
  };
  const rows = await h.readResults(page);
  assert.deepEqual(rows.map((r) => r.output), h.runTool(state).lines);
  assert.deepEqual(rows.map((r) => r.code), [0, 1]);
});

test('the URL fragment reproduces the page', async () => {
  const state = {escapes: true, symbology: 'Ean13', only: ['Ean13', 'QRCode'], min: 2, max: 30, startsWith: '97',
                 endsWith: '', contains: '\\x2D', expression: '{InsertAfterIndex({DecodedData()},2,-)} & co?#%',
                 scans: '978-0\n97\\x2D\nplain\n'};
  await h.fill(page, state);
  const before = await h.readResults(page);
  await page.waitForFunction((e) => new URLSearchParams(location.hash.slice(1)).get('e') === e, state.expression);
  const fragment = await page.evaluate(() => location.hash);
  const copy = await h.openPage(browser, fragment);
  const fieldsOf = (p) => p.evaluate(() => ['expression', 'scans', 'min-size', 'max-size', 'starts-with', 'ends-with',
                                            'contains', 'symbology'].map((id) => document.getElementById(id).value)
                                       .concat(document.getElementById('escapes').checked,
                                               [...document.getElementById('only-symbology').selectedOptions]
                                                 .map((o) => o.text).join()));
  assert.deepEqual(await fieldsOf(copy), await fieldsOf(page));
  assert.deepEqual(await h.readResults(copy), before);
  assert.ok(before.some((r) => r.code === 0) && before.some((r) => r.code === 1));
  assert.deepEqual(copy.errors, []);
  await copy.close();
});

test('a dropped file is read locally; lines a text box cannot hold switch the escapes on', async () => {
  await h.fill(page, {...DEFAULTS, expression: '{DecodedDataWithoutTrailer()}', scans: ''});
  const drop = (bytes) => page.evaluate((data) => {
    const transfer = new DataTransfer();
    transfer.items.add(new File([new Uint8Array(data)], 'scans.txt'));
    document.body.dispatchEvent(new DragEvent('drop', {dataTransfer: transfer, bubbles: true, cancelable: true}));
  }, [...bytes]);
  await drop(Buffer.from('AB12\nCD34\n'));
  await page.waitForFunction(() => document.querySelectorAll('#results [data-scan-index]').length === 2);
  assert.equal(await page.isChecked('#escapes'), false);
  const file = Buffer.from('AB12\r\n\x1d01\xff\r\n\n', 'latin1');
  await drop(file);
  await page.waitForFunction(() => document.querySelectorAll('#results [data-scan-index]').length === 3);
  assert.equal(await page.isChecked('#escapes'), true);
  assert.equal(await page.inputValue('#scans'), 'AB12\\r\n\\x1D01\\xFF\\r\n\n');
  const rows = await h.readResults(page);
  assert.deepEqual(rows.map((r) => r.output), h.runTool({escapes: true, expression: '{DecodedDataWithoutTrailer()}',
                                                          scans: await page.inputValue('#scans')}).lines);
});

test('ten thousand scans give ten thousand results', async () => {
  const scans = Array.from({length: 10000}, (_, i) => `AB${i}`).join('\n');
  const expression = '{TruncateFromBeginning({DecodedData()},5)}';  // fails the first thousand
  await h.fill(page, {...DEFAULTS, expression});
  // Pasted at once: typing ten thousand lines key by key is not what this checks.
  await page.evaluate((text) => {
    const field = document.getElementById('scans');
    field.value = text;
    field.dispatchEvent(new Event('input'));
  }, scans);
  const rows = await h.readResults(page);
  assert.equal(rows.length, 10000);
  const tool = h.runTool({expression, scans});
  assert.equal(tool.failures.size, 1000);
  rows.forEach((r, i) => assert.equal(r.output, tool.lines[i]));
  // The failures past the first batch are described while the page idles.
  await page.waitForFunction(() => [...document.querySelectorAll('#results .failed .status')]
    .every((s) => s.textContent.startsWith('failed: ')));
});

test('an edit too large for the page stops at its limit, as the tool does, and the page goes on working', async () => {
  // Each Substitute makes every A sixteen: 4 bytes would grow to 4 x 16^7,
  // past the largest text an edit may build here (16 MB, the tool's default).
  let grow = '{DecodedData()}';
  for (let i = 0; i < 7; i++) grow = `{Substitute(${grow},A,AAAAAAAAAAAAAAAA)}`;
  await h.fill(page, {...DEFAULTS, scans: 'AAAA', expression: grow});
  const [row] = await h.readResults(page);
  assert.equal(row.code, -60);
  assert.equal(row.output, 'AAAA');
  assert.equal(h.runTool({expression: grow, scans: 'AAAA'}).failures.get(1), -60);
  await page.fill('#expression', '<{DecodedData()}>');
  assert.deepEqual((await h.readResults(page)).map((r) => r.output), ['<AAAA>']);
});

test('a link with a zero byte or a size past 32 bits is refused as the tool refuses it, not cut or wrapped', async () => {
  const cases = [
    // fragment, the trigger error, the same triggers for the tool, the diagnostic's code and sentence
    ['e=%7BDecodedData()%7D&s=AB&sw=A%00X', "starts with 'A\\x00X': a trigger text cannot hold a zero byte",
     {escapes: true, startsWith: 'A\\x00X'}],
    ['e=%7BDecodedData()%7D&s=AB&min=4294967297', "invalid size '4294967297' for minimum size (at most 4294967295)"],
    ['e=%7BDecodedData()%7D&s=AB&min=5&max=2', 'minimum size 5 is above maximum size 2: no scan could be edited',
     {min: 5, max: 2}],
    ['e=%7BDecodedData()%7D%00%7BFrobnicate()%7D&s=AB', '', null, -18, 'the expression cannot hold a zero byte'],
    ['e=%3C%7BDecodedData()%7D%3E&s=A%0AB%00C%0AD', ''],
  ];
  const toolNames = {'starts with': '--starts-with', 'minimum size': '--min-size', 'maximum size': '--max-size'};
  for (const [fragment, triggerError, toolState, code, sentence] of cases) {
    const copy = await h.openPage(browser, '#' + fragment);
    assert.equal(await copy.textContent('#trigger-error'), triggerError, fragment);
    if (toolState) {
      const tool = h.runTool({expression: '{DecodedData()}', scans: 'AB', ...toolState});
      assert.equal(tool.status, 2);
      assert.ok(tool.stderr.includes(triggerError.replace(/[a-z]+ (with|size)/g, (name) => toolNames[name])),
                tool.stderr);
    }
    const rows = await h.readResults(copy);
    const lines = new URLSearchParams(fragment).get('s').split('\n');
    assert.equal(rows.length, lines.length, fragment);
    const diagnostic = await copy.$eval('#diagnostic', (d) => ({...d.dataset, text: d.textContent}));
    assert.ok(rows.every((r) => r.status !== ''), `${fragment}: every row edited, none left pending`);
    if (code) {
      assert.equal(Number(diagnostic.code), code);
      assert.equal(await copy.isVisible('#parse-ok'), false, 'not said to parse');
      assert.ok(diagnostic.text.startsWith(sentence), diagnostic.text);
      assert.ok(rows.every((r) => r.code === code && r.output === lines[r.index - 1]));
    } else if (triggerError) {
      assert.ok(rows.every((r) => r.code === -18 && r.status === 'not edited: a trigger is refused (-18)'));
    } else {
      assert.deepEqual(rows.map((r) => r.output), ['<A>', '<B\u2400C>', '<D>']);
    }
    assert.deepEqual(copy.errors, []);
    await copy.close();
  }
});

test('a lone surrogate reaches the engine as U+FFFD, as the tool reads it, and takes nothing after it', async () => {
  const cases = [
    // expression, scans, what the page shows (the tool is asked too)
    ['\uD800{DecodedData()}', 'AB', ['\uFFFDAB']],
    ['<{DecodedData()}>', 'a\uDC00\nb', ['<a\uFFFD>', '<b>']],
    ['{DecodedData()}\uDBFF', 'x\uD83D\uDE00y', ['x\uD83D\uDE00y\uFFFD']],
    ['<{DecodedData()}>', '\uDC00\uD800\n\uD800', ['<\uFFFD\uFFFD>', '<\uFFFD>']],
    ['{TruncateFromBeginning({DecodedData()},3)}', '\uD800AB', ['AB']],
  ];
  await h.fill(page, DEFAULTS);
  for (const [expression, scans, outputs] of cases) {
    await h.paste(page, '#scans', scans);
    await h.paste(page, '#expression', expression);
    const rows = await h.readResults(page);
    assert.deepEqual(rows.map((r) => r.output), outputs, JSON.stringify(expression + ' / ' + scans));
    assert.deepEqual(rows.map((r) => r.output), h.runTool({expression, scans}).lines);
    assert.equal(await page.$eval('#diagnostic', (d) => d.textContent), '');
  }
});

// Files and links past the page's caps are refused before they reach the
// engine: a message says so and names the cap, and the page goes on.
test('a file or a link past the page\'s caps is refused with a message; one at the cap is read', async () => {
  const MiB = 1 << 20;
  const cases = [
    // name, how: a dropped file {size, line, byte} or a link {size}, the notice expected (null: taken)
    ['66 MiB of 0xFF lines', {size: 66 * MiB, line: 64, byte: 0xFF}, /is 66 MiB; the page reads files of up to 4 MiB/],
    ['50 MiB without a newline', {size: 50 * MiB, line: 0, byte: 0x41}, /is 50 MiB; the page reads files of up to 4 MiB/],
    ['one byte past the cap', {size: 4 * MiB + 1, line: 1024, byte: 0x41}, /the page reads files of up to 4 MiB/],
    ['at the cap', {size: 4 * MiB, line: 1024, byte: 0x41}, null],
    ['a link past the cap', {link: MiB + 1}, /this link is 1\.0 MiB; the page opens links of up to 1 MiB/i],
  ];
  for (const [name, input, notice] of cases) {
    await h.paste(page, '#scans', 'AB\nCD');  // at once: the box may hold 4 MiB
    await h.fill(page, {...DEFAULTS, expression: '<{DecodedData()}>'});
    await page.evaluate(({size, line, byte, link}) => {
      if (link) {
        const head = 'e=%7BDecodedData()%7D&s=';
        location.hash = head + 'A'.repeat(link - head.length);
        return;
      }
      const bytes = new Uint8Array(size).fill(byte);
      if (line) for (let i = line - 1; i < size; i += line) bytes[i] = 0x0A;
      const transfer = new DataTransfer();
      transfer.items.add(new File([bytes], 'scans.txt'));
      document.body.dispatchEvent(new DragEvent('drop', {dataTransfer: transfer, bubbles: true, cancelable: true}));
    }, input);
    if (notice) {
      await page.waitForFunction(() => document.getElementById('notice').textContent !== '');
      assert.match(await page.textContent('#notice'), notice, name);
      assert.equal(await page.inputValue('#scans'), 'AB\nCD', name);
      assert.deepEqual((await h.readResults(page)).map((r) => r.output), ['<AB>', '<CD>'], name);
    } else {
      await page.waitForFunction(() => document.getElementById('scans').value.length > 5);
      await page.waitForSelector('#results:not([aria-busy])', {state: 'attached'});
      assert.equal(await page.textContent('#notice'), '', name);
      // Each line of the file, edited (compared in the page: 8 MB of results).
      const outputs = await page.$$eval('#results .output', (o, line) => o.every((e) => e.textContent === `<${line}>`) &&
                                        o.length, 'A'.repeat(input.line - 1));
      assert.equal(outputs, input.size / input.line, name);
    }
  }
  // The page still edits what is typed.
  await compareWithTool({expression: '[{DecodedData()}]', scans: 'ok\nyes'});
});

test('the scans past the page\'s cap are counted and left out, with a message', async () => {
  await h.fill(page, {...DEFAULTS, expression: '<{DecodedData()}>'});
  const count = 50001;
  await page.evaluate((n) => {
    const field = document.getElementById('scans');
    field.value = Array.from({length: n}, (_, i) => `S${i + 1}`).join('\n');
    field.dispatchEvent(new Event('input'));
  }, count);
  await page.waitForSelector('#results:not([aria-busy])', {state: 'attached'});
  assert.match(await page.textContent('#notice'), /only the first 50,000 of 50,001 scans are edited/i);
  assert.equal(await page.$$eval('#results [data-scan-index]', (rows) => rows.length), 50000);
  assert.equal(await page.$eval('#results [data-scan-index="50000"] .output', (o) => o.textContent), '<S50000>');
  await h.fill(page, {scans: 'x'});
  assert.equal(await page.textContent('#notice'), '');
});

// Rows are edited in slices cut by time: a keystroke edits the rows in view
// (as the list is after the new rows are in), the others follow in later
// turns, and a new keystroke takes over from work still under way.
test('scans are edited in turns: the rows in view first, and a keystroke takes over', async () => {
  await h.fill(page, {...DEFAULTS, expression: '<{DecodedData()}>', scans: 'AB1234\nXY9876'});
  const editedAtOnce = await page.evaluate(() => {
    const field = document.getElementById('scans');
    field.value = Array.from({length: 50000}, (_, i) => `P${i}`).join('\n');
    field.dispatchEvent(new Event('input'));
    return document.querySelectorAll('#results [data-scan-index]:not(.pending)').length;
  });
  assert.ok(editedAtOnce > 0 && editedAtOnce < 1000, `${editedAtOnce} of 50,000 rows edited within the paste`);
  await page.waitForSelector('#results:not([aria-busy])', {state: 'attached'});
  assert.match(await page.textContent('#summary'), /^50000 edited, 0 not triggered, 0 failed$/);
  // Scrolled to the middle and further: the rows shown are those the keystroke edits.
  for (const share of [0.5, 0.8]) {
    await page.$eval('#results', (list, share) => { list.scrollTop = list.scrollHeight * share; }, share);
    await page.evaluate(() => new Promise((resolve) => requestAnimationFrame(() => requestAnimationFrame(resolve))));
    const shown = await page.evaluate((share) => {
      const field = document.getElementById('expression');
      field.value = `${share}{DecodedData()}`;
      field.dispatchEvent(new Event('input'));
      const list = document.getElementById('results').getBoundingClientRect();
      const inView = (element) => {
        const box = element.getBoundingClientRect();
        return box.bottom > list.top && box.top < list.bottom;
      };
      return [...document.querySelectorAll('#results .rows')].filter(inView).flatMap((group) => [...group.children])
        .filter(inView).map((row) => row.querySelector('.output').textContent);
    }, share);
    assert.ok(shown.length > 5, `${shown.length} rows shown`);
    assert.ok(shown.every((output) => output.startsWith(String(share))), `rows in view edited at once: ${shown}`);
  }
  await h.paste(page, '#scans', 'x');  // the rest of those edits is dropped

  // Every scan costs tens of milliseconds: a text of a million bytes, lower-cased 40 times, then cut.
  let heavy = '{DecodedData()}';
  for (let i = 0; i < 5; i++) heavy = `{Substitute(${heavy},A,AAAAAAAAAAAAAAAA)}`;
  for (let i = 0; i < 40; i++) heavy = `{MakeLowerCase(${heavy})}`;
  heavy = `{TruncateFromBeginning(${heavy},1048575)}`;
  assert.deepEqual(h.runTool({expression: heavy, scans: 'A'}).lines, ['a']);
  const link = new URLSearchParams({e: heavy, s: Array(400).fill('A').join('\n')});
  const copy = await h.openPage(browser, '#' + link.toString());
  const pending = await copy.$$eval('#results .pending', (rows) => rows.length);
  assert.ok(pending >= 200, `${pending} of 400 rows still to edit once the page answers`);
  await copy.fill('#expression', '<{DecodedData()}>');
  const rows = await h.readResults(copy);
  assert.equal(rows.length, 400);
  assert.ok(rows.every((r) => r.code === 0 && r.output === '<A>'));
  assert.deepEqual(copy.errors, []);
  await copy.close();
});

test('GS1: the example, the elements in the explain tree, and the switch that keeps the seed commands', async () => {
  await h.fill(page, DEFAULTS);
  await page.click('#examples button:has-text("GS1 code")');
  const state = {expression: await page.inputValue('#expression'), scans: await page.inputValue('#scans'), escapes: true};
  const rows = await h.readResults(page);
  assert.deepEqual(rows.map((r) => r.output), h.runTool(state).lines);
  assert.deepEqual(rows.map((r) => r.code), [0, -63]);
  assert.equal(rows[0].output, 'lot AB-123 expiry 141120');
  assert.match(rows[1].status, /AI \(01\): check digit 4, expected 3, at byte 15 of the scan/);
  await page.click('#results [data-scan-index="1"]');
  const elements = await page.$$eval('#explain .node[data-name="GS1Element"] ~ ul > .gs1-element',
                                     (items) => items.map((e) => e.dataset.ai + ' ' + e.textContent));
  assert.deepEqual(elements.slice(0, 4).map((e) => e.split(' ')[0]), ['01', '17', '10', '21']);
  assert.match(elements[2], /BATCH\/LOT → AB-123$/);
  // The reference lists the GS1 commands under their own heading.
  const reference = await page.$$eval('#commands > li', (items) =>
    items.map((e) => (e.className === 'set-heading' ? '# ' : '') + (e.querySelector('[data-command]') || e).textContent));
  const heading = reference.findIndex((e) => e.startsWith('# GS1 commands'));
  assert.ok(heading >= 18 && reference[heading + 1].startsWith('GS1Element('), reference.join('\n'));
  // Seed commands only: the expression no longer parses, as with nrv-edit --seed-only.
  await h.fill(page, {seedOnly: true});
  assert.equal(await page.$eval('#diagnostic', (d) => d.dataset.code), '-83');
  assert.match(await page.textContent('#diagnostic'), /GS1 extension set/);
  assert.equal(h.runTool({...state, seedOnly: true}).status, 2);
  await page.waitForFunction(() => /(^#|&)seed=1(&|$)/.test(location.hash));  // the link keeps the switch
  await h.fill(page, {seedOnly: false});
  assert.equal(await page.$eval('#diagnostic', (d) => d.dataset.code), undefined);
});

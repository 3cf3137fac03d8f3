// The playground page: reads the fields, asks the engine (nrv-engine.js, the
// library compiled to WebAssembly) and draws what it answers. Every edit,
// diagnostic and explain tree comes from the engine; this file only moves
// text in and out and keeps the page's state in the URL fragment.
'use strict';

// The README's common jobs, and a few real scans to try them on.
const EXAMPLES = [
  {title: 'Cut a prefix', expression: '{TruncateFromBeginning({DecodedData()},2)}', scans: 'AB1234'},
  {title: 'Take the field between [ and ]', expression: '{Extract({DecodedData()},[,])}', scans: 'LOT[A17]EXP'},
  {title: 'Strip the trailing CR LF', expression: '{DecodedDataWithoutTrailer()}', scans: '12345\\r\\n\nABC\\r',
   escapes: true},
  {title: 'Show control bytes', expression: '{DecodedData()}', scans: '01\\x1d17\\r\\n', escapes: true},
  {title: 'Edit only Code 128 scans starting with AB', expression: 'Code: {DecodedData()}', scans: 'AB12\nXY34',
   symbology: 'Code128', only: ['Code128'], startsWith: 'AB'},
  {title: 'Group separators made visible', expression: '{Substitute({DecodedData()},{EscapeCharacter(1D)},|)}',
   scans: '10567\\x1d1101010113010101\n10567890\\x1d11010101', escapes: true},
  {title: 'Lot and expiry out of a GS1 code',
   expression: 'lot {GS1Element({DecodedData()},10)} expiry {GS1Element({DecodedData()},17)}',
   scans: ']C1010950110153000317141120\\x1D10AB-123\\x1D21SER42\n010950110153000417141120', escapes: true},
  {title: 'A mistake, underlined', expression: '{TruncateFromBeginning({DecodedData()},2,3)}', scans: 'AB1234'},
];

// Decoded scans of real barcodes, in the escaped form.
const SAMPLE_SCANS = [
  '9780735619937', '55123457', '1PEF224A4', 'ABC123', 'A12345B', '0100034567890125',
  '10567\\x1D1101010113010101', '101098,1234', 'http://code.google.com', 'H15-03-34',
  'symbologyIdentifier=]C1\\n', '!"\\xC2\\xA7$%&/()=?`', 'Hello World',
];

// Past this size the scans stay out of the link (browsers cut long URLs).
const MAX_FRAGMENT_SCANS = 8000;

const $ = (id) => document.getElementById(id);
const fields = {
  expression: $('expression'), scans: $('scans'), escapes: $('escapes'), symbology: $('symbology'),
  minSize: $('min-size'), maxSize: $('max-size'), startsWith: $('starts-with'), endsWith: $('ends-with'),
  contains: $('contains'), only: $('only-symbology'), seedOnly: $('seed-only'),
};

let engine = null;
let symbologies = [];
let selectedIndex = 0;
let parsed = true;  // whether the expression parses
let triggersOk = true;  // whether the engine took the triggers

// --- Calling the engine ----------------------------------------------------

// Calls an exported function; strings (as UTF-8) and byte arrays go through
// the heap (not the stack, which a file of scans would overflow) as a
// pointer and a length, and the JSON reply is parsed.
function call(name, ...args) {
  const pointers = [];
  const values = args.flatMap((arg) => {
    if (typeof arg !== 'string' && !(arg instanceof Uint8Array)) return [arg];
    const size = typeof arg === 'string' ? engine.lengthBytesUTF8(arg) : arg.length;
    const pointer = engine._malloc(size + 1);
    if (!pointer) throw new Error('out of memory');
    pointers.push(pointer);
    if (typeof arg === 'string') engine.stringToUTF8(arg, pointer, size + 1);
    else engine.HEAPU8.set(arg, pointer);
    return [pointer, size];
  });
  try {
    const reply = JSON.parse(engine.UTF8ToString(engine['_' + name](...values)));
    if (reply && reply.outOfMemory) throw new Error('out of memory');
    return reply;
  } finally {
    pointers.forEach((pointer) => engine._free(pointer));
  }
}

// --- Byte offsets and the expression's highlights ---------------------------

// The engine counts bytes of UTF-8; the text field counts UTF-16 units.
function charIndex(text, byteOffset) {
  let bytes = 0;
  for (let i = 0; i < text.length; i++) {
    if (bytes >= byteOffset) return i;
    const code = text.codePointAt(i);
    bytes += code < 0x80 ? 1 : code < 0x800 ? 2 : code < 0x10000 ? 3 : 4;
    if (code >= 0x10000) i++;
  }
  return text.length;
}

function escapeHtml(text) {
  return text.replace(/[&<>"]/g, (c) => ({'&': '&amp;', '<': '&lt;', '>': '&gt;', '"': '&quot;'}[c]));
}

let errorRange = null;  // [start, end) in characters, or null
let hoverRange = null;

// Redraws the backdrop behind the expression: the same text, transparent,
// with the error underlined and the hovered node shaded.
function drawBackdrop() {
  const text = fields.expression.value;
  const marks = [];
  if (errorRange) marks.push({range: errorRange, cls: 'error-mark'});
  if (hoverRange) marks.push({range: hoverRange, cls: 'hover-mark'});
  const cuts = new Set([0, text.length]);
  marks.forEach((m) => { cuts.add(m.range[0]); cuts.add(m.range[1]); });
  const points = [...cuts].sort((a, b) => a - b);
  let html = '';
  for (let i = 0; i + 1 < points.length; i++) {
    const [from, to] = [points[i], points[i + 1]];
    const classes = marks.filter((m) => m.range[0] <= from && to <= m.range[1]).map((m) => m.cls);
    const piece = escapeHtml(text.slice(from, to));
    html += classes.length ? `<mark class="${classes.join(' ')}">${piece}</mark>` : piece;
  }
  // An error at the very end (a missing brace) still needs something to underline.
  if (errorRange && errorRange[0] === errorRange[1]) html += '<mark class="error-mark caret">&nbsp;</mark>';
  $('expression-backdrop').innerHTML = html + '\n';
  syncBackdropScroll();
}

function syncBackdropScroll() {
  const backdrop = $('expression-backdrop');
  backdrop.scrollTop = fields.expression.scrollTop;
  backdrop.scrollLeft = fields.expression.scrollLeft;
}

function rangeOf(text, offset, length) {
  return [charIndex(text, offset), charIndex(text, offset + length)];
}

// --- Parse, edit, draw --------------------------------------------------------

// The switch that keeps the eighteen seed commands only; the engine is told
// only when it changes.
let seedOnlySent = false;

function parseExpression() {
  const text = fields.expression.value;
  if (fields.seedOnly.checked !== seedOnlySent) {
    call('nrv_set_seed_only', fields.seedOnly.checked ? 1 : 0);
    seedOnlySent = fields.seedOnly.checked;
  }
  const diagnostic = call('nrv_parse', text);
  const box = $('diagnostic');
  if (!diagnostic.ok) {
    box.dataset.code = diagnostic.code;
    box.dataset.offset = diagnostic.offset;
    box.dataset.length = diagnostic.length;
    box.textContent = `${failureText(diagnostic.command, diagnostic.message)} (${diagnostic.name}, ` +
                      `${diagnostic.code}, at byte ${diagnostic.offset})`;
    errorRange = rangeOf(text, diagnostic.offset, diagnostic.length);
  } else {
    delete box.dataset.code;
    delete box.dataset.offset;
    delete box.dataset.length;
    box.textContent = '';
    errorRange = null;
  }
  parsed = diagnostic.ok;
  $('parse-ok').hidden = !parsed;
  drawBackdrop();
}

function selectedSymbologies() {
  return [...fields.only.selectedOptions].map((o) => o.value);
}

function applyTriggers() {
  const reply = call('nrv_set_triggers', fields.minSize.value, fields.maxSize.value, selectedSymbologies().join(','),
                     fields.contains.value, fields.startsWith.value, fields.endsWith.value,
                     fields.escapes.checked ? 1 : 0);
  triggersOk = reply.ok;
  $('trigger-error').textContent = reply.ok ? '' : reply.message;
}

// A failure for a person: the command concerned, then the engine's sentence
// (which may name the command itself).
function failureText(command, message) {
  return command && !message.startsWith(`${command}:`) ? `${command}: ${message}` : message;
}

function statusOf(row) {
  const [code, , failure] = row;
  if (code === null) return {cls: 'bad-line', text: `not read: ${failure}`};
  if (code === 1) return {cls: 'not-triggered', text: 'not triggered'};
  if (code >= 0) return {cls: 'edited', text: 'edited'};
  if (!parsed) return {cls: 'failed', text: `not edited: the expression does not parse (${code})`};
  if (!triggersOk) return {cls: 'failed', text: `not edited: a trigger is refused (${code})`};
  return {cls: 'failed', text: `failed: ${failureText(failure.command, failure.message)} (${code})`};
}

function scanLines() {
  const text = fields.scans.value;
  if (text === '') return [];
  const split = text.split('\n');
  if (split[split.length - 1] === '') split.pop();
  return split;
}

// A keystroke edits and draws the scans in view at once; the engine edits
// the others in slices while the page idles, and #results carries aria-busy
// until every row is drawn. Rows that have not changed are not written.
// Rows sit in groups of ROWS_PER_GROUP: a group out of view is skipped by
// layout as a whole, so a keystroke lays out a few groups, not every row.
const ROWS_PER_GROUP = 100;
const ROWS_PER_SLICE = 500;

let lines = [];   // the scans as typed, one per row
let drawn = [];   // what each row element shows
let wanted = [];  // what each row element should show (undefined: not edited yet)
let background = 0;

function rowHtml(i, cell) {
  return `<div class="result ${cell.cls}" role="listitem" data-scan-index="${i + 1}" data-code="${cell.code}">` +
         `<span class="n">${i + 1}</span><span class="scan">${escapeHtml(cell.line)}</span>` +
         `<span class="output">${escapeHtml(cell.output)}</span>` +
         `<span class="status">${escapeHtml(cell.status)}</span></div>`;
}

function rowElement(i) {
  return $('results').children[Math.floor(i / ROWS_PER_GROUP)].children[i % ROWS_PER_GROUP];
}

function writeRow(i) {
  const [was, cell] = [drawn[i], wanted[i]];
  if (was === cell || cell === undefined) return;
  const item = rowElement(i);
  if (was.cls !== cell.cls) item.className = `result ${cell.cls}${i + 1 === selectedIndex ? ' selected' : ''}`;
  if (was.code !== cell.code) item.dataset.code = cell.code;
  if (was.line !== cell.line) item.children[1].textContent = cell.line;
  if (was.output !== cell.output) item.children[2].textContent = cell.output;
  if (was.status !== cell.status) item.children[3].textContent = cell.status;
  drawn[i] = cell;
}

// Which rows are in view, as a share of the list. Read before the page
// writes anything, since reading layout after a write would lay out the
// whole list there and then.
let view = {top: 0, bottom: 0};

function measureView() {
  const list = $('results');
  const height = list.scrollHeight || 1;
  view = {top: list.scrollTop / height, bottom: (list.scrollTop + list.clientHeight) / height};
}

// The rows in view, with a margin: [first, last).
function rowsInView() {
  const first = Math.max(0, Math.floor(view.top * lines.length) - 40);
  return [first, Math.min(lines.length, Math.ceil(view.bottom * lines.length) + 40)];
}

// Makes the list hold one row per scan; new rows show their scan until edited.
function resizeRows() {
  const list = $('results');
  const count = lines.length;
  const groups = Math.ceil(count / ROWS_PER_GROUP);
  if (count < drawn.length) {
    while (list.children.length > groups) list.lastChild.remove();
    const last = list.lastChild;
    while (last && last.children.length > count - (groups - 1) * ROWS_PER_GROUP) last.lastChild.remove();
    drawn.length = count;
  }
  const start = drawn.length;
  for (let i = start; i < count; i++) drawn[i] = {cls: 'pending', code: '', line: lines[i], output: '', status: ''};
  let i = start;
  if (i % ROWS_PER_GROUP !== 0 && i < count) {
    const parts = [];
    for (; i < count && i % ROWS_PER_GROUP !== 0; i++) parts.push(rowHtml(i, drawn[i]));
    list.lastChild.insertAdjacentHTML('beforeend', parts.join(''));
  }
  const parts = [];
  for (; i < count; i++) {
    if (i % ROWS_PER_GROUP === 0) parts.push(i > start ? '</div><div class="rows">' : '<div class="rows">');
    parts.push(rowHtml(i, drawn[i]));
  }
  if (parts.length) list.insertAdjacentHTML('beforeend', parts.join('') + '</div>');
}

// Edits the scans [first, last) and draws them.
function editRows(first, last) {
  if (first >= last) return;
  const rows = call('nrv_edit_scans', Number(fields.symbology.value), first, last - first).rows;
  rows.forEach((row, k) => {
    const i = first + k;
    const status = statusOf(row);
    wanted[i] = {cls: status.cls, code: row[0] === null ? '' : String(row[0]), line: lines[i], output: row[1],
                 status: status.text};
    writeRow(i);
  });
}

function drawSummary() {
  const counts = {edited: 0, 'not-triggered': 0, failed: 0, 'bad-line': 0};
  wanted.forEach((cell) => counts[cell.cls]++);
  $('summary').textContent = `${counts.edited} edited, ${counts['not-triggered']} not triggered, ` +
                             `${counts.failed} failed` + (counts['bad-line'] ? `, ${counts['bad-line']} not read` : '');
}

// Edits every scan: those in view now, the others in idle time. Each turn
// does some work even when the page is never idle (the timeout).
function editScans() {
  const list = $('results');
  const job = ++background;
  wanted = new Array(lines.length);
  const [first, last] = rowsInView();
  editRows(first, last);
  $('scan-count').textContent = `${lines.length} scan${lines.length === 1 ? '' : 's'}`;
  if (selectedIndex > lines.length) selectedIndex = 0;
  drawExplain();
  list.setAttribute('aria-busy', 'true');
  let next = 0;
  const step = (deadline) => {
    if (job !== background) return;
    try {
      do {
        if (next === first) next = last;
        const end = Math.min(lines.length, next + ROWS_PER_SLICE, next < first ? first : Infinity);
        editRows(next, end);
        next = end;
      } while (next < lines.length && deadline.timeRemaining() > 2);
    } catch (e) {
      return reportFailure(e);
    }
    if (next < lines.length) return requestIdleCallback(step, {timeout: 100});
    drawSummary();
    list.removeAttribute('aria-busy');
  };
  $('summary').textContent = 'editing…';
  requestIdleCallback(step, {timeout: 100});
}

// --- Explain -------------------------------------------------------------------

function nodeHtml(node) {
  const run = node.code !== null;
  const label = node.kind === 'command' ? `<span class="node-name">${escapeHtml(node.name)}</span>`
                                        : `<span class="node-literal">${escapeHtml(node.name)}</span>`;
  let value;
  if (!run) value = '<span class="not-run">not run</span>';
  else if (node.code < 0) value = `<span class="node-failed">failed (${node.code})</span>`;
  else if (typeof node.value === 'number') value = `→ <span class="node-value integer">${node.value}</span>`;
  else value = `→ <span class="node-value">${escapeHtml(node.value)}</span>`;
  // A GS1 command's text, element by element.
  const elements = (node.gs1 || []).map((e) =>
    `<li class="gs1-element" data-ai="${escapeHtml(e.ai)}">AI (${escapeHtml(e.ai)}) ` +
    `<span class="gs1-title">${escapeHtml(e.title)}</span> → <span class="node-value">${escapeHtml(e.data)}</span></li>`)
    .join('') + (node.gs1More ? '<li class="gs1-element">…</li>' : '');
  const children = node.params.length || elements ? `<ul>${node.params.map(nodeHtml).join('')}${elements}</ul>` : '';
  return `<li><span class="node" data-kind="${node.kind}" data-name="${escapeHtml(node.name)}" ` +
         `data-offset="${node.offset}" data-length="${node.length}" data-run="${run}" data-code="${node.code}">` +
         `<span class="node-kind">${node.kind}</span> ${label} ${value}</span>${children}</li>`;
}

function drawExplain() {
  const box = $('explain');
  if (!selectedIndex) {
    box.innerHTML = '<p class="hint">No scan selected.</p>';
    return;
  }
  const line = lines[selectedIndex - 1] || '';
  const result = call('nrv_explain', fields.expression.value, line, fields.escapes.checked ? 1 : 0, selectedIndex);
  if (result.line === false) {
    box.innerHTML = `<p class="error">Scan ${selectedIndex} cannot be read: ${escapeHtml(result.message)}</p>`;
    return;
  }
  let head = `<p>Scan ${selectedIndex}: `;
  if (result.code >= 0) {
    head += `<span class="edited-text">${escapeHtml(result.output)}</span>`;
  } else {
    const failure = result.failure;
    head += `<span class="error">${escapeHtml(failureText(failure.command, failure.message))} ` +
            `(${failure.name}, ${failure.code})</span>`;
  }
  head += ' <span class="hint">(triggers are not applied here)</span></p>';
  const tree = result.nodes.length ? `<ul class="tree">${result.nodes.map(nodeHtml).join('')}</ul>`
                                   : '<p class="hint">The engine gave no tree for this expression.</p>';
  box.innerHTML = head + tree;
}

// --- State in the URL fragment ---------------------------------------------------

function stateToFragment() {
  const p = new URLSearchParams();
  p.set('e', fields.expression.value);
  if (fields.scans.value.length <= MAX_FRAGMENT_SCANS) p.set('s', fields.scans.value);
  if (fields.escapes.checked) p.set('x', '1');
  if (fields.symbology.value !== '0') p.set('y', symbologies[fields.symbology.value]);
  if (fields.minSize.value) p.set('min', fields.minSize.value);
  if (fields.maxSize.value) p.set('max', fields.maxSize.value);
  if (fields.startsWith.value) p.set('sw', fields.startsWith.value);
  if (fields.endsWith.value) p.set('ew', fields.endsWith.value);
  if (fields.contains.value) p.set('c', fields.contains.value);
  const only = selectedSymbologies().map((id) => symbologies[id]);
  if (only.length) p.set('only', only.join(','));
  if (fields.seedOnly.checked) p.set('seed', '1');
  return '#' + p.toString();
}

function symbologyId(name) {
  const id = symbologies.findIndex((s) => s.toLowerCase() === String(name).toLowerCase());
  return id < 0 ? 0 : id;
}

// Sets the fields from a state (a parsed fragment or an example).
function setState(state) {
  fields.expression.value = state.expression || '';
  if (state.scans !== undefined) fields.scans.value = state.scans;
  fields.escapes.checked = !!state.escapes;
  fields.symbology.value = String(symbologyId(state.symbology || 'NotSpecified'));
  fields.minSize.value = state.min || '';
  fields.maxSize.value = state.max || '';
  fields.startsWith.value = state.startsWith || '';
  fields.endsWith.value = state.endsWith || '';
  fields.contains.value = state.contains || '';
  const only = new Set((state.only || []).map(symbologyId));
  [...fields.only.options].forEach((o) => { o.selected = only.has(Number(o.value)); });
  fields.seedOnly.checked = !!state.seedOnly;
}

function stateFromFragment(hash) {
  const p = new URLSearchParams(hash.replace(/^#/, ''));
  return {
    expression: p.get('e') || '', scans: p.has('s') ? p.get('s') : undefined, escapes: p.get('x') === '1',
    symbology: p.get('y'), min: p.get('min'), max: p.get('max'), startsWith: p.get('sw'),
    endsWith: p.get('ew'), contains: p.get('c'), only: p.get('only') ? p.get('only').split(',') : [],
    seedOnly: p.get('seed') === '1',
  };
}

let fragmentTimer = 0;
function saveFragment() {
  clearTimeout(fragmentTimer);
  fragmentTimer = setTimeout(() => history.replaceState(null, '', stateToFragment()), 150);
}

// --- Everything at once --------------------------------------------------------

// The scans as the engine last read them; read again only when they change.
let scansRead = {text: null, escapes: false};

function readScans() {
  const [text, escapes] = [fields.scans.value, fields.escapes.checked];
  if (text === scansRead.text && escapes === scansRead.escapes) return;
  call('nrv_set_scans', text, escapes ? 1 : 0);
  scansRead = {text, escapes};
  lines = scanLines();
  resizeRows();
}

// An edit that would need more memory than the page allows stops with this.
function reportFailure(e) {
  $('diagnostic').textContent = `The engine could not finish: ${e.message}. Shorten the expression or the scans.`;
  $('results').removeAttribute('aria-busy');
}

function refresh() {
  measureView();
  try {
    readScans();
    parseExpression();
    applyTriggers();
    editScans();
  } catch (e) {
    background++;
    reportFailure(e);
  }
  saveFragment();
}

function insertAtCursor(text) {
  const field = fields.expression;
  const start = field.selectionStart;
  const end = field.selectionEnd;
  field.setRangeText(text, start, end, 'select');
  field.focus();
  refresh();
}

function commandTemplate(command) {
  const params = command.parameters.map((p, i) => {
    if (i === 0 && p.name === 'text') return '{DecodedData()}';
    return p.kind === 'number' ? '0' : p.name;
  });
  return `{${command.name}(${params.join(',')})}`;
}

function buildReference() {
  const list = $('commands');
  call('nrv_commands').forEach((command, i, all) => {
    // Each extension set under its own heading, after the seed commands.
    if (command.set && (i === 0 || all[i - 1].set !== command.set)) {
      const heading = document.createElement('li');
      heading.className = 'set-heading';
      heading.textContent = `${command.set} commands (an extension set; off with “seed commands only”)`;
      list.appendChild(heading);
    }
    const item = document.createElement('li');
    const button = document.createElement('button');
    button.type = 'button';
    button.className = 'command';
    button.dataset.command = command.name;
    const signature = command.parameters.map((p) => `${p.name}${p.kind === 'number' ? '#' : ''}`).join(', ');
    button.innerHTML = `<code>${escapeHtml(command.name)}(${escapeHtml(signature)})</code>` +
                       ` <span class="result-kind">→ ${command.result}</span>` +
                       `<span class="summary">${escapeHtml(command.summary)}</span>`;
    button.title = `Insert ${commandTemplate(command)}`;
    button.addEventListener('mousedown', (e) => e.preventDefault());  // keep the cursor in the expression
    button.addEventListener('click', () => insertAtCursor(commandTemplate(command)));
    item.appendChild(button);
    list.appendChild(item);
  });
  const examples = $('examples');
  EXAMPLES.forEach((example) => {
    const item = document.createElement('li');
    const button = document.createElement('button');
    button.type = 'button';
    button.className = 'example';
    button.innerHTML = `${escapeHtml(example.title)}<code>${escapeHtml(example.expression)}</code>`;
    button.addEventListener('click', () => {
      setState(example);
      selectedIndex = 0;
      refresh();
    });
    item.appendChild(button);
    examples.appendChild(item);
  });
}

function fillSymbologies() {
  symbologies = call('nrv_symbologies');
  symbologies.forEach((name, id) => {
    fields.symbology.add(new Option(name, String(id)));
    if (id !== 0) fields.only.add(new Option(name, String(id)));
  });
}

// A dropped file is read here, by the engine; lines that a text box cannot
// hold as they are (control bytes, bytes that are not UTF-8) switch the
// escapes on.
function readDroppedFile(file) {
  file.arrayBuffer().then((buffer) => {
    const reply = call('nrv_read_file', new Uint8Array(buffer), fields.escapes.checked ? 1 : 0);
    fields.escapes.checked = reply.escapes;
    fields.scans.value = reply.text;
    selectedIndex = 0;
    refresh();
  }).catch(reportFailure);
}

function wire() {
  ['expression', 'scans', 'minSize', 'maxSize', 'startsWith', 'endsWith', 'contains'].forEach((name) =>
    fields[name].addEventListener('input', refresh));
  ['escapes', 'symbology', 'only', 'seedOnly'].forEach((name) => fields[name].addEventListener('change', refresh));
  fields.expression.addEventListener('scroll', syncBackdropScroll);
  $('results').addEventListener('scroll', () => {
    measureView();
    const [first, last] = rowsInView();
    for (let i = first; i < last; i++) writeRow(i);
  });
  $('load-samples').addEventListener('click', () => {
    fields.escapes.checked = true;
    fields.scans.value = SAMPLE_SCANS.join('\n');
    refresh();
  });
  $('results').addEventListener('click', (e) => {
    const item = e.target.closest('[data-scan-index]');
    if (!item) return;
    const previous = $('results').querySelector('.selected');
    if (previous) previous.classList.remove('selected');
    item.classList.add('selected');
    selectedIndex = Number(item.dataset.scanIndex);
    drawExplain();
  });
  const explain = $('explain');
  explain.addEventListener('mouseover', (e) => {
    const node = e.target.closest('.node');
    if (!node) return;
    hoverRange = rangeOf(fields.expression.value, Number(node.dataset.offset), Number(node.dataset.length));
    drawBackdrop();
  });
  explain.addEventListener('mouseleave', () => {
    hoverRange = null;
    drawBackdrop();
  });
  window.addEventListener('hashchange', () => {
    if (location.hash === stateToFragment()) return;
    setState(stateFromFragment(location.hash));
    refresh();
  });
  const veil = $('drop-veil');
  document.addEventListener('dragover', (e) => {
    e.preventDefault();
    veil.hidden = false;
  });
  document.addEventListener('dragleave', (e) => {
    if (e.relatedTarget === null) veil.hidden = true;
  });
  document.addEventListener('drop', (e) => {
    e.preventDefault();
    veil.hidden = true;
    if (e.dataTransfer.files.length) readDroppedFile(e.dataTransfer.files[0]);
  });
}

NrvEngine().then((module) => {
  engine = module;
  fillSymbologies();
  buildReference();
  wire();
  if (location.hash.length > 1) setState(stateFromFragment(location.hash));
  refresh();
  $('loading').remove();
  document.body.dataset.ready = 'true';
});

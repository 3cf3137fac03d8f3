// The page: one state object (state.mjs), the engine behind one object
// (engine.mjs), the page drawn from the state, and every event wired in
// wire(). Every edit, diagnostic and explain tree comes from the engine;
// this only moves text in and out.
import {EngineError, createEngine} from './engine.mjs';
import {EXAMPLES, SAMPLE_SCANS, exampleInput} from './examples.mjs';
import {backdropHtml, commandHtml, exampleHtml, explainHtml, rowHtml, setHeadingText} from './html.mjs';
import {EditOrder, SLICE_MS, nextSliceSize} from './slices.mjs';
import {LIMITS, fileRefusal, fragmentOf, inputFromFragment, newState, scansCutNotice} from './state.mjs';
import {commandTemplate, diagnosticText, pendingCell, rowCell, scanCountText, summaryText} from './status.mjs';
import {charRange, firstLines} from './text.mjs';

// Rows sit in groups that layout skips as a whole while out of view.
const ROWS_PER_GROUP = 100;
// A keystroke's own turn edits the rows in view for at most this long;
// the rest follows in idle turns of about SLICE_MS each.
const FIRST_TURN_MS = 30;
// Rows above and below the view that count as in view.
const VIEW_MARGIN = 40;

class Playground {
  constructor(engine, win) {
    this.engine = engine;
    this.win = win;
    const $ = (id) => win.document.getElementById(id);
    this.el = {
      expression: $('expression'), backdrop: $('expression-backdrop'), diagnostic: $('diagnostic'),
      parseOk: $('parse-ok'), seedOnly: $('seed-only'), scans: $('scans'), scanCount: $('scan-count'), escapes: $('escapes'),
      symbology: $('symbology'), minSize: $('min-size'), maxSize: $('max-size'), startsWith: $('starts-with'),
      endsWith: $('ends-with'), contains: $('contains'), only: $('only-symbology'), triggerError: $('trigger-error'),
      notice: $('notice'), results: $('results'), summary: $('summary'), explain: $('explain'),
      commands: $('commands'), examples: $('examples'), loadSamples: $('load-samples'), veil: $('drop-veil'),
    };
    this.symbologies = engine.symbologies();
    this.commands = [];
    this.state = newState();
    this.state.input = this.readFields();
    // What the engine holds, what the rows show, and the edits under way.
    this.sentScans = null;
    this.sentSeedOnly = false;
    this.view = {drawn: [], cells: [], top: 0, bottom: 0, job: null};
    this.fragmentTimer = 0;
  }

  // --- The fields and the state ----------------------------------------------

  readFields() {
    const el = this.el;
    return {
      expression: el.expression.value, scans: el.scans.value, escapes: el.escapes.checked,
      seedOnly: el.seedOnly.checked, symbology: el.symbology.value || 'NotSpecified',
      triggers: {min: el.minSize.value, max: el.maxSize.value, startsWith: el.startsWith.value,
                 endsWith: el.endsWith.value, contains: el.contains.value,
                 only: [...el.only.selectedOptions].map((o) => o.value)},
    };
  }

  // Sets each field that differs from the state (the state may come from
  // a link or an example); symbology names match in any case.
  writeFields() {
    const [el, input] = [this.el, this.state.input];
    const set = (field, key, value) => {
      if (field[key] !== value) field[key] = value;
    };
    set(el.expression, 'value', input.expression);
    set(el.scans, 'value', input.scans);
    set(el.escapes, 'checked', input.escapes);
    set(el.seedOnly, 'checked', input.seedOnly);
    set(el.symbology, 'value', this.symbologyName(input.symbology));
    const t = input.triggers;
    [[el.minSize, t.min], [el.maxSize, t.max], [el.startsWith, t.startsWith], [el.endsWith, t.endsWith],
     [el.contains, t.contains]].forEach(([field, value]) => set(field, 'value', value));
    const only = new Set(t.only.map((name) => this.symbologyName(name)));
    for (const option of el.only.options) set(option, 'selected', only.has(option.value));
  }

  symbologyName(name) {
    const id = this.symbologyId(name);
    return this.symbologies[id];
  }

  symbologyId(name) {
    const id = this.symbologies.findIndex((s) => s.toLowerCase() === String(name).toLowerCase());
    return id < 0 ? 0 : id;
  }

  // --- Asking the engine -------------------------------------------------------

  // Everything the engine answers for the state, then the page drawn from it.
  update() {
    const {input, outcome} = this.state;
    this.view.job = null;
    try {
      this.sendScans();
      if (input.seedOnly !== this.sentSeedOnly) {
        this.engine.setSeedOnly(input.seedOnly);
        this.sentSeedOnly = input.seedOnly;
      }
      outcome.parse = this.engine.parse(input.expression);
      outcome.triggers = this.engine.setTriggers(input.triggers, input.escapes);
      this.startEdits();
    } catch (e) {
      this.fail(e);
    }
    this.render();
  }

  // The scans, read again by the engine only when they change; at most
  // LIMITS.scans of them.
  sendScans() {
    const {input, outcome} = this.state;
    if (this.sentScans && this.sentScans.text === input.scans && this.sentScans.escapes === input.escapes) return;
    const cut = firstLines(input.scans, LIMITS.scans);
    this.engine.setScans(cut.text, input.escapes);
    this.sentScans = {text: input.scans, escapes: input.escapes};
    outcome.lines = cut.lines;
    outcome.total = cut.total;
    if (this.state.selected > cut.lines.length) this.state.selected = 0;
    this.resizeRows();
  }

  // An engine that ran out of memory stops the edits with a message; any
  // other error is the page's own fault and is left to surface.
  fail(error) {
    if (!(error instanceof EngineError)) throw error;
    this.view.job = null;
    this.state.notice = `${error.message}: shorten the expression or the scans (the page has 256 MiB).`;
    this.el.results.removeAttribute('aria-busy');
    this.el.summary.textContent = '';
  }

  // --- Drawing -------------------------------------------------------------------

  render() {
    const {el, state} = this;
    const {parse, triggers, lines} = state.outcome;
    this.writeFields();
    el.diagnostic.textContent = diagnosticText(parse);
    for (const key of ['code', 'offset', 'length']) {
      if (parse.ok) delete el.diagnostic.dataset[key];
      else el.diagnostic.dataset[key] = parse[key];
    }
    el.parseOk.hidden = !parse.ok;
    el.triggerError.textContent = triggers.ok ? '' : triggers.message;
    this.renderNotice();
    el.scanCount.textContent = scanCountText(lines.length);
    this.renderBackdrop();
    this.renderExplain();
  }

  // What was refused or left out, if anything.
  renderNotice() {
    const {notice, outcome} = this.state;
    this.el.notice.textContent = [notice, scansCutNotice(outcome.total)].filter(Boolean).join(' ');
  }

  renderBackdrop() {
    const {parse} = this.state.outcome;
    const text = this.state.input.expression;
    const marks = [];
    if (!parse.ok) marks.push({range: charRange(text, parse.offset, parse.length), cls: 'error-mark'});
    if (this.state.hover) marks.push({range: charRange(text, ...this.state.hover), cls: 'hover-mark'});
    this.el.backdrop.innerHTML = backdropHtml(text, marks);
    this.syncBackdropScroll();
  }

  syncBackdropScroll() {
    this.el.backdrop.scrollTop = this.el.expression.scrollTop;
    this.el.backdrop.scrollLeft = this.el.expression.scrollLeft;
  }

  renderExplain() {
    const {input, selected, outcome} = this.state;
    let result = null;
    if (selected) {
      try {
        result = this.engine.explain(input.expression, outcome.lines[selected - 1], input.escapes, selected);
      } catch (e) {
        this.fail(e);
        this.renderNotice();
        return;
      }
    }
    this.el.explain.innerHTML = explainHtml(selected, result);
  }

  // --- The rows --------------------------------------------------------------------

  rowElement(i) {
    return this.el.results.children[Math.floor(i / ROWS_PER_GROUP)].children[i % ROWS_PER_GROUP];
  }

  // Makes the list hold one row per scan; new rows show their scan until edited.
  resizeRows() {
    const list = this.el.results;
    const {drawn} = this.view;
    const {lines} = this.state.outcome;
    const count = lines.length;
    const groups = Math.ceil(count / ROWS_PER_GROUP);
    if (count < drawn.length) {
      while (list.children.length > groups) list.lastChild.remove();
      const last = list.lastChild;
      while (last && last.children.length > count - (groups - 1) * ROWS_PER_GROUP) last.lastChild.remove();
      drawn.length = count;
    }
    const start = drawn.length;
    for (let i = start; i < count; i++) drawn[i] = pendingCell(lines[i]);
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

  writeRow(i) {
    const [was, cell] = [this.view.drawn[i], this.view.cells[i]];
    if (was === cell || cell === undefined) return;
    const item = this.rowElement(i);
    if (was.cls !== cell.cls) item.className = `result ${cell.cls}${i + 1 === this.state.selected ? ' selected' : ''}`;
    if (was.code !== cell.code) item.dataset.code = cell.code;
    if (was.line !== cell.line) item.children[1].textContent = cell.line;
    if (was.output !== cell.output) item.children[2].textContent = cell.output;
    if (was.status !== cell.status) item.children[3].textContent = cell.status;
    this.view.drawn[i] = cell;
  }

  // The rows in view, with a margin, as [first, last). Measured once the
  // list holds its new rows, so a paste is not taken for all in view.
  rowsInView() {
    const list = this.el.results;
    const count = this.state.outcome.lines.length;
    const height = list.scrollHeight || 1;
    const top = list.scrollTop / height;
    const bottom = (list.scrollTop + list.clientHeight) / height;
    return [Math.max(0, Math.floor(top * count) - VIEW_MARGIN), Math.min(count, Math.ceil(bottom * count) + VIEW_MARGIN)];
  }

  // Edits every scan, in slices: the rows in view in this turn (for at most
  // FIRST_TURN_MS), the rest in idle turns. A newer job replaces this one.
  startEdits() {
    const {input, outcome} = this.state;
    this.view.cells = new Array(outcome.lines.length);
    const [first, last] = this.rowsInView();
    const job = {
      order: new EditOrder(outcome.lines.length, first, last), size: 1, symbology: this.symbologyId(input.symbology),
      parsed: outcome.parse.ok, triggersOk: outcome.triggers.ok,
    };
    this.view.job = job;
    this.el.results.setAttribute('aria-busy', 'true');
    this.el.summary.textContent = 'editing…';
    this.runEdits(job, FIRST_TURN_MS, true);
  }

  // One turn of a job: slices until ms have passed (or, for viewOnly, the
  // rows in view are done), then the next turn when the page is idle.
  runEdits(job, ms, viewOnly = false) {
    if (job !== this.view.job) return;
    const {lines} = this.state.outcome;
    const now = () => this.win.performance.now();
    const end = now() + ms;
    while (!job.order.done && (!viewOnly || job.order.inView) && now() < end) {
      const [from, to] = job.order.next(job.size);
      const started = now();
      const rows = this.engine.editScans(job.symbology, from, to - from);
      job.size = nextSliceSize(job.size, now() - started);
      rows.forEach((row, k) => {
        this.view.cells[from + k] = rowCell(row, lines[from + k], job.parsed, job.triggersOk);
        this.writeRow(from + k);
      });
    }
    if (!job.order.done) {
      this.win.requestIdleCallback((deadline) => this.guarded(() => {
        this.runEdits(job, Math.max(deadline.timeRemaining(), SLICE_MS));
      }), {timeout: 100});
      return;
    }
    this.view.job = null;
    this.el.summary.textContent = summaryText(this.view.cells);
    this.el.results.removeAttribute('aria-busy');
  }

  // Runs fn outside update(): an engine out of memory is said, not thrown.
  guarded(fn) {
    try {
      fn();
    } catch (e) {
      this.fail(e);
      this.renderNotice();
    }
  }

  // --- What a person does ------------------------------------------------------

  // A field changed: the state follows it, and the link.
  changed() {
    this.state.notice = '';
    this.state.input = this.readFields();
    this.update();
    this.saveFragment();
  }

  // An example, the sample scans, a link or a file: a new input for the page.
  applyInput(input) {
    this.state.input = input;
    this.state.selected = 0;
    this.update();
  }

  openLink(hash) {
    const link = inputFromFragment(hash, this.state.input);
    if (link.notice) {
      this.state.notice = link.notice;
      this.update();
      return;
    }
    this.state.notice = '';
    this.applyInput(link.input);
  }

  // A dropped file is read here, by the engine; lines that a text box cannot
  // hold as they are (control bytes, bytes that are not UTF-8) switch the
  // escapes on. A file past LIMITS.fileBytes is not read at all.
  dropFile(file) {
    const refusal = fileRefusal(file.name, file.size);
    this.state.notice = refusal || '';
    if (refusal) {
      this.renderNotice();
      return;
    }
    file.arrayBuffer().then((buffer) => this.guarded(() => {
      const reply = this.engine.readFile(new Uint8Array(buffer), this.state.input.escapes);
      this.applyInput({...this.state.input, escapes: reply.escapes, scans: reply.text});
      this.saveFragment();
    }), (error) => {
      this.state.notice = `The file ${JSON.stringify(file.name)} could not be read: ${error.message}`;
      this.renderNotice();
    });
  }

  select(n) {
    const previous = this.el.results.querySelector('.selected');
    if (previous) previous.classList.remove('selected');
    this.state.selected = n;
    if (n) this.rowElement(n - 1).classList.add('selected');
    this.renderExplain();
  }

  hover(range) {
    this.state.hover = range;
    this.renderBackdrop();
  }

  insertAtCursor(text) {
    const field = this.el.expression;
    field.setRangeText(text, field.selectionStart, field.selectionEnd, 'select');
    field.focus();
    this.changed();
  }

  saveFragment() {
    this.win.clearTimeout(this.fragmentTimer);
    this.fragmentTimer = this.win.setTimeout(() => {
      this.win.history.replaceState(null, '', fragmentOf(this.state.input));
    }, 150);
  }

  // --- Building and wiring ---------------------------------------------------------

  // The symbology lists, the command reference and the examples.
  build() {
    const {el} = this;
    const doc = this.win.document;
    this.symbologies.forEach((name, id) => {
      el.symbology.add(new this.win.Option(name, name));
      if (id !== 0) el.only.add(new this.win.Option(name, name));
    });
    const button = (list, cls, html) => {
      const item = doc.createElement('li');
      const b = doc.createElement('button');
      b.type = 'button';
      b.className = cls;
      b.innerHTML = html;
      item.appendChild(b);
      list.appendChild(item);
      return b;
    };
    this.commands = this.engine.commands();
    this.commands.forEach((command, i) => {
      // Each extension set under its own heading, after the seed commands.
      if (command.set && (i === 0 || this.commands[i - 1].set !== command.set)) {
        const heading = doc.createElement('li');
        heading.className = 'set-heading';
        heading.textContent = setHeadingText(command.set);
        el.commands.appendChild(heading);
      }
      const b = button(el.commands, 'command', commandHtml(command));
      b.dataset.command = command.name;
      b.title = `Insert ${commandTemplate(command)}`;
    });
    EXAMPLES.forEach((example, i) => {
      button(el.examples, 'example', exampleHtml(example)).dataset.example = String(i);
    });
  }

  // Every event of the page.
  wire() {
    const {el, win} = this;
    const doc = win.document;
    for (const name of ['expression', 'scans', 'minSize', 'maxSize', 'startsWith', 'endsWith', 'contains']) {
      el[name].addEventListener('input', () => this.changed());
    }
    for (const name of ['escapes', 'seedOnly', 'symbology', 'only']) {
      el[name].addEventListener('change', () => this.changed());
    }
    el.expression.addEventListener('scroll', () => this.syncBackdropScroll());
    el.commands.addEventListener('mousedown', (e) => e.preventDefault());  // keep the cursor in the expression
    el.commands.addEventListener('click', (e) => {
      const b = e.target.closest('[data-command]');
      const command = b && this.commands.find((c) => c.name === b.dataset.command);
      if (command) this.insertAtCursor(commandTemplate(command));
    });
    el.examples.addEventListener('click', (e) => {
      const b = e.target.closest('[data-example]');
      if (!b) return;
      this.state.notice = '';
      this.applyInput(exampleInput(EXAMPLES[Number(b.dataset.example)]));
      this.saveFragment();
    });
    el.loadSamples.addEventListener('click', () => {
      this.state.notice = '';
      this.applyInput({...this.state.input, escapes: true, scans: SAMPLE_SCANS.join('\n')});
      this.saveFragment();
    });
    el.results.addEventListener('click', (e) => {
      const item = e.target.closest('[data-scan-index]');
      if (item) this.select(Number(item.dataset.scanIndex));
    });
    el.explain.addEventListener('mouseover', (e) => {
      const node = e.target.closest('.node');
      if (node) this.hover([Number(node.dataset.offset), Number(node.dataset.length)]);
    });
    el.explain.addEventListener('mouseleave', () => this.hover(null));
    win.addEventListener('hashchange', () => {
      if (win.location.hash !== fragmentOf(this.state.input)) this.openLink(win.location.hash);
    });
    doc.addEventListener('dragover', (e) => {
      e.preventDefault();
      el.veil.hidden = false;
    });
    doc.addEventListener('dragleave', (e) => {
      if (e.relatedTarget === null) el.veil.hidden = true;
    });
    doc.addEventListener('drop', (e) => {
      e.preventDefault();
      el.veil.hidden = true;
      if (e.dataTransfer.files.length) this.dropFile(e.dataTransfer.files[0]);
    });
  }
}

// Loads the engine (nrv-engine.js defines NrvEngine) and opens the page,
// from the link when there is one.
export function start(win) {
  return win.NrvEngine().then((module) => {
    const page = new Playground(createEngine(module), win);
    page.build();
    page.wire();
    if (win.location.hash.length > 1) page.openLink(win.location.hash);
    else page.update();
    win.document.getElementById('loading').remove();
    win.document.body.dataset.ready = 'true';
  });
}

// Shared by the browser tests, the benchmark and the screenshot: starts
// Debian's Chromium headless through playwright-core, opens the built page
// from disk, and runs the native nrv-edit on the same inputs.
'use strict';
const {chromium} = require('playwright-core');
const {execFileSync, spawnSync} = require('node:child_process');
const fs = require('node:fs');
const os = require('node:os');
const path = require('node:path');
const {pathToFileURL} = require('node:url');

const root = path.resolve(__dirname, '..', '..');
const pageDir = process.env.NRV_PLAYGROUND_DIR || path.join(root, 'out', 'build', 'wasm', 'web');
const pageUrl = pathToFileURL(path.join(pageDir, 'index.html')).href;
const nrvEdit = process.env.NRV_EDIT || path.join(root, 'build', 'tools', 'nrv-edit');
const chromiumPath = process.env.NRV_CHROMIUM || '/usr/bin/chromium';

async function launch() {
  const profile = fs.mkdtempSync(path.join(os.tmpdir(), 'nrv-chromium-'));
  // A persistent context is how Playwright takes a fresh --user-data-dir.
  const browser = await chromium.launchPersistentContext(profile, {
    executablePath: chromiumPath,
    args: ['--headless', '--no-sandbox', '--disable-gpu', '--disable-quic', '--no-first-run',
           '--disable-background-networking', '--disable-component-update', '--disable-sync'],
    viewport: {width: 1280, height: 900},
  });
  return {
    browser,
    async close() {
      await browser.close();
      fs.rmSync(profile, {recursive: true, force: true});
    },
  };
}

// Opens the page (with a fragment, if given) and waits for the engine.
async function openPage(browser, fragment = '') {
  const page = await browser.newPage();
  const errors = [];
  page.on('pageerror', (e) => errors.push(e));
  // Nothing may leave the page: every request but the page's own files fails the test.
  page.on('request', (request) => {
    if (!request.url().startsWith('file:') && !request.url().startsWith('data:')) errors.push(request.url());
  });
  await page.goto(pageUrl + fragment);
  await page.waitForSelector('body[data-ready="true"]');
  page.errors = errors;
  return page;
}

// Sets the fields the way a person would, one input event each.
async function fill(page, state) {
  if (state.escapes !== undefined) await page.setChecked('#escapes', state.escapes);
  if (state.seedOnly !== undefined) await page.setChecked('#seed-only', state.seedOnly);
  if (state.symbology !== undefined) await page.selectOption('#symbology', {label: state.symbology});
  if (state.only !== undefined) await page.selectOption('#only-symbology', state.only.map((label) => ({label})));
  for (const [key, id] of [['min', '#min-size'], ['max', '#max-size'], ['startsWith', '#starts-with'],
                           ['endsWith', '#ends-with'], ['contains', '#contains']]) {
    if (state[key] !== undefined) await page.fill(id, String(state[key]));
  }
  if (state.scans !== undefined) await page.fill('#scans', state.scans);
  if (state.expression !== undefined) await page.fill('#expression', state.expression);
}

// Sets a field at once, as a paste does: one input event. The text crosses
// as UTF-16 code units, so a lone surrogate reaches the page as it is.
async function paste(page, selector, text) {
  const units = Array.from({length: text.length}, (_, i) => text.charCodeAt(i));
  await page.evaluate(([selector, units]) => {
    const field = document.querySelector(selector);
    let value = '';
    for (let i = 0; i < units.length; i += 8192) value += String.fromCharCode(...units.slice(i, i + 8192));
    field.value = value;
    field.dispatchEvent(new Event('input'));
  }, [selector, units]);
}

// What the page shows: one entry per result, in order, once every row is drawn.
async function readResults(page) {
  await page.waitForSelector('#results:not([aria-busy])', {state: 'attached'});
  return page.$$eval('#results [data-scan-index]', (items) => items.map((item) => ({
    index: Number(item.dataset.scanIndex),
    code: item.dataset.code === '' ? null : Number(item.dataset.code),
    output: item.querySelector('.output').textContent,
    status: item.querySelector('.status').textContent,
  })));
}

// The tool on the same inputs: output lines, and the code of each failed scan.
function runTool(state) {
  // Every failing scan reported, not only the first hundred.
  const args = ['--max-errors', '0'];
  if (state.escapes) args.push('-e');
  if (state.seedOnly) args.push('--seed-only');
  if (state.symbology) args.push('-s', state.symbology);
  for (const name of state.only || []) args.push('--only-symbology', name);
  if (state.min) args.push('--min-size', String(state.min));
  if (state.max) args.push('--max-size', String(state.max));
  if (state.startsWith) args.push('--starts-with', state.startsWith);
  if (state.endsWith) args.push('--ends-with', state.endsWith);
  if (state.contains) args.push('--contains', state.contains);
  args.push('--', state.expression);
  const input = state.scans === '' ? '' : state.scans.endsWith('\n') ? state.scans : state.scans + '\n';
  const run = spawnSync(nrvEdit, args, {input: Buffer.from(input, 'utf8'), maxBuffer: 1 << 26});
  const lines = run.stdout.toString('utf8').split('\n');
  lines.pop();
  const failures = new Map();
  for (const line of run.stderr.toString('utf8').split('\n')) {
    const m = /^nrv-edit: scan (\d+): .*?(-\d+)\)/.exec(line);
    if (m) failures.set(Number(m[1]), Number(m[2]));
  }
  return {status: run.status, lines, failures, stderr: run.stderr.toString('utf8')};
}

// The code the tool reports for an expression that does not parse (0 when it parses).
function toolParseCode(expression) {
  const run = spawnSync(nrvEdit, ['--check', '--json', '--', expression]);
  try {
    const reply = JSON.parse(run.stdout.toString());
    return reply.ok ? 0 : reply.code;
  } catch (e) {
    // A tool without --json: the code is in its message.
    const check = spawnSync(nrvEdit, ['--check', '--', expression]);
    if (check.status === 0) return 0;
    const m = /(-\d+)\)/.exec(check.stderr.toString());
    return m ? Number(m[1]) : NaN;
  }
}

function toolListCommands() {
  return execFileSync(nrvEdit, ['--list-commands']).toString();
}

// One browser and one page for a test file: opened before its tests, and
// after them checked for script errors and requests off the page, then closed.
// opened({browser, page}) receives them.
function usePage(before, after, opened) {
  let session;
  let page;
  before(async () => {
    session = await launch();
    page = await openPage(session.browser);
    opened({browser: session.browser, page});
  });
  after(async () => {
    const errors = page.errors;
    await session.close();
    if (errors.length) throw new Error(`the page failed or made requests: ${errors.join(', ')}`);
  });
}

module.exports = {launch, openPage, usePage, fill, paste, readResults, runTool, toolParseCode, toolListCommands, pageDir, nrvEdit};

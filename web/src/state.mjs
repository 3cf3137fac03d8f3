// The page's state: what the person set (input), and the caps on what a
// dropped file, a link and the scans box may bring in. The state is one
// object; the page draws itself from it, and a link holds its input.
import {formatCount, formatSize} from './text.mjs';

// What a browser tab handles comfortably. A file's text is held several
// times over (the file, the engine's copy, its escaped form, the box), and
// every scan is a row of the results.
export const LIMITS = {
  fileBytes: 4 * 1024 * 1024,   // a dropped file
  linkBytes: 1024 * 1024,       // the fragment of a link that opens the page
  scans: 50000,                 // the scans edited and shown
  linkScans: 8000,              // past this many characters the scans stay out of a link
};

// An input with every field empty or unset (the page starts from its
// fields' own values).
export function defaultInput() {
  return {
    expression: '',
    scans: '',
    escapes: false,
    seedOnly: false,  // the eighteen seed commands only, no extension set
    symbology: 'NotSpecified',
    triggers: {min: '', max: '', startsWith: '', endsWith: '', contains: '', only: []},
  };
}

// The whole state: the input, the scan selected for explaining (from 1; 0
// for none), the byte range of the explain node under the pointer, the
// message about something refused, and what the engine answered.
export function newState(input = defaultInput()) {
  return {
    input,
    selected: 0,
    hover: null,     // [offset, length] in the expression's bytes
    notice: '',
    outcome: {
      parse: {ok: true},      // the engine's parse outcome
      triggers: {ok: true},   // the engine's answer to the triggers
      lines: [],              // the scans as typed, one per row (at most LIMITS.scans)
      total: 0,               // the scans in the box, cut or not
    },
  };
}

// The link's fragment for an input; the scans stay out past LIMITS.linkScans.
export function fragmentOf(input) {
  const p = new URLSearchParams();
  const t = input.triggers;
  p.set('e', input.expression);
  if (input.scans.length <= LIMITS.linkScans) p.set('s', input.scans);
  if (input.escapes) p.set('x', '1');
  if (input.seedOnly) p.set('seed', '1');
  if (input.symbology !== 'NotSpecified') p.set('y', input.symbology);
  for (const [key, value] of [['min', t.min], ['max', t.max], ['sw', t.startsWith], ['ew', t.endsWith],
                              ['c', t.contains]]) {
    if (value) p.set(key, value);
  }
  if (t.only.length) p.set('only', t.only.join(','));
  return '#' + p.toString();
}

// The input a link's fragment describes, over the fields it leaves out
// (`base`). Symbology names are kept as written: the page matches them in
// any case. A fragment past LIMITS.linkBytes is not read: {notice}.
export function inputFromFragment(hash, base = defaultInput()) {
  const fragment = hash.replace(/^#/, '');
  if (fragment.length > LIMITS.linkBytes) {
    return {notice: `This link is ${formatSize(fragment.length)}; the page opens links of up to ` +
                    `${formatSize(LIMITS.linkBytes)}. Nothing was taken from it.`};
  }
  const p = new URLSearchParams(fragment);
  const text = (key) => p.get(key) || '';
  return {
    input: {
      expression: text('e'),
      scans: p.has('s') ? p.get('s') : base.scans,
      escapes: p.get('x') === '1',
      seedOnly: p.get('seed') === '1',
      symbology: p.get('y') || 'NotSpecified',
      triggers: {min: text('min'), max: text('max'), startsWith: text('sw'), endsWith: text('ew'),
                 contains: text('c'), only: p.get('only') ? p.get('only').split(',') : []},
    },
  };
}

// Whether a dropped file may be read: null, or the message saying why not.
export function fileRefusal(name, size) {
  if (size <= LIMITS.fileBytes) return null;
  return `The file ${JSON.stringify(name)} is ${formatSize(size)}; the page reads files of up to ` +
         `${formatSize(LIMITS.fileBytes)} (nrv-edit reads any size). The scans were left as they were.`;
}

// The message for scans past LIMITS.scans, or ''.
export function scansCutNotice(total) {
  if (total <= LIMITS.scans) return '';
  return `Only the first ${formatCount(LIMITS.scans)} of ${formatCount(total)} scans are edited here ` +
         '(nrv-edit edits any number).';
}

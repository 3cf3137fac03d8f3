// The page's markup, built from the engine's replies as strings: every text
// that comes from a person or a scan is escaped here.
import {escapeHtml} from './text.mjs';
import {commandSignature, failureText} from './status.mjs';

// The text behind the expression field: the same characters, transparent,
// with marks [{range: [start, end), cls}] in UTF-16 positions. An empty
// error range (a missing brace at the very end) still gets something to
// underline.
export function backdropHtml(text, marks) {
  const cuts = new Set([0, text.length]);
  for (const m of marks) {
    cuts.add(m.range[0]);
    cuts.add(m.range[1]);
  }
  const points = [...cuts].sort((a, b) => a - b);
  let html = '';
  for (let i = 0; i + 1 < points.length; i++) {
    const [from, to] = [points[i], points[i + 1]];
    const classes = marks.filter((m) => m.range[0] <= from && to <= m.range[1]).map((m) => m.cls);
    const piece = escapeHtml(text.slice(from, to));
    html += classes.length ? `<mark class="${classes.join(' ')}">${piece}</mark>` : piece;
  }
  for (const m of marks) {
    if (m.cls === 'error-mark' && m.range[0] === m.range[1]) html += `<mark class="${m.cls} caret">&nbsp;</mark>`;
  }
  return html + '\n';
}

// One result row; i from 0, cell as rowCell makes it (cls 'pending' before
// the edit).
export function rowHtml(i, cell) {
  return `<div class="result ${cell.cls}" role="listitem" data-scan-index="${i + 1}" data-code="${cell.code}">` +
         `<span class="n">${i + 1}</span><span class="scan">${escapeHtml(cell.line)}</span>` +
         `<span class="output">${escapeHtml(cell.output)}</span>` +
         `<span class="status">${escapeHtml(cell.status)}</span></div>`;
}

// One node of the engine's explain tree, with its children.
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

// The explain panel for scan n (from 1; 0 for none) and the engine's answer.
export function explainHtml(n, result) {
  if (!n) return '<p class="hint">No scan selected.</p>';
  if (result.line === false) return `<p class="error">Scan ${n} cannot be read: ${escapeHtml(result.message)}</p>`;
  let head = `<p>Scan ${n}: `;
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
  return head + tree;
}

// A button's content in the command reference.
export function commandHtml(command) {
  return `<code>${escapeHtml(command.name)}(${escapeHtml(commandSignature(command))})</code>` +
         ` <span class="result-kind">→ ${escapeHtml(command.result)}</span>` +
         `<span class="summary">${escapeHtml(command.summary)}</span>`;
}

// The heading of an extension set's commands in the reference.
export function setHeadingText(set) {
  return `${set} commands (an extension set; off with “seed commands only”)`;
}

export function exampleHtml(example) {
  return `${escapeHtml(example.title)}<code>${escapeHtml(example.expression)}</code>`;
}

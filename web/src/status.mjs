// What the page says about a result, a diagnostic and a command, from the
// engine's replies. No DOM here: texts in, texts out.

// A failure for a person: the command concerned, then the engine's sentence
// (which may name the command itself).
export function failureText(command, message) {
  return command && !message.startsWith(`${command}:`) ? `${command}: ${message}` : message;
}

// The diagnostic line under the expression, or '' when it parses.
export function diagnosticText(outcome) {
  if (outcome.ok) return '';
  return `${failureText(outcome.command, outcome.message)} (${outcome.name}, ${outcome.code}, at byte ${outcome.offset})`;
}

// One row of the engine's reply to an edit ([code, shown, failure?]; code
// null for a line not read) and the scan's line as the page shows them:
// {cls, code, line, output, status}. Without a parse, or with the triggers
// refused, no scan is edited and the row says which.
export function rowCell(row, line, parsed, triggersOk) {
  const [code, output, failure] = row;
  const cell = (cls, status) => ({cls, code: code === null ? '' : String(code), line, output, status});
  if (code === null) return cell('bad-line', `not read: ${failure}`);
  if (code === 1) return cell('not-triggered', 'not triggered');
  if (code >= 0) return cell('edited', 'edited');
  if (!parsed) return cell('failed', `not edited: the expression does not parse (${code})`);
  if (!triggersOk) return cell('failed', `not edited: a trigger is refused (${code})`);
  return cell('failed', `failed: ${failureText(failure.command, failure.message)} (${code})`);
}

// The summary over the cells once every row is edited.
export function summaryText(cells) {
  const counts = {edited: 0, 'not-triggered': 0, failed: 0, 'bad-line': 0};
  for (const cell of cells) counts[cell.cls]++;
  return `${counts.edited} edited, ${counts['not-triggered']} not triggered, ${counts.failed} failed` +
         (counts['bad-line'] ? `, ${counts['bad-line']} not read` : '');
}

// A row not edited yet shows its scan alone.
export function pendingCell(line) {
  return {cls: 'pending', code: '', line, output: '', status: ''};
}

export function scanCountText(count) {
  return `${count} scan${count === 1 ? '' : 's'}`;
}

// What clicking a command inserts: {DecodedData()} as its text, 0 for its
// numbers, the other parameters by name.
export function commandTemplate(command) {
  const params = command.parameters.map((p, i) => {
    if (i === 0 && p.name === 'text') return '{DecodedData()}';
    return p.kind === 'number' ? '0' : p.name;
  });
  return `{${command.name}(${params.join(',')})}`;
}

// A command's parameters as the reference lists them, numbers marked #.
export function commandSignature(command) {
  return command.parameters.map((p) => `${p.name}${p.kind === 'number' ? '#' : ''}`).join(', ');
}

// The order and the size of the engine calls that edit the scans. The rows
// in view come first, then those below them, then those above. A call
// edits a slice of rows; its size follows the time the last one took, so
// that a turn of the page holds the engine for about SLICE_MS whatever one
// scan costs (from a few microseconds to the whole work budget).

export const SLICE_MS = 8;
export const MAX_SLICE_ROWS = 4096;

// The rows [0, count) in the order they are edited, given out in slices.
export class EditOrder {
  // [first, last): the rows in view.
  constructor(count, first, last) {
    first = Math.max(0, Math.min(first, count));
    last = Math.max(first, Math.min(last, count));
    this.view = [first, last];
    this.ranges = [this.view, [last, count], [0, first]].filter(([a, b]) => a < b);
  }

  get done() {
    return this.ranges.length === 0;
  }

  // Whether the next slice comes from the rows in view.
  get inView() {
    return this.ranges[0] === this.view;
  }

  // The next slice of at most `size` rows (at least one), as [from, to), or
  // null when every row has been given out.
  next(size) {
    if (this.done) return null;
    const range = this.ranges[0];
    const slice = [range[0], Math.min(range[1], range[0] + Math.max(1, size))];
    range[0] = slice[1];
    if (range[0] === range[1]) this.ranges.shift();
    return slice;
  }
}

// The size of the next slice after one of `size` rows took `elapsed` ms:
// twice as many while it takes under half the target, half as many (at
// least one) past the target.
export function nextSliceSize(size, elapsed, target = SLICE_MS) {
  if (elapsed * 2 < target) return Math.min(MAX_SLICE_ROWS, size * 2);
  if (elapsed > target) return Math.max(1, Math.floor(size / 2));
  return size;
}

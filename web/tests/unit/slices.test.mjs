// The order of the edits (rows in view first) and the size of each slice.
import {test} from 'node:test';
import assert from 'node:assert/strict';
import {EditOrder, MAX_SLICE_ROWS, SLICE_MS, nextSliceSize} from '../../src/slices.mjs';

// Every slice an order gives out at a fixed size, and where the view ends.
function slices(order, size) {
  const out = [];
  while (!order.done) out.push([...order.next(size), order.inView]);
  assert.equal(order.next(size), null);
  return out;
}

test('the rows in view come first, then those below, then those above, each once', () => {
  const cases = [
    // count, view, size, slices as [from, to, still in view after it]
    [10, [4, 6], 3, [[4, 6, false], [6, 9, false], [9, 10, false], [0, 3, false], [3, 4, false]]],
    [10, [0, 10], 4, [[0, 4, true], [4, 8, true], [8, 10, false]]],
    [10, [0, 0], 0, [[0, 1, false], [1, 2, false], [2, 3, false], [3, 4, false], [4, 5, false], [5, 6, false],
                     [6, 7, false], [7, 8, false], [8, 9, false], [9, 10, false]]],
    [5, [3, 99], 10, [[3, 5, false], [0, 3, false]]],
    [5, [-4, 2], 10, [[0, 2, false], [2, 5, false]]],
    [5, [7, 9], 10, [[0, 5, false]]],
    [0, [0, 40], 10, []],
  ];
  for (const [count, [first, last], size, expected] of cases) {
    assert.deepEqual(slices(new EditOrder(count, first, last), size), expected, `${count} rows, view ${first}-${last}`);
  }
});

test('a slice grows while it is quick and shrinks when it is slow', () => {
  const cases = [
    // size, ms it took, next size
    [1, 0, 2],
    [1, SLICE_MS / 2 - 0.01, 2],
    [8, SLICE_MS / 2, 8],
    [8, SLICE_MS, 8],
    [8, SLICE_MS + 0.01, 4],
    [1, 4000, 1],
    [MAX_SLICE_ROWS, 0, MAX_SLICE_ROWS],
    [3, 100, 1],
  ];
  for (const [size, elapsed, next] of cases) assert.equal(nextSliceSize(size, elapsed), next, `${size} rows in ${elapsed} ms`);
});

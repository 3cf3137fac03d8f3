// The binding's calls over a stand-in for the engine's module: what crosses
// (bytes and lengths), every block checked and released, and replies that
// say the engine ran out of memory turned into errors.
import {test} from 'node:test';
import assert from 'node:assert/strict';
import {EngineError, createEngine} from '../../src/engine.mjs';

const SENTINEL = 0xAA;

// A heap with a bump allocator. failAt: the malloc calls (from 1) that
// return 0; growAt: the calls that replace the heap with a larger copy, as
// memory growth does. Each export records what it received and replies.
function fakeModule({failAt = [], growAt = [], reply = '{"ok":true}'} = {}) {
  const module = {HEAPU8: new Uint8Array(4096).fill(SENTINEL), next: 64, mallocs: 0, live: new Set(), received: []};
  module._malloc = (size) => {
    module.mallocs++;
    if (failAt.includes(module.mallocs)) return 0;
    if (growAt.includes(module.mallocs)) {
      const grown = new Uint8Array(module.HEAPU8.length * 2).fill(SENTINEL);
      grown.set(module.HEAPU8);
      module.HEAPU8 = grown;
    }
    const block = module.next;
    module.next += size;
    module.live.add(block);
    return block;
  };
  module._free = (block) => assert.ok(module.live.delete(block), `block ${block} freed once`);
  const exported = (...args) => {
    module.received.push(args);
    if (reply === null) return 0;
    const bytes = new TextEncoder().encode(reply + '\0');
    const at = module.HEAPU8.length - bytes.length;
    module.HEAPU8.set(bytes, at);
    return at;
  };
  for (const name of ['parse', 'set_seed_only', 'set_triggers', 'set_scans', 'edit_scans', 'explain', 'read_file', 'commands', 'symbologies']) {
    module[`_nrv_${name}`] = exported;
  }
  return module;
}

// The bytes an export received as (pointer, length) pairs, read from the heap at the time.
const bytesAt = (module, pointer, length) => [...module.HEAPU8.subarray(pointer, pointer + length)];

test('texts cross as UTF-8 with their length, into the heap as it is after each allocation', () => {
  const cases = [
    // call, the (pointer, length) pairs' bytes expected, numbers passed after them
    [(e) => e.parse('\uD800{x}'), [[0xEF, 0xBF, 0xBD, 0x7B, 0x78, 0x7D]], []],
    [(e) => e.parse(''), [[]], []],
    [(e) => e.setScans('a\0b\n', true), [[0x61, 0x00, 0x62, 0x0A]], [1]],
    [(e) => e.setSeedOnly(true), [], [1]],
    [(e) => e.readFile(new Uint8Array([0xFF, 0x00, 0x0A]), false), [[0xFF, 0x00, 0x0A]], [0]],
    [(e) => e.explain('{}', 'a\uDC00', false, 7), [[0x7B, 0x7D], [0x61, 0xEF, 0xBF, 0xBD]], [0, 7]],
    [(e) => e.setTriggers({min: '1', max: '', only: ['Ean13', 'Code128'], contains: 'c', startsWith: 's', endsWith: 'e'}, true),
     [[0x31], [], [...Buffer.from('Ean13,Code128')], [0x63], [0x73], [0x65]], [1]],
  ];
  for (const growAt of [[], [1], [2]]) {
    for (const [call, texts, numbers] of cases) {
      const module = fakeModule({growAt});
      assert.deepEqual(call(createEngine(module)), {ok: true});
      const [args] = module.received;
      const pairs = texts.map((_, i) => bytesAt(module, args[2 * i], args[2 * i + 1]));
      assert.deepEqual(pairs, texts, `grown at ${growAt}`);
      assert.deepEqual(args.slice(2 * texts.length), numbers);
      assert.equal(module.live.size, 0, 'every block released');
    }
  }
});

test('an allocation that fails stops the call before anything is written', () => {
  const triggers = {min: '1', max: '2', only: [], contains: 'c', startsWith: 's', endsWith: 'e'};
  for (const failAt of [1, 2, 4, 6]) {
    const module = fakeModule({failAt: [failAt]});
    assert.throws(() => createEngine(module).setTriggers(triggers, false), EngineError);
    assert.equal(module.received.length, 0, 'the engine is not called');
    assert.equal(module.live.size, 0, 'the blocks taken before are released');
    assert.ok(module.HEAPU8.subarray(0, 64).every((b) => b === SENTINEL), 'nothing written at address 0');
  }
});

test('a reply of no memory, or no reply, is an error and never data', () => {
  const cases = [
    ['{"outOfMemory":true}', /ran out of memory/],
    [null, /no reply/],
  ];
  for (const [reply, message] of cases) {
    const module = fakeModule({reply});
    assert.throws(() => createEngine(module).readFile(new Uint8Array(8), false), (e) => e instanceof EngineError &&
                  message.test(e.message));
    assert.equal(module.live.size, 0);
  }
  assert.deepEqual(createEngine(fakeModule({reply: '{"rows":[[0,"\\u0000"]]}'})).editScans(0, 0, 1), [[0, '\0']]);
  assert.equal(createEngine(fakeModule({reply: 'null'})).commands(), null);
});

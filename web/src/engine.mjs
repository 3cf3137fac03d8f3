// The engine's exports (web/binding.cpp) behind one object. Texts cross as
// UTF-8 (utf8Bytes: a lone surrogate is U+FFFD) in blocks of the engine's
// heap, as a pointer and a length; every block is checked and released on
// every path. Each call replies with JSON; a reply that says the engine ran
// out of memory is an EngineError, never data.
import {utf8Bytes} from './text.mjs';

export class EngineError extends Error {}

const decoder = new TextDecoder();

// module: the emscripten module (nrv-engine.js, once loaded).
export function createEngine(module) {
  // Copies each text or byte array into a block of the heap; numbers pass
  // as they are.
  function call(name, ...args) {
    const blocks = [];
    try {
      const values = [];
      for (const arg of args) {
        if (typeof arg === 'number') {
          values.push(arg);
          continue;
        }
        const bytes = typeof arg === 'string' ? utf8Bytes(arg) : arg;
        const block = module._malloc(Math.max(1, bytes.length));
        if (!block) throw new EngineError(`the engine has no room for ${bytes.length} bytes`);
        blocks.push(block);
        module.HEAPU8.set(bytes, block);  // the heap as it is after the allocation (it may have grown)
        values.push(block, bytes.length);
      }
      return readReply(module['_' + name](...values));
    } finally {
      for (const block of blocks) module._free(block);
    }
  }

  // The reply stays valid until the next call; it is read at once.
  function readReply(pointer) {
    const heap = module.HEAPU8;
    const end = pointer ? heap.indexOf(0, pointer) : -1;
    if (end < 0) throw new EngineError('the engine gave no reply');
    const reply = JSON.parse(decoder.decode(heap.subarray(pointer, end)));
    if (reply !== null && reply.outOfMemory) throw new EngineError('the engine ran out of memory');
    return reply;
  }

  const flag = (on) => (on ? 1 : 0);
  return {
    parse: (expression) => call('nrv_parse', expression),
    setSeedOnly: (on) => call('nrv_set_seed_only', flag(on)),
    setTriggers: (t, escapes) => call('nrv_set_triggers', t.min, t.max, t.only.join(','), t.contains, t.startsWith,
                                      t.endsWith, flag(escapes)),
    setScans: (text, escapes) => call('nrv_set_scans', text, flag(escapes)),
    editScans: (symbology, first, count) => call('nrv_edit_scans', symbology, first, count).rows,
    explain: (expression, line, escapes, n) => call('nrv_explain', expression, line, flag(escapes), n),
    readFile: (bytes, escapes) => call('nrv_read_file', bytes, flag(escapes)),
    commands: () => call('nrv_commands'),
    symbologies: () => call('nrv_symbologies'),
  };
}

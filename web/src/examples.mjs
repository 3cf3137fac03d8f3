// The README's common jobs, and a few real scans to try them on. An
// example is an input (defaultInput's shape) without its defaults.
import {defaultInput} from './state.mjs';

export const EXAMPLES = [
  {title: 'Cut a prefix', expression: '{TruncateFromBeginning({DecodedData()},2)}', scans: 'AB1234'},
  {title: 'Take the field between [ and ]', expression: '{Extract({DecodedData()},[,])}', scans: 'LOT[A17]EXP'},
  {title: 'Strip the trailing CR LF', expression: '{DecodedDataWithoutTrailer()}', scans: '12345\\r\\n\nABC\\r',
   escapes: true},
  {title: 'Show control bytes', expression: '{DecodedData()}', scans: '01\\x1d17\\r\\n', escapes: true},
  {title: 'Edit only Code 128 scans starting with AB', expression: 'Code: {DecodedData()}', scans: 'AB12\nXY34',
   symbology: 'Code128', triggers: {only: ['Code128'], startsWith: 'AB'}},
  {title: 'Group separators made visible', expression: '{Substitute({DecodedData()},{EscapeCharacter(1D)},|)}',
   scans: '10567\\x1d1101010113010101\n10567890\\x1d11010101', escapes: true},
  {title: 'Lot and expiry out of a GS1 code',
   expression: 'lot {GS1Element({DecodedData()},10)} expiry {GS1Element({DecodedData()},17)}',
   scans: ']C1010950110153000317141120\\x1D10AB-123\\x1D21SER42\n010950110153000417141120', escapes: true},
  {title: 'A mistake, underlined', expression: '{TruncateFromBeginning({DecodedData()},2,3)}', scans: 'AB1234'},
];

// Decoded scans of real barcodes, in the escaped form.
export const SAMPLE_SCANS = [
  '9780735619937', '55123457', '1PEF224A4', 'ABC123', 'A12345B', '0100034567890125',
  '10567\\x1D1101010113010101', '101098,1234', 'http://code.google.com', 'H15-03-34',
  'symbologyIdentifier=]C1\\n', '!"\\xC2\\xA7$%&/()=?`', 'Hello World',
];

// The full input of an example: its fields over the fields of a fresh page.
export function exampleInput(example) {
  return {
    expression: example.expression,
    scans: example.scans,
    escapes: !!example.escapes,
    seedOnly: false,
    symbology: example.symbology || 'NotSpecified',
    triggers: {...defaultInput().triggers, ...example.triggers},
  };
}

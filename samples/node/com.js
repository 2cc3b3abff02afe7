// Automation for Node, by the module `koffi`: objects of COM as objects of JavaScript, and back.
'use strict';
const koffi = require('koffi');
const ole32 = koffi.load('ole32.dll');
const oleaut32 = koffi.load('oleaut32.dll');

const VT = {I2: 2, I4: 3, R8: 5, BSTR: 8, DISPATCH: 9, ERROR: 10, BOOL: 11, VARIANT: 12,
            ARRAY: 0x2000, BYREF: 0x4000};
const kVariant = 24, kPointer = 8;           // sizes on x64
const kPut = 4, kPutRef = 8, kGetOrCall = 3;
const kFailed = -2147467259, kNoInterface = -2147467262, kUnknownName = -2147352570;

koffi.opaque('Memory');
const at = (memory, offset, type) => koffi.decode(memory, offset, type);
const set = (memory, offset, type, value) => koffi.encode(memory, offset, type, value);
const addressOf = (memory) => memory === null ? 0n : BigInt(koffi.address(memory));

const Initialize = ole32.func('int CoInitializeEx(void *none, uint32_t kind)');
const ClassOf = ole32.func('int CLSIDFromProgID(str16 name, void *result)');
const Create = ole32.func(
  'int CoCreateInstance(void *kind, void *outer, uint32_t where, void *face, _Out_ void **result)');
const NewText = oleaut32.func('void *SysAllocString(str16 text)');
const Clear = oleaut32.func('int VariantClear(void *value)');
const NewArray = oleaut32.func('void *SafeArrayCreate(uint16_t type, uint32_t count, void *bounds)');
const PutElement = oleaut32.func('int SafeArrayPutElement(void *array, void *place, void *value)');

const QueryInterface = koffi.proto('int QueryInterface(void *me, void *face, void *result)');
const AddRef = koffi.proto('uint32_t AddRef(void *me)');
const Release = koffi.proto('uint32_t Release(void *me)');
const Count = koffi.proto('int GetTypeInfoCount(void *me, void *result)');
const Info = koffi.proto('int GetTypeInfo(void *me, uint32_t i, uint32_t l, void *result)');
const Names = koffi.proto(
  'int GetIDsOfNames(void *me, void *face, void *names, uint32_t count, uint32_t l, void *ids)');
const Invoke = koffi.proto('int Invoke(void *me, int id, void *face, uint32_t l, uint16_t flags, ' +
                           'void *arguments, void *result, void *exception, void *bad)');

/// The 16 bytes of an identifier.
function guid(text) {
  const [a, b, c, d, e] = text.split('-');
  const bytes = Buffer.from(a + b + c + d + e, 'hex');
  bytes.subarray(0, 4).reverse();
  bytes.subarray(4, 6).reverse();
  bytes.subarray(6, 8).reverse();
  return bytes;
}
const kUnknown = guid('00000000-0000-0000-C000-000000000046');
const kDispatch = guid('00020400-0000-0000-C000-000000000046');
const kNone = Buffer.alloc(16);

/// Calls the method in `slot` of an object's table.
function method(object, slot, type, ...given) {
  const table = at(object, 0, 'void *');
  return koffi.call(at(table, slot * kPointer, 'void *'), type, object, ...given);
}

// --- values

function fromVariant(memory, offset = 0) {
  const type = at(memory, offset, 'uint16_t'), data = offset + 8;
  switch (type) {
    case VT.I2: return at(memory, data, 'int16_t');
    case VT.I4: return at(memory, data, 'int32_t');
    case VT.R8: return at(memory, data, 'double');
    case VT.BOOL: return at(memory, data, 'int16_t') !== 0;
    case VT.BSTR: return at(memory, data, 'str16') || '';
    case VT.DISPATCH: {
      const object = at(memory, data, 'void *');
      return object === null ? null : wrap(object);
    }
    case VT.VARIANT | VT.BYREF: return fromVariant(at(memory, data, 'void *'));
    default: return undefined;               // Empty, Null, an argument that was left out
  }
}

function toVariant(memory, offset, value) {
  const put = (type, kind, what) => {
    set(memory, offset, 'uint16_t', type);
    set(memory, offset + 8, kind, what);
  };
  if (typeof value === 'boolean') return put(VT.BOOL, 'int16_t', value ? -1 : 0);
  if (typeof value === 'string') return put(VT.BSTR, 'void *', NewText(value));
  if (Number.isInteger(value)) return put(VT.I4, 'int32_t', value);
  if (typeof value === 'number') return put(VT.R8, 'double', value);
  if (Array.isArray(value)) return put(VT.ARRAY | VT.VARIANT, 'void *', toArray(value));
  if (value) return put(VT.DISPATCH, 'void *', offer(value));
  set(memory, offset, 'uint16_t', 0);
}

/// Records, each an array of its fields, as an array of two dimensions: (field, record).
function toArray(records) {
  const bounds = Buffer.alloc(16), place = Buffer.alloc(8), cell = koffi.alloc('uint8_t', kVariant);
  bounds.writeUInt32LE(records[0].length, 0);
  bounds.writeUInt32LE(records.length, 8);
  const array = NewArray(VT.VARIANT, 2, bounds);
  records.forEach((record, j) => record.forEach((field, i) => {
    toVariant(cell, 0, field);
    place.writeInt32LE(i, 0);
    place.writeInt32LE(j, 4);
    PutElement(array, place, cell);          // copies what the cell holds
    Clear(cell);
  }));
  koffi.free(cell);
  return array;
}

// --- objects of COM for JavaScript

function call(object, name, flags, given) {
  const ids = Buffer.alloc(4), names = koffi.alloc('void *', 1), text = NewText(name);
  set(names, 0, 'void *', text);
  if (method(object, 5, Names, kNone, names, 1, 0, ids) < 0) throw new Error(`no member ${name}`);
  const values = koffi.alloc('uint8_t', kVariant * Math.max(1, given.length));
  given.forEach((value, i) => toVariant(values, kVariant * (given.length - 1 - i), value));
  const put = (flags & kPut) !== 0;
  const putId = koffi.alloc('int32_t', 1), all = koffi.alloc('uint8_t', 24);
  set(putId, 0, 'int32_t', -3);
  set(all, 0, 'void *', values);
  set(all, 8, 'void *', put ? putId : null);
  set(all, 16, 'uint32_t', given.length);
  set(all, 20, 'uint32_t', put ? 1 : 0);
  const result = koffi.alloc('uint8_t', kVariant);
  set(result, 0, 'uint16_t', 0);
  const status = method(object, 6, Invoke, ids.readInt32LE(), kNone, 0, flags, all, result, null, null);
  if (status < 0) throw new Error(`${name}: 0x${(status >>> 0).toString(16)}`);
  return fromVariant(result);
}

/// An object whose members are called by name: `get(name, ...)`, `put(name, value)`.
function wrap(object) {
  return {
    get: (name, ...given) => call(object, name, kGetOrCall, given),
    put: (name, value) => call(object, name, typeof value === 'object' ? kPut | kPutRef : kPut, [value]),
    object
  };
}

function create(name) {
  const kind = Buffer.alloc(16), result = [null];
  if (ClassOf(name, kind) < 0) throw new Error(`${name} is not registered`);
  const status = Create(kind, null, 1, kDispatch, result);
  if (status < 0) throw new Error(`${name}: 0x${(status >>> 0).toString(16)}`);
  return wrap(result[0]);
}

// --- objects of JavaScript for COM: members that are functions are called, others are data

const offered = new Map();                   // address of what COM holds, object
const known = [];                            // numbers of names

const bytesAt = (memory) => Buffer.from(at(memory, 0, koffi.array('uint8_t', 16)));
const server = [
  [QueryInterface, (me, face, result) => {
    const wanted = bytesAt(face);
    const ours = wanted.equals(kUnknown) || wanted.equals(kDispatch);
    set(result, 0, 'void *', ours ? me : null);
    return ours ? 0 : kNoInterface;
  }],
  [AddRef, () => 2],                         // lives as long as this program
  [Release, () => 1],
  [Count, (me, result) => { set(result, 0, 'uint32_t', 0); return 0; }],
  [Info, () => kNoInterface],
  [Names, (me, face, names, count, locale, ids) => {
    const target = offered.get(addressOf(me)), wanted = at(names, 0, 'str16');
    const name = Object.keys(target).find((key) => key.toLowerCase() === wanted.toLowerCase());
    if (name === undefined) return kUnknownName;
    if (!known.includes(name)) known.push(name);
    set(ids, 0, 'int32_t', known.indexOf(name) + 1);
    return 0;
  }],
  [Invoke, (me, id, face, locale, flags, all, result) => {
    try {
      const target = offered.get(addressOf(me)), name = known[id - 1];
      const count = at(all, 16, 'uint32_t'), given = [];
      const values = count > 0 ? at(all, 0, 'void *') : null;
      for (let i = 0; i < count; ++i) given.push(fromVariant(values, kVariant * (count - 1 - i)));
      if ((flags & (kPut | kPutRef)) !== 0) { target[name] = given.pop(); return 0; }
      const answer = typeof target[name] === 'function' ? target[name](...given) : target[name];
      if (result !== null) toVariant(result, 0, answer);
      return 0;
    } catch (error) {
      console.error(error);
      return kFailed;
    }
  }]
];
const table = koffi.alloc('void *', server.length);
server.forEach(([type, body], i) =>
  set(table, i * kPointer, 'void *', koffi.register(body, koffi.pointer(type))));

/// What COM may hold of an object; the same for the same object.
const made = new Map();
function offer(target) {
  if (target.object) return target.object;   // one of COM's own
  if (!made.has(target)) {
    const memory = koffi.alloc('void *', 1);
    set(memory, 0, 'void *', table);
    made.set(target, memory);
    offered.set(addressOf(memory), target);
  }
  return made.get(target);
}

Initialize(null, 2);                         // a single-threaded apartment
module.exports = {create};

// The chart of accounts and the account picker from Node on Windows, with a whole host in one file.
//
//   npm install koffi
//   regsvr32 tavrix.dll
//   node accounts.js
'use strict';
const {create} = require('./com.js');

// --- five accounts in place of a database

const columns = ['i_id', 'ccode', 'ccode_name', 'cclass', 'igrade', 'bend', 'bproperty', 'bclose', 'bpr'];
const accounts = [
  [1, '1001', 'Cash', '资产', 1, 1, 1, 0, '借'],
  [2, '1002', 'Bank', '资产', 1, 0, 1, 0, '借'],
  [3, '100201', 'Current account', '资产', 2, 1, 1, 0, '借'],
  [4, '100202', 'Savings account', '资产', 2, 1, 1, 0, '借'],
  [5, '2202', 'Payables', '负债', 1, 1, 0, 0, '贷']
];
const valueOf = (account, name) => account[columns.indexOf(name.toLowerCase())];

function fits(account, sql) {
  return ['cclass', 'ccode', 'i_id'].every((name) => {
    const asked = new RegExp(`\\b${name} ?= ?'?([^' )]+)`, 'i').exec(sql);
    return !asked || String(valueOf(account, name)) === asked[1];
  });
}

// Yours gives `sql` to its database.
function recordset(sql) {
  const found = sql.includes('gl_code') ? accounts.filter((account) => fits(account, sql)) : [];
  const names = sql.startsWith('select ccode,')
    ? ['ccode', 'ccode_name', '', '', 'i_id', 'igrade', 'cclass']
    : ['i_id', 'ccode', 'ccode_name', '', 'bpr', 'cclass', 'bclose', 'bend'];
  let position = 0;
  return {
    EOF: () => position >= found.length,
    BOF: () => found.length === 0,
    GetRows: () => {
      position = found.length;
      return found.map((account) => names.map((name) => valueOf(account, name)));
    },
    Fields: (name) => ({Value: valueOf(found[position], name)}),
    MoveFirst: () => { position = 0; },
    Find: () => { position = found.length; },
    Close: () => {}
  };
}

// --- the host: one object may play many parts

function parameters() {
  const entries = new Map();
  return {
    Add: (key, value) => { entries.set(key, value); },
    Exists: (key) => entries.has(key),
    Item: (key) => ({Value: entries.get(key)}),
    Clear: () => entries.clear()
  };
}

const host = {
  GetDatabase: () => host,
  GetSetting: (key, section) => ({Value: key === 'kmbm' ? '4222' : ''}),
  NewIdentifier: (table, column, error) => 100,  // yours: the next free one
  Rights: (program) => host,
  CanAdd: true,
  CanEdit: true,
  Folders: () => host,
  UserFolder: '.',
  CreateHelper: (name) => name === 'SettingsFile'
    ? {FileName: '', ReadValue: (section, key, fallback) => fallback, WriteValue: () => {}}
    : name === 'Parameters' ? parameters() : host,

  OpenSql: (sql, mode) => ({Execute: () => {}, ScalarValue: () => 0, Recordset: () => recordset(sql)}),
  LastError: () => host,
  Description: '',
  Clear: () => {},
  ConnectionProperties: () => host,
  Item: (key) => ({Value: ''}),              // "jet" for Access

  ParentCode: (code, rule) => code.length > 4 ? code.slice(0, -2) : '',
  LevelOf: (code, rule) => code.length >= 4 && code.length % 2 === 0 ? (code.length - 2) / 2 : 0,
  LengthAtLevel: (level, rule) => level > 0 ? 2 + 2 * level : 0,
  SetDatabase: (database) => {},
  MoveTop: () => true, MovePrevious: () => true, MoveNext: () => true, MoveBottom: () => true,
  Find: () => false, FindNext: () => false, Filter: () => false,
  SetRange: () => {}, Attach: () => {}, Detach: () => {}, AttachedTo: 0, Position: 0
};

// --- the two controls

const view = create('tavrix.Kjkm');
if (!view.get('Init', host, 0)) process.exit(1);
view.get('Refresh');
let grid = view.get('Controls').get('Item', 'Vs(0)');  // the page of all accounts
const first = grid.get('FixedRows'), rows = grid.get('Rows');
console.log(`Kjkm: ${rows - first} accounts`);
for (let row = first; row < rows; ++row)
  console.log(`${grid.get('TextMatrix', row, 0)} ${grid.get('TextMatrix', row, 1)}`);
view.get('Clear');

const picker = create('tavrix.selKjkm');
if (!picker.get('Init', host, 1)) process.exit(1);
const wanted = parameters();
wanted.Add('single', 1);                     // one account; other keys: see the reference
picker.put('Parameters', wanted);
picker.get('Refresh');
grid = picker.get('Controls').get('Item', 'Vs');
console.log(`selKjkm: ${grid.get('Rows') - grid.get('FixedRows')} accounts`);

// What a user has typed elsewhere.
picker.get('Validate', '', 'ccode', 'ccode_name', '1002', '', '');
console.log(`typed ${picker.get('Value')}: ${picker.get('Text')}`);

// What the user's choice and OK do; a form would wait for the event DoSelect.
grid.put('Row', grid.get('FixedRows'));
picker.get('Controls').get('Item', 'Cmd(0)').get('Click');
const picked = picker.get('Objects');
for (let i = 1; i <= picked.get('Count'); ++i) {
  const account = picked.get('Item', i);
  console.log(`picked ${account.get('ccode')}: ${account.get('ccode_name')}`);
}
picker.get('Clear');
process.exit(0);

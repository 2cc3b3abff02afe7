// The chart of accounts and the account picker, with a whole host in one file.
//
//   regsvr32 tavrix.dll
//   cscript //nologo accounts.js
//
// Unlike other languages this one makes no arrays of two dimensions and takes no arguments by
// reference: `GetRows` below gives an array of records, and what `Validate` finds is read from
// `Value` and `Text`.

// --- five accounts in place of a database

var columns = ["i_id", "ccode", "ccode_name", "chelp", "bproperty", "cclass", "bclose", "bend",
               "cexch_name", "igrade", "cbook_type", "bpr"];
var assets = "\u8D44\u4EA7", liabilities = "\u8D1F\u503A";
var accounts = [
  [1, "1001", "Cash", "c", 1, assets, 0, 1, "", 1, "", "\u501F"],
  [2, "1002", "Bank", "b", 1, assets, 0, 0, "", 1, "", "\u501F"],
  [3, "100201", "Current account", "", 1, assets, 0, 1, "", 2, "", "\u501F"],
  [4, "100202", "Savings account", "", 1, assets, 0, 1, "", 2, "", "\u501F"],
  [5, "2202", "Payables", "", 0, liabilities, 0, 1, "", 1, "", "\u8D37"]
];

function valueOf(account, name) {
  for (var i = 0; i < columns.length; ++i) if (columns[i] === name.toLowerCase()) return account[i];
  return null;                               // a column that is a literal
}

function fits(account, sql) {
  var names = ["cclass", "ccode", "i_id"];
  for (var i = 0; i < names.length; ++i) {
    var asked = new RegExp("\\b" + names[i] + " ?= ?'?([^' )]+)", "i").exec(sql);
    if (asked && String(valueOf(account, names[i])) !== asked[1]) return false;
  }
  return true;
}

function columnsOf(sql) {
  if (sql.indexOf("select ccode,") === 0)
    return ["ccode", "ccode_name", "cexch_name", "", "i_id", "igrade", "cclass"];
  return ["i_id", "ccode", "ccode_name", "chelp", "bpr", "cclass", "bclose", "bend"];
}

// Yours gives `sql` to its database; a real ADO recordset will do as the result.
function recordset(sql) {
  var found = [], position = 0;
  for (var i = 0; i < accounts.length; ++i)
    if (sql.indexOf("gl_code") >= 0 && fits(accounts[i], sql)) found.push(accounts[i]);
  return {
    EOF: function () { return position >= found.length; },
    BOF: function () { return found.length === 0; },
    GetRows: function () {
      var names = columnsOf(sql), records = [];
      for (var i = 0; i < found.length; ++i) {
        records[i] = [];
        for (var j = 0; j < names.length; ++j) records[i][j] = valueOf(found[i], names[j]);
      }
      position = found.length;
      return records;
    },
    Fields: function (name) { return {Value: valueOf(found[position], name)}; },
    MoveFirst: function () { position = 0; },
    Find: function () { position = found.length; },
    Close: function () {}
  };
}

// --- the host: what the library asks for, by name

function parameters() {
  var entries = {};
  return {
    Add: function (key, value) { entries[key] = value; },
    Exists: function (key) { return entries.hasOwnProperty(key); },
    Item: function (key) { return {Value: entries[key]}; },
    Clear: function () { entries = {}; }
  };
}

function statement(sql) {
  return {
    Execute: function () {},
    ScalarValue: function () { return 0; },
    Recordset: function () { return recordset(sql); }
  };
}

var database = {
  OpenSql: function (sql, mode) { return statement(sql); },
  LastError: {Description: "", Clear: function () {}},
  ConnectionProperties: {Item: function (key) { return {Value: ""}; }}  // "jet" for Access
};

var helpers = {
  CodeRule: function () {
    return {
      ParentCode: function (code, rule) { return code.length > 4 ? code.slice(0, -2) : ""; },
      LevelOf: function (code, rule) { return code.length >= 4 && code.length % 2 === 0 ? (code.length - 2) / 2 : 0; },
      LengthAtLevel: function (level, rule) { return level > 0 ? 2 + 2 * level : 0; }
    };
  },
  LogHelper: function () { return {}; },
  DataHelper: function () { return {SetDatabase: function (database) {}}; },
  GridNavigator: function () {
    return {
      MoveTop: function (grid) { grid.Row = grid.FixedRows; return true; },
      MovePrevious: function (grid) { if (grid.Row > grid.FixedRows) --grid.Row; return true; },
      MoveNext: function (grid) { if (grid.Row < grid.Rows - 1) ++grid.Row; return true; },
      MoveBottom: function (grid) { grid.Row = grid.Rows - 1; return true; },
      Find: function (grid, data) { return false; },
      FindNext: function (grid) { return false; },
      Filter: function (grid, data) { return false; }
    };
  },
  MouseEvent: function () {
    return {AttachedTo: 0, Position: 0, SetRange: function () {}, Attach: function () {},
            Detach: function () {}};
  },
  SettingsFile: function () {                // yours keeps the values in the file, for each user
    return {FileName: "", ReadValue: function (section, key, fallback) { return fallback; },
            WriteValue: function () {}};
  },
  Parameters: parameters
};

var system = {
  GetDatabase: function () { return database; },
  GetSetting: function (key, section) { return {Value: key === "kmbm" ? "4222" : ""}; },
  NewIdentifier: function (table, column, error) { return 100; },  // yours: the next free one
  Rights: function (program) { return {CanAdd: true, CanEdit: true}; },
  Folders: {UserFolder: "."},
  CreateHelper: function (name) { return helpers[name](); }
};

// --- the two controls

var view = new ActiveXObject("tavrix.Kjkm");
if (!view.Init(system, 0)) WScript.Quit(1);
view.Refresh();
var grid = view.Controls.Item("Vs(0)");      // the page of all accounts
WScript.Echo("Kjkm: " + (grid.Rows - grid.FixedRows) + " accounts");
for (var row = grid.FixedRows; row < grid.Rows; ++row)
  WScript.Echo(grid.TextMatrix(row, 0) + " " + grid.TextMatrix(row, 1));
view.Clear();

var picker = new ActiveXObject("tavrix.selKjkm");
if (!picker.Init(system, 1)) WScript.Quit(1);
var wanted = parameters();
wanted.Add("single", 1);                     // one account; other keys: see the reference
picker.Parameters = wanted;
picker.Refresh();
grid = picker.Controls.Item("Vs");
WScript.Echo("selKjkm: " + (grid.Rows - grid.FixedRows) + " accounts");

// What a user has typed elsewhere.
picker.Validate("", "ccode", "ccode_name", "1002", "", "");
WScript.Echo("typed " + picker.Value + ": " + picker.Text);

// What the user's choice and OK do; a form would wait for the event DoSelect.
grid.Row = grid.FixedRows;
picker.Controls.Item("Cmd(0)").Click();
for (var all = new Enumerator(picker.Objects); !all.atEnd(); all.moveNext())
  WScript.Echo("picked " + all.item().ccode + ": " + all.item().ccode_name);
picker.Clear();

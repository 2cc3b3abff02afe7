// A whole host: what the library asks of the program around it, by name. Five accounts stand in
// place of a database; Rows is where yours is asked.
using System;
using System.Collections.Generic;
using System.Linq;
using System.Runtime.InteropServices;
using System.Text.RegularExpressions;

namespace Accounts
{
    /// Whatever has a value: settings, properties, fields, parameters.
    [ComVisible(true), ClassInterface(ClassInterfaceType.AutoDispatch)]
    public class Entry
    {
        private readonly object value;
        public Entry(object value) { this.value = value; }
        public object Value { get { return value; } }
    }

    /// The system object, and most of what it hands out: one object may play many parts.
    [ComVisible(true), ClassInterface(ClassInterfaceType.AutoDispatch)]
    public class Host
    {
        private int window;

        public object GetDatabase() { return this; }
        public object GetSetting(object key, string section) { return new Entry((string)key == "kmbm" ? "4222" : ""); }
        public int NewIdentifier(string table, string column, ref object error) { return 100; }  // yours: the next free one
        public object Rights(int program) { return this; }
        public bool CanAdd { get { return true; } }
        public bool CanEdit { get { return true; } }
        public object Folders { get { return this; } }
        public string UserFolder { get { return "."; } }
        public object CreateHelper(string name)
        {
            if (name == "SettingsFile") return new SettingsFile();
            if (name == "Parameters") return new Parameters();
            return this;
        }

        // The database
        public object OpenSql(string sql, int mode) { return new Statement(sql); }
        public object LastError { get { return this; } }
        public string Description { get { return ""; } }
        public void Clear() { }
        public object ConnectionProperties { get { return this; } }
        public object Item(object key) { return new Entry(""); }  // "jet" for an Access database

        // Helpers: codes by the rule 4222, the grid's current row, the wheel
        public string ParentCode(string code, string rule) { return code.Length > 4 ? code.Substring(0, code.Length - 2) : ""; }
        public int LevelOf(string code, string rule) { return code.Length >= 4 && code.Length % 2 == 0 ? (code.Length - 2) / 2 : 0; }
        public int LengthAtLevel(int level, string rule) { return level > 0 ? 2 + 2 * level : 0; }
        public void SetDatabase(object database) { }
        public bool MoveTop(dynamic grid) { grid.Row = grid.FixedRows; return true; }
        public bool MovePrevious(dynamic grid) { if (grid.Row > grid.FixedRows) grid.Row -= 1; return true; }
        public bool MoveNext(dynamic grid) { if (grid.Row < grid.Rows - 1) grid.Row += 1; return true; }
        public bool MoveBottom(dynamic grid) { grid.Row = grid.Rows - 1; return true; }
        public bool Find(object grid, object data) { return false; }
        public bool FindNext(object grid) { return false; }
        public bool Filter(object grid, object data) { return false; }
        public void SetRange(int maximum, [Optional] object first) { }
        public void Attach(int handle) { window = handle; }
        public void Detach() { window = 0; }
        public int AttachedTo { get { return window; } }
        public int Position { get; set; }
    }

    /// Yours keeps the values in the file, for each user.
    [ComVisible(true), ClassInterface(ClassInterfaceType.AutoDispatch)]
    public class SettingsFile
    {
        public string FileName { get; set; }
        public string ReadValue(string section, string key, string fallback) { return fallback; }
        public void WriteValue(string section, string key, string value) { }
    }

    [ComVisible(true), ClassInterface(ClassInterfaceType.AutoDispatch)]
    public class Parameters
    {
        private readonly Dictionary<string, object> entries = new Dictionary<string, object>();
        public void Add(string key, object value) { entries.Add(key, value); }
        public bool Exists(object key) { return entries.ContainsKey((string)key); }
        public object Item(object key) { return new Entry(entries[(string)key]); }
        public void Clear() { entries.Clear(); }
    }

    [ComVisible(true), ClassInterface(ClassInterfaceType.AutoDispatch)]
    public class Statement
    {
        private readonly string sql;
        public Statement(string sql) { this.sql = sql; }
        public void Execute() { }
        public object ScalarValue([Optional] object index) { return 0; }
        public object Recordset([Optional] object index) { return new Rows(sql); }
    }

    /// What a statement gives. A real ADO recordset will do in its place.
    [ComVisible(true), ClassInterface(ClassInterfaceType.AutoDispatch)]
    public class Rows
    {
        private static readonly string[] columns =
            "i_id ccode ccode_name chelp bproperty cclass bclose bend cexch_name igrade cbook_type bpr".Split(' ');
        private static readonly object[][] accounts =
        {
            new object[] { 1, "1001", "Cash", "c", 1, "\u8D44\u4EA7", 0, 1, "", 1, "", "\u501F" },
            new object[] { 2, "1002", "Bank", "b", 1, "\u8D44\u4EA7", 0, 0, "", 1, "", "\u501F" },
            new object[] { 3, "100201", "Current account", "", 1, "\u8D44\u4EA7", 0, 1, "", 2, "", "\u501F" },
            new object[] { 4, "100202", "Savings account", "", 1, "\u8D44\u4EA7", 0, 1, "", 2, "", "\u501F" },
            new object[] { 5, "2202", "Payables", "", 0, "\u8D1F\u503A", 0, 1, "", 1, "", "\u8D37" },
        };
        private readonly string[] selected;
        private readonly object[][] found;
        private int position;

        public Rows(string sql)
        {
            selected = (sql.StartsWith("select ccode,")
                ? "ccode,ccode_name,cexch_name,,i_id,igrade,cclass"
                : "i_id,ccode,ccode_name,chelp,bpr,cclass,bclose,bend").Split(',');
            found = sql.Contains("gl_code") ? accounts.Where(account => Fits(account, sql)).ToArray() : new object[0][];
        }
        private static object ValueOf(object[] account, string column)
        {
            int at = Array.IndexOf(columns, column.ToLowerInvariant());
            return at < 0 ? "" : account[at];
        }
        private static bool Fits(object[] account, string sql)
        {
            foreach (string column in new[] { "cclass", "ccode", "i_id" })
            {
                Match asked = Regex.Match(sql, "\\b" + column + " ?= ?'?([^' )]+)");
                if (asked.Success && ValueOf(account, column).ToString() != asked.Groups[1].Value) return false;
            }
            return true;
        }
        public bool EOF { get { return position >= found.Length; } }
        public bool BOF { get { return found.Length == 0; } }
        public object[,] GetRows()
        {
            var rows = new object[selected.Length, found.Length];
            for (int record = 0; record < found.Length; ++record)
                for (int field = 0; field < selected.Length; ++field)
                    rows[field, record] = ValueOf(found[record], selected[field]);
            position = found.Length;
            return rows;
        }
        public object Fields(object name) { return new Entry(ValueOf(found[position], (string)name)); }
        public void MoveFirst() { position = 0; }
        public void Find(string criteria) { position = found.Length; }
        public void Close() { }
    }
}

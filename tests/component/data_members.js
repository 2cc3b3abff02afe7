// A host in which everything that is no operation is a plain data member, and rows are an array of
// arrays. `picker` is given.
function Recordset(row) {
  this.EOF = row === null;
  this.BOF = row === null;
  this.Fields = function (name) { return {Value: row[name]}; };
  this.Close = function () {};
}

var list = [[7, "1001", "库存现金", null, "借", "资产", 0, 1],
            [8, "1002", "银行存款", "", "借", "资产", 0, 1]];

// All rows at once, as the list asks for them.
function List() {
  this.EOF = this.BOF = false;
  this.GetRows = function () { return list; };
  this.Close = function () {};
}

var host = {
  asked: "",
  database: {
    LastError: {Description: "", Clear: function () {}},
    ConnectionProperties: {Item: function (key) { return {Value: "jet"}; }},
    OpenSql: function (text, mode) {
      host.asked = text;
      if (text.indexOf("order by ccode") >= 0) return {Recordset: new List()};
      return {
        Execute: function () {},
        Recordset: new Recordset(text.indexOf("'1001'") < 0 ? null : {
          i_id: 7, ccode: "1001", ccode_name: "库存现金", chelp: "KCXJ", bproperty: 1,
          cclass: "资产", bclose: 0, bend: 1, cbook_type: "金额式"})
      };
    }
  },
  wheel: {
    AttachedTo: 0,
    Position: 0,
    SetRange: function () {},
    Attach: function () {},
    Detach: function () {}
  },
  GetDatabase: function () { return host.database; },
  GetSetting: function (key, section) { return {Value: key === "kmbm" ? "4222" : ""}; },
  Rights: function (program) { return {CanAdd: true, CanEdit: true}; },
  Folders: {UserFolder: "C:\\users"},
  CreateHelper: function (name) {
    if (name === "MouseEvent") return host.wheel;
    return {Exists: function () { return false; }, Clear: function () {},
            ReadValue: function (section, key, fallback) { return fallback; },
            WriteValue: function () {}, FileName: ""};
  }
};

Assert.Equal(picker.Init(host, 1, ""), true, "Init");
Assert.Equal(picker.Validate("", "", "", "1001", "", ""), false, "Validate");
Assert.Equal(picker.Text, "1001", "the text found");
Assert.Equal(picker.Objects.Count, 1, "one account");
Assert.Equal(picker.Objects.Item(1).ccode_name, "库存现金", "its name");
picker.Validate("", "", "", "9", "", "");
Assert.Equal(picker.Text, "", "nothing found");
picker.Refresh();
Assert.Equal(picker.Controls.Item("lblMessage").Caption, "", "nothing to tell");
Assert.Equal(picker.Controls.Item("LblCount").Caption, "共:2条", "records as arrays");
Assert.Equal(picker.Controls.Item("Vs").TextMatrix(2, 2), "银行存款", "a cell of the second");
list = [[7, "1001", "库存现金", "", "借", "资产", 0, 1], [8, "1002"]];
picker.Controls.Item("Cmd(2)").Click();
Assert.Equal(picker.Controls.Item("lblMessage").Caption, "GetRows 没有返回二维数组", "records differ");
Assert.Equal(picker.Controls.Item("LblCount").Caption, "共:2条", "the list stays");
picker.DoSaveFormStatus();
// The script ends without Clear.

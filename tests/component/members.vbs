' Every member by its name alone.
Option Explicit

Dim system, view, nothingAtAll, parameters, code, text
Set system = NewHost()
Set view = CreateObject("tavrix.Kjkm")
Set nothingAtAll = Nothing
Assert.True view.Init(system, 1, 2), "Init"
Assert.True view.Refresh, "Refresh"

Assert.Equal view.FileNew(), False, "FileNew without a reference"
Assert.Equal view.FileNewNext(), False, "FileNewNext without a reference"
Assert.Equal view.FileEdit(), False, "FileEdit without a row"
Assert.Equal view.FileDelete(), False, "FileDelete without a row"
Assert.Equal view.FileSave(), True, "FileSave"
Assert.Equal view.FileCancel(), True, "FileCancel"
Assert.Equal view.Check(nothingAtAll), False, "Check"
Assert.Equal view.UnCheck(system), False, "UnCheck"
Assert.Equal view.Help(), False, "Help"
Assert.Equal view.PrintSetup(), False, "PrintSetup"
Assert.Equal view.DoPrint(True), False, "DoPrint"
Assert.Equal view.RecordTop(), True, "RecordTop"
Assert.Equal view.RecordNext(), True, "RecordNext"
Assert.Equal view.RecordPrevious(), True, "RecordPrevious"
Assert.Equal view.RecordBottom(), True, "RecordBottom"
Assert.Equal view.Find("现金"), True, "Find"
Assert.Equal view.FindNext(), False, "FindNext"
Assert.Equal view.Filter(""), True, "Filter"
Assert.Equal view.DoSetStatus("any", True), False, "DoSetStatus"
Assert.Equal view.CheckStatus("any"), False, "CheckStatus"
Assert.Equal view.IsDirty, False, "IsDirty"
Assert.Equal view.GetID, 0, "GetID"
Assert.Equal view.ReturnPrintName, "", "ReturnPrintName"
Assert.Equal view.Attributes("isVisibleNewNext"), "True", "Attributes"
Assert.Equal view.Attributes("IsVisibleNewNext"), "", "Attributes tells case apart"
view.DoSaveFormStatus
view.DoGetFormStatus

' IDesignUI
Assert.Equal view.Controls.Count, 8, "Controls"
Assert.True view.Parameters Is Nothing, "Parameters reads as nothing"
Set view.Parameters = Nothing
Set parameters = New HostParameters
Set view.Parameters = parameters
parameters.Add "backcolor", 255
Set view.Parameters = parameters
Assert.Equal view.BackColor, 255, "BackColor"
Assert.Equal view.Controls.Item("vxVSTab").BackColor, 255, "BackColor of the tabs"
view.BackColor = 128
Assert.Equal view.BackColor, 128, "BackColor set"
view.BackColor = 2147483663
Assert.Equal view.BackColor, -2147483633, "a colour of the system is a Long with its sign"
Assert.Equal TypeName(view.BackColor), "Long", "type of a colour"
Assert.Equal TypeName(view.Controls.Item("Vs(0)").CellForeColor(0, 0)), "Long", "type of a cell's colour"

' The long names, and any case.
Assert.Equal view.IFormUI_IsDirty, False, "a name with its interface"
Assert.True view.REFRESH(), "case does not matter"

' What there is not.
On Error Resume Next
view.NoSuchMember
code = Err.Number
Err.Clear
Assert.Equal code, 438, "a member that is missing"
view.Attributes
code = Err.Number
Err.Clear
Assert.True code <> 0, "an argument that is missing"
text = view.Controls.Item("Vs(7)").Name
code = Err.Number
Err.Clear
Assert.True code <> 0, "a control that is missing"
code = view.Controls.Item("vxVSTab").Index
Assert.True Err.Number <> 0, "Index outside an array"
Err.Clear
On Error GoTo 0
view.Clear

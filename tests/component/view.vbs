' A whole life of the view in the hands of a script.
Option Explicit

Dim system, view, ears, connection, controls, grid, tabs, child, names, i, loading, failed
Set system = NewHost()
Set view = CreateObject("tavrix.Kjkm")
Set ears = New EventHearer
connection = Events.Connect(view, ears)

' pcSystem passed by reference; the third argument left out.
Assert.Equal view.Init(system, 1), True, "Init"
Assert.Equal system.Rate, "2", "the variable keeps its object"
Set controls = view.Controls
Set grid = controls.Item("Vs(0)")
Assert.Equal grid.Rows, 1, "rows before the first Refresh"
Assert.Equal view.Refresh(), True, "Refresh"

loading = ""
For i = 1 To 7
  loading = loading & "[正在加载数据...][]"
Next
Assert.Equal ears.Messages, loading, "messages"
Assert.Equal ears.Errors, "", "errors"

' Controls by position, by name and one after the other.
Assert.Equal controls.Count, 8, "Count"
names = ""
For Each child In controls
  names = names & child.Name
  If child.TypeName = "VSFlexGrid" Then names = names & child.Index
  names = names & " "
Next
Assert.Equal names, "vxVSTab Vs0 Vs1 Vs2 Vs3 Vs4 Vs5 Vs6 ", "names"
Assert.True controls(1) Is controls("vxvstab"), "by position and by name"
Assert.True controls.Item(4) Is controls("Vs(2)"), "a member of an array"
Assert.Equal controls("Vs(2)").Index, 2, "Index"
Assert.Equal grid.hWnd, 0, "no window without a container"

' Rows, levels, hidden columns.
Assert.Equal grid.Rows, 6, "Rows"
Assert.Equal grid.Cols, 7, "Cols"
names = ""
For i = 1 To grid.Rows - 1
  names = names & grid.TextMatrix(i, 0) & "/" & grid.RowOutlineLevel(i) & " "
Next
Assert.Equal names, "1001/0 1002/0 100201/1 100202/1 2202/0 ", "codes and levels"
Assert.Equal grid(4, 1), "建行", "the default member"
Assert.Equal grid.TextMatrix(4, 2), "美元", "a currency"
Assert.Equal grid.TextMatrix(1, 2) & grid.TextMatrix(2, 2), "", "nothing and null"
Assert.Equal grid.TextMatrix(4, 4), "4", "a number"
Assert.Equal grid.TextMatrix(0, 0), "科目编码", "the header"
Assert.True Not grid.ColHidden(3) And grid.ColHidden(4) And grid.ColHidden(6), "hidden columns"
Assert.True grid.RowHidden(3) Or grid.IsCollapsed(2), "only the first level is open"
grid.IsCollapsed(2) = False
Assert.True Not grid.IsCollapsed(2), "opened"
Assert.Equal controls("Vs(1)").Rows, 5, "rows of 资产"
Assert.Equal controls("Vs(2)").TextMatrix(1, 1), "应付账款", "the row of 负债"
Assert.Equal controls("Vs(6)").Rows, 1, "no rows of 损益"

' Tabs: what is set here has the effect of the user's click.
Set tabs = controls("vxVSTab")
On Error Resume Next
i = tabs.Index
failed = Err.Description
On Error GoTo 0
Assert.Equal failed, "控件不在控件数组中", "the text of a failure that looks like a missing member"
Assert.Equal tabs.Tabs, 7, "Tabs"
Assert.Equal tabs.TabKey(0) & tabs.TabKey(6), "key1key7", "TabKey"
Assert.Equal tabs.TabCaption(2), "负债", "TabCaption"
Assert.Equal system.Wheel.Maximum, 2, "wheel range: (6 - 1) / 2, cut"
tabs.CurrTab = 2
Assert.Equal tabs.CurrTab, 2, "CurrTab"
Assert.True controls("Vs(2)").Visible And Not grid.Visible, "one grid is shown"
Assert.Equal system.Wheel.Maximum, 0, "wheel range of the other grid"
tabs.CurrTab = 0

' The host's own navigator works on the view's grids.
Assert.Equal view.RecordBottom(), True, "RecordBottom"
Assert.Equal grid.Row, 5, "Row"
view.RecordPrevious
Assert.Equal grid.Row, 4, "Row after RecordPrevious"
Assert.Equal view.Find("工行"), True, "Find"
Assert.Equal grid.TextMatrix(grid.Row, 0), "100201", "found"
Assert.Equal view.Find("没有"), False, "Find of nothing"
Assert.Equal view.Filter("行"), True, "Filter"
Assert.True grid.RowHidden(1), "filtered out"
Assert.True Not grid.RowHidden(2), "filtered in"

' A second Refresh starts afresh; a handler that is disconnected hears no more.
Events.Disconnect connection
view.Refresh
Assert.Equal ears.Messages, loading, "messages after Disconnect"
Assert.Equal view.Clear(), False, "Clear"

' pcSystem passed plainly, as the value of a call.
Assert.Equal view.Init(NewHost(), 1, 7), True, "Init again"
Assert.Equal view.Refresh(), True, "Refresh again"
Assert.Equal view.Controls.Item("Vs(0)").Rows, 6, "Rows again"
view.Clear

' What was handed out outlives the view, but no longer answers.
Set view = Nothing
Set controls = Nothing
On Error Resume Next
i = grid.Rows
failed = Err.Number
On Error GoTo 0
Assert.True failed <> 0, "a grid without its view"

' What the host cannot do reaches the caller: as a report, or as the error of Init.
Option Explicit

Dim system, view, ears, failed, text
Set system = NewHost()
Set view = CreateObject("tavrix.Kjkm")
Set ears = New EventHearer
Events.Connect view, ears

' A view that was not initialised reports; it does not fail.
Assert.Equal view.Refresh(), False, "Refresh before Init"
Assert.True InStr(ears.Errors, "[刷新数据时出错：") = 1, "the report: " & ears.Errors
Assert.True InStr(ears.Errors, "|8|总账]") > 0, "level and title: " & ears.Errors

' A statement that fails for one page: the pages before it stand, Refresh still answers True.
Assert.True view.Init(system, 1), "Init"
ears.Errors = ""
system.Database.Failing = "'共同'"
Assert.Equal view.Refresh(), True, "Refresh"
Assert.True InStr(ears.Errors, "[DoRefresh") = 1, "the report of the page: " & ears.Errors
Assert.Equal view.Controls.Item("Vs(2)").Rows, 2, "the page before"
Assert.Equal view.Controls.Item("Vs(3)").Rows, 1, "the page itself"

' The host mends it.
system.Database.Failing = "?"
ears.Errors = ""
Assert.Equal view.Refresh(), True, "Refresh once more"
Assert.Equal ears.Errors, "", "no report"

' Init has no trap: its failure is the caller's.
On Error Resume Next
view.Init Nothing, 1
failed = Err.Number
text = Err.Description
Err.Clear
Assert.True failed <> 0 And text <> "", "Init without a system: " & text
view.Init "text", 1
failed = Err.Number
Err.Clear
Assert.True failed <> 0, "Init with a text"
view.Init view, 1
failed = Err.Number
text = Err.Description
Err.Clear
On Error GoTo 0
Assert.True failed <> 0 And InStr(text, "CreateHelper") > 0, "Init with the wrong object: " & text

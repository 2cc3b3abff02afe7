' What a user has set comes back in the next life of a view.
Option Explicit

Dim system, view, grid, picker, file
Set system = NewHost()
Set view = CreateObject("tavrix.Kjkm")
Assert.True view.Init(system, 1, 2), "Init"
Assert.True view.Refresh, "Refresh"
Set grid = view.Controls.Item("Vs(2)")
grid.ColWidth(1) = 3210
grid.ColWidth(2) = 0
grid.FrozenCols = 1
view.DoSaveFormStatus
file = "C:\users\selfbb\Kjkm.txt"
Assert.Equal kept_settings.ReadValue(file & "|VsColWidth_2|VsCol1", ""), "3210", "the width"
Assert.Equal kept_settings.ReadValue(file & "|VsIsHidden_2|VsCol2", ""), "1", "the hidden column"
Assert.Equal kept_settings.ReadValue(file & "|Vs_2|VsFixedCols", ""), "1", "frozen columns"
view.Clear

Set view = CreateObject("tavrix.Kjkm")
view.DoGetFormStatus ' ignored before Init
Assert.True view.Init(system, 1, 2), "Init again"
view.DoGetFormStatus
Set grid = view.Controls.Item("Vs(2)")
Assert.Equal grid.ColWidth(1), 3210, "the width restored"
Assert.Equal grid.ColWidth(2), 0, "the hidden column restored"
Assert.Equal grid.FrozenCols, 0, "frozen columns are not"
Assert.True view.Controls.Item("Vs(3)").ColWidth(1) <> 3210, "each page has its own"

' A file that gives no text for a key has no such key.
Dim fault
For Each fault In Array("Null", "Empty", "Nothing", "raises")
  grid.ColWidth(1) = 1500
  settings_fault = fault
  view.DoGetFormStatus
  settings_fault = ""
  Assert.Equal grid.ColWidth(1), 1500, "a file that gives " & fault
Next

' Setting the order that stands does nothing, and a load ends it.
Dim first
Assert.True view.Refresh, "Refresh"
Set grid = view.Controls.Item("Vs(0)")
first = grid.TextMatrix(1, 0)
grid.Col = 0
grid.Sort = 8
Assert.True grid.TextMatrix(1, 0) <> first, "sorted by codes, the last one first"
first = grid.TextMatrix(1, 0)
grid.Col = 1
grid.Sort = 8
Assert.Equal grid.TextMatrix(1, 0), first, "the order that stands"
grid.Sort = 7
Assert.True grid.TextMatrix(1, 1) <= grid.TextMatrix(2, 1), "sorted by names"
Assert.Equal grid.Sort, 7, "Sort"
Assert.True view.Refresh, "Refresh again"
Assert.Equal grid.Sort, 0, "after a load"
view.Clear

' A script without a site has no display name: the program's number alone names the file.
Set picker = CreateObject("tavrix.selKjkm")
Assert.True picker.Init(system, 77), "Init of the picker"
picker.Controls.Item("Vs").ColWidth(2) = 1234
picker.Controls.Item("Vs").FrozenCols = 2
picker.Controls.Item("Check").Value = 1
picker.DoSaveFormStatus
file = "C:\users\selfbb\77.txt"
Assert.Equal kept_settings.ReadValue(file & "|VsColWidth|VsCol2", ""), "1234", "the picker's width"
Assert.Equal kept_settings.ReadValue(file & "|Form|CHECKBOX_Check", ""), "1", "the box"
picker.Controls.Item("Vs").ColWidth(2) = 1
picker.Controls.Item("Vs").FrozenCols = 0
picker.Controls.Item("Check").Value = 0
picker.DoGetFormStatus
Assert.Equal picker.Controls.Item("Vs").ColWidth(2), 1234, "the picker's width restored"
Assert.Equal picker.Controls.Item("Vs").FrozenCols, 2, "its frozen columns too"
Assert.Equal picker.Controls.Item("Check").Value, 1, "the box restored"
picker.Clear

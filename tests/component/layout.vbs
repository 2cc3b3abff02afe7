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

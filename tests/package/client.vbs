' A script on a machine where the library is installed. Its last line is what a script that failed
' does not come to.
Dim view, picker
Set view = CreateObject("tavrix.Kjkm")
Set picker = CreateObject("tavrix.selKjkm")
WScript.Echo view.Controls.Count & " " & picker.Controls.Item("Cmd(0)").Caption
WScript.Echo "came to the end"

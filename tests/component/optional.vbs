' A host in a language without optional arguments: every argument is declared and wanted.
Option Explicit

Class IndexedStatement
  Public Inner
  Public Owner
  Public Sub Execute()
    Inner.Execute
  End Sub
  Public Function ScalarValue(index)
    Owner.Note "ScalarValue " & index
    Err.Raise 1000, "host", "no count"
  End Function
  Public Function Recordset(index)
    Owner.Note "Recordset " & index
    Set Recordset = Inner.Recordset()
  End Function
End Class

Class IndexedDatabase
  Public Inner
  Public Asked
  Public Sub Note(text)
    Asked = Asked & text & ";"
  End Sub
  Public Function OpenSql(text, mode)
    Dim made
    Set made = New IndexedStatement
    Set made.Inner = Inner.OpenSql(text, mode)
    Set made.Owner = Me
    Set OpenSql = made
  End Function
  Public Function LastError()
    Set LastError = Inner.LastError
  End Function
  Public Function ConnectionProperties()
    Set ConnectionProperties = Inner.ConnectionProperties
  End Function
End Class

Class RangedWheel
  Public Ranges
  Public Position
  Public Sub SetRange(highest, first_row)
    Ranges = Ranges & highest & "," & first_row & ";"
  End Sub
  Public Sub Attach(handle)
  End Sub
  Public Sub Detach()
  End Sub
  Public Function AttachedTo()
    AttachedTo = 0
  End Function
End Class

Dim system, view, ears, book
Set system = NewHost()
Set book = New IndexedDatabase
Set book.Inner = system.Database
Set system.Database = book
Set system.Wheel = New RangedWheel
Set view = CreateObject("tavrix.Kjkm")
Set ears = New EventHearer
Events.Connect view, ears
Assert.True view.Init(system, 1), "Init"
Assert.True view.Refresh(), "Refresh"
Assert.Equal ears.Errors, "", "no report"
Assert.Equal view.Controls("Vs(0)").Rows, 6, "rows"
Assert.Equal Left(book.Asked, 12), "Recordset 0;", "the index of the first result"
Assert.Equal system.Wheel.Ranges, "2,0;", "the range from the top"
view.Controls("Vs(0)").Row = 1
book.Asked = ""
Assert.Equal view.FileDelete(), False, "FileDelete"
Assert.Equal book.Asked, "ScalarValue 0;", "a count that fails is asked for once"
Assert.True InStr(ears.Errors, "[FileDelete->") = 1, "and told: " & ears.Errors
' The script ends without Clear.

' A pick in the hands of a script, from Init to what it hands back.
Option Explicit

Const Fields = "i_id,ccode,ccode_name,chelp,bproperty,cclass,bclose,bend,cbook_type,bcus,bsup,igrade"

' Six accounts and the statements that the picker asks of them.
Class PickerBook
  Public Asked
  Private accounts

  Private Sub Class_Initialize()
    Dim made(5)
    made(0) = Array(1, "1001", "库存现金", "KCXJ", 1, "资产", 0, 1, "金额式", 0, 0, 1)
    made(1) = Array(2, "1002", "银行存款", "YHCK", 1, "资产", 0, 0, "金额式", 0, 0, 1)
    made(2) = Array(3, "100201", "工行", Null, 1, "资产", 0, 1, "金额式", 0, 0, 2)
    made(3) = Array(4, "1122", "应收账款", "YSZK", True, "资产", 0, 1, "数量金额式", 1, 0, 1)
    made(4) = Array(5, "2202", "应付账款", "YFZK", 0, "负债", 0, 1, Null, 0, 1, 1)
    made(5) = Array(6, "2203", "预收账款", "YUSZK", 0, "负债", 1, 1, "金额式", 1, 0, 1)
    accounts = made
    Asked = ""
  End Sub

  Public Function RowsFor(text)
    Asked = Asked & text & vbLf
    If InStr(text, "xt_accinformation") > 0 Then
      Set RowsFor = OneValue("2")
    ElseIf InStr(text, "xt_objects") > 0 Then
      Set RowsFor = OneValue(201)
    ElseIf InStr(text, "select ccode,") = 1 Then
      Set RowsFor = Chosen("ccode,ccode_name,cclass,i_id", text)
    ElseIf InStr(text, "*") > 0 Then
      Set RowsFor = Chosen(Fields, text)
    Else
      Set RowsFor = Chosen("i_id,ccode,ccode_name,chelp,bproperty,cclass,bclose,bend", text)
    End If
  End Function

  Private Function OneValue(value)
    Set OneValue = New OneRecord
    OneValue.Value = value
  End Function

  Private Function Chosen(names, text)
    Dim answer, wanted, all, positions(11), rows, found, i, j, k, account
    wanted = Split(names, ",")
    all = Split(Fields, ",")
    For i = 0 To UBound(wanted)
      For j = 0 To UBound(all)
        If wanted(i) = all(j) Then positions(i) = j
      Next
    Next
    ReDim rows(UBound(wanted), 5)
    found = 0
    For i = 0 To 5
      account = accounts(i)
      If Fits(account, text) Then
        For k = 0 To UBound(wanted)
          rows(k, found) = account(positions(k))
        Next
        found = found + 1
      End If
    Next
    If found > 0 Then ReDim Preserve rows(UBound(wanted), found - 1)
    Set answer = New Recordset
    answer.Names = names
    answer.Load rows, found
    Set Chosen = answer
  End Function

  Private Function Fits(account, text)
    Dim typed, id
    Fits = True
    If InStr(text, "bclose=0") > 0 Then Fits = Fits And account(6) = 0
    If InStr(text, "bend=1") > 0 Then Fits = Fits And account(7) = 1
    If InStr(text, "bcus=1") > 0 Then Fits = Fits And account(9) = 1
    If InStr(text, "ccode like '1%'") > 0 Then Fits = Fits And Left(account(1), 1) = "1"
    typed = Between(text, "ccode_name='")
    If typed <> "" Then Fits = Fits And (typed = account(1) Or typed = account(2) Or typed = "" & account(3))
    If InStr(text, "cclass='") > 0 Then Fits = Fits And account(5) = Between(text, "cclass='")
    If InStr(text, "i_id =") > 0 Then
      id = Mid(text, InStr(text, "i_id =") + 6)
      Fits = Fits And CLng(id) = account(0)
    End If
  End Function

  Private Function Between(text, start)
    Dim from
    Between = ""
    from = InStr(text, start)
    If from > 0 Then Between = Mid(text, from + Len(start), InStr(from + Len(start), text, "'") - from - Len(start))
  End Function
End Class

' One field of one record, reached through a property that takes no argument.
Class OneRecord
  Public Value
  Public Property Get EOF()
    EOF = False
  End Property
  Public Property Get Fields()
    Set Fields = Me
  End Property
  Public Function Item(key)
    Set Item = Me
  End Function
  Public Sub Close()
  End Sub
End Class

Class PickerWheel
  Public Maximum
  Public FirstRow
  Public Window
  Public Position
  Public Sub SetRange(highest, first)
    Maximum = highest
    FirstRow = first
  End Sub
  Public Sub Attach(handle)
    Window = handle
  End Sub
  Public Sub Detach()
    Window = 0
  End Sub
  Public Property Get AttachedTo()
    AttachedTo = Window
  End Property
End Class

Class PickHearer
  Public Heard
  Public View
  Private Sub Class_Initialize()
    Heard = ""
  End Sub
  Public Sub DoSelect()
    Heard = Heard & "select " & View.Text & " " & View.Objects.Count & ";"
  End Sub
  Public Sub DoCancel()
    Heard = Heard & "cancel " & View.Objects.Count & ";"
  End Sub
End Class

Function Codes(grid)
  Dim i
  Codes = ""
  For i = grid.FixedRows To grid.Rows - 1
    Codes = Codes & grid.TextMatrix(i, 1) & " "
  Next
End Function

Function Keys(tree)
  Dim node
  Keys = ""
  For Each node In tree.Nodes
    Keys = Keys & node.Key & " "
  Next
End Function

Dim system, book, view, ears, parameters, others, controls, grid, tree, message, counter
Dim picked, picks, code, name, failed, i, held
Set system = NewHost()
Set book = New PickerBook
Set system.Database.Source = book
Set system.Wheel = New PickerWheel
Set view = CreateObject("tavrix.selKjkm")
Set ears = New PickHearer
Set ears.View = view
Events.Connect view, ears

' Before Init there is nothing, and that is said.
view.Refresh
Assert.True view.Controls.Item("lblMessage").Caption <> "", "Refresh before Init"
Assert.True view.Objects Is Nothing, "Objects before Init"

Assert.Equal view.Init(system, 77), True, "Init, the host's name left out"
Assert.Equal book.Asked, "select item_value from xt_accinformation where system_code='system' and item_code='mouseeventscrollrate'" & vbLf & "select progID from xt_objects where billitem=2015" & vbLf, "what Init asks"
Assert.Equal view.Objects.Count, 0, "no picks yet"
Assert.True IsEmpty(view.Value), "no value yet"

' Parameters: the picker's and the designer's, by all their names.
Assert.True Not view.Parameters Is Nothing, "the host's own collection"
Set parameters = New HostParameters
parameters.Add "科目编码", "1"
Set view.Parameters = parameters
Assert.True view.Parameters Is parameters, "Parameters"
Assert.True view.IPickerUI_Parameters Is parameters, "IPickerUI_Parameters"
Assert.True view.IDesignUI_Parameters Is Nothing, "IDesignUI_Parameters reads as nothing"
Set others = New HostParameters
others.Add "backcolor", 255
Set view.IDesignUI_Parameters = others
Assert.Equal view.BackColor, 255, "the designer's colour"
Assert.True view.Parameters Is parameters, "the picker's are others"
Set others = New HostParameters
others.Add "科目类别", "负债"
Set view.IPickerUI_Parameters = others
Assert.True view.Parameters Is others, "set by the long name"
Set view.Parameters = parameters

Set controls = view.Controls
Set grid = controls("Vs")
Set tree = controls("TV")
Set message = controls("lblMessage")
Set counter = controls("LblCount")
Assert.Equal view.Refresh(), True, "Refresh"
Assert.Equal message.Caption, "", "no message"
Assert.Equal Codes(grid), "1001 1002 100201 1122 ", "the list"
Assert.Equal Keys(tree), "r k1001 k1002 k100201 k1122 k2202 k2203 ", "the tree"
Assert.Equal counter.Caption, "共:4条", "the counter"
Assert.Equal grid.SelectionMode, 3, "several rows"
Assert.Equal system.Wheel.Maximum & "/" & system.Wheel.FirstRow, "2/1", "the wheel's range"
Assert.True controls("Cmd(3)").Visible, "the account form"
Assert.True InStr(book.Asked, "iif(bproperty=1,'借','贷')") > 0, "the dialect of jet"

' Several rows, one by one and from one end to the other.
grid.IsSelected(1) = True
grid.IsSelected(4) = True
grid.Row = grid.Row
Assert.Equal grid.SelectedRows, 2, "SelectedRows: the row that stands changes nothing"
Assert.Equal counter.Caption, "共:4条，已选中2条", "the counter of selected rows"
controls("Cmd(0)").Click
Assert.Equal ears.Heard, "select 1001 2;", "DoSelect"
Assert.Equal view.Value, 1, "Value"
Assert.Equal view.Text, "1001", "Text"
Set picks = view.Objects
Assert.True picks Is view.Objects, "one object for one collection"
name = ""
For Each picked In picks
  name = name & picked.ID & "," & picked.ccode & "," & picked.ccode_name & "," & picked.chelp & "," & picked.bpr & "," & picked.cclass & "," & picked.bclose & "," & picked.bend & "," & picked.cbook_type & "," & picked.Change & "," & picked.sKey & ";"
Next
Assert.Equal name, "1,1001,库存现金,KCXJ,借,资产,False,True,金额式,False,1;4,1122,应收账款,YSZK,借,资产,False,True,数量金额式,False,4;", "the picked accounts"
Assert.True picks("4") Is picks.Item(2), "by key and by position"
Assert.Equal view.Objects("4").ccode, "1122", "straight from the view"

' The members that a caller writes.
Set picked = picks(1)
Assert.Equal picked.colKjkm.Count, 0, "an empty child collection"
Set held = picked.colKjkm.Add("A", 9, "100101", "人民币", "RMB", "资产")
held.Change = True
Assert.True picked.colKjkm("a").Change, "a key has no case"
Set picked.colKjkm = CreateObject("tavrix.colKjkm")
Assert.Equal picked.colKjkm.Count, 0, "another child collection"
Assert.Equal held.ccode_name, "人民币", "what is held outlives its collection"
held.sbClear
Assert.Equal held.ID & held.ccode & held.bend, "0False", "sbClear"
picks.Remove "1"
Assert.Equal picks.Count, 1, "Remove"
On Error Resume Next
Set held = picks.Item("1")
Assert.True Err.Number <> 0 And Err.Description = "集合中没有该成员", "no such member: " & Err.Number & " " & Err.Description
Err.Clear
picks.Add "4", 4, "", "", "", ""
Assert.True Err.Number <> 0 And InStr(Err.Description, "集合中已有该键") = 1, "a key twice: " & Err.Description
Err.Clear
On Error GoTo 0

' Only leaf accounts: the refusal keeps value and text.
parameters.Add "ismx", 1
view.Refresh
grid.IsSelected(4) = False
grid.IsSelected(2) = True
ears.Heard = ""
controls("Cmd(0)").Click
Assert.Equal ears.Heard, "", "no event"
Assert.Equal message.Caption, "不能返回非明细级科目！", "the refusal"
Assert.Equal view.Objects.Count & view.Text, "11001", "what was taken before it"
view.Refresh
Assert.Equal message.Caption, "", "Refresh takes the refusal away"

' One row.
parameters.Add "single", "1.0"
view.Refresh
Assert.Equal grid.SelectionMode, 1, "one row"
grid.Row = 3
controls("Cmd(0)").Click
Assert.Equal ears.Heard, "select 100201 1;", "DoSelect of one row"
Assert.Equal view.Objects(1).chelp, "", "a null is an empty text"

' Giving up.
ears.Heard = ""
controls("Cmd(1)").Click
Assert.Equal ears.Heard, "cancel 0;", "DoCancel"
Assert.Equal view.Value & view.Text, "3100201", "value and text stay"

' Searching by the box that the host sets, in both modes.
view.Text = "yszk"
Assert.Equal view.Text & controls("SearchBox1").Text, "yszkyszk", "the text goes to the search box"
Assert.Equal grid.Row, 4, "the first match is current"
controls("Check").Click
Assert.True grid.RowHidden(1) And grid.RowHidden(2) And grid.RowHidden(3), "the others are hidden"
Assert.True Not grid.RowHidden(4), "the match is not"
controls("Check").Click
Assert.True Not grid.RowHidden(1), "all are shown again"

' The tree narrows the list; closed accounts on demand.
Set others = New HostParameters
Set view.Parameters = others
view.Refresh
Assert.Equal Keys(tree), "r r资产 r负债 r共同 r权益 r成本 r损益 ", "the six categories"
For Each picked In tree.Nodes
  If picked.Text = "负债" Then picked.Selected = True
Next
Assert.Equal Codes(grid), "2202 ", "the category's accounts"
Assert.Equal tree.SelectedItem.Tag, "负债", "SelectedItem"
Assert.True tree.Nodes Is tree.Nodes, "one collection of nodes"
Assert.True tree.Nodes.Item(2) Is tree.Nodes.Item(2), "one object for one node"
Assert.True Not tree.Nodes.Item(2) Is tree.Nodes.Item(3), "another for another"
Assert.True tree.Nodes.Item(2).Parent Is tree.Nodes.Item(1), "the parent"
Assert.True view.Controls Is controls, "one collection of controls"
Assert.True grid.ColHidden(6), "the closed column is hidden"
controls("Chk").Click
Assert.Equal Codes(grid), "2202 2203 ", "with the closed one"
Assert.True Not grid.ColHidden(6), "the closed column is shown"

' Typed text: code, name, mnemonic; the result is always False.
Set others = New HostParameters
Set view.Parameters = others
code = Null
name = Empty
Assert.Equal view.Validate("", "", "", "1001", code, name), False, "Validate"
Assert.Equal code & "|" & name, "1|1001", "by code"
view.Validate "ignored", "ccode", "ccode_name", "预收账款", code, name
Assert.Equal code & "|" & name, "2203|预收账款", "by name, other fields, a closed account"
view.Validate "", "cbook_type", "CHELP", "YFZK", code, name
Assert.Equal code & "|" & name, "|YFZK", "by mnemonic; a null field"
Assert.Equal view.Objects(1).bpr & view.Objects(1).cbook_type, "贷", "the account is among the objects"
view.Validate "", "", "", "没有", code, name
Assert.Equal code & "|" & name & "|" & view.Objects.Count & view.Value & view.Text, "||0", "nothing found"
Assert.Equal view.Validate("", "", "", "1001", "", ""), False, "values passed plainly"
Assert.Equal view.Text, "1001", "are resolved all the same"
others.Add "ismx", "1"
view.Validate "", "", "", "1002", code, name
Assert.Equal code & name, "", "not a leaf account"

' A failing host reaches the caller of Validate, with both strings emptied.
system.Database.Failing = "ccode_name='1122'"
code = "before"
name = "before"
On Error Resume Next
view.Validate "", "", "", "1122", code, name
failed = Err.Number
Err.Clear
On Error GoTo 0
Assert.True failed <> 0, "a failing query"
Assert.Equal code & name, "", "both are empty"
system.Database.Failing = "bclose"
others.Add "bcus", 1
view.Refresh
Assert.True message.Caption <> "", "a failing list says so"
Assert.Equal Codes(grid), "2202 2203 ", "and keeps its rows"
system.Database.Failing = "?"
view.Refresh
Assert.Equal message.Caption, "", "the next Refresh tries again"
Assert.Equal Codes(grid), "1122 2203 ", "and loads"

' Values of every kind are kept as they are.
view.Value = Null
Assert.True IsNull(view.Value), "Null"
view.Value = Empty
Assert.True IsEmpty(view.Value), "Empty"
view.Value = #2024-03-05#
Assert.Equal VarType(view.Value), 7, "a date"
view.Value = CCur("1.25")
Assert.Equal VarType(view.Value), 6, "a currency"
view.Value = Array(1, 2)
Assert.True IsArray(view.Value), "an array"
Set view.Value = others
Assert.True view.Value Is others, "an object"
view.IsDirty = True
Assert.Equal view.IsDirty & "|" & view.Attributes("any"), "False|", "IsDirty and Attributes"
view.Text = 12
Assert.Equal view.Text, "12", "a number as text"
On Error Resume Next
Set view.Parameters = Nothing
Assert.Equal Err.Number, 0, "no parameters"
Assert.True view.Refresh(), "Refresh without parameters"
Err.Clear
Set view.Parameters = view
view.Refresh
Assert.True InStr(message.Caption, "Exists") > 0, "an object that is no collection: " & message.Caption
Err.Clear
Set view.Parameters = New RaisingParameters
i = view.Parameters("any")
Assert.True Err.Number <> 0 And Err.Description <> "", "the collection's default member fails"
Err.Clear
view.Parameters = 5
Assert.True Err.Number <> 0, "a number is no collection"
Err.Clear
i = grid.TextMatrix(99, 1)
Assert.True Err.Number <> 0 And Err.Description <> "" And InStr(Err.Description, "such") = 0, "a row that is missing"
Err.Clear
On Error GoTo 0

' The right is asked each time.
Set view.Parameters = New HostParameters
system.MayEdit = False
view.Refresh
Assert.True Not controls("Cmd(3)").Visible, "no right, no account form"

' After Clear it wants Init again; what was picked stays with who holds it.
view.Clear
Assert.Equal picks.Count, 1, "the old picks"
Assert.True view.Objects Is Nothing, "Objects after Clear"
view.Refresh
Assert.True message.Caption <> "", "Refresh after Clear"
' A wheel of a language without optional arguments, as the other view takes it, serves too.
Set system.Wheel = New MouseEvent
Assert.Equal view.Init(system, 77, "host"), True, "Init again"
view.Refresh
Assert.Equal message.Caption, "", "no message again"
Assert.Equal system.Wheel.Maximum, 3, "the range of a wheel without a first row"
Assert.Equal Codes(grid), "1001 1002 100201 1122 2202 2203 ", "the list again"

Class RaisingParameters
  Public Default Function Item(key)
    Err.Raise vbObjectError + 513, "host", "参数读不出"
  End Function
End Class

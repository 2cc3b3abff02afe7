' The chart of accounts and the account picker, with a whole host in one file.
'
'   regsvr32 tavrix.dll
'   cscript //nologo accounts.vbs
Option Explicit

' --- the host: what the library asks for, by name

' Whatever has a value: settings, properties, fields, parameters.
Class Entry
  Public Value
End Class

Function EntryOf(value)
  Dim made
  Set made = New Entry
  made.Value = value
  Set EntryOf = made
End Function

' The system object, and most of what it hands out: one object may play many parts.
Class Host
  Public Description                        ' of the last error: empty
  Public UserFolder
  Public AttachedTo
  Public Position

  Private Sub Class_Initialize()
    Description = ""
    UserFolder = "."
    AttachedTo = 0
    Position = 0
  End Sub

  Public Function GetDatabase()
    Set GetDatabase = Me
  End Function
  Public Function GetSetting(key, section)
    If key = "kmbm" Then Set GetSetting = EntryOf("4222") Else Set GetSetting = EntryOf("")
  End Function
  Public Function NewIdentifier(table, column, failure)
    NewIdentifier = 100                     ' yours: the next free one of that table
  End Function
  Public Function Rights(program)
    Set Rights = Me
  End Function
  Public Function CanAdd()
    CanAdd = True
  End Function
  Public Function CanEdit()
    CanEdit = True
  End Function
  Public Function Folders()
    Set Folders = Me
  End Function
  Public Function CreateHelper(name)
    Select Case name
      Case "SettingsFile": Set CreateHelper = New SettingsFile
      Case "Parameters": Set CreateHelper = New Parameters
      Case Else: Set CreateHelper = Me
    End Select
  End Function

  ' The database
  Public Function OpenSql(sql, mode)
    Dim made
    Set made = New Statement
    made.Sql = sql
    Set OpenSql = made
  End Function
  Public Function LastError()
    Set LastError = Me
  End Function
  Public Function ConnectionProperties()
    Set ConnectionProperties = Me
  End Function
  Public Function Item(key)
    Set Item = EntryOf("")                  ' "jet" for an Access database
  End Function

  ' Helpers: codes by the rule 4222, the grid's current row, the wheel
  Public Function ParentCode(code, rule)
    ParentCode = ""
    If Len(code) > 4 Then ParentCode = Left(code, Len(code) - 2)
  End Function
  Public Function LevelOf(code, rule)
    LevelOf = 0
    If Len(code) >= 4 And Len(code) Mod 2 = 0 Then LevelOf = (Len(code) - 2) / 2
  End Function
  Public Function LengthAtLevel(level, rule)
    LengthAtLevel = 0
    If level > 0 Then LengthAtLevel = 2 + 2 * level
  End Function
  Public Sub SetDatabase(database)
  End Sub
  Public Function MoveTop(grid)
    grid.Row = grid.FixedRows
    MoveTop = True
  End Function
  Public Function MovePrevious(grid)
    If grid.Row > grid.FixedRows Then grid.Row = grid.Row - 1
    MovePrevious = True
  End Function
  Public Function MoveNext(grid)
    If grid.Row < grid.Rows - 1 Then grid.Row = grid.Row + 1
    MoveNext = True
  End Function
  Public Function MoveBottom(grid)
    grid.Row = grid.Rows - 1
    MoveBottom = True
  End Function
  Public Function Find(grid, data)
    Find = False
  End Function
  Public Function FindNext(grid)
    FindNext = False
  End Function
  Public Function Filter(grid, data)
    Filter = False
  End Function
  Public Sub SetRange(maximum, first_row)
  End Sub
  Public Sub Attach(window)
    AttachedTo = window
  End Sub
  Public Sub Detach()
    AttachedTo = 0
  End Sub
End Class

' Yours keeps the values in the file, for each user.
Class SettingsFile
  Public FileName
  Public Function ReadValue(section, key, fallback)
    ReadValue = fallback
  End Function
  Public Sub WriteValue(section, key, value)
  End Sub
End Class

Class Parameters
  Private entries
  Private Sub Class_Initialize()
    Set entries = CreateObject("Scripting.Dictionary")
  End Sub
  Public Sub Add(key, value)
    entries.Add key, value
  End Sub
  Public Function Exists(key)
    Exists = entries.Exists(key)
  End Function
  Public Function Item(key)
    Set Item = EntryOf(entries.Item(key))
  End Function
  Public Sub Clear()
    entries.RemoveAll
  End Sub
End Class

' Yours gives Sql to its database; a real ADO recordset will do as the result.
Class Statement
  Public Sql
  Public Sub Execute()
  End Sub
  Public Function ScalarValue(index)
    ScalarValue = 0
  End Function
  Public Function Recordset(index)
    Dim made
    Set made = New Rows
    made.Open Sql
    Set Recordset = made
  End Function
End Class

' --- five accounts in place of a database

Dim columns, accounts(4), assets, liabilities
columns = "i_id ccode ccode_name chelp bproperty cclass bclose bend cexch_name igrade cbook_type bpr"

' The categories' names are the library's own: what its tabs read.
Sub FillAccounts(tabs)
  assets = tabs.TabCaption(1)
  liabilities = tabs.TabCaption(2)
  accounts(0) = Array(1, "1001", "Cash", "c", 1, assets, 0, 1, "", 1, "", "debit")
  accounts(1) = Array(2, "1002", "Bank", "b", 1, assets, 0, 0, "", 1, "", "debit")
  accounts(2) = Array(3, "100201", "Current account", "", 1, assets, 0, 1, "", 2, "", "debit")
  accounts(3) = Array(4, "100202", "Savings account", "", 1, assets, 0, 1, "", 2, "", "debit")
  accounts(4) = Array(5, "2202", "Payables", "", 0, liabilities, 0, 1, "", 1, "", "credit")
End Sub

Function ColumnOf(name)
  Dim all, i
  all = Split(columns, " ")
  For i = 0 To UBound(all)
    If all(i) = LCase(name) Then ColumnOf = i
  Next
End Function

' What stands in the statement behind "name=", without quotes; empty where that is not asked for.
Function AskedFor(sql, name)
  Dim start, rest
  AskedFor = ""
  start = InStr(LCase(Replace(sql, " ", "")), name & "=")
  If start = 0 Then Exit Function
  rest = Mid(Replace(sql, " ", ""), start + Len(name) + 1)
  If Left(rest, 1) = "'" Then
    AskedFor = Mid(rest, 2, InStr(2, rest, "'") - 2)
  Else
    AskedFor = Digits(rest)
  End If
End Function

Function Digits(text)
  Dim i
  i = 1
  Do While i <= Len(text)
    If InStr("0123456789", Mid(text, i, 1)) = 0 Then Exit Do
    i = i + 1
  Loop
  Digits = Left(text, i - 1)
End Function

Class Rows
  Private found
  Private count
  Private position
  Private selected

  Public Sub Open(sql)
    Dim i, kept
    ReDim kept(4)
    count = 0
    position = 0
    selected = Array()
    If InStr(sql, "select ccode,") = 1 Then
      selected = Array("ccode", "ccode_name", "cexch_name", "", "i_id", "igrade", "cclass")
    ElseIf InStr(sql, "SELECT i_id,") = 1 Then
      selected = Array("i_id", "ccode", "ccode_name", "chelp", "bpr", "cclass", "bclose", "bend")
    End If
    For i = 0 To 4
      If InStr(sql, "gl_code") > 0 And Fits(i, sql) Then
        kept(count) = i
        count = count + 1
      End If
    Next
    found = kept
  End Sub
  Private Function Fits(account, sql)
    Dim name, row, wanted
    row = accounts(account)
    Fits = True
    For Each name In Array("cclass", "ccode", "i_id")
      wanted = AskedFor(sql, name)
      If wanted <> "" And CStr(row(ColumnOf(name))) <> wanted Then Fits = False
    Next
  End Function

  Public Function EOF()
    EOF = position >= count
  End Function
  Public Function BOF()
    BOF = count = 0
  End Function
  Public Function GetRows()
    Dim all, i, j, row
    ReDim all(UBound(selected), count - 1)
    For i = 0 To count - 1
      row = accounts(found(i))
      For j = 0 To UBound(selected)
        If selected(j) <> "" Then all(j, i) = row(ColumnOf(selected(j)))
      Next
    Next
    position = count
    GetRows = all
  End Function
  Public Function Fields(name)
    Dim row
    row = accounts(found(position))
    Set Fields = EntryOf(row(ColumnOf(name)))
  End Function
  Public Sub MoveFirst()
    position = 0
  End Sub
  Public Sub Find(criteria)
    position = count
  End Sub
  Public Sub Close()
  End Sub
End Class

' --- the two controls

Dim system, view, grid, row, picker, wanted, code, name, account
Set system = New Host

Set view = CreateObject("tavrix.Kjkm")
FillAccounts view.Controls.Item("vxVSTab")
On Error Resume Next                        ' script hosts without it hear no events
WScript.ConnectObject view, "view_"         ' view_Message and view_ErrMessage below
On Error GoTo 0
If Not view.Init(system, 0) Then WScript.Quit 1
view.Refresh
Set grid = view.Controls.Item("Vs(0)")      ' the page of all accounts
WScript.Echo "Kjkm: " & (grid.Rows - grid.FixedRows) & " accounts"
For row = grid.FixedRows To grid.Rows - 1
  WScript.Echo grid.TextMatrix(row, 0) & " " & grid.TextMatrix(row, 1)
Next
view.Clear

Set picker = CreateObject("tavrix.selKjkm")
If Not picker.Init(system, 1) Then WScript.Quit 1
Set wanted = New Parameters
wanted.Add "single", 1                      ' one account; other keys: see the reference
Set picker.Parameters = wanted
picker.Refresh
Set grid = picker.Controls.Item("Vs")
WScript.Echo "selKjkm: " & (grid.Rows - grid.FixedRows) & " accounts"

' What a user has typed elsewhere: code and name come back in the last two arguments.
code = ""
name = ""
picker.Validate "", "ccode", "ccode_name", "1002", code, name
WScript.Echo "typed " & code & ": " & name

' What the user's choice and OK do; a form would wait for the event DoSelect.
grid.Row = grid.FixedRows
picker.Controls.Item("Cmd(0)").Click
For Each account In picker.Objects
  WScript.Echo "picked " & account.ccode & ": " & account.ccode_name
Next
picker.Clear

Sub view_Message(text)
End Sub

Sub view_ErrMessage(text, level, title)
  WScript.Echo title & ": " & text & " (" & level & ")"
End Sub

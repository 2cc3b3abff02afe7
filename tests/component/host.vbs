' A host in which everything is a class of this language.
Option Explicit

Class SettingEntry
  Public Value
End Class

Class ErrorEntry
  Public Description
  Public Sub Clear()
    Description = ""
  End Sub
End Class

Class ValueHolder
  Public Value
End Class

Class PropertySet
  Public Function Item(key)
    Dim entry
    Set entry = New ValueHolder
    If key = "driver" Then entry.Value = "jet"
    Set Item = entry
  End Function
End Class

' Holds an array (field, record), or nothing at all. `Names` are those of its fields.
Class Recordset
  Public Names
  Private records
  Private position
  Private last

  Public Sub Load(source, count)
    records = source
    last = count - 1
    position = 0
  End Sub
  Public Property Get EOF()
    EOF = position > last
  End Property
  Public Property Get BOF()
    BOF = last < 0
  End Property
  Public Function GetRows()
    GetRows = records
    position = last + 1
  End Function
  Public Sub Find(criteria)
    position = last + 1
  End Sub
  Public Sub MoveFirst()
    position = 0
  End Sub
  Public Function Fields(name)
    Dim entry
    Set entry = New ValueHolder
    entry.Value = records(ColumnOf(name), position)
    Set Fields = entry
  End Function
  Public Sub Close()
    last = -1
  End Sub

  Private Function ColumnOf(name)
    Dim all, i
    all = Split(Names, ",")
    For i = 0 To UBound(all)
      If LCase(all(i)) = LCase(name) Then
        ColumnOf = i
        Exit Function
      End If
    Next
    ColumnOf = CInt(name)
  End Function
End Class

Class Statement
  Public Owner
  Public Text

  Public Sub Execute()
    Owner.Executed = Text
  End Sub
  Public Function ScalarValue()
    ScalarValue = 0
  End Function
  Public Function Recordset()
    If InStr(Text, Owner.Failing) > 0 Then Err.Raise 1000, "host", "no such table"
    Set Recordset = Owner.RowsFor(Text)
  End Function
End Class

Class Database
  Public Rows
  Public Executed
  Public Failing
  Public Count
  Public Source

  Private Sub Class_Initialize()
    Failing = "?"
    Set Source = Nothing
  End Sub
  Public Sub Fill(source, number)
    Rows = source
    Count = number
  End Sub
  Public Function OpenSql(text, mode)
    Dim made
    Set made = New Statement
    Set made.Owner = Me
    made.Text = text
    Set OpenSql = made
  End Function
  Public Function LastError()
    Dim entry
    Set entry = New ErrorEntry
    entry.Description = ""
    Set LastError = entry
  End Function
  Public Function ConnectionProperties()
    Set ConnectionProperties = New PropertySet
  End Function

  ' What a statement gives: rows of a view of its own, or those of `Source`.
  Public Function RowsFor(text)
    Dim category, start, chosen, found, i, j, answer
    If Not Source Is Nothing Then
      Set RowsFor = Source.RowsFor(text)
      Exit Function
    End If
    category = ""
    start = InStr(text, "cclass='")
    If start > 0 Then category = Mid(text, start + 8, InStr(start + 8, text, "'") - start - 8)
    chosen = Rows
    found = 0
    For i = 0 To Count - 1
      If category = "" Or Rows(6, i) = category Then
        For j = 0 To 6
          chosen(j, found) = Rows(j, i)
        Next
        found = found + 1
      End If
    Next
    If found > 0 Then ReDim Preserve chosen(6, found - 1)
    Set answer = New Recordset
    answer.Names = "ccode,ccode_name,cexch_name,,i_id,igrade,cclass"
    answer.Load chosen, found
    Set RowsFor = answer
  End Function
End Class

Class CodeRule
  Public Function ParentCode(code, rule)
    ParentCode = ""
    If Len(code) > 4 Then ParentCode = Left(code, Len(code) - 2)
  End Function
  Public Function LevelOf(code, rule)
    LevelOf = (Len(code) - 2) / 2
  End Function
  Public Function LengthAtLevel(level, rule)
    LengthAtLevel = 0
    If level > 0 Then LengthAtLevel = 2 + 2 * level
  End Function
End Class

Class DataHelper
  Public Database
  Public Sub SetDatabase(given)
    Set Database = given
  End Sub
End Class

Class LogHelper
End Class

Class GridNavigator
  Public Moves
  Public Function MoveTop(grid)
    grid.Row = grid.FixedRows
    MoveTop = True
  End Function
  Public Function MovePrevious(grid)
    grid.Row = grid.Row - 1
    MovePrevious = True
  End Function
  Public Function MoveNext(grid)
    grid.Row = grid.Row + 1
    MoveNext = True
  End Function
  Public Function MoveBottom(grid)
    grid.Row = grid.Rows - 1
    MoveBottom = True
  End Function
  Public Function Find(grid, data)
    Dim i
    Find = False
    For i = grid.FixedRows To grid.Rows - 1
      If InStr(grid.TextMatrix(i, 1), data) > 0 Then
        grid.Row = i
        Find = True
        Exit Function
      End If
    Next
  End Function
  Public Function FindNext(grid)
    FindNext = False
  End Function
  Public Function Filter(grid, data)
    Dim i
    For i = grid.FixedRows To grid.Rows - 1
      grid.RowHidden(i) = (InStr(grid.TextMatrix(i, 1), data) = 0)
    Next
    Filter = True
  End Function
End Class

' Raises no events.
Class MouseEvent
  Public Maximum
  Public Window
  Public Position
  Public Sub SetRange(highest)
    Maximum = highest
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

' What all settings files hold, in memory.
Class SettingsStore
  Private names
  Private contents
  Public Count
  Private Sub Class_Initialize()
    Dim empty_names(999)
    Dim empty_contents(999)
    names = empty_names
    contents = empty_contents
    Count = 0
  End Sub
  Public Function ReadValue(name, fallback)
    Dim i
    ReadValue = fallback
    For i = 0 To Count - 1
      If names(i) = name Then ReadValue = contents(i)
    Next
  End Function
  Public Sub WriteValue(name, content)
    Dim i
    For i = 0 To Count - 1
      If names(i) = name Then Exit For
    Next
    names(i) = name
    contents(i) = content
    If i = Count Then Count = Count + 1
  End Sub
End Class

Dim kept_settings
Set kept_settings = New SettingsStore

' What a settings file gives instead of texts: "" for nothing of that kind.
Dim settings_fault
settings_fault = ""

Class SettingsFile
  Public FileName
  Public Function ReadValue(section, key, fallback)
    If settings_fault = "Null" Then
      ReadValue = Null
      Exit Function
    ElseIf settings_fault = "Empty" Then
      Exit Function
    ElseIf settings_fault = "Nothing" Then
      Set ReadValue = Nothing
      Exit Function
    ElseIf settings_fault = "raises" Then
      Err.Raise 5
    End If
    ReadValue = kept_settings.ReadValue(FileName & "|" & section & "|" & key, fallback)
  End Function
  Public Sub WriteValue(section, key, value)
    kept_settings.WriteValue FileName & "|" & section & "|" & key, value
  End Sub
End Class

Class RightsEntry
  Public CanAdd
  Public CanEdit
End Class

Class Folders
  Public Property Get UserFolder()
    UserFolder = "C:\users"
  End Property
End Class

Class HostSystem
  Public Database
  Public Wheel
  Public Navigator
  Public Rate
  Public MayEdit

  Private Sub Class_Initialize()
    Rate = "2"
    MayEdit = True
    Set Database = New Database
    Set Wheel = New MouseEvent
    Set Navigator = New GridNavigator
  End Sub
  Public Function GetDatabase()
    Set GetDatabase = Database
  End Function
  Public Function GetSetting(key, section)
    Dim entry
    Set entry = New SettingEntry
    entry.Value = ""
    If section = "system" And key = "kmbm" Then entry.Value = "4222"
    If section = "system" And key = "mouseeventscrollrate" Then entry.Value = Rate
    Set GetSetting = entry
  End Function
  Public Function NewIdentifier(table, column, failure)
    failure = ""
    NewIdentifier = 100
  End Function
  Public Function Rights(program)
    Dim entry
    Set entry = New RightsEntry
    entry.CanAdd = False
    entry.CanEdit = MayEdit And program = 201
    Set Rights = entry
  End Function
  Public Function Folders()
    Set Folders = New Folders
  End Function
  Public Function CreateHelper(name)
    Select Case name
      Case "CodeRule": Set CreateHelper = New CodeRule
      Case "LogHelper": Set CreateHelper = New LogHelper
      Case "GridNavigator": Set CreateHelper = Navigator
      Case "DataHelper": Set CreateHelper = New DataHelper
      Case "MouseEvent": Set CreateHelper = Wheel
      Case "SettingsFile": Set CreateHelper = New SettingsFile
      Case "Parameters": Set CreateHelper = New HostParameters
      Case Else: Err.Raise 1001, "host", "no helper " & name
    End Select
  End Function
End Class

' A few entries.
Class HostParameters
  Private entries
  Private Sub Class_Initialize()
    Set entries = New SettingsStore
  End Sub
  Public Sub Add(key, value)
    entries.WriteValue key, value
  End Sub
  Public Function Exists(key)
    Exists = Not IsNull(entries.ReadValue(key, Null))
  End Function
  Public Function Item(key)
    Dim entry
    Set entry = New ValueHolder
    entry.Value = entries.ReadValue(key, Null)
    Set Item = entry
  End Function
  Public Sub Clear()
    entries.Count = 0
  End Sub
End Class

Sub PutRow(rows, at, code, name, currency, id, level, category)
  rows(0, at) = code
  rows(1, at) = name
  rows(2, at) = currency
  rows(3, at) = ""
  rows(4, at) = id
  rows(5, at) = level
  rows(6, at) = category
End Sub

' Five accounts, in another order than that of their codes.
Function NewHost()
  Dim made, rows
  ReDim rows(6, 4)
  PutRow rows, 0, "1002", "银行存款", Null, 2, 1, "资产"
  PutRow rows, 1, "100202", "建行", "美元", 4, 2, "资产"
  PutRow rows, 2, "1001", "库存现金", Empty, 1, 1, "资产"
  PutRow rows, 3, "100201", "工行", Null, 3, 2, "资产"
  PutRow rows, 4, "2202", "应付账款", Null, 5, 1, "负债"
  Set made = New HostSystem
  made.Database.Fill rows, 5
  Set NewHost = made
End Function

' Hears a view's events and remembers them.
Class EventHearer
  Public Messages
  Public Errors
  Private Sub Class_Initialize()
    Messages = ""
    Errors = ""
  End Sub
  Public Sub Message(text)
    Messages = Messages & "[" & text & "]"
  End Sub
  Public Sub ErrMessage(text, level, title)
    Errors = Errors & "[" & text & "|" & level & "|" & title & "]"
  End Sub
End Class

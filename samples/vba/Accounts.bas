Attribute VB_Name = "Accounts"
' Both controls without a form. On a form, place the control "Tavrix: chart of accounts" from the
' list of components and use its `object` in place of CreateObject.
Option Explicit

Private system As Host
Private given As Object                     ' system again: Init takes an Object by reference

Public Sub ShowAccounts()
  Dim view As Object, form As IFormUI, grid As IFlexGrid, row As Long
  Set system = New Host
  Set system.Connection = CreateObject("ADODB.Connection")
  system.Connection.Open InputBox("Connection string")
  Set given = system

  Set view = CreateObject("tavrix.Kjkm")
  Set form = view                           ' asks the control for qnFormUI's interface
  If Not form.Init(given, 0) Then Exit Sub
  form.Refresh
  Set grid = view.Controls.Item("Vs(0)")
  For row = grid.FixedRows To grid.Rows - 1
    Debug.Print grid.TextMatrix(row, 0); " "; grid.TextMatrix(row, 1)
  Next
  form.FileNew                              ' opens the dialog for a new account
  form.Clear
End Sub

Public Sub ResolveAccount(ByVal typed As String)
  Dim picker As Object, wanted As New Parameters, code As String, name As String
  Set picker = CreateObject("tavrix.selKjkm")
  If Not picker.Init(system, 1) Then Exit Sub
  wanted.Add "ismx", 1                      ' leaf accounts only
  Set picker.Parameters = wanted
  picker.Refresh
  picker.Validate "", "ccode", "ccode_name", typed, code, name
  Debug.Print code; " "; name
  picker.Clear
End Sub

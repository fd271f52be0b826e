' The up-down box from Wine's script host: CreateObject without a site, so the box is never
' shown and its parts live in the runtime's holder; every member that does not draw still
' works. Prints "fails=0" when all is well.
Option Explicit
Dim u, fails
fails = 0

Sub Check(ok, what)
    If ok Then
        WScript.Echo "ok   " & what
    Else
        WScript.Echo "FAIL " & what
        fails = fails + 1
    End If
End Sub

Set u = CreateObject("TarnControls.updown")
Check TypeName(u) <> "", "CreateObject(""TarnControls.updown"")"
Check u.Text = "1", "the text starts as 1"
Check u.Max = 10 And u.Min = 0, "the range starts as 0 to 10"
u.Text = "42"
Check u.Text = "42", "Text written and read from the hidden text box"
u.Max = 100000
u.Min = -5
Check u.Max = 100000 And u.Min = -5, "Min and Max kept in the hidden arrows"
u.Interval = 0.25
Check u.Interval = 0.25, "Interval written and read"
u.AllowDecPoint = True
Check u.AllowDecPoint, "AllowDecPoint written and read"
u.Font.Size = 14
Check Abs(u.Font.Size - 14) < 0.5, "the text box's own font object takes a new size"
u.Enabled = False
Check Not u.Enabled, "Enabled written and read"
Check Hex(u.BACKCOLOR) = "8000000F", "disabling sets the back colour to button face"
Check u.KeyLock(46, True, "1.5") = 0, "KeyLock swallows a second point"
Check u.KeyLock(56, False, "") = 56, "KeyLock lets a digit through"
Check u.DecimalPointCheck("3.14") = 1, "DecimalPointCheck finds the point"
Check u.ShiftColor(0, 10, True) = 0, "ShiftColor of 0 is 0"
Check u.ShiftColor(&HFFFFFF, 0, False) = RGB(251, 251, 255), "ShiftColor of white with 0"
u.Refresh
u.RefreshFont

' Values the properties cannot take are skipped: no error reaches the script.
On Error Resume Next
u.Max = "lots"
Check Err.Number = 0, "a wrong value raises no error"
Err.Clear
u.MaxLength = -1
Check Err.Number = 0, "a refused value raises no error"
Err.Clear
Check u.ShiftColor(&HFFFFFF, 2147483647, True) = 0, "an overflow inside ShiftColor stays inside"
Check Err.Number = 0, "and raises no error"
On Error GoTo 0
Check u.Max = 100000, "and changes nothing"

Set u = CreateObject("TarnControls.lnev")
u.BACKCOLOR = &HFF
Check u.BACKCOLOR = 255, "the divider's BACKCOLOR written and read"
u.ColBACK &HFF00&
Set u = CreateObject("TarnControls.grdchk")
u.Value = 1
Check u.Value = 1, "the grid check box's Value written and read"

Set u = Nothing
WScript.Echo "fails=" & fails

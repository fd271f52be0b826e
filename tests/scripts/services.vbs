' The window services from Wine's script host: CreateObject without a site (run mode with no
' form to hook), properties by name, a by-reference write, resume-next behaviour on bad values.
' Prints "fails=0" when all is well.
Option Explicit
Dim l, m, s, x, fails
fails = 0

Sub Check(ok, what)
    If ok Then
        WScript.Echo "ok   " & what
    Else
        WScript.Echo "FAIL " & what
        fails = fails + 1
    End If
End Sub

Set l = CreateObject("TarnControls.resizelck")
Check TypeName(l) <> "", "CreateObject(""TarnControls.resizelck"")"
Check l.MinWidth = 200 And l.MinHeight = 200, "the minima default to 200 x 200"
Check l.HasMaxSize = False, "HasMaxSize defaults to False"
Check l.MaxWidth > 2000, "without HasMaxSize MaxWidth is the screen's width in twips"
l.MaxHeight = 300
Check l.MaxHeight > 2000, "without HasMaxSize a MaxHeight of 300 is ignored"
l.HasMaxSize = True
l.MinWidth = 400
x = 300
l.MaxWidth = x
Check l.MaxWidth = 400, "with HasMaxSize a MaxWidth below MinWidth is raised to it"
Check x = 400, "and the variable given receives the raised value"
l.MaxHeight = 700
Check l.MaxHeight = 700, "with HasMaxSize MaxHeight is stored"

Set s = CreateObject("TarnControls.Subclass")
s.Messages(36) = True
Check s.Messages(36) And Not s.Messages(37), "Subclass.Messages keeps the watched numbers"
Check s.hwnd = 0 And s.CallWndProc(36, 0, 0) = 0, "nothing hooked: CallWndProc answers 0"

Set m = CreateObject("TarnControls.mnutxt")
m.hwnd = 12345
Check m.hwnd = 12345, "mnutxt.hwnd written and read"
Check TypeName(m.hwnd) = "Long", "a handle reaches a script as a Long, in 64-bit hosts too"
m.hwnd = 0
m.Subclass
m.UnSubClass
Check True, "Subclass and UnSubClass without a window raise no error"

' Values the properties cannot take are skipped: no error reaches the script.
On Error Resume Next
l.MinWidth = "wide"
Check Err.Number = 0, "a wrong value raises no error"
Err.Clear
On Error GoTo 0
Check l.MinWidth = 400, "and changes nothing"

Set l = Nothing
Set s = Nothing
Set m = Nothing
WScript.Echo "fails=" & fails

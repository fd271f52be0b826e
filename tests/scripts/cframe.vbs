' The frame from Wine's script host, as a script client uses it: CreateObject without a site,
' properties by name, resume-next behaviour on bad values. Prints "fails=0" when all is well.
Option Explicit
Dim f, fails
fails = 0

Sub Check(ok, what)
    If ok Then
        WScript.Echo "ok   " & what
    Else
        WScript.Echo "FAIL " & what
        fails = fails + 1
    End If
End Sub

Set f = CreateObject("TarnControls.cframe")
Check TypeName(f) <> "", "CreateObject(""TarnControls.cframe"")"
Check f.CAPTION = "VBAR", "the default caption is VBAR"
f.CAPTION = "From VBScript"
Check f.CAPTION = "From VBScript", "CAPTION written and read"
Check Hex(f.BACKCOLOR) = "8000000F", "BACKCOLOR defaults to button face"
f.BACKCOLOR = &HFF
Check f.BACKCOLOR = 255, "BACKCOLOR written and read"
Check Hex(f.ForeColor) = "80000008", "ForeColor defaults to window text"
f.ForeColor = RGB(1, 2, 3)
Check f.ForeColor = RGB(1, 2, 3), "ForeColor written and read"
f.LeftHighlightColor = &HC0C0C0
Check f.LeftHighlightColor = &HC0C0C0, "LeftHighlightColor written and read"
Check Hex(f.BottomDarkShadowColor) = "80000015", "BottomDarkShadowColor defaults to 3-D dark shadow"
f.TopLightShadowColor = &H8000000F
Check Hex(f.TopLightShadowColor) = "8000000F", "a system colour is kept as it was given"
f.Alignment = 2
Check f.Alignment = 2, "Alignment written and read"
f.Alignment = 70000
Check f.Alignment = 2, "an enumeration does not widen what Alignment takes: past 16 bits is skipped"
f.Alignment = 7
Check f.Alignment = 7, "a value outside the enumeration is taken as before"
f.Alignment = -3
Check f.Alignment = -3, "negative ones too"
f.Alignment = 2
Check f = "From VBScript", "the caption is the default member"
Check f.Font.Name <> "", "the caption's font is a font object"

' Values the properties cannot take are skipped: no error reaches the script.
On Error Resume Next
f.BACKCOLOR = "not a colour"
Check Err.Number = 0, "a wrong value raises no error"
Err.Clear
On Error GoTo 0
Check f.BACKCOLOR = 255, "and changes nothing"

Set f = Nothing
WScript.Echo "fails=" & fails

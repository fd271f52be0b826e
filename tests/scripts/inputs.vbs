' The directory tree, the tab strip and the picker from Wine's script host: CreateObject without
' a site, members called by name, a folder tree made with the script's own FileSystemObject, and
' ExpandPath's path passed by reference as scripts pass variables. Prints "fails=0" when all is well.
Option Explicit
Dim fso, root, d, t, f, p, fails
fails = 0

Sub Check(ok, what)
    If ok Then
        WScript.Echo "ok   " & what
    Else
        WScript.Echo "FAIL " & what
        fails = fails + 1
    End If
End Sub

Set fso = CreateObject("Scripting.FileSystemObject")
root = fso.GetSpecialFolder(2) & "\tarn script tree"
If fso.FolderExists(root) Then fso.DeleteFolder root, True
fso.CreateFolder root
fso.CreateFolder root & "\Reports"
fso.CreateFolder root & "\Reports\2024"

Set d = CreateObject("TarnControls.dlst")
d.BuildDriveList root, "My data"
Check d.FullPath = root And d.strROOTTEMP = "My data", "BuildDriveList keeps the root and its text"
p = root & "\Reports\2024"
d.ExpandPath p
Check p = root & "\Reports\2024\", "ExpandPath gives the caller's variable its closing backslash"
Check d.FullPath = root & "\Reports", "FullPath reports the real path of the last folder opened"
d.NodeContract 1
d.NodeExpand 99
d.ExpandPath ""
Check True, "NodeContract, a missing index and a blank path pass quietly"
Set d = Nothing
fso.DeleteFolder root, True

Set t = CreateObject("TarnControls.tbf")
Check t.Tabs = 3 And t.TabCaption(2) = "Tab 2", "a new strip has three tabs"
t.Tabs = 5
t.TabCaption(4) = "&Last"
t.SelectedTab = 4
t.Style = 2
Check t.SelectedTab = 4 And t.TabCaption(4) = "&Last" And t.Style = 2, "tabs, captions, selection and look written and read"
t.SelectedTab = 9
Check t.SelectedTab = 4, "a tab that is not there is not selected"

Set f = CreateObject("TarnControls.fontchars")
f.Character = "Z"
Check f.CharCode = 90, "Character and CharCode are one"
f.CharCode = &H20AC
Check Len(f.Character) = 1 And f.CharCode = 8364, "CharCode read back as text of one character"
f.FontSize = 18
Check f.FontSize = 18, "FontSize written and read"
Check Len(f.FontName) > 0, "a font is shown from the start"
f.RefreshFonts

WScript.Echo "fails=" & fails

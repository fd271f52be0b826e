' The data grid from Wine's script host, without any window: fill, total, sort, save, load.
' Prints "fails=0" when all is well.
Option Explicit
Dim g, fails, path, header, fso
fails = 0

Sub Check(ok, what)
    If ok Then
        WScript.Echo "ok   " & what
    Else
        WScript.Echo "FAIL " & what
        fails = fails + 1
    End If
End Sub

Set g = CreateObject("TarnControls.grid")
g.ColsSet 3
g.RowsSet 0
g.RowAdd "pears" & vbTab & "3.5" & vbTab & "x", 0
g.RowAdd "apples" & vbTab & "12" & vbTab & "y", 1
g.RowAdd "figs" & vbTab & "abc" & vbTab & "z", 2
Check g.RowsCurrent() = 3, "three rows added"
Check g.CellTextRead(1, 0) = "apples", "a cell reads back"
g.BarSummaryColCalc 1
Check g.BarSummaryColRead(1) = "15.50", "the summary totals the leading numbers"
g.ColSetFocus 0
g.SortFlex 0
Check g.CellTextRead(0, 0) = "pears", "the first sort of column 0 is descending"
g.SortFlex 0
Check g.CellTextRead(0, 0) = "apples", "the second is ascending"
g.CellChkSet 0, 2, "TRUE"
Check g.CellTextRead(0, 2) = " a", "a check cell holds a tick"
g.ColTypeSet 10001, 3
Check g.ColTypeRead(10001) = "", "a type index above 10000 is ignored"
g.BarHeaderCaptionSet 0, "Fruit"
Check g.BarHeaderCaptionRead(0) = "Fruit", "header captions are kept"

Set fso = CreateObject("Scripting.FileSystemObject")
path = fso.GetSpecialFolder(2) & "\tarn-grid-script.txt"
g.GridSave path, "Fruit list"
Set g = CreateObject("TarnControls.grid")
header = g.GridLoad(path)
Check header = "ruit list", "three columns: the loaded header loses its first character"
Check g.RowsCurrent() = 3 And g.ColsCurrent() = 3, "the loaded grid has the saved shape"
Check g.CellTextRead(0, 0) = "apples", "and the saved texts"
fso.DeleteFile path

' Nothing a script passes makes the grid fail.
On Error Resume Next
g.CellTextSet -5, 99, "nope"
g.RowDel 1000000
g.GridLoad "Z:\no\such\file.txt"
g.CellFontSet 0, 0
Check Err.Number = 0, "bad addresses and missing files raise no error"
On Error GoTo 0

WScript.Echo "fails=" & fails

' Tarn Controls from VBScript: create controls by ProgID, set and read their properties, call
' their methods and handle their events. Register the library first (regsvr32 tarnctls.dll),
' then run:  cscript //nologo hello.vbs
' Scripts see no enumeration names: use the numbers the reference gives (docs/enumerations.md).
' The last line says "fails=0" when every step did what its comment says.
Option Explicit
Dim fails, frame, box, table, changes, connected
fails = 0
changes = 0

Sub Check(ok, what)
    If ok Then
        WScript.Echo "ok   " & what
    Else
        WScript.Echo "FAIL " & what
        fails = fails + 1
    End If
End Sub

' A frame with a caption. The caption is the frame's default member.
Set frame = CreateObject("TarnControls.cframe")
frame.CAPTION = "Totals"
frame.Alignment = 2                          ' Centre
frame.BACKCOLOR = RGB(240, 240, 240)         ' colours are OLE_COLORs: RGB values...
frame.ForeColor = &H80000012                 ' ...or system colours (here the button text)
Check frame = "Totals", "the frame's caption"
Check Hex(frame.ForeColor) = "80000012", "a system colour is kept as given"

' A numeric up-down box: its text is its default member.
Set box = CreateObject("TarnControls.updown")
box.Min = 0
box.Max = 10
box.Text = "5"
Check box = "5", "the up-down box's text"

' A data grid, with its Change event handled by the grid_Change routine below. (A script host
' that cannot connect events, as Wine's, answers error 445: the grid then runs unheard.)
On Error Resume Next
Set table = WScript.CreateObject("TarnControls.grid", "grid_")
connected = (Err.Number = 0)
On Error GoTo 0
If Not connected Then Set table = CreateObject("TarnControls.grid")
table.ColsSet 2
table.RowsSet 0
table.RowAdd "apples" & vbTab & "12", 0
table.RowAdd "pears" & vbTab & "3.5", 1
table.BarSummaryColCalc 1
Check table.CellTextRead(1, 0) = "pears", "a cell of the grid"
Check table.BarSummaryColRead(1) = "15.50", "the column's total"
If connected Then Check changes = 3, "three Change events (one for RowsSet, one per RowAdd)"

Sub grid_Change()
    changes = changes + 1
End Sub

WScript.Echo "fails=" & fails

Attribute VB_Name = "TarnDemo"
' Tarn Controls from VBA (Excel, Word, Access) or VB6, bound early.
'   1. Register the library (regsvr32 tarnctls.dll, or regsvr32 /n /i:user tarnctls.dll).
'   2. Tools > References: tick "Tarn Controls".
'   3. On a UserForm: Tools > Additional Controls, tick the controls; they join the toolbox.
'      Their property sheet shows the enumerations by name ("2 - Centre") and a colour picker
'      for every colour (OLE_COLOR).
' Import this module (File > Import File) and run ShowControls from the Immediate window.
Option Explicit

Public Sub ShowControls()
    Dim frame As TarnControls.cframe
    Set frame = New TarnControls.cframe
    frame.CAPTION = "Totals"
    frame.Alignment = Centre                ' an enumeration: Alignments
    frame.BACKCOLOR = vbButtonFace          ' a system colour
    frame.ForeColor = RGB(0, 0, 128)
    Debug.Print frame                       ' the default member: "Totals"

    Dim box As TarnControls.updown
    Set box = New TarnControls.updown
    box.Min = 0
    box.Max = 10
    box.Text = "5"
    box.BorderStyle = Fixed_Single
    Debug.Print box.Text, box.BorderStyle   ' 5  1
End Sub

' On a UserForm with a Tarn Controls button named SaveButton (its CAPTION "&Save": Alt+S
' clicks it), its events are handled as any control's:
'
'   Private Sub SaveButton_Click()
'       ThisWorkbook.Save
'   End Sub

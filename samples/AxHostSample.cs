// Tarn Controls on a .NET WinForms form through AxHost.
//   1. Register the library: regsvr32 tarnctls.dll (the 64-bit DLL for a 64-bit process).
//   2. Make the wrappers: aximp tarnctls.dll  ->  TarnControls.dll and AxTarnControls.dll;
//      reference both (or add the controls to Visual Studio's toolbox, which does the same).
//   3. Build: csc /target:winexe /r:TarnControls.dll /r:AxTarnControls.dll AxHostSample.cs
// Colours (OLE_COLOR) arrive as System.Drawing.Color; events whose names a WinForms control
// already has get "Event" appended (ClickEvent). Enumeration members whose names hold spaces
// ("Windows XP") are used by value.
using System;
using System.ComponentModel;
using System.Drawing;
using System.Windows.Forms;

class MainForm : Form
{
    readonly AxTarnControls.Axcbtn save = new AxTarnControls.Axcbtn();
    readonly AxTarnControls.Axcframe frame = new AxTarnControls.Axcframe();

    MainForm()
    {
        Text = "Tarn Controls";
        ClientSize = new Size(320, 160);
        ((ISupportInitialize)frame).BeginInit();
        ((ISupportInitialize)save).BeginInit();
        frame.SetBounds(8, 8, 304, 100);
        save.SetBounds(222, 120, 90, 28);
        Controls.Add(frame);
        Controls.Add(save);
        ((ISupportInitialize)save).EndInit();
        ((ISupportInitialize)frame).EndInit();

        frame.CAPTION = "Totals";
        frame.Alignment = TarnControls.Alignments.Centre;
        frame.BACKCOLOR = SystemColors.Control;
        save.CAPTION = "&Save";
        save.ButtonType = (TarnControls.ButtonTypes)11; // Windows XP
        save.ClickEvent += (sender, e) => MessageBox.Show(this, "Saved");
    }

    [STAThread]
    static void Main()
    {
        Application.EnableVisualStyles();
        Application.Run(new MainForm());
    }
}

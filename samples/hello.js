// Tarn Controls from JScript: create controls by ProgID, set and read their properties and
// call their methods. Register the library first (regsvr32 tarnctls.dll), then run:
//     cscript //nologo hello.js
// Scripts see no enumeration names: use the numbers the reference gives (docs/enumerations.md).
// The last line says "fails=0" when every step did what its comment says.
var fails = 0;
function check(ok, what) {
    WScript.Echo((ok ? "ok   " : "FAIL ") + what);
    if (!ok) fails++;
}

// A button. Properties keep the library's own case: CAPTION, ButtonType, ToolTip.
var button = new ActiveXObject("TarnControls.cbtn");
button.CAPTION = "&Save";
button.ButtonType = 11;                 // Windows XP
button.ToolTip = "Saves the document";
check(button.CAPTION === "&Save", "the button's caption");
check(button.ButtonType === 11, "the button's look");

// A frame; colours are OLE_COLORs, numbers in BGR order (0x0000FF is red).
var frame = new ActiveXObject("TarnControls.cframe");
frame.CAPTION = "Totals";
frame.BACKCOLOR = 0xF0F0F0;
check(frame.BACKCOLOR === 0xF0F0F0, "the frame's colour");

// A data grid filled through its cell methods.
var table = new ActiveXObject("TarnControls.grid");
table.ColsSet(2);
table.RowsSet(0);
table.RowAdd("apples\t12", 0);
table.RowAdd("pears\t3.5", 1);
table.BarSummaryColCalc(1);
check(table.RowsCurrent() === 2, "two rows");
check(table.BarSummaryColRead(1) === "15.50", "the column's total");

WScript.Echo("fails=" + fails);

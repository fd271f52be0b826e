// Resource ids of tarnctls.dll.
#pragma once

#define IDB_TOOLBOX_CFRAME 101
#define IDB_TOOLBOX_GRID 102
#define IDB_TOOLBOX_LNEV 103
#define IDB_TOOLBOX_SEPBAR 104
#define IDB_TOOLBOX_SEPVBAR 105
#define IDB_TOOLBOX_DOWNARROW 106
#define IDB_TOOLBOX_LNEH 107
#define IDB_TOOLBOX_RSZ 108
#define IDB_TOOLBOX_RSZXP 109
#define IDB_TOOLBOX_PNL 130 // after the buttons' range
#define IDB_TOOLBOX_CBTN 110 // 110-119: the buttons
// Input controls (500s).
#define IDB_TOOLBOX_UPDOWN 501
#define IDB_TOOLBOX_DLST 502
#define IDB_TOOLBOX_TBF 503
#define IDB_TOOLBOX_FONTCHARS 504
// Window services (600s).
#define IDB_TOOLBOX_RESIZELCK 601
#define IDB_TOOLBOX_MNUTXT 602

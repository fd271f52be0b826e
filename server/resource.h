// Resource ids of tarnctls.dll.
#pragma once

#define IDB_TOOLBOX_CFRAME 101
// Window services (600s).
#define IDB_TOOLBOX_RESIZELCK 601
#define IDB_TOOLBOX_MNUTXT 602

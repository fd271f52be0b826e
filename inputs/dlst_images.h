// The directory tree's pictures, drawn at the screen's resolution: the drive kinds and the
// folder, closed and open, numbered from 1 as the tree's images are.
#pragma once
#include <windows.h>
#include <commctrl.h>

namespace tarn {

constexpr int kImageDiskette = 1, kImageDisk = 2, kImageOptical = 3, kImageFolder = 4, kImageOpenFolder = 5;

// A new image list of the five pictures, 16 pixels square at 96 DPI and in proportion at
// other resolutions; the caller owns it.
HIMAGELIST MakeDirectoryImages();

} // namespace tarn

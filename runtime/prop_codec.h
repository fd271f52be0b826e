// Turns an in-memory property bag into the binary stream form and back, and reads and writes
// that form on an IStream.
#pragma once
#include <objidl.h>

#include "runtime/prop_stream.h"
#include "runtime/property_bag.h"

namespace tarn {

PropImage ImageOfBag(const MemoryPropertyBag &bag);
// Entries whose value cannot be rebuilt (an object of a class other than the standard font
// and picture, or whose bytes do not load) are left out.
void BagOfImage(const PropImage &image, MemoryPropertyBag &bag);

HRESULT WritePropImage(IStream *stream, const PropImage &image);
// Reads one image; leaves the stream after the image's data even when part of it could not be
// understood. False when the stream holds no image this build can read.
bool ReadPropImage(IStream *stream, PropImage &image);

} // namespace tarn

// Pictures made small enough for the telephone's screen.

#pragma once

#include <string>
#include <string_view>

#include "app/Result.h"

// Neither side of a thumbnail is longer; a smaller picture keeps its size.
constexpr unsigned nTHUMBNAIL_SIDE = 160; // pixels

// The picture upright, as a PNG. Errors are those of PictureFile.h; nothing is allocated before the
// limits were found kept. A picture of the greatest size takes up to 160 MB while it is decoded, and
// a second or two: never call it where a user waits.
// [any-thread]
Result<std::string> thumbnailOf(std::string_view content);

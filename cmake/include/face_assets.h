#pragma once

#include <span>
#include <string_view>

// One file of the page, kept inside the program.
struct FaceAsset {
    std::string_view path; // below face/, as in "index.html" or "keys/multitap.js"
    std::string_view mime; // as an HTTP Content-Type names it
    std::string_view body; // the file's bytes
};

// Every file of the page, sorted by path. Valid for ever.
std::span<const FaceAsset> faceAssets();

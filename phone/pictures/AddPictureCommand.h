// `deskphone add-picture`: files into the clips of a profile.

#pragma once

#include <filesystem>
#include <iosfwd>
#include <vector>

// Every file is looked at whole, and copied as it is. A file that is no picture, is too large or cannot
// be read is told of and left out. Gives the program's exit code: 0 done, 1 when one was left out.
int addPictures(const std::vector<std::filesystem::path>& files, const std::filesystem::path& clips,
                std::ostream& out, std::ostream& errors);

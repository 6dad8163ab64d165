// The folder of the pictures that contacts may have: its clips.
//
// A clip is a file of this very folder whose name a contact can have, with an ending of PNG or JPEG,
// and whose first bytes say that it is such a picture within the limits. A name is never a path.
// Nobody deletes clips, not even those that no contact has any more: they may be somebody's only copy.

#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "app/Result.h"
#include "pictures/PictureFile.h"

class ClipFolder {
public:
    explicit ClipFolder(std::filesystem::path folder);

    // Whether a contact can have a clip of this name: clean text (see cleanText()) of at most 91
    // bytes, not hidden, with a picture's ending.
    static bool isClipName(std::string_view name);

    // The names of all clips, in no order; none when the folder cannot be read. What was found out is
    // remembered as long as the file stays the same.
    std::vector<std::string> clips();

    // Where the clip of this name lies, or would: of a name that is a path its last part only. "" for "".
    std::string pathFromName(const std::string& name) const;
    // The other way; "" for what does not lie in this folder.
    std::string nameFromPath(const std::filesystem::path& path) const;

    // Whether nothing has this name, or this very picture has it already.
    bool isFree(const std::string& name, std::string_view content) const;

    struct Added {
        std::string name;
        bool isNew = false; // the folder did not have it yet
    };
    // Puts a picture into the folder, on the disk, under `name` or, when another picture has that,
    // under one like it.
    Result<Added> add(const std::string& name, std::string_view content) const;

private:
    struct Known {
        PictureStamp stamp;
        bool isPicture = false;
    };
    Known lookAt(const std::string& name, const PictureStamp& stamp) const;

    const std::filesystem::path m_folder;
    std::map<std::string, Known> m_known;
};

// A name for a clip, made of a file's: without what a clip's name must not have, with the ending of
// its kind.
std::string clipNameFor(const std::filesystem::path& file, PictureKind kind);

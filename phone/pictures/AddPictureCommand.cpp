#include "pictures/AddPictureCommand.h"

#include <ostream>

#include "pictures/ClipFolder.h"
#include "pictures/PictureFile.h"
#include "pictures/Thumbnail.h"

namespace {

Result<ClipFolder::Added> addPicture(const std::filesystem::path& file, const ClipFolder& clips)
{
    const auto opened = PictureFile::open(file);
    if (!opened)
        return opened.error();
    const auto content = opened.value().content();
    if (!content)
        return content.error();
    if (const auto seen = thumbnailOf(content.value()); !seen)
        return seen.error();
    return clips.add(clipNameFor(file, pictureHeader(content.value()).value().kind), content.value());
}

} // namespace

int addPictures(const std::vector<std::filesystem::path>& files, const std::filesystem::path& clips,
                std::ostream& out, std::ostream& errors)
{
    const ClipFolder folder(clips);
    bool all = true;
    for (const auto& file : files) {
        const auto added = addPicture(file, folder);
        all = all && added;
        if (!added)
            errors << file.string() << ": no picture was added. " << added.error().sentence << '\n';
        else if (added.value().isNew)
            out << file.string() << ": added as \"" << added.value().name << "\".\n";
        else
            out << file.string() << ": is there already, as \"" << added.value().name << "\".\n";
    }
    return all ? 0 : 1;
}

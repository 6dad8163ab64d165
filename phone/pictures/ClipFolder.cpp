#include "pictures/ClipFolder.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cerrno>
#include <fstream>
#include <iterator>
#include <utility>

#include "directory/ContactText.h"
#include "directory/NewFile.h"

namespace fs = std::filesystem;

namespace {

constexpr std::array<std::string_view, 3> nENDINGS{".png", ".jpg", ".jpeg"};

bool isEnding(std::string_view text)
{
    std::string ending(text);
    std::transform(ending.begin(), ending.end(), ending.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return std::find(nENDINGS.begin(), nENDINGS.end(), ending) != nENDINGS.end();
}

// As much of `stem` as there is room for with `tail`, whole characters.
std::string shortened(std::string_view stem, const std::string& tail)
{
    for (auto characters = stem.size(); stem.size() + tail.size() > contact_limits::nPICTURE;)
        stem = cutText(stem, --characters);
    return std::string(stem) + tail;
}

// "anna.png" as "anna-2.png"
std::string numbered(const std::string& name, int number)
{
    const auto ending = fs::path(name).extension().string();
    return shortened(std::string_view(name).substr(0, name.size() - ending.size()),
                     "-" + std::to_string(number) + ending);
}

bool holds(const fs::path& file, std::string_view content)
{
    std::error_code failed;
    if (!fs::is_regular_file(file, failed) || fs::file_size(file, failed) != content.size())
        return false;
    std::ifstream stream(file, std::ios::binary);
    return std::equal(content.begin(), content.end(), std::istreambuf_iterator<char>(stream), {});
}

Result<void> write(const fs::path& file, std::string_view content)
{
    std::error_code failed;
    if (fs::create_directories(file.parent_path(), failed))
        fs::permissions(file.parent_path(), fs::perms::owner_all, failed);
    auto part = NewFile::beside(file);
    if (!part)
        return part.error();
    std::ofstream stream(part.value().part(), std::ios::binary);
    stream.write(content.data(), static_cast<std::streamsize>(content.size()));
    stream.close();
    if (!stream)
        return cannotBeWritten(file, {errno, std::generic_category()});
    return part.value().putInPlace();
}

} // namespace

ClipFolder::ClipFolder(fs::path folder)
    : m_folder(std::move(folder))
{
}

bool ClipFolder::isClipName(std::string_view name)
{
    return name.size() <= contact_limits::nPICTURE && !name.empty() && name.front() != '.' &&
           name.find('/') == std::string_view::npos && isEnding(fs::path(name).extension().string()) &&
           trimmedText(name) == name && cleanText(name) == name;
}

std::vector<std::string> ClipFolder::clips()
{
    std::map<std::string, Known> known;
    std::vector<std::string> names;
    std::error_code failed;
    fs::directory_iterator entry(m_folder, failed);
    for (; !failed && entry != fs::directory_iterator(); entry.increment(failed)) {
        const auto name = entry->path().filename().string();
        const auto stamp = isClipName(name) ? PictureFile::stampOf(entry->path()) : std::nullopt;
        if (!stamp)
            continue;
        const auto& clip = known.emplace(name, lookAt(name, *stamp)).first->second;
        if (clip.isPicture)
            names.push_back(name);
    }
    m_known = std::move(known);
    return names;
}

ClipFolder::Known ClipFolder::lookAt(const std::string& name, const PictureStamp& stamp) const
{
    if (const auto before = m_known.find(name); before != m_known.end() && before->second.stamp == stamp)
        return before->second;
    const auto file = PictureFile::open(m_folder / name);
    return {stamp, file && file.value().header()};
}

std::string ClipFolder::nameFromPath(const fs::path& path) const
{
    return path.parent_path() == m_folder ? path.filename().string() : "";
}

std::string ClipFolder::pathFromName(const std::string& name) const
{
    const auto file = fs::path(name).filename();
    return file.empty() ? "" : (m_folder / file).string();
}

bool ClipFolder::isFree(const std::string& name, std::string_view content) const
{
    const auto file = m_folder / name;
    return !fs::exists(fs::symlink_status(file)) || holds(file, content);
}

Result<ClipFolder::Added> ClipFolder::add(const std::string& name, std::string_view content) const
{
    for (int number = 1;; ++number) {
        const auto free = number == 1 ? name : numbered(name, number);
        if (!isFree(free, content))
            continue;
        const auto file = m_folder / free;
        const bool isNew = !fs::exists(file);
        if (isNew) {
            if (const auto written = write(file, content); !written)
                return written.error();
        }
        return Added{free, isNew};
    }
}

std::string clipNameFor(const fs::path& file, PictureKind kind)
{
    const auto ending = file.extension().string();
    const std::string tail = isEnding(ending) ? ending : kind == PictureKind::Png ? ".png" : ".jpg";
    std::string stem = cleanText((isEnding(ending) ? file.stem() : file.filename()).string());
    const auto begin = std::min(stem.find_first_not_of(" ."), stem.size());
    stem.erase(0, begin);
    if (stem.empty())
        stem = "picture";
    return shortened(stem, tail);
}

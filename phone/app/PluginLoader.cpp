#include "app/PluginLoader.h"

#include <dlfcn.h>

#include <exception>

namespace fs = std::filesystem;

namespace {

constexpr char FACTORY[] = "createPhonelet";

std::string lastLoaderError()
{
    const char* text = dlerror();
    return text ? text : "unknown error";
}

} // namespace

void Plugin::Close::operator()(void* library) const
{
    dlclose(library);
}

Plugin::Plugin(void* library, CreatePhonelet* factory, fs::path file)
    : m_library(library)
    , m_factory(factory)
    , m_file(std::move(file))
{
}

Result<Plugin> Plugin::load(const fs::path& file)
{
    std::error_code ignored;
    if (!fs::exists(file, ignored))
        return Error{ErrorCode::NotFound, "There is no phonelet " + file.string() + "."};
    std::unique_ptr<void, Close> library(dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL));
    if (!library)
        return Error{ErrorCode::Malformed,
                     "The phonelet " + file.string() + " cannot be loaded: " + lastLoaderError() + "."};
    auto* factory = reinterpret_cast<CreatePhonelet*>(dlsym(library.get(), FACTORY));
    if (!factory)
        return Error{ErrorCode::Malformed,
                     "The phonelet " + file.string() + " does not export " + FACTORY + "()."};
    return Plugin(library.release(), factory, file);
}

Result<std::unique_ptr<Phonelet>> Plugin::create() const
{
    try {
        if (std::unique_ptr<Phonelet> phonelet{m_factory()})
            return phonelet;
    } catch (const std::exception& error) {
        return Error{ErrorCode::Failed,
                     "The phonelet " + m_file.string() + " cannot be created: " + error.what() + "."};
    } catch (...) {
        return Error{ErrorCode::Failed, "The phonelet " + m_file.string() + " cannot be created."};
    }
    return Error{ErrorCode::Failed, "The phonelet " + m_file.string() + " gave no phonelet."};
}

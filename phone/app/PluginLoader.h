// Loads phonelets from shared libraries.

#pragma once

#include <filesystem>
#include <memory>

#include <framework/Phonelet.h>

#include "app/Result.h"

// A library that stays loaded while this lives. The code of its phonelets lies in it: they are
// deleted before it.
class Plugin {
public:
    // The error names the file and what is wrong with it.
    static Result<Plugin> load(const std::filesystem::path& file);

    // A new phonelet. A factory that throws, or gives none, is an error that names the file.
    Result<std::unique_ptr<Phonelet>> create() const;

private:
    struct Close {
        void operator()(void* library) const;
    };

    Plugin(void* library, CreatePhonelet* factory, std::filesystem::path file);

    std::unique_ptr<void, Close> m_library;
    CreatePhonelet* m_factory;
    std::filesystem::path m_file;
};

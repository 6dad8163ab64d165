#include <gtest/gtest.h>

#include <dlfcn.h>

#include "TemporaryFolder.h"
#include "app/PluginLoader.h"

namespace {

const std::string HELLO = std::string(BIN_DIR) + "/libhello-phonelet.so";

bool isLoaded(const std::string& file)
{
    void* library = dlopen(file.c_str(), RTLD_NOW | RTLD_NOLOAD);
    if (library)
        dlclose(library);
    return library != nullptr;
}

} // namespace

TEST(PluginLoader, CreatesAPhoneletFromALibrary)
{
    const auto plugin = Plugin::load(HELLO);
    ASSERT_TRUE(plugin);
    const auto phonelet = plugin.value().create();
    ASSERT_TRUE(phonelet);
    EXPECT_EQ(phonelet.value()->getInterfaces(), "HelloIfc");
}

TEST(PluginLoader, LeavesNothingOfTheLibraryInMemory)
{
    {
        const auto plugin = Plugin::load(HELLO);
        const auto phonelet = plugin.value().create();
        EXPECT_TRUE(isLoaded(HELLO));
    }
    EXPECT_FALSE(isLoaded(HELLO));
}

TEST(PluginLoader, NamesAFileThatIsMissing)
{
    EXPECT_EQ(Plugin::load("/nowhere/libx.so").error().sentence, "There is no phonelet /nowhere/libx.so.");
}

TEST(PluginLoader, NamesAFileThatIsNoLibrary)
{
    TemporaryFolder folder;
    folder.write("libx.so", "text");
    const auto& error = Plugin::load(folder / "libx.so").error();
    EXPECT_EQ(error.code, ErrorCode::Malformed);
    EXPECT_NE(error.sentence.find((folder / "libx.so").string()), std::string::npos);
}

TEST(PluginLoader, NamesALibraryWithoutTheFactory)
{
    const auto library = std::string(BIN_DIR) + "/libphonelet.so";
    EXPECT_EQ(Plugin::load(library).error().sentence,
              "The phonelet " + library + " does not export createPhonelet().");
}

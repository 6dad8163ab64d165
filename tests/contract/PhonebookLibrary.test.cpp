#include <dlfcn.h>

#include <fstream>
#include <map>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <framework/Phonelet.h>
#include <framework/util/HardwareVersion.h>

#include <testing/FakeContext.h>
#include <testing/FakeCstaService.h>
#include <testing/FakeDigitAnalysis.h>
#include <testing/FakeDirectoryService.h>
#include <testing/FakeDisplayHost.h>
#include <testing/FakeLocalMgmt.h>
#include <testing/FakePhoneletHandle.h>
#include <testing/FakeServices.h>

#include "Command.h"

namespace {

const std::string LIBRARY = BIN_DIR "/libphonebook.so";

// Symbols that the library defines for others: "type name" each.
std::vector<std::string> exportedSymbols()
{
    std::istringstream output(outputOf("nm -D --defined-only '" + LIBRARY + "'"));
    std::vector<std::string> symbols;
    std::string address;
    std::string type;
    std::string name;
    while (output >> address >> type >> name)
        symbols.push_back(type + " " + name);
    return symbols;
}

bool isMapped()
{
    std::ifstream maps("/proc/self/maps");
    std::string line;
    while (std::getline(maps, line)) {
        if (line.find("libphonebook.so") != std::string::npos)
            return true;
    }
    return false;
}

// A telephone that offers everything, for a phonebook out of a library.
class LoadedPhonebook : public testing::Test {
protected:
    void load()
    {
        m_pLibrary = dlopen(LIBRARY.c_str(), RTLD_NOW | RTLD_LOCAL);
        ASSERT_NE(m_pLibrary, nullptr) << dlerror();
        auto* pCreate = reinterpret_cast<CreatePhonelet*>(dlsym(m_pLibrary, "createPhonelet"));
        ASSERT_NE(pCreate, nullptr);
        phonelet.reset(pCreate());
    }
    void unload()
    {
        phonelet.reset();
        EXPECT_EQ(dlclose(m_pLibrary), 0);
    }

    FakeDisplayHost host;
    DisplayAPI::Display display{host, {}};
    FakeDirectoryService directory;
    FakeCstaService csta;
    FakeDigitAnalysis digits;
    FakeLocalMgmt configuration;
    FakeJournal journal;
    FakePhysicalInterface keys;
    FakePhoneletHandle handle;
    FakeContext telephone;
    std::unique_ptr<Phonelet> phonelet;

    LoadedPhonebook()
    {
        telephone.display = &display;
        telephone.services = {{"DirectoryServiceIfc", &directory},  {"CSTAServiceIfc", &csta},
                              {"DigitAnalysisServiceIfc", &digits}, {"LocalMgmtIfc", &configuration},
                              {"JournalServiceIfc", &journal},      {"PhysicalInterfaceServiceIfc", &keys}};
        configuration.items = {{"language", "de"}, {"software-type", "Veltrix SIP"}};
        csta.feature.Availability = communicationsServiceTexts::content_feature_available;
    }

private:
    void* m_pLibrary = nullptr;
};

TEST(PhonebookLibrary, ExportsItsFactoryAlone)
{
    EXPECT_EQ(exportedSymbols(), std::vector<std::string>{"T createPhonelet"});
}

TEST_F(LoadedPhonebook, IsGoneFromMemoryAfterItWasUsed)
{
    directory.add("Miller", "Ann", "0301234");
    directory.add("Mills", "Bob", "0305678");
    for (int time = 0; time < 2; ++time) {
        load();
        ASSERT_TRUE(isMapped());
        phonelet->setPhoneletHandle(&handle);
        phonelet->init(&telephone);
        phonelet->startPhonelet();
        host.drive(display);
        phonelet->show();
        host.settle();
        host.type("mi");
        host.advance(std::chrono::seconds(5));
        host.press(DisplayAPI::Key::Kind::Ok);
        phonelet->tab();
        phonelet->localeChanged("sv");
        phonelet->hide();
        phonelet->stopPhonelet();
        phonelet->shutdown();
        unload();
        EXPECT_FALSE(isMapped());
    }
}

TEST_F(LoadedPhonebook, IsGoneFromMemoryWhenItWasNeverStarted)
{
    load();
    unload();

    EXPECT_FALSE(isMapped());
}

TEST_F(LoadedPhonebook, LeavesNothingBehindAtStop)
{
    load();
    phonelet->init(&telephone);
    phonelet->startPhonelet();
    phonelet->show();
    phonelet->stopPhonelet();

    EXPECT_TRUE(directory.observers.empty());
    EXPECT_TRUE(journal.observers.empty());
    EXPECT_TRUE(telephone.timers.empty());
    EXPECT_EQ(digits.provider, nullptr);
    EXPECT_EQ(display.getCurrent(), nullptr);
    unload();
}

} // namespace

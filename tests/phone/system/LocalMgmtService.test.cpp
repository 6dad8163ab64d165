#include <gtest/gtest.h>

#include <framework/services/ManageableData.h>
#include <framework/services/MgmtAgentIfc.h>

#include "TemporaryFolder.h"
#include "app/EventThread.h"
#include "pictures/TestPictures.h"
#include "system/LocalMgmtService.h"

using Strings = std::vector<std::string>;

namespace {

class Agent final : public MgmtAgentIfc {
public:
    Strings heard;

    void manageableDataChanged(ManageableData* data) override
    {
        heard.push_back(data->getRootId() + "=" + data->interogate(data->getRootId())->getValue());
    }
    int setData(ManageableData*) override { return 0; }
    int getData(ManageableData*) override { return 0; }
    void resetUserData() override {}
};

class LocalMgmt : public testing::Test {
protected:
    std::string read(const std::string& item)
    {
        ManageableData data;
        data.setRootId(item);
        return service.read(data) ? data.interogate(item)->getValue() : "(none)";
    }

    TemporaryFolder folder;
    ManualClock clock;
    EventThread events{clock};
    Configuration configuration{folder / "config.toml", {{"ldap-qualifier", "4"}, {"language", "de"}}};
    bool bluetoothIsActive = false;
    LocalMgmtService service{configuration, folder.path(), events, [this] { return bluetoothIsActive; }};
    Agent agent;
};

using LocalMgmtServiceTest = LocalMgmt;

} // namespace

TEST_F(LocalMgmtServiceTest, ReadsItemsAsText)
{
    EXPECT_EQ(read("software-type"), "Veltrix SIP");
    EXPECT_EQ(read("ldap-search-trigger-timeout"), "3");
    EXPECT_EQ(read("bt-enabled"), "false");
    EXPECT_EQ(read("bt-active"), "false");
    EXPECT_EQ(read("colour"), "(none)");
}

TEST_F(LocalMgmtServiceTest, KnowsWhetherBluetoothIsActiveNow)
{
    bluetoothIsActive = true;
    EXPECT_EQ(read("bt-active"), "true");
    bluetoothIsActive = false;
    EXPECT_EQ(read("bt-active"), "false");
}

TEST_F(LocalMgmtServiceTest, TellsObserversOfAChangeByAnEvent)
{
    service.observeManageableData("ldap-qualifier", &agent);
    service.observeManageableData("ldap-qualifier", &agent);
    service.itemChanged("ldap-qualifier");
    service.itemChanged("ldap-display-option");
    EXPECT_EQ(agent.heard, Strings{});

    events.runPending();

    EXPECT_EQ(agent.heard, Strings{"ldap-qualifier=4"});
}

TEST_F(LocalMgmtServiceTest, DropsAChangeThatIsQueuedWhenThePhoneletsStop)
{
    service.observeManageableData("ldap-qualifier", &agent);
    service.itemChanged("ldap-qualifier");
    service.dropObservers();
    events.runPending();
    EXPECT_EQ(agent.heard, Strings{});
}

TEST_F(LocalMgmtServiceTest, OffersPicturesByNameAsTheLanguageSortsThem)
{
    for (const auto& name : {"Zoe.png", "anna.png", "\xc3\xa4lva.png", "Bert.jpeg"})
        folder.write(name, test_pictures::png());
    folder.write("notes.png", "no picture");
    EXPECT_EQ(service.getPictureClips(),
              (Strings{(folder / "\xc3\xa4lva.png").string(), (folder / "anna.png").string(),
                       (folder / "Bert.jpeg").string(), (folder / "Zoe.png").string()}));
}

TEST_F(LocalMgmtServiceTest, TurnsPathsOfClipsIntoNamesAndBack)
{
    folder.write("b.png", test_pictures::png());
    const auto path = service.getPictureClips().at(0);
    EXPECT_EQ(service.pictureNameFromPath(path), "b.png");
    EXPECT_EQ(service.picturePathFromName("b.png"), path);
    EXPECT_EQ(service.pictureNameFromPath(""), "");
    EXPECT_EQ(service.picturePathFromName(""), "");
}

TEST_F(LocalMgmtServiceTest, NeverLeavesItsFolderForAName)
{
    EXPECT_EQ(service.picturePathFromName("../../etc/passwd"), (folder / "passwd").string());
    EXPECT_EQ(service.picturePathFromName("../"), "");
    EXPECT_EQ(service.pictureNameFromPath("/etc/passwd"), "");
}

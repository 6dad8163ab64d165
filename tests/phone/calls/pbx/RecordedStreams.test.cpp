// What PBXs have sent, octet by octet: each NAME.stream of tests/data/csta is understood as NAME.heard says,
// in whatever parts it arrives. The PBX hangs up at its end.

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>

#include <gtest/gtest.h>

#include "Heard.h"
#include "TestPbx.h"
#include "calls/pbx/PbxLink.h"

namespace fs = std::filesystem;

namespace {

std::string contentOf(const fs::path& file)
{
    std::ostringstream content;
    content << std::ifstream(file, std::ios::binary).rdbuf();
    return content.str();
}

std::vector<fs::path> streams()
{
    std::vector<fs::path> files;
    for (const auto& entry : fs::directory_iterator(fs::path(TEST_DATA_DIR) / "csta")) {
        if (entry.path().extension() == ".stream")
            files.push_back(entry.path());
    }
    std::sort(files.begin(), files.end());
    return files;
}

const char* word(CstaCallEvent::Kind kind)
{
    switch (kind) {
    case CstaCallEvent::Kind::Originated:
        return "originated";
    case CstaCallEvent::Kind::Delivered:
        return "delivered";
    case CstaCallEvent::Kind::Established:
        return "established";
    case CstaCallEvent::Kind::Failed:
        return "failed";
    case CstaCallEvent::Kind::ConnectionCleared:
        return "cleared";
    case CstaCallEvent::Kind::Diverted:
        return "diverted";
    }
    return "?";
}

std::string wordsOf(const CstaSystemStatus& status)
{
    return "<" + status.status + ">" +
           (status.feature ? " " + status.feature->featureName + " " + status.feature->Availability : "");
}

class Listener final : public PbxListenerIfc {
public:
    void linkUp(const CstaSystemStatus& status) override { heard.add("up " + wordsOf(status)); }
    void linkDown() override { heard.add("down"); }
    void received(const CstaEventContent& event) override
    {
        if (const auto* call = std::get_if<CstaCallEvent>(&event))
            heard.add(std::string(word(call->kind)) + " " + call->connection.callId + " of " +
                      call->connection.deviceId + " at <" + call->device + "> from <" + call->calling +
                      ">: " + call->cause);
        else if (const auto* status = std::get_if<CstaSystemStatus>(&event))
            heard.add("status " + wordsOf(*status));
        else if (const auto* rows = std::get_if<CstaDisplayRows>(&event))
            for (const auto& row : *rows)
                heard.add("row " + std::to_string(row.row) + " <" + row.text + ">");
    }
    bool isBehind() override { return false; }

    Heard heard;
};

class RecordedStream : public testing::TestWithParam<fs::path> {
protected:
    // All that is heard of the stream when it comes in parts of that size.
    std::string heardInPartsOf(std::size_t size)
    {
        const auto stream = contentOf(GetParam());
        m_link.start();
        if (!m_pbx.accept())
            return "no connection";
        for (std::size_t at = 0; at < stream.size(); at += size)
            m_pbx.sendRaw(stream.substr(at, size));
        m_pbx.hangUp();
        // The link has told all of it when it tries again.
        if (!m_pbx.isClosed() || !m_pbx.accept())
            return "no second connection";
        m_listener.heard.add("");
        std::string all;
        for (auto line = m_listener.heard.next(); !line.empty(); line = m_listener.heard.next())
            all += line + "\n";
        return all;
    }

private:
    TestPbx m_pbx;
    Listener m_listener;
    PbxLink m_link{m_pbx.settings(), m_listener};
};

std::string nameOf(const testing::TestParamInfo<fs::path>& info)
{
    auto name = info.param.stem().string();
    std::replace(name.begin(), name.end(), '-', '_');
    return name;
}

std::string expected(fs::path stream)
{
    return contentOf(stream.replace_extension(".heard"));
}

} // namespace

TEST_P(RecordedStream, IsUnderstoodWhenItComesAtOnce)
{
    EXPECT_EQ(heardInPartsOf(1000000), expected(GetParam()));
}

TEST_P(RecordedStream, IsUnderstoodWhenItComesInParts)
{
    EXPECT_EQ(heardInPartsOf(7), expected(GetParam()));
}

INSTANTIATE_TEST_SUITE_P(All, RecordedStream, testing::ValuesIn(streams()), nameOf);

TEST(RecordedStreams, AreThere)
{
    EXPECT_GE(streams().size(), 7U);
}

// The alias files shipped in samples/OcxAlias: each names a registered sample control, lies
// under that control's display name, and describes only members its type library has.
#include "alias/ocx_alias.h"
#include "platform/com/registry/com_registry.h"
#include "typeinfo/member_types.h"

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <string>
#include <vector>

namespace {

struct Member {
    int event; // 0: the default interface, 1: the events interface
    std::string name;
};

// The members an alias file describes, from its Name lines and the section they stand in.
std::vector<Member> DescribedMembers(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::string line;
    int event = -1;
    std::vector<Member> members;
    while (std::getline(in, line)) {
        if (!line.empty() && line.back() == '\r')
            line.pop_back();
        if (line == "[.Properties]" || line == "[.Methods]")
            event = 0;
        else if (line == "[.Events]")
            event = 1;
        else if (line.rfind("Name=\"", 0) == 0 && line.size() > 7 && event >= 0)
            members.push_back({event, line.substr(6, line.size() - 7)});
    }
    return members;
}

class SampleAliasFiles : public ::testing::TestWithParam<const char*> {
protected:
    void SetUp() override {
        auto& registry = talvor::platform::ComRegistry::Instance();
        registry.Clear();
        std::string error;
        ASSERT_TRUE(registry.LoadFile(TALVOR_SAMPLE_TLB_DIR "/talvor_controls.reg", error))
            << error;
    }
    void TearDown() override { talvor::platform::ComRegistry::Instance().Clear(); }
};

TEST_P(SampleAliasFiles, NameARegisteredControlAndOnlyItsMembers) {
    const std::string display = GetParam();
    const std::string path = TALVOR_SOURCE_DIR "/samples/OcxAlias/" + display + ".ini";
    CTalvorOcxAlias alias;
    ASSERT_EQ(alias.LoadFromFile(path.c_str()), 1) << path;

    const CString clsidText = alias.GetCLSID();
    GUID clsid = GUID_NULL;
    ASSERT_TRUE(talvor::platform::GuidFromText(static_cast<const char*>(clsidText), clsid));
    const auto* entry = talvor::platform::ComRegistry::Instance().FindClass(clsid);
    ASSERT_NE(entry, nullptr) << clsidText;
    EXPECT_EQ(entry->displayName, display);
    DWORD language = 0;
    ASSERT_EQ(alias.GetLCID(language), 1);
    EXPECT_EQ(language, 0x0409u);

    const std::vector<Member> members = DescribedMembers(path);
    ASSERT_GE(members.size(), 4u);
    for (const Member& member : members) {
        ITypeInfo* info = nullptr;
        ASSERT_EQ(TVPfxGetActiveXTypeInfo(clsid, member.event, &info), 1);
        std::wstring wide(member.name.begin(), member.name.end());
        LPOLESTR names[] = {wide.data()};
        MEMBERID id = MEMBERID_NIL;
        EXPECT_EQ(info->GetIDsOfNames(names, 1, &id), S_OK)
            << display << ": " << member.name << " is no member of the control";
        info->Release();
    }
}

INSTANTIATE_TEST_SUITE_P(Samples, SampleAliasFiles,
                         ::testing::Values("Talvor Gauge", "Talvor List Box", "Talvor Button"));

} // namespace

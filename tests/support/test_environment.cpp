// Installs a fresh in-memory profile and a recording message box handler before every test,
// so no test reads or writes the user's profile and no message reaches the terminal.
#include "tests/support/test_environment.h"

#include "platform/app/message_box.h"
#include "platform/codepage/code_page.h"

#include <gtest/gtest.h>
#include <memory>

namespace talvor::testing {
namespace {

std::vector<std::string>& Messages() {
    static std::vector<std::string> messages;
    return messages;
}

std::shared_ptr<platform::MemoryProfile>& CurrentProfile() {
    static auto profile = std::make_shared<platform::MemoryProfile>();
    return profile;
}

class FreshStatePerTest : public ::testing::EmptyTestEventListener {
    void OnTestStart(const ::testing::TestInfo&) override {
        CurrentProfile() = std::make_shared<platform::MemoryProfile>();
        AfxGetApp()->SetProfileStore(CurrentProfile());
        Messages().clear();
        platform::SetMessageBoxHandler([](const char* text, UINT type) {
            Messages().emplace_back(text);
            return platform::DefaultMessageBoxAnswer(type);
        });
        platform::SetSystemCodePage(platform::CodePageWestern);
    }
};

struct Registration {
    Registration() {
        // The profile must be in memory before any static object of a test asks for it.
        AfxGetApp()->SetProfileStore(CurrentProfile());
        ::testing::UnitTest::GetInstance()->listeners().Append(new FreshStatePerTest);
    }
};
const Registration registration;

} // namespace

const std::vector<std::string>& ShownMessages() {
    return Messages();
}
void ClearShownMessages() {
    Messages().clear();
}
platform::MemoryProfile& TestProfile() {
    return *CurrentProfile();
}

} // namespace talvor::testing

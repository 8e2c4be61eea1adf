// Message boxes reach the handler the host installed.
#include "platform/app/message_box.h"

#include <gtest/gtest.h>

TEST(MessageBox, HandlerSeesTextAndTypeAndAnswers) {
    std::string seen;
    UINT seenType = 0;
    auto former = talvor::platform::SetMessageBoxHandler([&](const char* text, UINT type) {
        seen = text;
        seenType = type;
        return IDNO;
    });
    EXPECT_EQ(AfxMessageBox("Replace the file?", MB_YESNO | MB_ICONQUESTION), IDNO);
    EXPECT_EQ(seen, "Replace the file?");
    EXPECT_EQ(seenType, MB_YESNO | MB_ICONQUESTION);
    talvor::platform::SetMessageBoxHandler(former);
}

TEST(MessageBox, DefaultAnswerIsTheFirstButton) {
    EXPECT_EQ(talvor::platform::DefaultMessageBoxAnswer(MB_OK), IDOK);
    EXPECT_EQ(talvor::platform::DefaultMessageBoxAnswer(MB_YESNO | MB_ICONSTOP), IDYES);
    EXPECT_EQ(talvor::platform::DefaultMessageBoxAnswer(MB_RETRYCANCEL), IDRETRY);
}

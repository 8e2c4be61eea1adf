// The language and code page picker over ICU's locales and converters.
#include "alias/lcid_combo_box.h"

#include "platform/intl/multi_language.h"

#include <gtest/gtest.h>

namespace {

// A picker whose items can be inspected after the box is gone.
struct Picker : CTalvorLcidComboBox {
    Picker() { Create(0); }
    ~Picker() override { DestroyWindow(); }
    CString Text(int index) {
        CString text;
        GetLBText(index, text);
        return text;
    }
};

} // namespace

TEST(LcidComboBox, LanguagesStartWithTheThreeFixedEntries) {
    Picker box;
    EXPECT_STREQ(box.GetRuntimeClass()->m_lpszClassName, "CTalvorLcidComboBox");
    EXPECT_EQ(box.GetRuntimeClass()->m_wSchema, 0xFFFFu);
    EXPECT_TRUE(box.IsKindOf(&CComboBox::classCComboBox));
    EXPECT_EQ(box.GetCurLanguage(), 0u); // nothing selected yet

    box.Init(1);
    ASSERT_GT(box.GetCount(), 3 + 100); // ICU knows hundreds of languages
    EXPECT_LE(box.GetCount(), 3 + 300);
    EXPECT_EQ(box.Text(0), "Default language");
    EXPECT_EQ(box.Text(1), "User default language");
    EXPECT_EQ(box.Text(2), "System default language");

    EXPECT_EQ(box.SetCurLanguage(0x400), 1);
    EXPECT_EQ(box.GetCurLanguage(), 0x400u);
    EXPECT_EQ(box.SetCurLanguage(0), 0);
    EXPECT_EQ(box.GetCurLanguage(), 0u);

    // Languages carry their Windows numbers and names: English (United States) is 0x0409.
    const int english = box.SetCurLanguage(0x0409);
    ASSERT_GT(english, 2);
    EXPECT_EQ(box.GetCurLanguage(), 0x0409u);
    EXPECT_NE(box.Text(english).Find("English"), -1);
    const auto* record = static_cast<const RFC1766INFO*>(box.GetItemDataPtr(english));
    EXPECT_EQ(std::u16string(record->wszRfc1766), u"en-us");

    // A number not in the list selects the first item.
    EXPECT_EQ(box.SetCurLanguage(0x7FFF), 0);
    EXPECT_EQ(box.GetCurLanguage(), 0u);
}

TEST(LcidComboBox, CodePagesCarryTheirWindowsNumbers) {
    Picker box;
    box.Init(0);
    EXPECT_EQ(box.m_bLanguageList, 0);
    ASSERT_GT(box.GetCount(), 20);
    EXPECT_LE(box.GetCount(), 300);
    for (UINT page : {1252u, 936u, 65001u, 437u, 1200u}) {
        SCOPED_TRACE(page);
        const int index = box.SetCurCodePage(page);
        EXPECT_EQ(box.GetCurCodePage(), page);
        EXPECT_NE(box.Text(index).Find(std::to_string(page).c_str()), -1);
    }
    EXPECT_EQ(box.SetCurCodePage(12345), 0);
}

TEST(LcidComboBox, WithoutTheServiceOnlyTheFixedEntriesRemain) {
    talvor::platform::SetMultiLanguageAvailable(false);
    Picker languages;
    languages.Init(1);
    Picker codePages;
    codePages.Init(0);
    talvor::platform::SetMultiLanguageAvailable(true);
    EXPECT_EQ(languages.GetCount(), 3);
    EXPECT_EQ(codePages.GetCount(), 0);
    // On an empty list the selection fails and nothing is selected.
    EXPECT_EQ(codePages.SetCurCodePage(1252), CB_ERR);
    EXPECT_EQ(codePages.GetCurCodePage(), 0u);
}

TEST(LcidComboBox, SortedBoxesFindItemsThroughTheirData) {
    CTalvorLcidComboBox box;
    box.Create(CBS_SORT);
    box.Init(1);
    // Sorted by text, the fixed items no longer stand on top; lookups still find them.
    const int user = box.SetCurLanguage(0x400);
    CString text;
    box.GetLBText(user, text);
    EXPECT_EQ(text, "User default language");
    EXPECT_EQ(box.GetCurLanguage(), 0x400u);
    CString previous;
    box.GetLBText(0, previous);
    for (int i = 1; i < box.GetCount(); ++i) {
        box.GetLBText(i, text);
        EXPECT_LE(previous.CompareNoCase(text), 0) << previous << " / " << text;
        previous = text;
    }
    // Destroying frees every record: no item data is left behind.
    box.DestroyWindow();
    EXPECT_EQ(box.GetCount(), 0);
}

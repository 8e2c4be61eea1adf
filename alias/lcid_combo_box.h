// CTalvorLcidComboBox: a drop-down list in which a user picks a language or a code page. It
// fills itself from the multi-language service (ICU's locales with a Windows locale number and
// converters with a Windows code page number, at most 300 of either) and gives the number of
// the selected item back. Each item's data is a record the box owns until OnDestroy.
#pragma once

#include "platform/intl/multi_language.h"
#include "platform/window/combo_box.h"

class CTalvorLcidComboBox : public CComboBox {
public:
    CTalvorLcidComboBox();
    ~CTalvorLcidComboBox() override;

    // Fills the list (without emptying it first): languages when language isn't 0, with the
    // three fixed entries "default", user default (0x400) and system default (0x800) on top;
    // else code pages. A missing service leaves the fixed entries only.
    void Init(int language);

    // The number of the selected item; 0 with nothing selected.
    DWORD GetCurLanguage();
    UINT GetCurCodePage();
    // Selects the first item with that number, else the first item; the result is that of the
    // selection (CB_ERR on an empty list).
    int SetCurLanguage(DWORD language);
    int SetCurCodePage(UINT codePage);

    const CRuntimeClass* GetRuntimeClass() const override { return &classCTalvorLcidComboBox; }
    static const CRuntimeClass classCTalvorLcidComboBox;

    int m_bLanguageList; // not 0: languages; 0: code pages

protected:
    // Frees every item's record, then lets the box go on with its own handling.
    void OnDestroy() override;

private:
    void FillLanguages();
    void FillCodePages();
    void FreeRecords();
};

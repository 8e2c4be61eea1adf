// The events of a form's controls as the form's items report them: the default source
// interface of each control's class, from its type library.
#include "host/ole/container_doc.h"
#include "tests/typeinfo/sample_controls.h"

#include <gtest/gtest.h>

namespace talvor::testing {
namespace {

std::string EventNames(CVXInterfaceInfo& events) {
    std::string names;
    for (int i = 0; i < events.GetNumMethods(); ++i)
        names += (i ? "|" : "") + events.GetMethod(i)->GetName().Str();
    return names;
}

TEST(ContainerItemEvents, ComeFromTheDefaultSourceOfTheControlsClass) {
    RegisterSampleControls();
    CVXContainerDoc form;
    auto* list = new CVXContainerItem("lstItems", CreateControl(ListBoxClass).Get());
    auto* frame = new CVXContainerItem("fraBox", CreateControl(FrameClass).Get());
    auto* bare = new CVXContainerItem("bare", nullptr);
    form.AddItem(list);
    form.AddItem(frame);
    form.AddItem(bare);
    EXPECT_EQ(EventNames(list->GetEventsInterface()), "Click|DblClick|ItemCheck");
    EXPECT_EQ(list->GetEventsInterface().GetMethod(2)->GetNumParams(), 1);
    EXPECT_EQ(EventNames(frame->GetEventsInterface()), "");
    EXPECT_EQ(EventNames(bare->GetEventsInterface()), "");
    // Asked again, the same description, not read twice.
    EXPECT_EQ(list->GetEventsInterface().GetNumMethods(), 3);
}

} // namespace
} // namespace talvor::testing

#include "support/toolkit_window.h"

#include "WidgetHandle.h"
#include "WidgetHelpers.h"

#include <functional>

namespace {

class SharedPieces : public test::ToolkitWindow {};

TEST_F(SharedPieces, StepWhoseWidgetCannotBeMadeIsLoggedAndThePageGoesOn) {
    const std::vector<std::function<void()>> helpers = {
        [] { createTextbox(nullptr, "text"); },        [] { createSpinner(nullptr); },
        [] { setupSpinner(nullptr, 11, 26); },         [] { createPopup(nullptr, "title"); },
        [] { createPopupContent(nullptr, nullptr); },  [] { createPopupButton(nullptr, "text"); },
        [] { createButton(nullptr, "text", 100, 10); }};
    int steps_after_the_failure = 0;
    for (const auto& helper : helpers)
        EXPECT_FALSE(runPageStep(LOG_ORIGIN("createSomething"), [&] {
            helper();
            ++steps_after_the_failure;
        }));
    EXPECT_EQ(steps_after_the_failure, 0);
    EXPECT_EQ(log.messages_of("shared_pieces_test.cpp: createSomething"),
              std::vector<std::string>(helpers.size(), "Input data is Null!!"));
    EXPECT_TRUE(runPageStep(LOG_ORIGIN("createSomething"), [this] { createTextbox(page, "text"); }));
}

TEST_F(SharedPieces, HandleLosesItsWidgetWhoeverDeletedIt) {
    WidgetHandle button(createButton(page, "text", 30, 10));
    WidgetHandle same;
    same = button;
    WidgetHandle label(createTextbox(page, "text"));
    label.deleteWidget();
    EXPECT_TRUE(label == nullptr);
    label.deleteWidget();

    elm_vell_layout_clear(page);
    EXPECT_TRUE(button == nullptr);
    EXPECT_TRUE(same == nullptr);
    { const WidgetHandle shortLived(createButton(page, "text", 30, 10)); }
    elm_vell_layout_clear(page); // its handle is gone and is not told
}

} // namespace

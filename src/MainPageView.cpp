#include "MainPageView.h"

#include "GuardedCallback.h"
#include "Log.h"
#include "TestTab.h"
#include "WidgetHelpers.h"
#include "model/ncp_requester.h"

#include <platform/orientation.h>
#include <platform/vell.h>
#include <platform/window.h>

#include <algorithm>
#include <cstddef>
#include <string_view>

namespace {

constexpr const char* redKey = "XF86Red";

} // namespace

void MainPageView::createWindow() {
    window = elm_win_util_standard_add("velmora", "Velmora");
    if (!inputIsThere(LOG_ORIGIN(__func__), static_cast<Evas_Object*>(window)))
        return;
    elm_win_autodel_set(window, EINA_TRUE);
    elm_win_aux_hint_add(window, "wm.policy.win.zone.desk.layout.mode", "fullscreen");
    elm_win_alpha_set(window, EINA_TRUE);
    evas_object_smart_callback_add(window, "delete,request", GUARDED(winDeleteRequestCb), nullptr);
    elm_vell_manager_init(window);
    elm_win_keygrab_set(window, redKey, 0, 0, 0, ELM_WIN_KEYGRAB_SHARED);
}

void MainPageView::createBackground() {
    background = elm_vell_bg_add(window);
    if (!inputIsThere(LOG_ORIGIN(__func__), static_cast<Evas_Object*>(background)))
        return;
    evas_object_size_hint_weight_set(background, EVAS_HINT_EXPAND, EVAS_HINT_EXPAND);
    elm_win_resize_object_add(window, background);
    evas_object_show(background);
    elm_vell_bg_grid_show(background, 0);
}

void MainPageView::createMainPage() {
    rootLayout = elm_vell_layout_add(window);
    if (!inputIsThere(LOG_ORIGIN(__func__), static_cast<Evas_Object*>(rootLayout)))
        return;
    elm_vell_root_layout_set(rootLayout, 1);
    elm_vell_layout_type_set(rootLayout, 3);
    setMirroring();
    elm_object_mirrored_automatic_set(rootLayout, EINA_TRUE);
    elm_object_mirrored_set(rootLayout, EINA_TRUE);
    createMainPageLayout();
    createMainPageHeader();
    createMainPageSubHeader();
}

void MainPageView::setMirroring() {
    elm_config_mirrored_set(ua_UI_orientation_get() != 0 ? EINA_TRUE : EINA_FALSE);
}

void MainPageView::createMainPageLayout() {
    mainPageLayout = elm_vell_layout_add(rootLayout);
    if (!inputIsThere(LOG_ORIGIN(__func__), static_cast<Evas_Object*>(mainPageLayout)))
        return;
    elm_vell_layout_type_set(mainPageLayout, 1);
    elm_vell_layout_align_set(mainPageLayout, 2);
    elm_vell_layout_item_gap_set(mainPageLayout, pixels(10.0));
    elm_vell_layout_item_append(rootLayout, mainPageLayout, pixels(1.0), pixels(1.0));
    elm_vell_object_size_min_set(mainPageLayout, pixels(10.0), pixels(10.0));
    elm_vell_object_resize_policy_set(mainPageLayout, 4, 4);
}

void MainPageView::createMainPageHeader() {
    const LogOrigin origin = LOG_ORIGIN(__func__);
    header = elm_vell_header_add(mainPageLayout);
    if (!inputIsThere(origin, static_cast<Evas_Object*>(header)))
        return;
    elm_vell_header_style_set(header, 1);
    elm_vell_header_uiplate_enable(header, true);
    elm_vell_header_text_set(header, " Velmora");
    elm_vell_object_resize_policy_set(header, 4, 1);
    elm_vell_object_size_min_set(header, pixels(135.0), pixels(24.0));

    Evas_Object* const row = elm_vell_layout_add(header);
    if (!inputIsThere(origin, row))
        return;
    elm_vell_layout_type_set(row, 2);
    elm_vell_layout_align_set(row, 6);
    elm_vell_layout_item_gap_set(row, pixels(3.0));
    runPageStep(origin, [this, row] {
        evas_object_smart_callback_add(createButton(row, "Exit", 16, 10), "pressed",
                                       GUARDED(exitAppBtnPressedCb), this);
    });
    evas_object_geometry_set(row, 0, 0, pixels(44.0), pixels(13.0));
    elm_vell_header_content_set(header, row);
}

void MainPageView::createMainPageSubHeader() {
    const LogOrigin origin = LOG_ORIGIN(__func__);
    Evas_Object* const row = elm_vell_layout_add(header);
    if (!inputIsThere(origin, row))
        return;
    elm_vell_layout_type_set(row, 2);
    elm_vell_layout_align_set(row, 5);
    elm_vell_layout_item_gap_set(row, pixels(3.0));
    elm_vell_object_resize_policy_set(row, 4, 1);
    elm_vell_object_size_min_set(row, pixels(90.0), pixels(24.0));
    runPageStep(origin, [this, row] {
        for (const TestTab& test : testTabs()) {
            Evas_Object* const button = createButton(row, test.label, 30, 7);
            evas_object_smart_callback_add(button, "pressed", GUARDED(subHeaderButtonPressedCb), this);
            if (&test == &testTabs().front())
                evas_object_event_callback_add(button, EVAS_CALLBACK_SHOW, GUARDED(setFocusAfterShowCb),
                                               nullptr);
        }
    });
    evas_object_geometry_set(row, 0, 0, pixels(100.0), pixels(9.0));
    elm_vell_subheader_content_set(header, row);
    elm_vell_layout_item_append(mainPageLayout, header, pixels(235.0), pixels(26.0));
}

void MainPageView::createSubPageLayout() {
    subPageLayout = elm_vell_layout_add(mainPageLayout);
    if (!inputIsThere(LOG_ORIGIN(__func__), static_cast<Evas_Object*>(subPageLayout)))
        return;
    elm_vell_layout_type_set(subPageLayout, 1);
    elm_vell_layout_align_set(subPageLayout, 5);
    elm_vell_layout_bg_color_set(subPageLayout, "CC_BG210");
    elm_vell_layout_item_gap_set(subPageLayout, pixels(2.0));
    elm_vell_layout_padding_set(subPageLayout, pixels(4.0), pixels(4.0), 0, 0);
    elm_vell_object_size_min_set(subPageLayout, pixels(10.0), pixels(10.0));
    elm_vell_layout_item_append(mainPageLayout, subPageLayout, pixels(210.0), pixels(80.0));
    handOverContentArea();
}

void MainPageView::handOverContentArea() {
    for (const TestTab& test : testTabs())
        test.view().Create(rootLayout, subPageLayout);
}

void MainPageView::renderFirst() {
    evas_object_size_hint_weight_set(rootLayout, EVAS_HINT_EXPAND, EVAS_HINT_EXPAND);
    elm_win_resize_object_add(window, rootLayout);
    elm_vell_root_layout_render(rootLayout);
    evas_object_show(rootLayout);
    evas_object_show(window);
}

void MainPageView::subHeaderButtonPressedCb(void* data, Evas_Object* button, void*) {
    if (!inputIsThere(LOG_ORIGIN(__func__), data, button))
        return;
    auto* const page = static_cast<MainPageView*>(data);
    const std::string_view text = buttonText(button);
    const auto test = std::ranges::find(testTabs(), text, &TestTab::label);
    if (test == testTabs().end()) {
        LOG_ERROR("Something not right!!!");
        return;
    }
    page->selectedTest = static_cast<int>(test - testTabs().begin());
    test->view().ShowStartPage();
}

void MainPageView::requesterCb(const std::string& eventText, void* data) {
    LOG_ERROR("[EVENT DATA] %s", eventText.c_str());
    if (eventText != "ready" || !inputIsThere(LOG_ORIGIN(__func__), data))
        return;
    const int selected = static_cast<MainPageView*>(data)->selectedTest;
    if (selected == noTest)
        return;
    const TestTab& test = testTabs()[static_cast<std::size_t>(selected)];
    // Show the page even if the radio did not start: the operator then sees each action fail.
    ncp_requester::getInstance().ember_start(test.mode);
    test.view().ShowTestPage();
}

void MainPageView::setFocusAfterShowCb(void*, Evas*, Evas_Object* widget, void*) {
    focusShownWidget(LOG_ORIGIN(__func__), widget);
}

void MainPageView::destroyWidgets() {
    if (window != nullptr) // a closed window is already deleted
        elm_win_keygrab_unset(window, redKey, 0, 0);
    // Deleting the window also deletes its children and clears their handles, so nothing is deleted twice.
    for (WidgetHandle* const widget : {&window, &background, &rootLayout, &mainPageLayout, &header,
                                       &subPageLayout, &shownPopup, &exitPopup})
        widget->deleteWidget();
}

void MainPageView::winDeleteRequestCb(void*, Evas_Object*, void*) {
    elm_vell_manager_fini();
    elm_exit();
}

Eina_Bool MainPageView::keyDownCb(void* data, int, void* event) {
    if (data == nullptr || event == nullptr) {
        LOG_ERROR("no value");
        return ECORE_CALLBACK_DONE;
    }
    auto* const page = static_cast<MainPageView*>(data);
    const auto* const keyEvent = static_cast<const Ecore_Event_Key*>(event);
    const auto printable = [](const char* name) { return name == nullptr ? "" : name; };
    LOG_ERROR("KeyName [%s] Key[%s]", printable(keyEvent->keyname), printable(keyEvent->key));
    const std::string_view key = printable(keyEvent->key);
    if (key == "XF86Back" || key == "XF86Exit")
        page->closePopupOrLower();
    else if (key == redKey)
        elm_win_raise(page->window);
    return ECORE_CALLBACK_PASS_ON;
}

void MainPageView::closePopupOrLower() {
    for (const TestTab& test : testTabs())
        if (ContentView& view = test.view(); view.shownPopup != nullptr) {
            view.dismissPopup();
            return;
        }
    if (shownPopup != nullptr) {
        elm_popup_dismiss(shownPopup);
        shownPopup = nullptr;
    } else {
        elm_win_lower(window);
    }
}

void MainPageView::exitAppBtnPressedCb(void* data, Evas_Object*, void*) {
    if (!inputIsThere(LOG_ORIGIN(__func__), data))
        return;
    static_cast<MainPageView*>(data)->showExitPopup();
}

void MainPageView::showExitPopup() {
    if (exitPopup == nullptr)
        createExitPopup();
    shownPopup = exitPopup;
    evas_object_show(exitPopup);
}

void MainPageView::createExitPopup() {
    runPageStep(LOG_ORIGIN(__func__), [this] {
        exitPopup = createPopup(rootLayout, "Exit App");
        elm_vell_popup_message_set(exitPopup, "Do you want to exit ?", elm_vell_unit_to_pixel(45.0));
        Evas_Object* const yes = createPopupButton(exitPopup, "Yes");
        evas_object_smart_callback_add(yes, "pressed", GUARDED(exitPopupYesPressedCb), this);
        Evas_Object* const cancel = createPopupButton(exitPopup, "Cancel");
        evas_object_smart_callback_add(cancel, "pressed", GUARDED(exitPopupCancelPressedCb), this);
        evas_object_event_callback_add(cancel, EVAS_CALLBACK_SHOW, GUARDED(setFocusAfterShowCb), nullptr);
    });
}

void MainPageView::exitPopupYesPressedCb(void*, Evas_Object*, void*) { elm_exit(); }

void MainPageView::exitPopupCancelPressedCb(void* data, Evas_Object*, void*) {
    if (!inputIsThere(LOG_ORIGIN(__func__), data))
        return;
    auto* const page = static_cast<MainPageView*>(data);
    elm_popup_dismiss(page->shownPopup);
    page->shownPopup = nullptr;
}

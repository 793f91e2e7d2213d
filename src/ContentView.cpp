#include "ContentView.h"

#include "GuardedCallback.h"
#include "WidgetHelpers.h"
#include "model/process_lifecycle.h"
#include "model/util.h"

#include <platform/vell.h>

#include <string>
#include <string_view>

bool ContentView::Create(Evas_Object* parent, Evas_Object* content) {
    parentLayout = parent;
    contentLayout = content;
    return true;
}

void ContentView::dismissPopup() {
    if (shownPopup != nullptr)
        elm_popup_dismiss(shownPopup);
    shownPopup = nullptr;
}

void ContentView::setFocusAfterShowCb(void*, Evas*, Evas_Object* widget, void*) {
    focusShownWidget(LOG_ORIGIN(__func__), widget);
}

void ContentView::focusWhenShown(Evas_Object* widget) {
    evas_object_event_callback_add(widget, EVAS_CALLBACK_SHOW, GUARDED(setFocusAfterShowCb), nullptr);
}

void ContentView::clearForStartPage() const {
    elm_vell_layout_clear(contentLayout);
    elm_vell_layout_align_set(contentLayout, 5);
}

void ContentView::clearForTestPage() const {
    elm_vell_layout_clear(contentLayout);
    elm_vell_layout_type_set(contentLayout, 1);
    elm_vell_layout_align_set(contentLayout, 1);
}

Evas_Object* ContentView::addButton(const char* text, Evas_Smart_Cb pressed) {
    Evas_Object* const button = createButton(contentLayout, text, 100, 10);
    evas_object_smart_callback_add(button, "pressed", pressed, this);
    return button;
}

void ContentView::showPopup(Evas_Object* popup) {
    shownPopup = popup;
    evas_object_show(popup);
}

void ContentView::startTest(const LogOrigin& origin, Evas_Object* startButton,
                            std::initializer_list<WidgetHandle*> pickerPopups) {
    if (!bringUpRadio(origin, startButton))
        return;
    for (WidgetHandle* const popup : pickerPopups)
        popup->deleteWidget();
    LOG_ERROR_AT(origin, "Please Wait...");
}

bool ContentView::bringUpRadio(const LogOrigin& origin, Evas_Object* startButton) {
    elm_vell_button_text_set(startButton, "Please Wait...");
    elm_object_focus_set(startButton, EINA_FALSE);
    kill_background_app();
    if (prepare_background_app() != 0)
        return true;
    LOG_ERROR_AT(origin, "Failed to start child process");
    elm_vell_button_text_set(startButton, "Failed to start child process");
    return false;
}

bool ContentView::createPicker(const LogOrigin& origin, const Picker& picker, WidgetHandle& popup,
                               WidgetHandle& spinner, Evas_Object_Event_Cb keyCallback) {
    return runPageStep(origin, [&] {
        popup = createPopup(parentLayout, picker.title);
        Evas_Object* const focused = createSpinner(createPopupContent(parentLayout, popup));
        focusWhenShown(focused);
        spinner = setupSpinner(focused, picker.minimum, picker.maximum);
        evas_object_event_callback_add(focused, EVAS_CALLBACK_KEY_DOWN, keyCallback, this);
    });
}

std::optional<int> ContentView::chosenNumber(const Evas_Event_Key_Down& key, const Evas_Object* spinner) {
    if (key.key == nullptr || std::string_view(key.key) != "Return")
        return std::nullopt;
    return static_cast<int>(elm_spinner_value_get(spinner));
}

void ContentView::sendNumber(const LogOrigin& origin, const Picker& picker, int number, Evas_Object* button) {
    if (!(ncp_requester::getInstance().*picker.command)(number)) {
        LOG_ERROR_AT(origin, "failed to set %s", picker.name);
        return;
    }
    elm_vell_button_text_set(button, std::to_string(number).c_str());
    dismissPopup();
}

bool ContentView::stopTest(const LogOrigin& origin) {
    const bool stopped = ncp_requester::getInstance().ember_stop();
    if (!stopped)
        LOG_ERROR_AT(origin, "stop test failed");
    return stopped;
}

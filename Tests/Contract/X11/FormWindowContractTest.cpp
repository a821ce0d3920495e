#include "Platform/Linux/Qt/FormLabel.h"
#include "Platform/Linux/Qt/FormSlider.h"
#include "Tests/Contract/FormWindowClosingContract.h"
#include "Tests/Contract/FormWindowKeysContract.h"
#include "Tests/Contract/X11/FormWindowAdapters.h"

#include <QAbstractButton>
#include <QCheckBox>
#include <QStyle>
#include <QStyleOptionSlider>

#include <map>

namespace tarvex::contract {

namespace {

Rect screenRect(const test::PixelRect& rect) {
    return {static_cast<double>(rect.x),
            static_cast<double>(XFormWindowDesktop::height - rect.y - rect.height),
            static_cast<double>(rect.width), static_cast<double>(rect.height)};
}

class XFormWindowWorld final : public FormWindowWorld {
public:
    explicit XFormWindowWorld(test::WindowManagerKind kind) : desktop_(kind) {}

    bool waitUntil(const std::function<bool()>& condition) override { return desktop_.waitUntil(condition); }

    void settle() override { desktop_.settle(); }

    FormWindowPlatform& windows() override { return desktop_.windows; }

    std::optional<SeenControl> seen(const std::string& title, const std::string& id) override {
        const QWidget* const widget = desktop_.control(title, id);
        if (widget == nullptr) {
            return std::nullopt;
        }
        SeenControl control;
        control.isEnabled = widget->isEnabled();
        control.isHidden = widget->isHidden();
        if (const auto* label = dynamic_cast<const FormLabel*>(widget)) {
            control.text = label->shownText();
        } else if (const auto* slider = dynamic_cast<const FormSlider*>(widget)) {
            control.text = slider->accessibleName().toStdString();
            control.value = slider->controlValue();
        } else if (const auto* button = dynamic_cast<const QAbstractButton*>(widget)) {
            control.text = button->text().toStdString();
            control.value = button->isChecked() ? 1 : 0;
        }
        return control;
    }

    Rect windowFrame(const std::string& title) override {
        return screenRect(desktop_.managed(title).requireVisibleFrame());
    }

    Rect visibleScreen() override {
        return screenRect({0, 0, XFormWindowDesktop::width, XFormWindowDesktop::height});
    }

    Size contentSize(const std::string& title) override {
        const Rect content = screenRect(desktop_.managed(title).clientGeometry().value_or(test::PixelRect{}));
        return content.size();
    }

    bool hasKeyboard(const std::string& title) override { return desktop_.hasKeyboard(title); }

    void click(const std::string& title, const std::string& id) override {
        // Of a checkbox, only what can be seen takes a press.
        const bool isBox = dynamic_cast<const QCheckBox*>(desktop_.control(title, id)) != nullptr;
        desktop_.click(desktop_.pixelIn(title, id, isBox ? 0.05 : 0.5));
    }

    void dragAcross(const std::string& title, const std::string& id, int movements) override {
        const auto& slider = dynamic_cast<const FormSlider&>(*desktop_.control(title, id));
        QStyleOptionSlider option;
        option.initFrom(&slider);
        option.orientation = Qt::Horizontal;
        option.maximum = slider.maximum();
        option.sliderPosition = slider.sliderPosition();
        const QRect handle =
            slider.style()->subControlRect(QStyle::CC_Slider, &option, QStyle::SC_SliderHandle, &slider);
        const test::PixelPoint start = desktop_.pixelOf(title, slider, handle.center());
        desktop_.pointer.moveTo(start);
        desktop_.settle();
        desktop_.pointer.press();
        desktop_.settle();
        for (int movement = 1; movement <= movements; ++movement) {
            desktop_.pointer.moveTo({start.x + slider.width() * movement / movements, start.y});
            desktop_.settle();
        }
        desktop_.pointer.release();
        desktop_.settle();
    }

    void press(FormKey key) override {
        static const std::map<FormKey, std::uint32_t> keysyms{
            {FormKey::tab, 0xFF09},      {FormKey::space, 0x20},   {FormKey::enter, 0xFF0D},
            {FormKey::left, 0xFF51},     {FormKey::right, 0xFF53}, {FormKey::pageUp, 0xFF55},
            {FormKey::pageDown, 0xFF56}, {FormKey::home, 0xFF50},  {FormKey::end, 0xFF57}};
        desktop_.keyboard.tap(keysyms.at(key));
    }

    void closeByTitleBar(const std::string& title) override {
        desktop_.client.sendToWindowManager(desktop_.native(title), "_NET_CLOSE_WINDOW",
                                            {XCB_CURRENT_TIME, 2, 0, 0, 0});
    }

    void giveKeyboardToAnotherProgram() override { desktop_.useOther(); }

private:
    XFormWindowDesktop desktop_;
};

WorldFactory<FormWindowWorld> worldUnder(test::WindowManagerKind kind) {
    return worldFactory<FormWindowWorld, XFormWindowWorld>(nameOf(kind), kind);
}

const auto managedWorlds = ::testing::Values(worldUnder(test::WindowManagerKind::openbox),
                                             worldUnder(test::WindowManagerKind::xfwm4),
                                             worldUnder(test::WindowManagerKind::xfwm4Strict));

INSTANTIATE_TEST_SUITE_P(X11, FormWindowContract, managedWorlds, worldName);

INSTANTIATE_TEST_SUITE_P(X11, FormWindowKeysContract, managedWorlds, worldName);

INSTANTIATE_TEST_SUITE_P(X11, FormWindowClosingContract, managedWorlds, worldName);

} // namespace

} // namespace tarvex::contract

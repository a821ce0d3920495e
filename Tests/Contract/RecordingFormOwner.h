#pragma once

#include "App/Toolkit/FormWindow.h"

#include <algorithm>
#include <functional>
#include <ostream>
#include <string>
#include <vector>

namespace tarvex::contract {

/// Shows what it is given and keeps what it is told.
class RecordingFormOwner final : public FormOwner {
public:
    struct Use {
        std::string id;
        double value = 0;

        bool operator==(const Use&) const = default;

        friend std::ostream& operator<<(std::ostream& stream, const Use& use) {
            return stream << use.id << " = " << use.value;
        }
    };

    [[nodiscard]] Form form(const Size& contentSize) override {
        ++asked;
        lastSize = contentSize;
        return {controls};
    }

    void controlChanged(const std::string& id, double value) override {
        uses.push_back({id, value});
        if (takesValues) {
            control(id).value = value;
        }
        reaction(id);
    }

    void windowDidClose() override {
        ++closings;
        closed();
    }

    Control& control(const std::string& id) {
        return *std::find_if(controls.begin(), controls.end(),
                             [&](const Control& candidate) { return candidate.id == id; });
    }

    void add(ControlKind kind, const std::string& id, const Rect& frame, double value = 0) {
        Control control;
        control.kind = kind;
        control.id = id;
        control.frame = frame;
        control.text = id;
        control.value = value;
        control.maximumValue = kind == ControlKind::slider ? 40 : 1;
        controls.push_back(control);
    }

    std::vector<Control> controls;
    std::vector<Use> uses;
    /// Whether a control keeps what the person made of it.
    bool takesValues = true;
    int asked = 0;
    /// How often the window was closed.
    int closings = 0;
    Size lastSize;
    std::function<void(const std::string& id)> reaction = [](const std::string& /*id*/) {};
    /// What it does when the window was closed.
    std::function<void()> closed = [] {};
};

} // namespace tarvex::contract

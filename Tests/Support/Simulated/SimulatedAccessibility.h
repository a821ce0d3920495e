#pragma once

#include "App/Input/AccessibilityPlatform.h"
#include "Tests/Support/Simulated/Journal.h"

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace tarvex {

/// Error codes of the platform (Apple, AXError).
namespace ax_error {
inline constexpr std::int32_t illegalArgument = -25201;
inline constexpr std::int32_t invalidElement = -25202;
inline constexpr std::int32_t cannotComplete = -25204;
inline constexpr std::int32_t attributeUnsupported = -25205;
inline constexpr std::int32_t apiDisabled = -25211;
} // namespace ax_error

enum class SimulatedWindowKind : std::uint8_t { application, panel, menu, ownOverlay };

/// A window of another program. Frames are in accessibility space.
struct SimulatedWindowState {
    int number = 0;
    SimulatedWindowKind kind = SimulatedWindowKind::application;
    Rect frame;
    Size minimumSize;
    bool isMaximized = false;
    /// How many parts lie within each other at every point of the window, and how many of them, counted from
    /// the outermost, know their window.
    int partDepth = 1;
    int partsThatKnowTheWindow = 1;
};

/// Other programs' windows, the frontmost last: a tree of parts in windows on the desktop.
class SimulatedAccessibility final : public AccessibilityPlatform {
public:
    explicit SimulatedAccessibility(Journal& journal) : journal_(&journal) {}

    [[nodiscard]] bool isProcessTrusted(bool showsPrompt) override;
    [[nodiscard]] AccessibilityElementResult copyElementAtPosition(float x, float y) override;
    [[nodiscard]] AccessibilityValueResult copyAttributeValue(const AccessibilityElementRef& element,
                                                              std::string_view name) override;
    [[nodiscard]] std::optional<AccessibilityValue> makePointValue(Point point) override;
    [[nodiscard]] std::optional<AccessibilityValue> makeSizeValue(Size size) override;
    [[nodiscard]] std::int32_t setAttributeValue(const AccessibilityElementRef& element,
                                                 std::string_view name,
                                                 const AccessibilityValue& value) override;

    /// Opens a window in front of the others and returns its number.
    int open(SimulatedWindowState window);
    void close(int number);
    void raise(int number);

    /// The window of that number, to be changed at will; it must be open.
    SimulatedWindowState& at(int number);

    /// All open windows, the frontmost last.
    [[nodiscard]] const std::vector<SimulatedWindowState>& windows() const { return windows_; }

    /// The number of the frontmost window at a point, whatever its kind but this program's; 0 for none.
    [[nodiscard]] int windowAt(Point point) const;

    /// The number of the window that an element names or is a part of; 0 for none.
    [[nodiscard]] static int windowNumber(const AccessibilityElementRef& element);

    /// How many elements are held by anyone.
    [[nodiscard]] int liveElements() const { return static_cast<int>(liveness_.use_count()) - 1; }

    void setTrusted(bool isTrusted) { isTrusted_ = isTrusted; }

    /// The answer to every hit test from now on; none for the true one.
    void answerHitTest(std::optional<AccessibilityElementResult> answer) {
        hitTestAnswer_ = std::move(answer);
    }

    /// What the window and its parts answer to a read of that attribute, instead of the truth.
    void answerRead(int number, const std::string& name, AccessibilityValueResult answer);

    void answerTruly() { readAnswers_.clear(); }

    /// The error that a write of that attribute gives; 0 for success.
    void answerWrite(const std::string& name, std::int32_t error) { writeErrors_[name] = error; }

    /// Whether values for writing cannot be made.
    void setRefusesValues(bool refuses) { refusesValues_ = refuses; }

private:
    class Element;

    AccessibilityElementRef makeElement(int window, int part);
    SimulatedWindowState* find(int number);
    AccessibilityValueResult readWindow(const SimulatedWindowState& window, std::string_view name);
    AccessibilityValueResult readPart(const SimulatedWindowState& window, int part, std::string_view name);
    void place(SimulatedWindowState& window, Rect frame);

    Journal* journal_;
    std::vector<SimulatedWindowState> windows_;
    std::shared_ptr<int> liveness_ = std::make_shared<int>(0);
    std::optional<AccessibilityElementResult> hitTestAnswer_;
    std::map<std::pair<int, std::string>, AccessibilityValueResult> readAnswers_;
    std::map<std::string, std::int32_t> writeErrors_;
    bool isTrusted_ = true;
    bool refusesValues_ = false;
    int lastNumber_ = 0;
};

} // namespace tarvex

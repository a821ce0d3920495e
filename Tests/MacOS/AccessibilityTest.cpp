#include "App/Input/AccessibilityService.h"
#include "Platform/MacOS/Accessibility/MacAccessibilityPlatform.h"
#include "Tests/MacOS/MacWindows.h"
#include "Tests/MacOS/MacWorld.h"
#include "Tests/Support/RecordingLog.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tarvex {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr Rect frame{100, 80, 400, 300};

class ForeignElement final : public AccessibilityElement {};

class MacAccessibility : public testing::Test {
protected:
    MacAccessibility() {
        fake::mac().displays.all = {{.number = 1, .bounds = nativeRect({0, 0, 1280, 800})}};
    }

    static fake::FakeAccessibility& tree() { return fake::mac().accessibility; }

    /// The element at a point within the frame.
    AccessibilityElementRef hit() { return platform_.copyElementAtPosition(200, 200).element; }

    /// The window at the same point, in screen space.
    AccessibilityElementRef find() { return service_.getWindowUnderCursor({200, 600}); }

    AccessibilityValueResult answerOf(fake::AttributeAnswer answer) {
        const MacWindow window = openMacWindow(1, frame);
        tree().at(window.parts.back()).attributes["AXThing"] = std::move(answer);
        return platform_.copyAttributeValue(hit(), "AXThing");
    }

    MacAccessibilityPlatform platform_;
    MacScreens screens_;
    RecordingLog log_;
    AccessibilityService service_{platform_, screens_, log_};
};

TEST_F(MacAccessibility, TrustIsAskedWithThePromptOption) {
    EXPECT_TRUE(platform_.isProcessTrusted(true));
    tree().isTrusted = false;
    EXPECT_FALSE(platform_.isProcessTrusted(false));
    EXPECT_THAT(tree().trustQuestions, ElementsAre(true, false));
}

TEST_F(MacAccessibility, WithoutPermissionEveryCallGivesTheSystemsError) {
    openMacWindow(1, frame);
    const AccessibilityElementRef element = hit();
    ASSERT_NE(element, nullptr);
    tree().isTrusted = false;
    EXPECT_EQ(platform_.copyElementAtPosition(200, 200).error, kAXErrorAPIDisabled);
    EXPECT_EQ(hit(), nullptr);
    EXPECT_EQ(platform_.copyAttributeValue(element, "AXParent").error, kAXErrorAPIDisabled);
    EXPECT_EQ(platform_.setAttributeValue(element, "AXPosition", Point{1, 2}), kAXErrorAPIDisabled);
}

TEST_F(MacAccessibility, PermissionThatComesLateCountsFromThenOn) {
    openMacWindow(1, frame);
    tree().isTrusted = false;
    EXPECT_EQ(find(), nullptr);
    tree().isTrusted = true;
    EXPECT_NE(find(), nullptr);
    EXPECT_THAT(
        log_.systemLines(),
        ElementsAre("AccessibilityService.getWindowUnderCursor: CopyElementAtPosition failed (-25211)"));
}

TEST_F(MacAccessibility, PermissionTakenAwayIsAnErrorOfTheWrite) {
    openMacWindow(1, frame);
    const AccessibilityElementRef window = find();
    ASSERT_NE(window, nullptr);
    tree().isTrusted = false;
    service_.setPosition(window, {1, 2});
    service_.setSize(window, {3, 4});
    EXPECT_THAT(tree().writes, IsEmpty());
    EXPECT_THAT(log_.systemLines(), ElementsAre("AccessibilityService.setPosition: failed (-25211)",
                                                "AccessibilityService.setSize: failed (-25211)"));
}

TEST_F(MacAccessibility, HitTestMayFindNothingAndSucceed) {
    openMacWindow(1, frame);
    tree().hitsNothing = true;
    const AccessibilityElementResult result = platform_.copyElementAtPosition(200, 200);
    EXPECT_EQ(result.error, 0);
    EXPECT_EQ(result.element, nullptr);
}

TEST_F(MacAccessibility, ElementThatComesWithAnErrorIsLetGo) {
    openMacWindow(1, frame);
    tree().hitError = kAXErrorFailure;
    const AccessibilityElementResult result = platform_.copyElementAtPosition(200, 200);
    EXPECT_EQ(result.error, kAXErrorFailure);
    EXPECT_EQ(result.element, nullptr);
}

TEST_F(MacAccessibility, WithoutASystemWideElementTheHitTestFails) {
    openMacWindow(1, frame);
    tree().refusesSystemWideElement = true;
    EXPECT_EQ(platform_.copyElementAtPosition(200, 200).error, kAXErrorFailure);
    EXPECT_EQ(tree().messages, 0);
}

TEST_F(MacAccessibility, AnswersKeepTheirKind) {
    EXPECT_EQ(answerOf(CGPoint{3, 4}).value, AccessibilityValue(Point{3, 4}));
    EXPECT_EQ(answerOf(CGSize{5, 6}).value, AccessibilityValue(Size{5, 6}));
    const AccessibilityValueResult element = answerOf(tree().add({.program = 1}));
    ASSERT_TRUE(element.value.has_value());
    EXPECT_NE(std::get<AccessibilityElementRef>(*element.value), nullptr);
}

TEST_F(MacAccessibility, AnswersOfAnotherTypeAreNeitherPointNorSize) {
    const AccessibilityValue other = OtherAccessibilityValue{};
    EXPECT_EQ(answerOf("a text").value, other);
    EXPECT_EQ(answerOf(CGRect{{1, 2}, {3, 4}}).value, other);
    EXPECT_EQ(answerOf(fake::BrokenPoint{}).value, other);
}

TEST_F(MacAccessibility, AnswerWithoutAValueIsSuccessWithoutAValue) {
    const AccessibilityValueResult result = answerOf(std::monostate{});
    EXPECT_EQ(result.error, 0);
    EXPECT_EQ(result.value, std::nullopt);
}

TEST_F(MacAccessibility, ErrorsAreHandedOnAsTheyAre) {
    for (const AXError error : {kAXErrorNoValue, kAXErrorFailure, kAXErrorCannotComplete}) {
        const AccessibilityValueResult result = answerOf(error);
        EXPECT_EQ(result.error, error);
        EXPECT_EQ(result.value, std::nullopt);
    }
}

TEST_F(MacAccessibility, GeometryOfTheWrongTypeIsNoGeometry) {
    const MacWindow window = openMacWindow(1, frame);
    const AccessibilityElementRef found = find();
    ASSERT_NE(found, nullptr);
    auto& attributes = tree().at(window.window).attributes;
    attributes["AXPosition"] = CGSize{1, 2};
    attributes["AXSize"] = CGPoint{3, 4};
    EXPECT_EQ(service_.getPointAttribute(found, "AXPosition"), std::nullopt);
    EXPECT_EQ(service_.getSizeAttribute(found, "AXSize"), std::nullopt);
    attributes["AXPosition"] = "here";
    attributes["AXSize"] = CGRect{{1, 2}, {3, 4}};
    EXPECT_EQ(service_.getPointAttribute(found, "AXPosition"), std::nullopt);
    EXPECT_EQ(service_.getSizeAttribute(found, "AXSize"), std::nullopt);
    EXPECT_THAT(log_.systemLines(), IsEmpty());
}

TEST_F(MacAccessibility, ForeignAndMissingElementsAreRefusedUnasked) {
    for (const AccessibilityElementRef& element :
         {AccessibilityElementRef(), AccessibilityElementRef(std::make_shared<ForeignElement>())}) {
        EXPECT_EQ(platform_.copyAttributeValue(element, "AXPosition").error, kAXErrorInvalidUIElement);
        EXPECT_EQ(platform_.setAttributeValue(element, "AXPosition", Point{1, 2}), kAXErrorInvalidUIElement);
    }
    EXPECT_EQ(tree().messages, 0);
}

TEST_F(MacAccessibility, NameThatIsNoTextIsRefused) {
    openMacWindow(1, frame);
    const AccessibilityElementRef element = hit();
    EXPECT_EQ(platform_.copyAttributeValue(element, "AX\xFF").error, kAXErrorIllegalArgument);
    EXPECT_EQ(platform_.setAttributeValue(element, "AX\xFF", Point{1, 2}), kAXErrorIllegalArgument);
}

TEST_F(MacAccessibility, ValueThatCannotBeWrappedIsNotWritten) {
    openMacWindow(1, frame);
    const AccessibilityElementRef window = find();
    ASSERT_NE(window, nullptr);
    tree().refusesValues = true;
    const int before = tree().messages;
    EXPECT_EQ(platform_.makePointValue({1, 2}), std::nullopt);
    EXPECT_EQ(platform_.makeSizeValue({1, 2}), std::nullopt);
    EXPECT_EQ(platform_.setAttributeValue(window, "AXSize", Size{1, 2}), kAXErrorIllegalArgument);
    service_.setPosition(window, {1, 2});
    service_.setSize(window, {3, 4});
    EXPECT_EQ(tree().messages, before);
    EXPECT_THAT(log_.systemLines(), IsEmpty());
}

TEST_F(MacAccessibility, ProgramThatNeverAnswersCostsLessThanTheTapMayTake) {
    openMacWindow(1, frame);
    tree().freeze(1);
    const double start = fake::mac().runLoop.now();
    EXPECT_EQ(find(), nullptr);
    EXPECT_LE(fake::mac().runLoop.now() - start, MacAccessibilityPlatform::messagingTimeoutSeconds);
    EXPECT_THAT(
        log_.systemLines(),
        ElementsAre("AccessibilityService.getWindowUnderCursor: CopyElementAtPosition failed (-25204)"));
}

TEST_F(MacAccessibility, ProgramThatStopsAnsweringInBetweenCostsLessThanTheTapMayTake) {
    openMacWindow(1, frame);
    for (const int answered : {1, 2, 3, 4, 5, 6}) {
        tree().freezeAfter(answered);
        const double start = fake::mac().runLoop.now();
        if (const AccessibilityElementRef window = find()) {
            EXPECT_EQ(service_.getPointAttribute(window, "AXPosition"), std::nullopt);
            EXPECT_EQ(service_.getSizeAttribute(window, "AXSize"), std::nullopt);
        }
        const double waited = fake::mac().runLoop.now() - start;
        EXPECT_GT(waited, 0.0) << answered;
        EXPECT_LT(waited, 1.0) << answered;
    }
}

TEST_F(MacAccessibility, WalkUpTheTreeEndsAfterTenSteps) {
    openMacWindow(1, frame, 10);
    EXPECT_NE(find(), nullptr);
    openMacWindow(2, frame, 11);
    const int before = tree().messages;
    EXPECT_EQ(find(), nullptr);
    EXPECT_EQ(tree().messages - before, 1 + 2 * 10);
}

TEST_F(MacAccessibility, ElementThatIsItsOwnParentIsNoTrap) {
    const MacWindow window = openMacWindow(1, frame, 3);
    tree().at(window.parts.back()).attributes["AXParent"] = window.parts.back();
    EXPECT_EQ(find(), nullptr);
}

TEST_F(MacAccessibility, WindowAttributeThatIsNoElementIsPassedOver) {
    const MacWindow window = openMacWindow(1, frame, 3);
    tree().at(window.parts.back()).attributes["AXWindow"] = "a window";
    EXPECT_NE(find(), nullptr);
}

TEST_F(MacAccessibility, HandleKeepsItsElementWhileItIsHeld) {
    openMacWindow(1, frame);
    AccessibilityElementRef first = hit();
    const AccessibilityElementRef second = first;
    first.reset();
    EXPECT_EQ(platform_.copyAttributeValue(second, "AXParent").error, 0);
}

} // namespace
} // namespace tarvex

#include "App/Snapping/RectDescription.h"

#include <gtest/gtest.h>

#include <limits>
#include <locale>
#include <random>
#include <sstream>
#include <string>

namespace tarvex {

namespace {

std::string describeNumber(double number) {
    const std::string text = describe({number, 0, 0, 0});
    return text.substr(1, text.find(',') - 1);
}

double read(const std::string& text) {
    std::istringstream stream(text);
    stream.imbue(std::locale::classic());
    double number = 0;
    stream >> number;
    return number;
}

/// The number rounded to so many fractional digits.
std::string rounded(double number, std::size_t digits) {
    std::ostringstream text;
    text.imbue(std::locale::classic());
    text.precision(static_cast<std::streamsize>(digits));
    text << std::fixed << number;
    return text.str();
}

TEST(RectDescription, GivesFourNumbersInParentheses) {
    EXPECT_EQ(describe({0, 25, 720.5, -875}), "(0.0, 25.0, 720.5, -875.0)");
}

TEST(RectDescription, TakesTheShortestOfAllFormsThatReadBack) {
    // Seventeen digits would be enough for any number; these need fewer.
    EXPECT_EQ(describeNumber(52.62795397754061), "52.62795397754061");
    EXPECT_EQ(describeNumber(0.1), "0.1");
    EXPECT_EQ(describeNumber(143.25), "143.25");
    EXPECT_EQ(describeNumber(1.0 / 3), "0.3333333333333333");
}

TEST(RectDescription, AnyNumberReadsBackAndNoShorterFormDoes) {
    std::mt19937_64 generator(7);
    std::uniform_real_distribution<double> numbers(-10000, 10000);
    for (int count = 0; count < 2000; ++count) {
        const double number = numbers(generator);
        const std::string text = describeNumber(number);
        EXPECT_EQ(read(text), number) << text;
        const std::size_t digits = text.size() - text.find('.') - 1;
        if (digits > 1) {
            EXPECT_NE(read(rounded(number, digits - 1)), number) << text;
        }
    }
}

TEST(RectDescription, HasNoExponent) {
    EXPECT_EQ(describeNumber(1e15), "1000000000000000.0");
    EXPECT_EQ(describeNumber(1e-7), "0.0000001");
    EXPECT_EQ(read(describeNumber(std::numeric_limits<double>::max())), std::numeric_limits<double>::max());
    EXPECT_EQ(read(describeNumber(std::numeric_limits<double>::min())), std::numeric_limits<double>::min());
}

TEST(RectDescription, NamesWhatIsNoNumber) {
    const double infinity = std::numeric_limits<double>::infinity();
    EXPECT_EQ(describe({infinity, -infinity, std::numeric_limits<double>::quiet_NaN(), 1}),
              "(inf, -inf, nan, 1.0)");
}

} // namespace

} // namespace tarvex

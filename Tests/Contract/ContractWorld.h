#pragma once

#include <functional>
#include <memory>
#include <ostream>
#include <string>
#include <utility>

namespace tarvex::contract {

/// The contract of each port is stated once, in a header of this folder, over the world that it needs. A
/// header defines its tests: include it in one source file of a test program, and name every world of the
/// program there, as in
///
///     INSTANTIATE_TEST_SUITE_P(
///         Openbox, EventTapContract,
///         ::testing::Values(worldFactory<EventTapWorld, XEventTapWorld>("Openbox", "openbox")), worldName);
///
/// The desktop that a contract is tried on: the part that is the same for every port. A world is made afresh
/// for each test and takes everything that it opened away again.
class ContractWorld {
public:
    ContractWorld() = default;
    ContractWorld(const ContractWorld&) = delete;
    ContractWorld& operator=(const ContractWorld&) = delete;
    ContractWorld(ContractWorld&&) = delete;
    ContractWorld& operator=(ContractWorld&&) = delete;
    virtual ~ContractWorld() = default;

    /// Lets the desktop and the main loop run until the condition holds. False when it does not within the
    /// world's own deadline.
    virtual bool waitUntil(const std::function<bool()>& condition) = 0;

    /// Lets everything that was done so far take effect, as far as it is going to: input reaches those who
    /// listen, windows their place. For the checks that something does not happen.
    virtual void settle() = 0;
};

/// The parameter of a contract suite: how to make its world, and the word that names it in the test's name.
template <typename World>
struct WorldFactory {
    std::string name;
    std::function<std::unique_ptr<World>()> make;

    friend void PrintTo(const WorldFactory& factory, std::ostream* stream) { *stream << factory.name; }
};

/// A factory for a concrete world; the arguments are kept and given to each one made.
template <typename World, typename Concrete, typename... Arguments>
WorldFactory<World> worldFactory(std::string name, Arguments... arguments) {
    return {std::move(name), [=] { return std::make_unique<Concrete>(arguments...); }};
}

/// Names an instance of a contract suite after its world.
inline constexpr auto worldName = [](const auto& info) { return info.param.name; };

} // namespace tarvex::contract

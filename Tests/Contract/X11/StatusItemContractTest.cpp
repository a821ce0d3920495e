#include "Tests/Contract/StatusItemContract.h"

#include "Tests/Contract/X11/StatusItemWorlds.h"

namespace tarvex::contract {
namespace {

INSTANTIATE_TEST_SUITE_P(Embedded, StatusItemContract,
                         ::testing::Values(worldFactory<StatusItemWorld, EmbeddedItemWorld>("Embedded")),
                         worldName);
INSTANTIATE_TEST_SUITE_P(Notifier, StatusItemContract,
                         ::testing::Values(worldFactory<StatusItemWorld, NotifierItemWorld>("Notifier")),
                         worldName);

} // namespace
} // namespace tarvex::contract

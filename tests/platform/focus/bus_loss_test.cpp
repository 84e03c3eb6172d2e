#include "platform/focus/focus_fixture.h"
#include "support/event_loop.h"

namespace corvandi::testing {
namespace {

class BusLossTest : public FocusTest {};

} // namespace
} // namespace corvandi::testing

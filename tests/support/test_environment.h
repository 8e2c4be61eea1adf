// What every test program shares: each test starts with an empty in-memory profile and with
// message boxes recorded instead of printed.
#pragma once

#include "platform/app/profile.h"

#include <string>
#include <vector>

namespace talvor::testing {

// Message boxes shown since the current test started (texts in order).
const std::vector<std::string>& ShownMessages();
void ClearShownMessages();

// The in-memory profile of the current test.
platform::MemoryProfile& TestProfile();

} // namespace talvor::testing

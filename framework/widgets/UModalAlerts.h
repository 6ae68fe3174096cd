#pragma once

#include <cstdint>

namespace UModalAlerts {

constexpr int16_t kItemOK = 1;
constexpr int16_t kItemCancel = 2;

// Shows the alert of alert-<alertID>.ui and waits for the answer: kItemOK or kItemCancel. Escape, an accepted
// quit and an unusable layout (which standard error and an alert of its own tell of) are kItemCancel.
int16_t Alert(int32_t alertID);

}  // namespace UModalAlerts

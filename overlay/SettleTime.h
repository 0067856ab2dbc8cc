// SPDX-License-Identifier: MIT
#pragma once

namespace sayloft {

/// Easing rates are the part of the remaining distance that is covered at every tick, 60 ticks a
/// second. The settle time is how long 95 % of the distance take.

/// Whole milliseconds, 11 to 4968: rates outside 0.01 to 0.99 count as the nearer of the two.
[[nodiscard]] int settleMs(double rate);

/// At most 0.95: a tick is the shortest time there is.
[[nodiscard]] double rateForSettleMs(int milliseconds);

}  // namespace sayloft

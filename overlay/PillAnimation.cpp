// SPDX-License-Identifier: MIT
#include "overlay/PillAnimation.h"

#include <algorithm>

namespace sayloft {
namespace {

constexpr double visibleFrom = 0.003;
constexpr double wpmRate = 0.28;
constexpr double levelRate = 0.35;
constexpr double phasePerTick = 0.5;

double seconds(PillAnimation::Clock::duration duration) {
    return std::chrono::duration<double>(duration).count();
}

}  // namespace

double lerp(double a, double b, double t) {
    return a + (b - a) * t;
}

bool PillAnimation::tick() {
    presence = lerp(presence, presenceTarget, presence < presenceTarget ? appearRate : hideRate);
    wpmDisplay = lerp(wpmDisplay, wpmTarget, wpmRate);
    const double raw = recStart && levelProvider ? levelProvider() : 0.0;
    level = lerp(level, raw, levelRate);
    phase += phasePerTick;

    const bool visible = presence > visibleFrom || presenceTarget > visibleFrom;
    const bool mustBeDrawn = visible || lastVisible;
    lastVisible = visible;
    return mustBeDrawn;
}

void PillAnimation::setRecording(TimePoint now) {
    ++statsToken;
    presenceTarget = 1;
    mode = StatMode::timer;
    recStart = now;
    wpmTarget = 0;
    wpmDisplay = 0;
}

void PillAnimation::stopTimer(TimePoint now) {
    if (recStart)
        frozenElapsed = seconds(now - *recStart);
    recStart.reset();
}

void PillAnimation::shrink() {
    ++statsToken;
    presenceTarget = 0;
    recStart.reset();
}

int PillAnimation::holdThenHide() {
    recStart.reset();
    return ++statsToken;
}

int PillAnimation::showStats(int wpm) {
    mode = StatMode::wpm;
    recStart.reset();
    wpmTarget = wpm;
    wpmDisplay = 0;
    return ++statsToken;
}

void PillAnimation::hide(int token) {
    if (token == statsToken)
        presenceTarget = 0;
}

bool PillAnimation::isVisible() const {
    return presence > visibleFrom;
}

// The level counts as well: what is left of it would be where the next recording begins.
bool PillAnimation::isAtRest() const {
    return !lastVisible && !isVisible() && presenceTarget <= visibleFrom && !recStart &&
           level < visibleFrom;
}

double PillAnimation::elapsed(TimePoint now) const {
    return recStart ? seconds(now - *recStart) : frozenElapsed;
}

}  // namespace sayloft

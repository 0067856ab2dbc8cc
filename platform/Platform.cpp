// SPDX-License-Identifier: MIT
#include "platform/Platform.h"

#include "platform/AudioInput.h"
#include "platform/Clipboard.h"
#include "platform/KeyPoster.h"
#include "platform/LoginItem.h"
#include "platform/ModifierWatch.h"
#include "platform/Notifier.h"
#include "platform/PrivacySettings.h"
#include "platform/SystemSounds.h"
#include "platform/TrayItem.h"
#include "platform/WindowEffects.h"

namespace sayloft {

Platform::Platform() = default;
Platform::~Platform() = default;
Platform::Platform(Platform&&) noexcept = default;

}  // namespace sayloft

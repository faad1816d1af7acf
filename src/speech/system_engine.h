#pragma once

#include "sp_engine.h"

namespace speech {

/// Makes the engine for this system's speech service: SsipEngine, on Windows SapiEngine. Throws Error when no
/// service is installed.
std::unique_ptr<SpEngine> makeSystemEngine();

} // namespace speech

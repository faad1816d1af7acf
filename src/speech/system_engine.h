#pragma once

#include "sp_engine.h"

namespace speech {

/// Makes an engine for this system's speech service. Throws Error when none is installed.
std::unique_ptr<SpEngine> makeSystemEngine();

} // namespace speech

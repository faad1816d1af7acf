#include "system_engine.h"

#include "ssip_engine.h"

namespace speech {

std::unique_ptr<SpEngine> makeSystemEngine()
{
    return std::make_unique<SsipEngine>();
}

} // namespace speech

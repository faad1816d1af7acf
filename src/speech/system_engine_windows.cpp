#include "system_engine.h"

#include "sapi_engine.h"

namespace speech {

std::unique_ptr<SpEngine> makeSystemEngine()
{
    return std::make_unique<SapiEngine>();
}

} // namespace speech

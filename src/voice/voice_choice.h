#pragma once

#include <QString>

/// The voice and the speed of the spoken calls, chosen for the rest of the run.
struct VoiceChoice
{
    /// Position in the list of installed voices, as decimal text; empty for the default voice.
    QString VoiceIndex;
    /// Speaking rate, -10 to 10.
    int VoiceRate = 0;
};

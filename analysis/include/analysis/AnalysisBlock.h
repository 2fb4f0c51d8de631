// The record that carries one chunk of audio from the audio thread to the analysis.
#pragma once

namespace Orvel {

/// Two of these exist per plug-in; they are exchanged, never copied. Between two exchanges the
/// write record belongs to the audio thread and the read record to the analysing thread.
struct AnalysisBlock {
    float** channels = nullptr; ///< left and right, in one of the two capture buffers
    int sampleCount = 0;
    bool playing = false;
    float tempo = 120.0F;    ///< beats per minute, as the host said
    double position = 0;     ///< quarter notes, of the chunk's first sample
    bool resetFirst = false; ///< clear all measures before this chunk
};

} // namespace Orvel

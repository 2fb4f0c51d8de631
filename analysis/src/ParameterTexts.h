// Texts of the parameters that are neither plain numbers nor lists, and their way back.
#pragma once

namespace Orvel {

// Signatures as Vardo::TextFunction and Vardo::ParseFunction want them.

/// The label of a beat length: "1/4", "2 Bars".
void formatBeatTime(float plain, char* text, int flags);
bool parseBeatTime(const char* text, float& plain, void* userData);

/// Milliseconds: "500 ms", from one second on "1.50 s". "2 sec" is read as well; a bare number is
/// milliseconds.
void formatTime(float plain, char* text, int flags);
bool parseTime(const char* text, float& plain, void* userData);

/// Hertz: "1000", "1000 Hz", "1k", "1.0 kHz".
double parseHertz(const char* text);

/// "Duration x4". "x4" and "4" are read as well.
void formatMultiplier(float plain, char* text, int flags);
bool parseMultiplier(const char* text, float& plain, void* userData);

/// "x16.0"; read as a multiplier.
void formatSpeed(float plain, char* text, int flags);

/// "12.0 dB/s", or "Hold" for 0.
void formatPeakReset(float plain, char* text, int flags);
bool parsePeakReset(const char* text, float& plain, void* userData);

} // namespace Orvel

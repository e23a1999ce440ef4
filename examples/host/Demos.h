#pragma once

// Sections of the demo host, each printing what one part of the library
// shows a user.

// Positions in every time family, levels, notes, file sizes and rates.
void ShowTimeAndAudioValues();

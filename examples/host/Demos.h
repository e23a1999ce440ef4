#pragma once

// Sections of the demo host, each printing what one part of the library
// shows a user.

// Positions in every time family, levels, notes, file sizes and rates.
void ShowTimeAndAudioValues();

// An owning list of takes sorted by length, and markers found by name.
void ShowContainers();

// The font that every program of ours carries: each character of its own texts, so that they are readable on a system
// without any Chinese font. Where the asked face is installed, the carried one is not seen.
#pragma once

// Makes the carried font known to this program. Call it before the first text rather than at start: it wakes the text
// libraries. Once is enough, more does nothing. False: the program carries none, or text cannot be drawn at all.
// User-interface thread.
bool LoadCarriedFont();

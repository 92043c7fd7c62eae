// The game's glyph advance table, in half-cell units: the font atlas sizes each glyph
// to its advance so that the game's text runs evenly spaced.
#pragma once

inline float letterWidth(int code) {
    static const float digits[10] = {0.6f, 0.5f, 0.6f, 0.6f, 0.65f, 0.65f, 0.6f, 0.65f, 0.6f, 0.6f};
    static const float upper[26] = {0.7f, 0.6f, 0.7f, 0.7f, 0.65f, 0.6f, 0.7f, 0.8f, 0.6f, 0.7f, 0.7f, 0.6f, 0.9f,
                                    0.85f, 0.8f, 0.6f, 0.9f, 0.7f, 0.7f, 0.7f, 0.7f, 0.7f, 1.0f, 0.8f, 0.7f, 0.8f};
    static const float lower[26] = {0.6f, 0.6f, 0.6f, 0.6f, 0.6f, 0.5f, 0.6f, 0.6f, 0.2f, 0.4f, 0.6f, 0.2f, 0.8f,
                                    0.5f, 0.55f, 0.55f, 0.55f, 0.5f, 0.55f, 0.55f, 0.55f, 0.6f, 0.8f, 0.6f, 0.6f, 0.6f};
    if (code >= '0' && code <= '9') return digits[code - '0'];
    if (code >= 'A' && code <= 'Z') return upper[code - 'A'];
    if (code >= 'a' && code <= 'z') return lower[code - 'a'];
    switch (code) {
        case ' ': return 0.5f;
        case '!': case ',': case '.': case ':': return 0.2f;
        case '-': return 0.45f;
        case '/': case '?': return 0.5f;
        default: return 1.0f;
    }
}

// The synthesiser patches the music is played with. Each: oscillators (shape, detune in
// cents, gain), amplitude ADSR, cutoff and its envelope amount, filter ADSR, resonance,
// vibrato (rate, cents, delay).
#pragma once

#include "render.h"

namespace patches {

// The patches are a table laid out by hand, one per line.
// clang-format off

using render::Voice;
using synth::Osc;

inline const Voice kPad = {
    {{Osc::Saw, 0, 0.3f}, {Osc::Saw, 11, 0.3f}, {Osc::Saw, -13, 0.3f}, {Osc::Triangle, -1200, 0.4f}},
    {0.7, 0.6, 0.8, 1.6}, 700, 900, {1.2, 1.0, 0.5, 1.6}, 0.8, 0, 0, 0};
inline const Voice kWarmPad = {
    {{Osc::Saw, 0, 0.25f}, {Osc::Saw, 7, 0.25f}, {Osc::Triangle, -1200, 0.5f}, {Osc::Sine, -5, 0.3f}},
    {1.2, 1.0, 0.85, 2.5}, 900, 900, {2.0, 2.0, 0.4, 2.5}, 0.9, 0, 0, 0};
inline const Voice kStrings = {
    {{Osc::Saw, 0, 0.3f}, {Osc::Saw, 9, 0.3f}, {Osc::Saw, -11, 0.3f}, {Osc::Saw, 1203, 0.12f}},
    {0.35, 0.5, 0.85, 1.0}, 1400, 800, {0.5, 1.0, 0.6, 1.0}, 0.7, 5.2, 7, 0.4};
inline const Voice kBass = {
    {{Osc::Saw, 0, 0.6f}, {Osc::Square, -1200, 0.45f}},
    {0.004, 0.25, 0.7, 0.08}, 160, 1500, {0.002, 0.2, 0.15, 0.1}, 2.2, 0, 0, 0};
inline const Voice kDriveBass = {
    {{Osc::Saw, 0, 0.55f}, {Osc::Saw, -7, 0.4f}, {Osc::Square, -1200, 0.35f}},
    {0.003, 0.15, 0.6, 0.05}, 220, 2200, {0.001, 0.12, 0.1, 0.05}, 3.0, 0, 0, 0};
inline const Voice kSubBass = {
    {{Osc::Sine, 0, 0.8f}, {Osc::Triangle, 0, 0.4f}, {Osc::Saw, 0, 0.15f}},
    {0.01, 0.3, 0.8, 0.3}, 300, 300, {0.01, 0.3, 0.2, 0.2}, 0.8, 0, 0, 0};
inline const Voice kPluck = {
    {{Osc::Square, 0, 0.5f}, {Osc::Saw, 6, 0.3f}},
    {0.002, 0.3, 0.0, 0.15}, 500, 4200, {0.001, 0.16, 0.0, 0.1}, 1.6, 0, 0, 0};
// Inharmonic sine partials that die away like a struck bar.
inline const Voice kBell = {
    {{Osc::Sine, 0, 0.6f}, {Osc::Sine, 1200, 0.25f}, {Osc::Sine, 1902, 0.18f}, {Osc::Sine, 2786, 0.1f},
     {Osc::Sine, 3986, 0.06f}},
    {0.002, 1.8, 0.0, 1.2}, 9000, 0, {0.01, 0.1, 1.0, 0.1}, 0.7, 0, 0, 0};
inline const Voice kLead = {
    {{Osc::Saw, 0, 0.45f}, {Osc::Square, 5, 0.3f}, {Osc::Saw, -6, 0.3f}},
    {0.012, 0.25, 0.75, 0.3}, 1100, 2600, {0.02, 0.5, 0.45, 0.3}, 1.4, 5.5, 20, 0.25};
inline const Voice kSynthLead = {
    {{Osc::Saw, 0, 0.4f}, {Osc::Saw, 12, 0.3f}, {Osc::Saw, -12, 0.3f}, {Osc::Square, -1200, 0.15f}},
    {0.005, 0.2, 0.8, 0.15}, 1800, 3000, {0.005, 0.35, 0.4, 0.15}, 1.6, 5.8, 15, 0.2};
inline const Voice kFlute = {
    {{Osc::Triangle, 0, 0.6f}, {Osc::Sine, 1200, 0.15f}, {Osc::Saw, 3, 0.08f}},
    {0.12, 0.3, 0.8, 0.6}, 1800, 600, {0.1, 0.5, 0.5, 0.5}, 0.7, 5.0, 10, 0.35};
inline const Voice kBrass = {
    {{Osc::Saw, 0, 0.4f}, {Osc::Saw, -8, 0.35f}, {Osc::Saw, 7, 0.35f}},
    {0.05, 0.3, 0.8, 0.45}, 450, 3800, {0.09, 0.6, 0.45, 0.45}, 1.1, 5.0, 9, 0.4};
inline const Voice kHorn = {
    {{Osc::Saw, 0, 0.4f}, {Osc::Saw, 5, 0.35f}},
    {0.08, 0.3, 0.8, 0.4}, 500, 1500, {0.1, 0.5, 0.5, 0.4}, 0.9, 4.5, 8, 0.5};

// clang-format on
}  // namespace patches

// The window managers and the windows that the tests bring together.
#pragma once

#include "tests/desktop/desktop.h"

#include <utility>

namespace test {

inline const WindowManager kManagers[] = {
    { .name = "none", .command = {}, .there = false, .minimises = false, .takes_alt_space = false },
    { .name = "openbox", .command = { "openbox", "--sm-disable" } },
    { .name = "xfwm4", .command = { "dbus-run-session", "--", "xfwm4", "--compositor=off" } },
    { .name = "metacity", .command = { "metacity", "--no-composite", "--sm-disable" }, .overhangs = false },
    { .name = "i3",
      .command = { "i3", "-c", I3_CONFIG },
      .places = false,
      .minimises = false,
      .maximises = false,
      .shapes = false,
      .takes_alt_space = false },
    { .name = "i3_floating",
      .command = { "i3", "-c", I3_FLOATING_CONFIG },
      .minimises = false,
      .takes_alt_space = false },
};

inline const Face kFaces[] = {
    // tests/desktop/window
    { .name = "plain",
      .command = { DESKTOP_WINDOW },
      .caption = { 150, 12 },
      .system = { 12, 12 },
      .minimise = { -49, 12 },
      .maximise = { -31, 12 },
      .close = { -13, 12 },
      .client = { 200, 150 },
      .last = { -8, -8 },
      .tip = { 200, 150 },
      .cut = { 20, -20 },
      .client_colour = 0x40A060,
      .last_colour = 0x40A060,
      .active_colour = 0x0A246A,
      .inactive_colour = 0x808080,
      .overhang = 4,
      .chatter = {} },
    // The gallery skin; the colours are those of its pictures.
    { .name = "gallery",
      .command = { SKINVIEW, GALLERY "/gallery.xml" },
      .caption = { 150, 12 },
      .system = { 42, 20 },
      .minimise = { -94, 20 },
      .maximise = { -64, 20 },
      .close = { -34, 20 },
      .client = { 250, 60 },
      .last = { -70, -14 },
      .tip = { 67, -80 },
      .cut = { 1, 1 },
      .client_colour = 0xEEF2F0,
      .last_colour = 0xE5EBEA,
      .active_colour = 0x316974,
      .inactive_colour = 0x9EAEB1,
      .overhang = 0,
      .chatter = { "gallery.xml", "command" } },
};

using Pair = std::pair<WindowManager, Face>;

inline std::string name_of(const Pair& pair)
{
    return std::string(pair.second.name) + "_" + pair.first.name;
}

inline std::vector<Pair> all_pairs()
{
    std::vector<Pair> pairs;
    for (const Face& face : kFaces) {
        for (const WindowManager& manager : kManagers)
            pairs.emplace_back(manager, face);
    }
    return pairs;
}

} // namespace test

// The window managers and the windows that the tests bring together.
#pragma once

#include "tests/desktop/desktop.h"

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

inline const Face kPlain{
    .name = "plain",
    .command = { DESKTOP_WINDOW },
    .caption = { 150, 12 },
    .system = { 12, 12 },
    .minimise = { -49, 12 },
    .maximise = { -31, 12 },
    .close = { -13, 12 },
    .client = { 200, 150 },
    .cut = { 20, -20 },
    .last = { -8, -8 },
    .client_colour = 0x40A060,
    .active_colour = 0x0A246A,
    .inactive_colour = 0x808080,
    .overhang = 4,
};

} // namespace test

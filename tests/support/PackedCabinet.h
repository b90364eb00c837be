// Cabinets for tests and benches with really packed data, made by libgcab as the build makes the payload. Programs that
// use this compile PackedCabinet.cpp and link libgcab.
#pragma once

#include "tests/support/CabinetBuilder.h"

#include <string>
#include <vector>

namespace test {

std::string packed_cabinet(const std::vector<CabinetFile>& files);

} // namespace test

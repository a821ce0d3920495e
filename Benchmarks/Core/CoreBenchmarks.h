#pragma once

#include "Benchmarks/Support/Options.h"
#include "Benchmarks/Support/Report.h"

namespace tarvex::benchmark {

/// One dragged event through the whole snap controller, against opening, reading and parsing the settings.
void measureDecision(const Options& options, Report& report);

/// One dragged event at growing numbers of zones.
void measureScale(const Options& options, Report& report);

} // namespace tarvex::benchmark

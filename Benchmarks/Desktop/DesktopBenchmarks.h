#pragma once

#include "Benchmarks/Desktop/Stage.h"
#include "Benchmarks/Support/Options.h"
#include "Benchmarks/Support/Report.h"

namespace tarvex::benchmark {

/// From the release of the button to the window's final frame.
void measureSnap(const Programs& programs, const Options& options, Report& report);

/// From the press of the modifier to the first pixel of the overlay.
void measureOverlay(const Programs& programs, const Options& options, Report& report);

/// Processor time of a drag, and how far the selection is behind the pointer.
void measureDrag(const Programs& programs, const Options& options, Report& report);

/// Wake-ups without a drag.
void measureIdle(const Programs& programs, const Options& options, Report& report);

/// Memory, and time from the start to readiness.
void measureWeight(const Programs& programs, const Options& options, Report& report);

} // namespace tarvex::benchmark

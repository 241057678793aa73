// The kernels of one instruction set. Included by exactly one source file per set, which names the
// set (ORVANE_INSTRUCTION_SET) and its vector width in bytes (ORVANE_VECTOR_BYTES).
//
// Everything here lives in a namespace without a name and calls no inline function or template from
// outside it, be it the standard library's or our own, that is not always inlined: the linker keeps
// one copy of such a function for the whole program, and it could be the one compiled for a
// processor that is not there.

#include "orvane/base/Bands.h"
#include "orvane/base/Constants.h"
#include "orvane/base/PolarRow.h"
#include "orvane/kernels/Kernels.h"

#include <utility>

#include <immintrin.h>

namespace orvane {
namespace {
#include "orvane/kernels/Vector.inl"

#include "orvane/kernels/AngleFactors.inl"
#include "orvane/kernels/BandRotation.inl"
#include "orvane/kernels/CosineEstimate.inl"
#include "orvane/kernels/Evaluation.inl"
#include "orvane/kernels/Legendre.inl"
#include "orvane/kernels/PointSums.inl"

#include "orvane/kernels/Fused.inl"
#include "orvane/kernels/RowSums.inl"
#include "orvane/kernels/Segments.inl"

#include "orvane/kernels/Render.inl"
} // namespace

extern const Kernels ORVANE_KERNEL_TABLE;
const Kernels ORVANE_KERNEL_TABLE = {
    .instructionSet = InstructionSet::ORVANE_INSTRUCTION_SET,
    .legendre = FillLegendreTables,
    .evaluation = EvaluatePoint,
    .cosineEstimate = EstimateCosines,
    .addWeighted = AddPoints<WeightedRounding>,
    .addPixels = AddPoints<PixelRounding>,
    .layRows = LayRows,
    .layColumns = LayColumns,
    .render = Render,
    .rotation = RotateBands,
};

} // namespace orvane
